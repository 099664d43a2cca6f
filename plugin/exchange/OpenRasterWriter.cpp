#include "exchange/OpenRasterWriter.h"

#include "exchange/LayeredDrawing.h"
#include "exchange/XmlText.h"
#include "paint/PngCodec.h"

#include <QXmlStreamWriter>

namespace vellix {

namespace {

/// The longest side that the standard allows, in pixels.
constexpr int THUMBNAIL_SIDE = 256;

QImage OraThumbnail(const QImage& merged) {
    if (merged.width() <= THUMBNAIL_SIDE && merged.height() <= THUMBNAIL_SIDE) {
        return merged;
    }
    // Premultiplied, so that the colour of transparent pixels does not reach the edges of the lines.
    return merged.convertToFormat(QImage::Format_RGBA8888_Premultiplied)
        .scaled(QSize(THUMBNAIL_SIDE, THUMBNAIL_SIDE), Qt::KeepAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGBA8888);
}

QByteArray OraEmptyPicture() {
    QImage pixel(1, 1, QImage::Format_RGBA8888);
    pixel.fill(Qt::transparent);
    return PngCodec::Encoded(pixel);
}

QString OraMember(int layer) {
    return QString("data/layer%1.png").arg(layer, 3, 10, QLatin1Char('0'));
}

void WriteOraLayer(QXmlStreamWriter& xml, const PictureLayer& layer, int index) {
    const QPoint position = layer.pictures.empty() ? QPoint() : layer.pictures.front().position;
    xml.writeEmptyElement("layer");
    xml.writeAttribute("name", ToXmlText(layer.name));
    xml.writeAttribute("src", OraMember(index));
    xml.writeAttribute("x", QString::number(position.x()));
    xml.writeAttribute("y", QString::number(position.y()));
    xml.writeAttribute("opacity", QString::number(layer.opacity));
    xml.writeAttribute("visibility", layer.isVisible ? "visible" : "hidden");
    xml.writeAttribute("composite-op", "svg:src-over");
}

QByteArray OraStack(const LayeredDrawing& drawing) {
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("image");
    xml.writeAttribute("version", "0.0.5");
    xml.writeAttribute("w", QString::number(drawing.size.width()));
    xml.writeAttribute("h", QString::number(drawing.size.height()));
    xml.writeAttribute("xres", "72");
    xml.writeAttribute("yres", "72");
    xml.writeStartElement("stack");
    for (int i = int(drawing.layers.size()) - 1; i >= 0; --i) { // the top layer first
        WriteOraLayer(xml, drawing.layers[std::size_t(i)], i);
    }
    xml.writeEndDocument();
    return text;
}

/// The members that are there without the picture of all layers.
ZipWriter OraLayers(const LayeredDrawing& drawing) {
    ZipWriter archive;
    archive.Add("mimetype", "image/openraster"); // first and stored, so that it stands at a known place
    archive.Add("stack.xml", OraStack(drawing));
    int index = 0;
    for (const PictureLayer& layer : drawing.layers) {
        archive.Add(OraMember(index++),
                    layer.pictures.empty() ? OraEmptyPicture() : layer.pictures.front().png);
    }
    return archive;
}

} // namespace

QString OpenRasterWriter::Refusal(const LayeredDrawing& drawing) {
    // No PNG needs more: its pixels and a byte a row, uncompressed, and what stands around them.
    constexpr qint64 around = 1 << 20;
    const qint64 merged = qint64(drawing.size.height()) * (4LL * drawing.size.width() + 1) + around;
    return OraLayers(drawing).Refusal(2 * around + merged, 2);
}

ZipWriter OpenRasterWriter::Archive(const LayeredDrawing& drawing, const QImage& merged) {
    ZipWriter archive = OraLayers(drawing);
    archive.Add("mergedimage.png", PngCodec::Encoded(merged));
    archive.Add("Thumbnails/thumbnail.png", PngCodec::Encoded(OraThumbnail(merged)));
    return archive;
}

} // namespace vellix
