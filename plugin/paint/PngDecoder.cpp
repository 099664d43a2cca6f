#include "paint/PngDecoder.h"

#include "paint/NonCopyable.h"
#include "paint/ParallelWork.h"
#include "paint/PngBands.h"
#include "paint/PngFilters.h"

#include <QtEndian>

#include <atomic>
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

using Decompressor = std::unique_ptr<libdeflate_decompressor, FreeDecompressor>;

Decompressor MakeDecompressor() {
    Decompressor decompressor(libdeflate_alloc_decompressor());
    if (!decompressor) {
        throw std::bad_alloc();
    }
    return decompressor;
}

bool Inflate(const QByteArray& compressed, uchar* out, std::size_t count) {
    // Fails for fewer bytes than `count` too.
    return libdeflate_zlib_decompress(MakeDecompressor().get(), compressed.constData(),
                                      std::size_t(compressed.size()), out, count,
                                      nullptr) == LIBDEFLATE_SUCCESS;
}

Memory Allocated(std::size_t count) {
    Memory memory(static_cast<uchar*>(std::malloc(count)));
    if (!memory) {
        throw std::bad_alloc();
    }
    return memory;
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

// Whether the filter takes the row above into account.
bool NeedsRowAbove(int filter) {
    return filter != png_filters::NONE && filter != png_filters::SUB;
}

// The rows of a picture that bands name, read by all processors.
class BandReader : private NonCopyable {
public:
    BandReader(const QByteArray& compressed, const std::vector<PngBand>& bands, std::size_t width,
               std::size_t height)
        : stream_(reinterpret_cast<const uchar*>(compressed.constData()))
        , end_(std::size_t(compressed.size()) - png_bands::ZLIB_CHECKSUM_LENGTH)
        , bands_(bands)
        , count_(width * PIXEL)
        , height_(height) {}

    // Writes the pixels. Returns false, and leaves part of them, if the bands are not what they should be.
    bool Read(uchar* pixels) const {
        // What comes before the first band is the header that PngEncoder writes.
        if (stream_[0] != 0x78 || stream_[1] != 0x01) {
            return false;
        }
        std::vector<quint32> checksums(bands_.size(), 0);
        std::atomic<bool> isWhole{true};
        DoInParallel(bands_.size(), [&](std::size_t i) {
            if (isWhole && !ReadBand(i, pixels, checksums[i])) {
                isWhole = false;
            }
        });
        if (!isWhole) {
            return false;
        }
        quint32 checksum = 1;
        for (std::size_t i = 0; i < bands_.size(); ++i) {
            checksum = png_bands::JoinedChecksum(checksum, checksums[i], Rows(i) * (count_ + 1));
        }
        return checksum == qFromBigEndian<quint32>(stream_ + end_);
    }

private:
    std::size_t Rows(std::size_t i) const {
        return (i + 1 < bands_.size() ? bands_[i + 1].firstRow : height_) - bands_[i].firstRow;
    }

    bool ReadBand(std::size_t i, uchar* pixels, quint32& checksum) const {
        const std::size_t bytes = Rows(i) * (count_ + 1);
        const Memory filtered = Allocated(bytes);
        if (!InflateBand(i, filtered.get(), bytes)) {
            return false;
        }
        checksum = libdeflate_adler32(1, filtered.get(), bytes);
        const std::vector<uchar> nothing(count_);
        const uchar* above = nothing.data();
        uchar* row = pixels + bands_[i].firstRow * count_;
        for (std::size_t y = 0; y < Rows(i); ++y) {
            const uchar* from = filtered.get() + y * (count_ + 1);
            if ((y == 0 && NeedsRowAbove(from[0])) || from[0] > png_filters::PAETH) {
                return false;
            }
            std::memcpy(row, from + 1, count_);
            png_filters::Undo(from[0], row, above, count_);
            above = row;
            row += count_;
        }
        return true;
    }

    bool InflateBand(std::size_t i, uchar* out, std::size_t count) const {
        std::vector<uchar> in;
        const uchar* begin = stream_ + bands_[i].begin;
        std::size_t length = end_ - bands_[i].begin;
        if (i + 1 < bands_.size()) {
            // The stream goes on behind it: here it ends, with an empty last block.
            length = bands_[i + 1].begin - bands_[i].begin;
            in.reserve(length + 2);
            in.assign(begin, begin + length);
            in.push_back(3);
            in.push_back(0);
            begin = in.data();
            length = in.size();
        }
        std::size_t taken = 0;
        return libdeflate_deflate_decompress_ex(MakeDecompressor().get(), begin, length, out, count, &taken,
                                                nullptr) == LIBDEFLATE_SUCCESS &&
               taken == length;
    }

    const uchar* const stream_;
    const std::size_t end_; // of the bands
    const std::vector<PngBand>& bands_;
    const std::size_t count_; // bytes of pixels in a row
    const std::size_t height_;
};

// Returns no bands if no chunk names them, or one that cannot be right.
std::vector<PngBand> BandsOf(const Chunks& chunks, std::size_t streamLength, std::size_t width,
                             std::size_t height) {
    for (const Chunk& chunk : chunks) {
        if (chunk.Is(png_bands::CHUNK_TYPE)) {
            return png_bands::Read(chunk.data, chunk.length, streamLength, height, width * PIXEL + 1);
        }
    }
    return {};
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
    const QByteArray compressed = Compressed(chunks);
    const std::vector<PngBand> bands =
        BandsOf(chunks, std::size_t(compressed.size()), std::size_t(width), std::size_t(height));
    Memory rows = Allocated(count);
    const bool areRead =
        !bands.empty() &&
        BandReader(compressed, bands, std::size_t(width), std::size_t(height)).Read(rows.get());
    if (!areRead && (!Inflate(compressed, rows.get(), count) || !UndoFilters(rows.get(), width, height))) {
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
