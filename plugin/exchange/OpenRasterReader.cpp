#include "exchange/OpenRasterReader.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <vector>

namespace vellix {

namespace {

const QString STACK = QStringLiteral("stack.xml");
constexpr std::size_t MAX_DEPTH = 100;

bool IsHidden(const QXmlStreamReader& xml) {
    return xml.attributes().value(QLatin1String("visibility")) == QLatin1String("hidden");
}

QString AttributeOf(const QXmlStreamReader& xml, const char* name) {
    return xml.attributes().value(QLatin1String(name)).toString();
}

/// A group of layers, or the whole image.
struct Group {
    double opacity = 1.0; ///< with those around it
    bool isVisible = true;
};

} // namespace

OpenRasterReader::OpenRasterReader(const QString& path)
    : LayeredReader(path) {
    Open();
}

OpenRasterReader::OpenRasterReader(const QByteArray& bytes)
    : LayeredReader(bytes) {
    Open();
}

void OpenRasterReader::Open() {
    QByteArray text;
    if (!ReadText(STACK, text)) {
        return;
    }
    QXmlStreamReader xml(text);
    if (ReadImage(xml) && ReadLayers(xml)) {
        std::reverse(drawing_.layers.begin(), drawing_.layers.end()); // the file has the topmost first
    }
}

bool OpenRasterReader::ReadImage(QXmlStreamReader& xml) {
    if (!NextTag(xml, STACK)) {
        return Fail(QStringLiteral("its member \"%1\" is empty").arg(STACK));
    }
    if (xml.name() != QLatin1String("image")) {
        return Fail(QStringLiteral("its member \"%1\" describes no image").arg(STACK));
    }
    drawing_.size = QSize(AttributeOf(xml, "w").toInt(), AttributeOf(xml, "h").toInt());
    return CheckCanvas();
}

bool OpenRasterReader::ReadLayers(QXmlStreamReader& xml) {
    std::vector<Group> groups(1);
    while (NextTag(xml, STACK)) {
        const bool isGroup = xml.name() == QLatin1String("stack");
        if (xml.isEndElement()) {
            if (isGroup && groups.size() > 1) {
                groups.pop_back();
            }
        } else if (isGroup) {
            Group group;
            if (groups.size() > MAX_DEPTH || !ToOpacity(AttributeOf(xml, "opacity"), group.opacity)) {
                return Fail(QStringLiteral("its groups are nested too deep"));
            }
            CheckBlending(xml);
            group.opacity *= groups.back().opacity;
            group.isVisible = groups.back().isVisible && !IsHidden(xml);
            groups.push_back(group);
        } else if (xml.name() == QLatin1String("layer") &&
                   !AddLayer(xml, groups.back().opacity, groups.back().isVisible)) {
            return false;
        }
    }
    return Fault().isEmpty();
}

bool OpenRasterReader::AddLayer(const QXmlStreamReader& xml, double groupOpacity, bool groupIsVisible) {
    PictureLayer layer;
    layer.name = AttributeOf(xml, "name");
    LayeredPicture picture;
    picture.source = AttributeOf(xml, "src");
    if (!picture.source.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        Warn(QStringLiteral("The layer \"%1\" has no pixels, and does not come in.").arg(layer.name));
        return true;
    }
    if (!archive_.Has(picture.source)) {
        return Fail(QStringLiteral("its member \"%1\" is missing").arg(picture.source));
    }
    int x = 0;
    int y = 0;
    if (!ToPosition(AttributeOf(xml, "x"), x) || !ToPosition(AttributeOf(xml, "y"), y) ||
        !ToOpacity(AttributeOf(xml, "opacity"), layer.opacity)) {
        return false;
    }
    picture.position = QPoint(x, y);
    layer.opacity *= groupOpacity;
    layer.isVisible = groupIsVisible && !IsHidden(xml);
    layer.pictures.push_back(picture);
    CheckBlending(xml);
    drawing_.layers.push_back(layer);
    return true;
}

void OpenRasterReader::CheckBlending(const QXmlStreamReader& xml) {
    const QString mode = AttributeOf(xml, "composite-op");
    if (!mode.isEmpty() && mode != QLatin1String("svg:src-over")) {
        Warn(QStringLiteral("The layer \"%1\" is blended by \"%2\" there; here layers cover each other.")
                 .arg(AttributeOf(xml, "name"), mode));
    }
}

} // namespace vellix
