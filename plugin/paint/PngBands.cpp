#include "paint/PngBands.h"

#include <QtEndian>

namespace vellix {
namespace png_bands {

namespace {

// Bytes that change, and all bytes, of a band that is cut off. The former are two blocks of PngDeflate.
constexpr std::size_t BAND_CHANGES = 256 * 1024;
constexpr std::size_t BAND_BYTES = 4 * 1024 * 1024;
// One of so many rows is looked at.
constexpr std::size_t ROWS_FOR_ONE = 16;
constexpr std::size_t ENTRY_LENGTH = 8;
constexpr quint64 ADLER_BASE = 65521;

} // namespace

std::vector<std::size_t> FirstRows(std::size_t height, std::size_t rowBytes,
                                   const std::function<std::size_t(std::size_t)>& changes) {
    std::vector<std::size_t> rows{0};
    std::size_t found = 0;
    for (std::size_t row = 0; row < height; row += ROWS_FOR_ONE) {
        if (found >= BAND_CHANGES || (row - rows.back()) * rowBytes >= BAND_BYTES) {
            rows.push_back(row);
            found = 0;
        }
        found += ROWS_FOR_ONE * changes(row);
    }
    return rows;
}

QByteArray Written(const std::vector<PngBand>& bands) {
    QByteArray data(int((bands.size() - 1) * ENTRY_LENGTH), '\0');
    char* at = data.data();
    for (std::size_t i = 1; i < bands.size(); ++i, at += ENTRY_LENGTH) {
        qToBigEndian(quint32(bands[i].firstRow), at);
        qToBigEndian(quint32(bands[i].begin), at + 4);
    }
    return data;
}

std::vector<PngBand> Read(const uchar* data, std::size_t length, std::size_t streamLength, std::size_t height,
                          std::size_t rowBytes) {
    if (length % ENTRY_LENGTH != 0 || length / ENTRY_LENGTH >= height ||
        streamLength < ZLIB_HEADER_LENGTH + ZLIB_CHECKSUM_LENGTH) {
        return {};
    }
    std::vector<PngBand> bands(1 + length / ENTRY_LENGTH);
    bands[0].begin = ZLIB_HEADER_LENGTH;
    for (std::size_t i = 1; i < bands.size(); ++i, data += ENTRY_LENGTH) {
        bands[i].firstRow = qFromBigEndian<quint32>(data);
        bands[i].begin = qFromBigEndian<quint32>(data + 4);
    }
    const std::size_t mostBytes = BAND_BYTES + ROWS_FOR_ONE * rowBytes;
    for (std::size_t i = 0; i < bands.size(); ++i) {
        const bool isLast = i + 1 == bands.size();
        const std::size_t endRow = isLast ? height : bands[i + 1].firstRow;
        const std::size_t end = isLast ? streamLength - ZLIB_CHECKSUM_LENGTH : bands[i + 1].begin;
        if (endRow <= bands[i].firstRow || endRow > height || end <= bands[i].begin || end > streamLength ||
            (endRow - bands[i].firstRow) * rowBytes > mostBytes) {
            return {};
        }
    }
    return bands;
}

quint32 JoinedChecksum(quint32 first, quint32 second, quint64 length) {
    const quint64 firstSum = first & 0xffff;
    const quint64 sum = firstSum + (second & 0xffff) + ADLER_BASE - 1;
    const quint64 sumOfSums =
        (first >> 16) + (second >> 16) + length % ADLER_BASE * (firstSum + ADLER_BASE - 1);
    return quint32(sumOfSums % ADLER_BASE) << 16 | quint32(sum % ADLER_BASE);
}

} // namespace png_bands
} // namespace vellix
