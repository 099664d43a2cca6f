#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QtEndian>

#include <cstring>
#include <string>
#include <vector>

namespace vellix {

/// PNG files built chunk by chunk, whole or damaged with correct checksums.
namespace png_bytes {

/// CRC-32 of annex D of ISO/IEC 15948, bit by bit.
inline quint32 Crc(const QByteArray& bytes) {
    quint32 crc = 0xffffffffu;
    for (const char byte : bytes) {
        crc ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320u : 0);
        }
    }
    return ~crc;
}

inline QByteArray Number(quint32 value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray Chunk(const QByteArray& type, const QByteArray& data = QByteArray()) {
    const QByteArray checked = type + data;
    return Number(static_cast<quint32>(data.size())) + checked + Number(Crc(checked));
}

inline QByteArray Header(int width, int height, int depth, int colorType, int interlace = 0) {
    const char fields[] = {char(depth), char(colorType), 0, 0, char(interlace)};
    return Chunk("IHDR", Number(quint32(width)) + Number(quint32(height)) + QByteArray(fields, 5));
}

/// The chunk with the pixel data: rows, each after its filter byte, as a zlib stream.
inline QByteArray Pixels(const QByteArray& rows) {
    return Chunk("IDAT", qCompress(rows).mid(4)); // qCompress puts the size in front
}

inline QByteArray File(const std::vector<QByteArray>& chunks) {
    QByteArray bytes("\x89PNG\r\n\x1a\n");
    for (const QByteArray& chunk : chunks) {
        bytes += chunk;
    }
    return bytes;
}

/// The image as Qt writes it with its defaults.
inline QByteArray ByQt(const QImage& image) {
    QByteArray packed;
    QBuffer buffer(&packed);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return packed;
}

/// A picture of one pixel, red where it has colours.
inline QByteArray OnePixel(int depth, int colorType, const QByteArray& row, int interlace = 0) {
    std::vector<QByteArray> chunks = {Header(1, 1, depth, colorType, interlace)};
    if (colorType == 3) {
        chunks.push_back(Chunk("PLTE", QByteArray("\xff\0\0", 3)));
    }
    chunks.insert(chunks.end(), {Pixels(row), Chunk("IEND")});
    return File(chunks);
}

/// A layer's picture with correct checksums whose pixels do not decompress.
inline QByteArray NotInflating() {
    return File({Header(1024, 1024, 8, 6), Chunk("IDAT", QByteArray(8000, 'x')), Chunk("IEND")});
}

} // namespace png_bytes
} // namespace vellix
