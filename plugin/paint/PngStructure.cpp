#include "paint/PngStructure.h"

#include "paint/ImageSize.h"
#include "paint/PngChecksum.h"

#include <QtEndian>

#include <cstring>
#include <utility>

namespace vellix {

namespace {

constexpr char SIGNATURE[] = "\x89PNG\r\n\x1a\n";
constexpr qint64 STORED_SIGNATURE_LENGTH = 8;
constexpr qint64 HEADER_LENGTH = 13;
constexpr qint64 STORED_CHUNK_OVERHEAD = 12; // a chunk's length, type and checksum
constexpr qint64 MAX_DEFLATE_RATIO = 1032;

// Colour types.
constexpr int GRAY = 0;
constexpr int TRUECOLOR = 2;
constexpr int INDEXED = 3;
constexpr int GRAY_ALPHA = 4;
constexpr int TRUECOLOR_ALPHA = 6;

struct StoredChunk {
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
bool ReadChunk(const QByteArray& packed, qint64 offset, StoredChunk& chunk) {
    const qint64 rest = packed.size() - offset;
    if (rest < STORED_CHUNK_OVERHEAD) {
        return false;
    }
    const uchar* bytes = reinterpret_cast<const uchar*>(packed.constData()) + offset;
    chunk.length = qFromBigEndian<quint32>(bytes);
    chunk.type = bytes + 4;
    return chunk.length <= rest - STORED_CHUNK_OVERHEAD;
}

// A side beyond the range of int becomes negative.
PngStructure::Header ReadHeader(const StoredChunk& chunk) {
    const uchar* data = chunk.type + 4;
    PngStructure::Header header;
    header.width = qFromBigEndian<qint32>(data);
    header.height = qFromBigEndian<qint32>(data + 4);
    header.depth = data[8];
    header.colorType = data[9];
    return header;
}

// The bit depths that a colour type allows, as a mask; 0 for an unknown colour type.
int AllowedDepths(int colorType) {
    switch (colorType) {
    case GRAY:
        return 1 | 2 | 4 | 8 | 16;
    case INDEXED:
        return 1 | 2 | 4 | 8;
    case TRUECOLOR:
    case GRAY_ALPHA:
    case TRUECOLOR_ALPHA:
        return 8 | 16;
    default:
        return 0;
    }
}

int ChannelsOf(int colorType) {
    return colorType == TRUECOLOR ? 3 : colorType == GRAY_ALPHA ? 2 : colorType == TRUECOLOR_ALPHA ? 4 : 1;
}

// Checks the fields of IHDR, and whether the size is plausible before a decoder allocates for it. Deflate
// yields at most 1032 bytes from one byte.
bool IsPlausible(const StoredChunk& chunk, qint64 packedSize) {
    const PngStructure::Header header = ReadHeader(chunk);
    if (header.width < 1 || header.height < 1 || header.width > MAX_PNG_SIDE ||
        header.height > MAX_PNG_SIDE) {
        return false;
    }
    const bool isPowerOfTwo = header.depth != 0 && (header.depth & (header.depth - 1)) == 0;
    if (!isPowerOfTwo || (AllowedDepths(header.colorType) & header.depth) == 0) {
        return false;
    }
    const uchar* methods = chunk.type + 4 + 10; // compression, filter, interlace
    if (methods[0] != 0 || methods[1] != 0 || methods[2] > 1) {
        return false;
    }
    const qint64 rowBits = qint64(header.width) * ChannelsOf(header.colorType) * header.depth;
    return header.height * ((rowBits + 7) / 8) <= MAX_DEFLATE_RATIO * packedSize;
}

// Follows the critical chunks of one file.
class ChunkOrder {
public:
    explicit ChunkOrder(const StoredChunk& header)
        : needsPalette_(ReadHeader(header).colorType == INDEXED) {}

    // Returns false for a critical chunk that is unknown, doubled or comes too late.
    bool Accepts(const StoredChunk& chunk) {
        if (chunk.Is("IHDR")) {
            return !std::exchange(hasHeader_, true);
        }
        if (chunk.Is("PLTE")) {
            const bool isPalette = chunk.length > 0 && chunk.length % 3 == 0 && chunk.length <= 3 * 256;
            hasPalette_ = hasPalette_ || isPalette;
            return isPalette || !needsPalette_;
        }
        if (chunk.Is("IDAT")) {
            hasPixels_ = true;
            return hasPalette_ || !needsPalette_;
        }
        return chunk.Is("IEND") || !chunk.IsCritical();
    }

    bool HasPixels() const { return hasPixels_; }

private:
    const bool needsPalette_;
    bool hasHeader_ = false;
    bool hasPalette_ = false;
    bool hasPixels_ = false;
};

} // namespace

bool PngStructure::IsSound(const QByteArray& packed) {
    StoredChunk chunk;
    if (!packed.startsWith(QByteArray::fromRawData(SIGNATURE, int(STORED_SIGNATURE_LENGTH))) ||
        !ReadChunk(packed, STORED_SIGNATURE_LENGTH, chunk) || !chunk.Is("IHDR") ||
        chunk.length != HEADER_LENGTH || !IsPlausible(chunk, packed.size())) {
        return false;
    }
    ChunkOrder order(chunk);
    for (qint64 offset = STORED_SIGNATURE_LENGTH; ReadChunk(packed, offset, chunk);
         offset += STORED_CHUNK_OVERHEAD + chunk.length) {
        if ((chunk.IsCritical() && !chunk.IsIntact()) || !order.Accepts(chunk)) {
            return false;
        }
        if (chunk.Is("IEND")) {
            return order.HasPixels();
        }
    }
    return false;
}

QByteArray PngStructure::WithoutTexts(const QByteArray& packed) {
    QByteArray kept;
    StoredChunk chunk;
    StoredChunk next;
    bool hasPixels = false;
    qint64 begin = 0; // of what is to be kept next
    for (qint64 offset = STORED_SIGNATURE_LENGTH, end; ReadChunk(packed, offset, chunk); offset = end) {
        end = offset + STORED_CHUNK_OVERHEAD + chunk.length;
        hasPixels = hasPixels || chunk.Is("IDAT");
        const bool isBetweenPixels = hasPixels && ReadChunk(packed, end, next) && next.Is("IDAT");
        if (!isBetweenPixels && (chunk.Is("tEXt") || chunk.Is("zTXt") || chunk.Is("iTXt"))) {
            kept.append(packed.constData() + begin, int(offset - begin));
            begin = end;
        }
    }
    return begin == 0 ? packed : kept.append(packed.constData() + begin, packed.size() - int(begin));
}

bool PngStructure::IsPng(const QByteArray& packed) {
    return packed.startsWith(SIGNATURE);
}

PngStructure::Header PngStructure::HeaderOf(const QByteArray& packed) {
    StoredChunk chunk;
    return ReadChunk(packed, STORED_SIGNATURE_LENGTH, chunk) ? ReadHeader(chunk) : Header();
}

} // namespace vellix
