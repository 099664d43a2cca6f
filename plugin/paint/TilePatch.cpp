#include "paint/TilePatch.h"

#include "paint/Composite.h"
#include "paint/CompositeKernels.h"
#include "paint/PngChecksum.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

namespace vellix {

namespace {

using composite_kernels::TILE_PIXELS;

constexpr int ROW_BYTES = TileMask::TILE_WIDTH * 4;
constexpr int TILE_BYTES = TILE_PIXELS * 4;
constexpr quint32 MAGIC = 0x54584c56;          // "VLXT"
constexpr quint32 SQUEEZED_MAGIC = 0x53584c56; // "VLXS"

/// The bytes are this head and an entry for each tile: this head of it and its pixels, row by row. A checksum
/// is that of what follows it in its part. Squeezed, the entries are one piece of qCompress, and the checksum
/// of the head holds for it as well.
struct PatchHead {
    quint32 magic;
    quint32 checksum;
    qint64 before;
    qint64 after;
};

struct TileHead {
    quint32 checksum;
    quint16 row;
    quint16 column;
};

constexpr int HEAD_BYTES = sizeof(PatchHead);
constexpr int TILE_HEAD_BYTES = sizeof(TileHead);
constexpr int ENTRY_BYTES = TILE_HEAD_BYTES + TILE_BYTES;

template <typename Head>
Head ReadHead(const void* from) {
    Head head;
    std::memcpy(&head, from, sizeof(Head));
    return head;
}

quint32 ChecksumOf(const PatchHead& head) {
    return PngChecksum(reinterpret_cast<const uchar*>(&head.before),
                       sizeof(head.before) + sizeof(head.after));
}

quint32 ChecksumOfSqueezed(const QByteArray& bytes) {
    constexpr int begin = offsetof(PatchHead, before);
    return PngChecksum(reinterpret_cast<const uchar*>(bytes.constData()) + begin,
                       std::size_t(bytes.size() - begin));
}

quint32 ChecksumOfEntry(const uchar* entry) {
    return PngChecksum(entry + sizeof(TileHead::checksum), ENTRY_BYTES - sizeof(TileHead::checksum));
}

void SealEntry(uchar* entry) {
    const quint32 checksum = ChecksumOfEntry(entry);
    std::memcpy(entry, &checksum, sizeof(checksum));
}

void CopyTile(uchar* tile, const TileSource& image, int row, int column) {
    const quint32* pixels = image.Tile(row, column);
    for (int y = 0; y < TileMask::TILE_WIDTH; ++y, pixels += image.Stride()) {
        std::memcpy(tile + y * ROW_BYTES, pixels, ROW_BYTES);
    }
}

bool IsSameTile(const uchar* tile, const TileSource& image, int row, int column) {
    const quint32* pixels = image.Tile(row, column);
    for (int y = 0; y < TileMask::TILE_WIDTH; ++y, pixels += image.Stride()) {
        if (std::memcmp(tile + y * ROW_BYTES, pixels, ROW_BYTES) != 0) {
            return false;
        }
    }
    return true;
}

/// The visible pixels of a tile, in the colour if there is one; the others are 0. This is what painting them
/// on a tile of nothing makes.
void CopyVisible(quint32* visible, const TileSource& image, int row, int column, const QColor* color) {
    const quint32 keep = color ? 0xff000000u : 0xffffffffu;
    composite_kernels::CopyVisible(visible, image.Tile(row, column), image.Stride(), keep,
                                   color ? composite::ColorBits(*color) : 0);
}

/// What painting an image on the tile of another one makes.
void PaintOver(quint32* pixels, const TileSource& below, const QImage& above, int row, int column,
               const QColor* color) {
    quint32 visible[TILE_PIXELS];
    CopyVisible(visible, above, row, column, color);
    CopyTile(reinterpret_cast<uchar*>(pixels), below, row, column);
    composite_kernels::SourceOver(pixels, visible, TILE_PIXELS);
}

bool HasMagic(const QByteArray& bytes, quint32 magic) {
    return bytes.size() >= HEAD_BYTES && ReadHead<PatchHead>(bytes.constData()).magic == magic;
}

} // namespace

TilePatch::TilePatch(QByteArray bytes)
    : bytes_(std::move(bytes)) {
    Unsqueeze();
    isSound_ = CheckEntries(true);
}

TilePatch TilePatch::Unchecked(QByteArray bytes) {
    TilePatch patch;
    patch.bytes_ = std::move(bytes);
    patch.Unsqueeze();
    patch.isSound_ = patch.CheckEntries(false);
    return patch;
}

TilePatch::TilePatch(const TileSource& picture, const TileMask& tiles, const TileSource& below,
                     const QImage* above, const QColor* color)
    : bytes_(HEAD_BYTES + tiles.Size() * ENTRY_BYTES, Qt::Uninitialized)
    , isSound_(true)
    , isSealed_(false) {
    int count = 0;
    tiles.ForEach([&](int row, int column) {
        uchar* const entry = Entry(count);
        uchar* const tile = entry + TILE_HEAD_BYTES;
        if (above) {
            quint32 pixels[TILE_PIXELS];
            if (below.IsZero(row, column)) {
                CopyVisible(pixels, *above, row, column, color);
            } else {
                PaintOver(pixels, below, *above, row, column, color);
            }
            std::memcpy(tile, pixels, TILE_BYTES);
        } else {
            CopyTile(tile, below, row, column);
        }
        if (!IsSameTile(tile, picture, row, column)) {
            const TileHead head = {0, quint16(row), quint16(column)};
            std::memcpy(entry, &head, sizeof(head));
            ++count;
        }
    });
    bytes_.resize(HEAD_BYTES + count * ENTRY_BYTES);
    bytes_.squeeze();
    SetKeys(0, 0);
}

bool TilePatch::IsMeant(const QByteArray& bytes) {
    return HasMagic(bytes, MAGIC) || HasMagic(bytes, SQUEEZED_MAGIC);
}

QByteArray TilePatch::Squeezed(const QByteArray& bytes) {
    if (!HasMagic(bytes, MAGIC)) {
        return bytes;
    }
    constexpr int fastest = 1;
    QByteArray squeezed = qCompress(reinterpret_cast<const uchar*>(bytes.constData()) + HEAD_BYTES,
                                    bytes.size() - HEAD_BYTES, fastest);
    if (squeezed.isEmpty() || squeezed.size() > bytes.size() / 8 * 7) {
        return bytes;
    }
    squeezed.prepend(bytes.constData(), HEAD_BYTES);
    PatchHead head = ReadHead<PatchHead>(squeezed.constData());
    head.magic = SQUEEZED_MAGIC;
    head.checksum = ChecksumOfSqueezed(squeezed);
    std::memcpy(squeezed.data(), &head, sizeof(head));
    squeezed.squeeze();
    return squeezed;
}

/// Leaves bytes alone that are not squeezed or not sound.
void TilePatch::Unsqueeze() {
    constexpr int sizeBytes = 4; // before the data of qCompress
    if (!HasMagic(bytes_, SQUEEZED_MAGIC) || bytes_.size() < HEAD_BYTES + sizeBytes) {
        return;
    }
    PatchHead head = ReadHead<PatchHead>(bytes_.constData());
    if (head.checksum != ChecksumOfSqueezed(bytes_)) {
        return;
    }
    QByteArray entries = qUncompress(reinterpret_cast<const uchar*>(bytes_.constData()) + HEAD_BYTES,
                                     bytes_.size() - HEAD_BYTES);
    if (entries.isEmpty()) {
        throw std::bad_alloc(); // for the checksum holds
    }
    head.magic = MAGIC;
    head.checksum = ChecksumOf(head);
    entries.prepend(reinterpret_cast<const char*>(&head), HEAD_BYTES);
    bytes_ = entries;
}

bool TilePatch::CheckEntries(bool withChecksums) const {
    if (!HasMagic(bytes_, MAGIC) || (bytes_.size() - HEAD_BYTES) % ENTRY_BYTES != 0) {
        return false;
    }
    const auto head = ReadHead<PatchHead>(bytes_.constData());
    if (head.checksum != ChecksumOf(head)) {
        return false;
    }
    TileMask tiles;
    for (int i = 0; i < Count(); ++i) {
        const auto tile = ReadHead<TileHead>(Entry(i));
        if ((withChecksums && tile.checksum != ChecksumOfEntry(Entry(i))) || tile.row >= TileMask::COUNT ||
            tile.column >= TileMask::COUNT || tiles.Contains(tile.row, tile.column)) {
            return false;
        }
        tiles.Add(tile.row, tile.column);
    }
    return true;
}

TileMask TilePatch::Tiles() const {
    TileMask tiles;
    for (int i = 0; i < Count(); ++i) {
        const auto tile = ReadHead<TileHead>(Entry(i));
        tiles.Add(tile.row, tile.column);
    }
    return tiles;
}

qint64 TilePatch::Before() const {
    return ReadHead<PatchHead>(bytes_.constData()).before;
}

qint64 TilePatch::After() const {
    return ReadHead<PatchHead>(bytes_.constData()).after;
}

void TilePatch::SetKeys(qint64 before, qint64 after) {
    PatchHead head = {MAGIC, 0, before, after};
    head.checksum = ChecksumOf(head);
    std::memcpy(bytes_.data(), &head, sizeof(head));
}

void TilePatch::Reserve() {
    bytes_.detach();
}

void TilePatch::Swap(QImage& picture) {
    const int stride = picture.bytesPerLine();
    uchar* const pixels = picture.bits();
    for (int i = 0; i < Count(); ++i) {
        uchar* const entry = Entry(i);
        const auto tile = ReadHead<TileHead>(entry);
        uchar* shown =
            pixels + std::ptrdiff_t(tile.row) * TileMask::TILE_WIDTH * stride + tile.column * ROW_BYTES;
        for (int y = 0; y < TileMask::TILE_WIDTH; ++y, shown += stride) {
            std::swap_ranges(shown, shown + ROW_BYTES, entry + TILE_HEAD_BYTES + y * ROW_BYTES);
        }
    }
    isSealed_ = false;
    SetKeys(After(), Before());
}

void TilePatch::Swap(TiledImage& picture) {
    for (int i = 0; i < Count(); ++i) {
        uchar* const entry = Entry(i);
        const auto tile = ReadHead<TileHead>(entry);
        auto* const shown = reinterpret_cast<uchar*>(picture.Tile(tile.row, tile.column));
        std::swap_ranges(shown, shown + TILE_BYTES, entry + TILE_HEAD_BYTES);
    }
    isSealed_ = false;
    picture.RemoveEmpty(Tiles());
    SetKeys(After(), Before());
}

bool TilePatch::Append(const TilePatch& later) {
    if (IsNull() || later.IsNull() || later.After() != Before()) {
        return false;
    }
    const TileMask known = Tiles();
    TileMask added = later.Tiles();
    added.Remove(known);
    int count = Count();
    const int needed = bytes_.size() + added.Size() * ENTRY_BYTES;
    if (bytes_.capacity() < needed) {
        bytes_.reserve(std::max(needed, bytes_.size() + bytes_.size() / 2)); // for many strokes to come
    }
    bytes_.resize(needed);
    for (int i = 0; i < later.Count(); ++i) {
        const auto tile = ReadHead<TileHead>(later.Entry(i));
        if (added.Contains(tile.row, tile.column)) {
            std::memcpy(Entry(count), later.Entry(i), ENTRY_BYTES);
            ++count;
        }
    }
    isSealed_ = isSealed_ && later.isSealed_;
    SetKeys(later.Before(), After());
    return true;
}

QByteArray TilePatch::TakeBytes() {
    for (int i = 0; isSound_ && !isSealed_ && i < Count(); ++i) {
        SealEntry(Entry(i));
    }
    isSealed_ = true;
    isSound_ = false;
    QByteArray bytes;
    bytes.swap(bytes_);
    return bytes;
}

int TilePatch::Count() const {
    return (bytes_.size() - HEAD_BYTES) / ENTRY_BYTES;
}

uchar* TilePatch::Entry(int index) {
    return reinterpret_cast<uchar*>(bytes_.data()) + HEAD_BYTES + index * ENTRY_BYTES;
}

const uchar* TilePatch::Entry(int index) const {
    return reinterpret_cast<const uchar*>(bytes_.constData()) + HEAD_BYTES + index * ENTRY_BYTES;
}

} // namespace vellix
