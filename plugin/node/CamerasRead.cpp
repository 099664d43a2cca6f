#include "node/CamerasRead.h"

#include "core/LayerManager.h"
#include "node/BaseNode.h"

#include <QRegularExpression>

#include <memory>

namespace vellix {

namespace {

const QString& ShapeName() {
    static const QString name = QStringLiteral("vellixShape");
    return name;
}

/// The cameras that every scene has; a file shares them and they keep their names.
bool IsStartupCamera(const QString& name) {
    return QStringList({"persp", "top", "front", "side"}).contains(name);
}

QString WithoutNumber(const QString& name) {
    return QString(name).remove(QRegularExpression(QStringLiteral("[0-9]+$")));
}

/// "ns:" goes before the whole name, "prefix_" before the part behind the namespace.
QString Prefixed(const QString& prefix, const QString& name) {
    const int local = prefix.endsWith(QLatin1Char(':')) ? 0 : name.lastIndexOf(QLatin1Char(':')) + 1;
    return QString(name).insert(local, prefix);
}

/// The only name that fits; empty for none or several.
template <typename Fits>
QString OnlyOne(const QStringList& names, Fits fits) {
    QString found;
    for (const QString& name : names) {
        if (fits(name)) {
            if (!found.isEmpty()) {
                return QString();
            }
            found = name;
        }
    }
    return found;
}

} // namespace

QString CamerasRead::NameOf(const QString& stored, const QStringList& cameras, const QString& drawing) {
    if (cameras.contains(stored)) {
        return stored;
    }
    const QString prefix =
        drawing.endsWith(ShapeName()) ? drawing.left(drawing.size() - ShapeName().size()) : QString();
    if (!prefix.isEmpty() && cameras.contains(Prefixed(prefix, stored))) {
        return Prefixed(prefix, stored);
    }
    if (IsStartupCamera(stored)) {
        return stored;
    }
    QString name = OnlyOne(cameras, [&](const QString& camera) {
        return camera.endsWith(QLatin1Char('_') + stored) || camera.endsWith(QLatin1Char(':') + stored);
    });
    if (name.isEmpty()) {
        name = OnlyOne(cameras,
                       [&](const QString& camera) { return WithoutNumber(camera) == WithoutNumber(stored); });
    }
    return name.isEmpty() ? stored : name;
}

void CamerasRead::Follow(BaseNode& drawing, const QStringList& cameras) {
    const std::shared_ptr<LayerManager> layers = drawing.GetLayerManager();
    if (!layers) {
        return;
    }
    QStringList stored = layers->GetCameras();
    if (!layers->GetActiveCamera().isEmpty() && !stored.contains(layers->GetActiveCamera())) {
        stored.append(layers->GetActiveCamera());
    }
    for (const QString& camera : stored) {
        layers->GiveLayers(camera, NameOf(camera, cameras, drawing.GetName()));
    }
}

} // namespace vellix
