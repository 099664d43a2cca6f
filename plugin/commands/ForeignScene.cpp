#include "commands/ForeignScene.h"

#include "core/LayerManager.h"
#include "host/Guarded.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"

#include <QFileInfo>
#include <QList>

#include <memory>

namespace vellix {

namespace {

/// How many layers a node has; of several in a scene, the one with the most is taken.
int LayersOf(const BaseNode& node) {
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    return layers ? layers->TotalLayerCount() : 0;
}

QString InQuotes(const QString& text) {
    return QLatin1Char('"') + MayaUtil::EscapeString(text) + QLatin1Char('"');
}

} // namespace

ForeignScene::ForeignScene(const QString& path) {
    const QFileInfo file(path);
    if (!file.isFile() || !file.isReadable()) {
        fault_ =
            file.exists() ? QStringLiteral("it cannot be read") : QStringLiteral("the file does not exist");
        return;
    }
    const QList<BaseNode*> before = BaseNode::GetAll();
    const QString line = QStringLiteral("qmVxReadScene(%1)").arg(InQuotes(file.absoluteFilePath()));
    if (!MayaUtil::ExecuteMelStringResult(line, namespace_, false, false) || namespace_.isEmpty()) {
        fault_ = QStringLiteral("it is no scene that can be read whole");
        return;
    }
    for (BaseNode* node : BaseNode::GetAll()) {
        if (!before.contains(node) && LayersOf(*node) > (drawing_ ? LayersOf(*drawing_) : 0)) {
            drawing_ = node;
        }
    }
    if (!drawing_) {
        fault_ = QStringLiteral("there is no drawing in it");
    }
}

ForeignScene::Removal::Removal()
    : line_("qmVxRemoveScene()") {}

ForeignScene::Removal::~Removal() {
    RunGuarded("Taking the other scene out", [this] {
        // What was taken out first leaves memory for the rest.
        if (!MayaUtil::ExecuteMel(line_, false, false)) {
            MayaUtil::ExecuteMel(line_, false, false);
        }
    });
}

QString ForeignScene::NameThere(const QString& camera) const {
    const QString prefix = namespace_ + QLatin1Char(':');
    return camera.startsWith(prefix) ? camera.mid(prefix.size()) : camera;
}

} // namespace vellix
