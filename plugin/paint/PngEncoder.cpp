#include "paint/PngEncoder.h"

#include "paint/ImageSize.h"
#include "paint/PngChecksum.h"
#include "paint/PngDeflate.h"
#include "paint/PngFilters.h"

#include <QtEndian>

#include <vector>

namespace vellix {

namespace {

constexpr int CHECKSUM_LENGTH = 4;
constexpr int LENGTH_LENGTH = 4;
constexpr int TYPE_LENGTH = 4;

void Append32(QByteArray& out, quint32 value) {
    char bytes[sizeof value];
    qToBigEndian(value, bytes);
    out.append(bytes, int(sizeof bytes));
}

// Begins a chunk, and returns where. EndChunk() completes it.
int BeginChunk(QByteArray& out, const char* type) {
    const int begin = out.size();
    Append32(out, 0);
    out.append(type, TYPE_LENGTH);
    return begin;
}

void EndChunk(QByteArray& out, int begin) {
    const int typeBegin = begin + LENGTH_LENGTH;
    const int count = out.size() - typeBegin;
    qToBigEndian(quint32(count - TYPE_LENGTH), out.data() + begin);
    Append32(out,
             PngChecksum(reinterpret_cast<const uchar*>(out.constData()) + typeBegin, std::size_t(count)));
}

void AppendHeader(QByteArray& out, const QImage& image, bool hasAlpha) {
    const int begin = BeginChunk(out, "IHDR");
    Append32(out, quint32(image.width()));
    Append32(out, quint32(image.height()));
    // Eight bits a channel, the colour type, and the usual compression, filters and order of rows.
    const char fields[] = {8, char(hasAlpha ? 6 : 2), 0, 0, 0};
    out.append(fields, int(sizeof fields));
    EndChunk(out, begin);
}

void AppendRows(QByteArray& out, const QImage& image, std::size_t pixelBytes) {
    const std::size_t count = std::size_t(image.width()) * pixelBytes;
    PngDeflate stream(out, int(count + 1), int(pixelBytes));
    const std::vector<uchar> nothing(count);
    std::vector<uchar> colors[2]; // of this row and of the one above
    const uchar* above = nothing.data();
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        if (pixelBytes == 3) {
            std::vector<uchar>& target = colors[y % 2];
            target.resize(count);
            png_filters::TakeColors(reinterpret_cast<const quint32*>(row), target.data(), image.width());
            row = target.data();
        }
        if (png_filters::IsZero(row, count)) {
            stream.AddEmptyRow();
        } else {
            png_filters::Apply(row, above, count, pixelBytes, stream.NextRow());
            stream.AddRow();
        }
        above = row;
    }
    stream.Finish();
}

} // namespace

bool PngEncoder::CanEncode(const QImage& image) {
    const bool isOurs = image.format() == QImage::Format_RGBA8888 || image.format() == QImage::Format_RGB32;
    return isOurs && image.width() <= MAX_PNG_SIDE && image.height() <= MAX_PNG_SIDE;
}

QByteArray PngEncoder::Encode(const QImage& image) {
    const bool hasAlpha = image.format() == QImage::Format_RGBA8888;
    QByteArray out("\x89PNG\r\n\x1a\n", 8);
    AppendHeader(out, image, hasAlpha);
    const int pixels = BeginChunk(out, "IDAT");
    AppendRows(out, image, hasAlpha ? 4 : 3);
    EndChunk(out, pixels);
    EndChunk(out, BeginChunk(out, "IEND"));
    out.squeeze(); // the bytes are kept
    return out;
}

} // namespace vellix
