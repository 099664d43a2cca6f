#include "exchange/PclxReader.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vellix {

namespace {

const QString MAIN = QStringLiteral("main.xml");

// Values of a layer's attribute "type".
constexpr int BITMAP = 1;
constexpr int VECTOR = 2;
constexpr int SOUND = 4;
constexpr int CAMERA = 5;

QString ValueOf(const QXmlStreamReader& xml, const char* name) {
    return xml.attributes().value(QLatin1String(name)).toString();
}

bool IsNear(const QString& text, double expected) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return !isNumber || std::abs(number - expected) < 1e-6;
}

} // namespace

PclxReader::PclxReader(const QString& path)
    : LayeredReader(path) {
    Open();
}

PclxReader::PclxReader(const QByteArray& bytes)
    : LayeredReader(bytes) {
    Open();
}

void PclxReader::Open() {
    QByteArray text;
    if (!ReadText(MAIN, text)) {
        return;
    }
    drawing_.size = QSize(800, 600); // of a new camera there
    QXmlStreamReader xml(text);
    while (NextTag(xml, MAIN)) {
        if (xml.isStartElement() && !ReadTag(xml)) {
            return;
        }
    }
    if (Fault().isEmpty() && CheckCanvas()) {
        CheckLayers();
    }
}

bool PclxReader::ReadTag(QXmlStreamReader& xml) {
    if (xml.name() == QLatin1String("layer")) {
        return StartLayer(xml);
    }
    if (xml.name() == QLatin1String("image") && isBitmap_) {
        return AddPicture(xml);
    }
    if (xml.name() == QLatin1String("camera")) {
        return ReadCamera(xml);
    }
    if (xml.name() == QLatin1String("fps")) {
        const double rate = ValueOf(xml, "value").toDouble();
        drawing_.rate = rate > 0.0 && rate < 1000.0 ? rate : drawing_.rate;
    }
    return true;
}

bool PclxReader::StartLayer(const QXmlStreamReader& xml) {
    const int type = ValueOf(xml, "type").toInt();
    const QString name = ValueOf(xml, "name");
    isBitmap_ = type == BITMAP;
    if (type == CAMERA && !hasCamera_) {
        hasCamera_ = true;
        const QSize size(ValueOf(xml, "width").toInt(), ValueOf(xml, "height").toInt());
        drawing_.size = size.isEmpty() ? drawing_.size : size;
    } else if (type == VECTOR || type == SOUND) {
        Warn(QStringLiteral("The layer \"%1\" has no pixels, and does not come in.").arg(name));
    }
    if (isBitmap_) {
        PictureLayer layer;
        layer.name = name;
        layer.isVisible = ValueOf(xml, "visibility") != QLatin1String("0");
        drawing_.layers.push_back(layer);
    }
    return true;
}

bool PclxReader::AddPicture(const QXmlStreamReader& xml) {
    LayeredPicture picture;
    bool isNumber = false;
    picture.frame = ValueOf(xml, "frame").toInt(&isNumber);
    if (!isNumber) {
        return Fail(QStringLiteral("\"%1\" is no frame of a picture").arg(ValueOf(xml, "frame")));
    }
    int x = 0;
    int y = 0;
    if (!ToPosition(ValueOf(xml, "topLeftX"), x) || !ToPosition(ValueOf(xml, "topLeftY"), y) ||
        !ToOpacity(ValueOf(xml, "opacity"), picture.opacity)) {
        return false;
    }
    picture.position = QPoint(x, y);
    const QString name = ValueOf(xml, "src");
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\'))) {
        return Fail(QStringLiteral("its picture \"%1\" leads out of the archive").arg(name));
    }
    picture.source = QStringLiteral("data/") + name;
    if (!archive_.Has(picture.source)) {
        // A blank key keeps no file there, and its place is the middle.
        if (!picture.position.isNull()) {
            return Fail(QStringLiteral("its member \"%1\" is missing").arg(picture.source));
        }
        picture.source.clear();
    }
    drawing_.layers.back().pictures.push_back(picture);
    return true;
}

bool PclxReader::ReadCamera(const QXmlStreamReader& xml) {
    if (!IsNear(ValueOf(xml, "s"), 1.0) || !IsNear(ValueOf(xml, "r"), 0.0) ||
        !IsNear(ValueOf(xml, "dx"), 0.0) || !IsNear(ValueOf(xml, "dy"), 0.0)) {
        Warn(QStringLiteral("The moves of its camera do not come along."));
    }
    return true;
}

/// Puts the keys in order and the positions onto the canvas.
bool PclxReader::CheckLayers() {
    const QPoint middle(drawing_.size.width() / 2, drawing_.size.height() / 2);
    for (PictureLayer& layer : drawing_.layers) {
        const auto isEarlier = [](const LayeredPicture& a, const LayeredPicture& b) {
            return a.frame < b.frame;
        };
        std::stable_sort(layer.pictures.begin(), layer.pictures.end(), isEarlier);
        for (std::size_t i = 0; i < layer.pictures.size(); ++i) {
            layer.pictures[i].position += middle;
            if (i > 0 && layer.pictures[i].frame == layer.pictures[i - 1].frame) {
                return Fail(QStringLiteral("its layer \"%1\" has two pictures at frame %2")
                                .arg(layer.name)
                                .arg(layer.pictures[i].frame));
            }
        }
    }
    return true;
}

} // namespace vellix
