#include "paint/PngEncoder.h"

#include "paint/ImageSize.h"
#include "paint/ParallelWork.h"
#include "paint/PngBands.h"
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

// Appends the pixels of some rows, which are all or a band, and returns their checksum.
quint32 AppendRows(QByteArray& out, const QImage& image, std::size_t begin, std::size_t end,
                   std::size_t pixelBytes) {
    const std::size_t count = std::size_t(image.width()) * pixelBytes;
    PngDeflate stream(out, int(count + 1), int(pixelBytes));
    const std::vector<uchar> nothing(count);
    std::vector<uchar> colors[2]; // of this row and of the one above
    const uchar* above = nothing.data();
    for (std::size_t y = begin; y < end; ++y) {
        const uchar* row = image.constScanLine(int(y));
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
    stream.Finish(end == std::size_t(image.height()));
    return stream.Checksum();
}

// The part of the stream that a band is.
struct PackedBand {
    std::size_t firstRow = 0;
    std::size_t rows = 0;
    QByteArray bytes;
    quint32 checksum = 1;
};

std::vector<PackedBand> PackBands(const QImage& image, std::size_t pixelBytes, bool inBands) {
    const auto height = std::size_t(image.height());
    std::vector<std::size_t> firstRows{0};
    if (inBands) {
        const std::size_t rowBytes = std::size_t(image.width()) * pixelBytes + 1;
        firstRows = png_bands::FirstRows(height, rowBytes, [&](std::size_t y) {
            const auto* row = reinterpret_cast<const quint32*>(image.constScanLine(int(y)));
            return png_filters::CountChanges(row, std::size_t(image.width())) * pixelBytes;
        });
    }
    std::vector<PackedBand> bands(firstRows.size());
    DoInParallel(bands.size(), [&](std::size_t i) {
        PackedBand& band = bands[i];
        const std::size_t end = i + 1 < bands.size() ? firstRows[i + 1] : height;
        band.firstRow = firstRows[i];
        band.rows = end - band.firstRow;
        band.checksum = AppendRows(band.bytes, image, band.firstRow, end, pixelBytes);
    });
    return bands;
}

void AppendBandList(QByteArray& out, const std::vector<PackedBand>& packed) {
    std::vector<PngBand> bands(packed.size());
    std::size_t end = png_bands::ZLIB_HEADER_LENGTH;
    for (std::size_t i = 0; i < packed.size(); ++i) {
        bands[i].firstRow = packed[i].firstRow;
        bands[i].begin = end;
        end += std::size_t(packed[i].bytes.size());
    }
    const int begin = BeginChunk(out, png_bands::CHUNK_TYPE);
    out.append(png_bands::Written(bands));
    EndChunk(out, begin);
}

void AppendPixels(QByteArray& out, const std::vector<PackedBand>& bands, std::size_t rowBytes) {
    int length = 0;
    for (const PackedBand& band : bands) {
        length += band.bytes.size();
    }
    out.reserve(out.size() + length + 64);
    const int begin = BeginChunk(out, "IDAT");
    out.append("\x78\x01", 2); // zlib: deflate, a window of 32 kB, fastest
    quint32 checksum = 1;
    for (const PackedBand& band : bands) {
        out.append(band.bytes);
        checksum = png_bands::JoinedChecksum(checksum, band.checksum, quint64(band.rows) * rowBytes);
    }
    Append32(out, checksum);
    EndChunk(out, begin);
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
    const std::size_t pixelBytes = hasAlpha ? 4 : 3;
    // PngDecoder reads RGBA only.
    const std::vector<PackedBand> bands = PackBands(image, pixelBytes, hasAlpha);
    if (bands.size() > 1) {
        AppendBandList(out, bands);
    }
    AppendPixels(out, bands, std::size_t(image.width()) * pixelBytes + 1);
    EndChunk(out, BeginChunk(out, "IEND"));
    out.squeeze(); // the bytes are kept
    return out;
}

} // namespace vellix
