#pragma once

#include "paint/TileMask.h"
#include "paint/TiledImage.h"

#include <QByteArray>
#include <QtGlobal>

class QColor;
class QImage;

namespace vellix {

/// The pixels of some tiles of a layer image. Swapped with the same tiles of a picture, they make another
/// picture of it, and the patch then leads back. The patch knows the keys of both pictures
/// (Picture::NewKey): it belongs to one picture alone.
///
/// It is kept as bytes, which have checksums and hold for the running program only.
class TilePatch {
public:
    /// A null patch.
    TilePatch() = default;
    /// Reads what TakeBytes() or Squeezed() gave; null for any other bytes. Throws std::bad_alloc when memory
    /// is short for squeezed ones.
    explicit TilePatch(QByteArray bytes);
    /// The tiles that painting `above` (null for nothing) on `below` makes, those of `tiles` that differ from
    /// `picture`. All are layer images. With a colour (null for none), all of `above` is painted in it.
    /// Throws std::bad_alloc when memory is short.
    TilePatch(const TileSource& picture, const TileMask& tiles, const TileSource& below, const QImage* above,
              const QColor* color = nullptr);

    /// The patch of bytes that were just made: their checksums are left for later. Null for bytes that are
    /// none.
    static TilePatch Unchecked(QByteArray bytes);

    /// Whether bytes were meant to be a patch, sound or not.
    static bool IsMeant(const QByteArray& bytes);

    /// The same patch in fewer bytes, which take time to make and to read. Returns the bytes that it is given
    /// where hardly anything is gained.
    static QByteArray Squeezed(const QByteArray& bytes);

    bool IsNull() const { return !isSound_; }
    /// The tiles in it.
    TileMask Tiles() const;
    /// The key of the picture that it belongs to, and of the one that it makes of that.
    qint64 Before() const;
    qint64 After() const;
    void SetKeys(qint64 before, qint64 after);

    /// Makes sure that Swap() needs no memory.
    void Reserve();
    /// Swaps the pixels with those of a layer image that shares them with no other, and the keys.
    void Swap(QImage& picture);
    /// The same for an image that keeps tiles, those of the patch among them (TiledImage::Add()). Lets go of
    /// those that become empty.
    void Swap(TiledImage& picture);
    /// Adds the tiles of a patch that this one does not have. It must lead to the picture that this one
    /// belongs to; then this one leads from the other's picture to its own. Returns false, with nothing
    /// changed, if it does not. Throws std::bad_alloc, with nothing changed, when memory is short.
    bool Append(const TilePatch& later);

    /// The bytes, whether sound or not; leaves a null patch.
    QByteArray TakeBytes();

private:
    int Count() const;
    uchar* Entry(int index);
    const uchar* Entry(int index) const;
    bool CheckEntries(bool withChecksums) const;
    void Unsqueeze();

    QByteArray bytes_;
    bool isSound_ = false;
    bool isSealed_ = true; ///< whether the checksums of the entries hold; TakeBytes() makes them
};

} // namespace vellix
