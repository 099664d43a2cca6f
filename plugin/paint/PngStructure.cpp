#include "paint/PngStructure.h"

#include "paint/ImageSize.h"
#include "paint/PngChecksum.h"

#include <QtEndian>

#include <cstring>

namespace vellix {

namespace {

constexpr char SIGNATURE[] = "\x89PNG\r\n\x1a\n";
constexpr qint64 SIGNATURE_LENGTH = 8;
constexpr qint64 HEADER_LENGTH = 13;
constexpr qint64 CHUNK_OVERHEAD = 12; // a chunk's length, type and checksum
constexpr qint64 MAX_DEFLATE_RATIO = 1032;

struct Chunk {
    const uchar* type = nullptr; // four letters, then the data
    qint64 length = 0;           // bytes of data

    bool Is(const char* name) const { return std::memcmp(type, name, 4) == 0; }
    // Decoders skip a damaged ancillary chunk, marked by a lower-case first letter (bit 0x20).
    bool IsCritical() const { return (type[0] & 0x20) == 0; }
    bool IsIntact() const {
        return PngChecksum(type, std::size_t(length) + 4) == qFromBigEndian<quint32>(type + 4 + length);
    }
};

// Reads the chunk at `offset`. Returns false if it runs past the end.
bool ReadChunk(const QByteArray& packed, qint64 offset, Chunk& chunk) {
    const qint64 rest = packed.size() - offset;
    if (rest < CHUNK_OVERHEAD) {
        return false;
    }
    const uchar* bytes = reinterpret_cast<const uchar*>(packed.constData()) + offset;
    chunk.length = qFromBigEndian<quint32>(bytes);
    chunk.type = bytes + 4;
    return chunk.length <= rest - CHUNK_OVERHEAD;
}

// Checks whether the size in IHDR is plausible before a decoder allocates for it. Deflate yields at most 1032
// bytes from one byte.
bool IsPlausible(const Chunk& header, qint64 packedSize) {
    const uchar* data = header.type + 4;
    const quint32 width = qFromBigEndian<quint32>(data);
    const quint32 height = qFromBigEndian<quint32>(data + 4);
    constexpr quint32 most = MAX_PNG_SIDE;
    if (width < 1 || height < 1 || width > most || height > most) {
        return false;
    }
    const int colorType = data[9];
    const int channels = colorType == 2 ? 3 : colorType == 4 ? 2 : colorType == 6 ? 4 : 1;
    const qint64 rowBytes = (qint64(width) * channels * data[8] + 7) / 8;
    return height * rowBytes <= MAX_DEFLATE_RATIO * packedSize;
}

} // namespace

bool PngStructure::IsSound(const QByteArray& packed) {
    Chunk chunk;
    if (!packed.startsWith(QByteArray::fromRawData(SIGNATURE, int(SIGNATURE_LENGTH))) ||
        !ReadChunk(packed, SIGNATURE_LENGTH, chunk) || !chunk.Is("IHDR") || chunk.length != HEADER_LENGTH ||
        !IsPlausible(chunk, packed.size())) {
        return false;
    }
    bool hasPixels = false;
    for (qint64 offset = SIGNATURE_LENGTH; ReadChunk(packed, offset, chunk);
         offset += CHUNK_OVERHEAD + chunk.length) {
        if (chunk.IsCritical() && !chunk.IsIntact()) {
            return false;
        }
        hasPixels = hasPixels || chunk.Is("IDAT");
        if (chunk.Is("IEND")) {
            return hasPixels;
        }
    }
    return false;
}

} // namespace vellix
