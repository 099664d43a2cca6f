#include "exchange/PsdWriter.h"

#include "exchange/LayeredDrawing.h"
#include "paint/Composite.h"
#include "paint/PngCodec.h"
#include "paint/PngStructure.h"

#include <QRect>
#include <QString>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace vellix {

constexpr int PsdWriter::MAX_SIDE; // C++14 wants these where a reference is taken
constexpr int PsdWriter::MAX_LAYERS;

namespace {

constexpr int PSD_CHANNELS = 4;
constexpr quint16 PSD_RGB = 3;
constexpr quint16 PSD_PACKBITS = 1;
constexpr quint8 PSD_HIDDEN = 2;
/// Ids of a layer's channels, and the byte of a pixel that each holds.
constexpr std::array<qint16, PSD_CHANNELS> PSD_IDS = {{-1, 0, 1, 2}};
constexpr std::array<int, PSD_CHANNELS> PSD_BYTES = {{3, 0, 1, 2}};

/// Numbers as the format has them: the highest byte first.
class PsdBytes {
public:
    template <typename Number>
    PsdBytes& Put(Number number) {
        const Number turned = qToBigEndian(number);
        bytes.append(reinterpret_cast<const char*>(&turned), sizeof(turned));
        return *this;
    }
    PsdBytes& Put(const char* text) {
        bytes.append(text);
        return *this;
    }
    PsdBytes& Put(const QByteArray& other) {
        bytes.append(other);
        return *this;
    }
    /// A block behind its length.
    PsdBytes& PutBlock(const QByteArray& block) { return Put(static_cast<quint32>(block.size())).Put(block); }
    /// Zeros up to a multiple.
    PsdBytes& Pad(int multiple) {
        while (bytes.size() % multiple != 0) {
            bytes.append('\0');
        }
        return *this;
    }

    QByteArray bytes;
};

/// Appends a row as PackBits (Apple's Technical Note TN1023): runs of two and more as one byte, the rest as
/// it is. Returns the count of bytes.
int AppendPackBits(const char* row, int count, QByteArray& out) {
    constexpr int most = 128;
    const int before = out.size();
    int i = 0;
    while (i < count) {
        int run = 1;
        while (run < most && i + run < count && row[i + run] == row[i]) {
            ++run;
        }
        if (run > 1) {
            out.append(static_cast<char>(1 - run));
            out.append(row[i]);
            i += run;
            continue;
        }
        // Until three are the same: a run of two between others gains nothing.
        int end = i + 1;
        while (end < count && end - i < most &&
               !(end + 2 < count && row[end] == row[end + 1] && row[end] == row[end + 2])) {
            ++end;
        }
        out.append(static_cast<char>(end - i - 1));
        out.append(row + i, end - i);
        i = end;
    }
    return out.size() - before;
}

/// One byte of each pixel of an area, packed: the counts of bytes go to `counts`, the rows to `rows`.
void PackPsdChannel(const QImage& image, const QRect& area, int byte, PsdBytes& counts, QByteArray& rows) {
    std::vector<char> row(static_cast<std::size_t>(area.width()));
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const uchar* pixel = image.constScanLine(y) + 4 * area.left() + byte;
        for (char& value : row) {
            value = static_cast<char>(*pixel);
            pixel += 4;
        }
        counts.Put(static_cast<quint16>(AppendPackBits(row.data(), area.width(), rows)));
    }
}

/// Four bytes a pixel: red, green, blue and alpha.
QImage ToPsdPixels(const QImage& image) {
    return composite::OrBadAlloc(image.convertToFormat(QImage::Format_RGBA8888));
}

/// The smallest area with all pixels that show anything.
QRect PsdArea(const QImage& image) {
    int left = image.width();
    int right = -1;
    int top = image.height();
    int bottom = -1;
    for (int y = 0; y < image.height(); ++y) {
        const uchar* const row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            if (row[4 * x + 3] != 0) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = y;
            }
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

/// The blocks behind a layer's record: no mask, no blending ranges, and its name twice: first in at
/// most 255 bytes, for programs that know no other.
QByteArray PsdLayerNames(const QString& name) {
    PsdBytes extra;
    extra.PutBlock(QByteArray()).PutBlock(QByteArray());
    QString start = name;
    while (start.toUtf8().size() > 255) {
        start.chop(start.at(start.size() - 1).isLowSurrogate() ? 2 : 1);
    }
    const QByteArray shortName = start.toUtf8();
    PsdBytes pascal;
    pascal.Put(static_cast<quint8>(shortName.size())).Put(shortName).Pad(4);
    PsdBytes unicode;
    unicode.Put(static_cast<quint32>(name.size()));
    for (const QChar c : name) {
        unicode.Put(static_cast<quint16>(c.unicode()));
    }
    unicode.Pad(4);
    extra.Put(pascal.bytes).Put("8BIMluni").PutBlock(unicode.bytes);
    return extra.bytes;
}

/// Adds the record of a layer, and its pixels to those of all layers.
void AddPsdLayer(const PictureLayer& layer, PsdBytes& records, PsdBytes& pixels) {
    QImage image;
    QPoint position;
    if (!layer.pictures.empty() && PngCodec::Decode(layer.pictures.front().png, image)) {
        image = ToPsdPixels(image);
        position = layer.pictures.front().position;
    }
    const QRect area = PsdArea(image);
    const QRect place = area.isEmpty() ? QRect() : area.translated(position);
    for (const int side :
         {place.top(), place.left(), place.top() + place.height(), place.left() + place.width()}) {
        records.Put(static_cast<qint32>(side));
    }
    records.Put(static_cast<quint16>(PSD_CHANNELS));
    for (std::size_t i = 0; i < PSD_CHANNELS; ++i) {
        PsdBytes channel;
        channel.Put(PSD_PACKBITS);
        QByteArray rows;
        PackPsdChannel(image, area, PSD_BYTES[i], channel, rows);
        channel.Put(rows);
        records.Put(PSD_IDS[i]).Put(static_cast<quint32>(channel.bytes.size()));
        pixels.Put(channel.bytes);
    }
    const auto opacity = static_cast<quint8>(std::lround(255 * qBound(0.0, layer.opacity, 1.0)));
    records.Put("8BIMnorm").Put(opacity).Put(quint8(0));
    records.Put(layer.isVisible ? quint8(0) : PSD_HIDDEN).Put(quint8(0));
    records.PutBlock(PsdLayerNames(layer.name));
}

/// The layers, bottom first. The count is negative: the alpha of the merged picture is its transparency.
QByteArray PsdLayers(const LayeredDrawing& drawing) {
    PsdBytes records;
    PsdBytes pixels;
    for (const PictureLayer& layer : drawing.layers) {
        AddPsdLayer(layer, records, pixels);
    }
    PsdBytes info;
    info.Put(static_cast<qint16>(-static_cast<int>(drawing.layers.size())))
        .Put(records.bytes)
        .Put(pixels.bytes)
        .Pad(4);
    PsdBytes section;
    section.PutBlock(info.bytes).PutBlock(QByteArray()); // without a global mask
    return section.bytes;
}

/// The merged picture on white, with its alpha: so the programs that write the format have it, and take it
/// off again.
QImage OnPsdPaper(const QImage& merged) {
    QImage image = ToPsdPixels(merged);
    image.detach();
    composite::OrBadAlloc(image);
    for (int y = 0; y < image.height(); ++y) {
        uchar* pixel = image.scanLine(y);
        for (int x = 0; x < image.width(); ++x, pixel += 4) {
            for (int i = 0; i < 3; ++i) {
                pixel[i] = static_cast<uchar>((pixel[i] * pixel[3] + 255 * (255 - pixel[3]) + 127) / 255);
            }
        }
    }
    return image;
}

QByteArray PsdMerged(const QImage& merged) {
    const QImage image = OnPsdPaper(merged);
    PsdBytes result;
    result.Put(PSD_PACKBITS);
    QByteArray rows;
    for (int byte = 0; byte < PSD_CHANNELS; ++byte) {
        PackPsdChannel(image, image.rect(), byte, result, rows);
    }
    return result.Put(rows).bytes;
}

/// The most bytes that a picture can take: PackBits adds one for each 128.
qint64 MostPsdBytes(const QSize& size) {
    return PSD_CHANNELS * static_cast<qint64>(size.height()) * (size.width() + size.width() / 128 + 3);
}

qint64 MostPsdBytes(const LayeredDrawing& drawing) {
    qint64 bytes = MostPsdBytes(drawing.size);
    for (const PictureLayer& layer : drawing.layers) {
        if (!layer.pictures.empty() && PngStructure::IsSound(layer.pictures.front().png)) {
            const PngStructure::Header header = PngStructure::HeaderOf(layer.pictures.front().png);
            bytes += MostPsdBytes(QSize(header.width, header.height));
        }
        bytes += 1024 + 4 * layer.name.size();
    }
    return bytes;
}

} // namespace

QString PsdWriter::Refusal(const LayeredDrawing& drawing) {
    const bool fits = drawing.size.width() <= MAX_SIDE && drawing.size.height() <= MAX_SIDE &&
                      drawing.layers.size() <= std::size_t(MAX_LAYERS) && MostPsdBytes(drawing) <= MAX_BYTES;
    return fits ? QString()
                : QStringLiteral("A .psd file holds at most 2 GB, %1 layers and %2 pixels a side")
                      .arg(MAX_LAYERS)
                      .arg(MAX_SIDE);
}

QByteArray PsdWriter::Encode(const LayeredDrawing& drawing, const QImage& merged) {
    if (!Refusal(drawing).isEmpty()) {
        return QByteArray();
    }
    PsdBytes file;
    file.Put("8BPS").Put(quint16(1)).Put(QByteArray(6, '\0')).Put(static_cast<quint16>(PSD_CHANNELS));
    file.Put(static_cast<quint32>(drawing.size.height())).Put(static_cast<quint32>(drawing.size.width()));
    file.Put(quint16(8)).Put(PSD_RGB);
    file.PutBlock(QByteArray()); // no colour table
    file.PutBlock(QByteArray()); // no image resources
    file.PutBlock(PsdLayers(drawing));
    return file.Put(PsdMerged(merged)).bytes;
}

} // namespace vellix
