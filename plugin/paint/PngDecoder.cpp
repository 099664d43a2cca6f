#include "paint/PngDecoder.h"

#include "paint/PngFilters.h"

#include <QtEndian>

#include <cstdlib>
#include <cstring>
#include <libdeflate.h>
#include <memory>
#include <new>
#include <vector>

namespace vellix {

namespace {

constexpr qint64 SIGNATURE_LENGTH = 8;
constexpr qint64 CHUNK_OVERHEAD = 12; // a chunk's length, type and checksum
constexpr std::size_t PIXEL = 4;

struct Chunk {
    const uchar* type = nullptr;
    const uchar* data = nullptr;
    std::size_t length = 0;

    bool Is(const char* name) const { return std::memcmp(type, name, 4) == 0; }
    // The first letter of a chunk that may be left out is lower case.
    bool MayBeLeftOut() const { return (type[0] & 0x20) != 0; }
};

// Walks over the chunks of sound data, which ends with IEND.
class Chunks {
public:
    class Iterator {
    public:
        explicit Iterator(const uchar* at)
            : at_(at) {}
        Chunk operator*() const {
            Chunk chunk;
            chunk.length = qFromBigEndian<quint32>(at_);
            chunk.type = at_ + 4;
            chunk.data = at_ + 8;
            return chunk;
        }
        Iterator& operator++() {
            const Chunk chunk = **this;
            at_ = chunk.Is("IEND") ? nullptr : at_ + CHUNK_OVERHEAD + chunk.length;
            return *this;
        }
        bool operator!=(const Iterator& other) const { return at_ != other.at_; }

    private:
        const uchar* at_;
    };

    explicit Chunks(const QByteArray& packed)
        : first_(reinterpret_cast<const uchar*>(packed.constData()) + SIGNATURE_LENGTH) {}
    Iterator begin() const { return Iterator(first_); }
    Iterator end() const { return Iterator(nullptr); }

private:
    const uchar* first_;
};

// Whether the chunks are a header, pixels in one piece, and besides them only what does not change pixels.
bool AreOurs(const Chunks& chunks) {
    int headers = 0;
    int pieces = 0;
    bool isInPiece = false;
    for (const Chunk& chunk : chunks) {
        const bool isPixels = chunk.Is("IDAT");
        pieces += isPixels && !isInPiece ? 1 : 0;
        isInPiece = isPixels;
        if (chunk.Is("IHDR")) {
            const uchar wanted[] = {8, 6, 0, 0, 0}; // bits, RGBA, compression, filters, no interlace
            if (++headers > 1 || std::memcmp(chunk.data + 8, wanted, sizeof wanted) != 0) {
                return false;
            }
        } else if (!isPixels && !chunk.Is("IEND") && (!chunk.MayBeLeftOut() || chunk.Is("tRNS"))) {
            return false;
        }
    }
    return pieces == 1;
}

// Borrows the compressed pixels if they lie in one chunk.
QByteArray Compressed(const Chunks& chunks) {
    std::size_t count = 0;
    QByteArray whole;
    for (const Chunk& chunk : chunks) {
        if (chunk.Is("IDAT")) {
            count += chunk.length;
            whole = QByteArray::fromRawData(reinterpret_cast<const char*>(chunk.data), int(chunk.length));
        }
    }
    if (std::size_t(whole.size()) == count) {
        return whole;
    }
    whole.clear();
    whole.reserve(int(count));
    for (const Chunk& chunk : chunks) {
        if (chunk.Is("IDAT")) {
            whole.append(reinterpret_cast<const char*>(chunk.data), int(chunk.length));
        }
    }
    return whole;
}

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
using Memory = std::unique_ptr<uchar, Free>;

struct FreeDecompressor {
    void operator()(libdeflate_decompressor* decompressor) const {
        libdeflate_free_decompressor(decompressor);
    }
};

bool Inflate(const QByteArray& compressed, uchar* out, std::size_t count) {
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    if (!decompressor) {
        throw std::bad_alloc();
    }
    // Fails for fewer bytes than `count` too.
    return libdeflate_zlib_decompress(decompressor.get(), compressed.constData(),
                                      std::size_t(compressed.size()), out, count,
                                      nullptr) == LIBDEFLATE_SUCCESS;
}

// Turns filtered rows into pixels, which need a byte less for each row: every row moves to its place first.
bool UndoFilters(uchar* rows, int width, int height) {
    const std::size_t count = std::size_t(width) * PIXEL;
    const std::vector<uchar> nothing(count);
    const uchar* above = nothing.data();
    for (int y = 0; y < height; ++y) {
        const uchar* filtered = rows + std::size_t(y) * (count + 1);
        uchar* row = rows + std::size_t(y) * count;
        const int filter = filtered[0];
        std::memmove(row, filtered + 1, count);
        if (!png_filters::Undo(filter, row, above, count)) {
            return false;
        }
        above = row;
    }
    return true;
}

} // namespace

PngDecoder::Result PngDecoder::Decode(const QByteArray& packed, QImage& image) {
    const Chunks chunks(packed);
    if (!AreOurs(chunks)) {
        return Result::NotOurs;
    }
    const Chunk header = *chunks.begin();
    const int width = qFromBigEndian<qint32>(header.data);
    const int height = qFromBigEndian<qint32>(header.data + 4);
    const std::size_t count = std::size_t(height) * (std::size_t(width) * PIXEL + 1);
    Memory rows(static_cast<uchar*>(std::malloc(count)));
    if (!rows) {
        throw std::bad_alloc();
    }
    if (!Inflate(Compressed(chunks), rows.get(), count) || !UndoFilters(rows.get(), width, height)) {
        return Result::Damaged;
    }
    QImage picture(rows.get(), width, height, width * int(PIXEL), QImage::Format_RGBA8888, std::free,
                   rows.get());
    if (picture.isNull()) {
        throw std::bad_alloc();
    }
    static_cast<void>(rows.release()); // the image frees it
    image = std::move(picture);
    return Result::Decoded;
}

} // namespace vellix
