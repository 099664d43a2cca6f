#include "exchange/PclxWriter.h"

#include "exchange/LayeredDrawing.h"
#include "exchange/XmlText.h"

#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace vellix {

constexpr int PclxWriter::FIRST_FRAME; // C++14 wants this where a reference is taken

namespace {

constexpr int PCLX_BITMAP_LAYER = 1;
constexpr int PCLX_CAMERA_LAYER = 5;
constexpr int PCLX_FIRST_LAYER = 1; // layers count from 1

QString PclxPicture(int layer, int frame) {
    return QString("%1.%2.png").arg(layer, 3, 10, QLatin1Char('0')).arg(frame, 3, 10, QLatin1Char('0'));
}

/// A layer that goes on; its keys follow.
void BeginPclxLayer(QXmlStreamWriter& xml, int id, const QString& name, bool isVisible, int type) {
    xml.writeStartElement("layer");
    xml.writeAttribute("id", QString::number(id));
    xml.writeAttribute("name", ToXmlText(name));
    xml.writeAttribute("visibility", isVisible ? "1" : "0");
    xml.writeAttribute("type", QString::number(type));
}

/// The pictures' own place is their top left corner; the program's is the middle of the camera.
void WritePclxLayer(QXmlStreamWriter& xml, int id, const PictureLayer& layer, const QSize& size) {
    BeginPclxLayer(xml, id, layer.name, layer.isVisible, PCLX_BITMAP_LAYER);
    for (const LayeredPicture& picture : layer.pictures) {
        xml.writeEmptyElement("image");
        xml.writeAttribute("frame", QString::number(picture.frame));
        xml.writeAttribute("src", PclxPicture(id, picture.frame));
        xml.writeAttribute("topLeftX", QString::number(picture.position.x() - size.width() / 2));
        xml.writeAttribute("topLeftY", QString::number(picture.position.y() - size.height() / 2));
        xml.writeAttribute("opacity", QString::number(layer.opacity));
    }
    xml.writeEndElement();
}

/// A key at the end as well: the animation ends with the last key of any layer, and so the last drawings are
/// held.
void WritePclxCamera(QXmlStreamWriter& xml, int id, const QSize& size, int lastFrame) {
    BeginPclxLayer(xml, id, "Camera Layer", true, PCLX_CAMERA_LAYER);
    xml.writeAttribute("width", QString::number(size.width()));
    xml.writeAttribute("height", QString::number(size.height()));
    for (int frame = PclxWriter::FIRST_FRAME; frame <= lastFrame;
         frame = frame < lastFrame ? lastFrame : lastFrame + 1) {
        xml.writeEmptyElement("camera");
        xml.writeAttribute("frame", QString::number(frame));
        for (const char* nothing : {"r", "dx", "dy"}) {
            xml.writeAttribute(nothing, "0");
        }
        xml.writeAttribute("s", "1");
    }
    xml.writeEndElement();
}

void WritePclxProject(QXmlStreamWriter& xml, const LayeredDrawing& drawing, int lastFrame) {
    xml.writeStartElement("projectdata");
    const std::initializer_list<std::pair<const char*, QString>> values = {
        {"currentFrame", QString::number(PclxWriter::FIRST_FRAME)},
        {"currentLayer", QString::number(0)},
        {"fps", QString::number(PclxWriter::RateOf(drawing))},
        {"isLoop", "false"},
        {"isRangedPlayback", "false"},
        {"markInFrame", QString::number(PclxWriter::FIRST_FRAME)},
        {"markOutFrame", QString::number(lastFrame)},
    };
    for (const auto& value : values) {
        xml.writeEmptyElement(value.first);
        xml.writeAttribute("value", value.second);
    }
    xml.writeEndElement();
}

QByteArray PclxMain(const LayeredDrawing& drawing, int lastFrame) {
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeDTD("<!DOCTYPE PencilDocument>");
    xml.writeStartElement("document");
    WritePclxProject(xml, drawing, lastFrame);
    xml.writeStartElement("object");
    int id = PCLX_FIRST_LAYER;
    for (const PictureLayer& layer : drawing.layers) {
        WritePclxLayer(xml, id++, layer, drawing.size);
    }
    WritePclxCamera(xml, id, drawing.size, lastFrame);
    xml.writeEndElement();
    xml.writeTextElement("version", "0.6.6");
    xml.writeEndDocument();
    return text;
}

} // namespace

int PclxWriter::RateOf(const LayeredDrawing& drawing) {
    return std::max(1, static_cast<int>(std::lround(drawing.rate)));
}

ZipWriter PclxWriter::Archive(const LayeredDrawing& drawing, int lastFrame) {
    ZipWriter archive;
    archive.Add("main.xml", PclxMain(drawing, lastFrame));
    int id = PCLX_FIRST_LAYER;
    for (const PictureLayer& layer : drawing.layers) {
        for (const LayeredPicture& picture : layer.pictures) {
            archive.Add("data/" + PclxPicture(id, picture.frame), picture.png);
        }
        ++id;
    }
    return archive;
}

} // namespace vellix
