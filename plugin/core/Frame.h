#pragma once

#include "core/Identity.h"
#include "paint/TileMask.h"

#include <maya/MTime.h>

#include <QByteArray>
#include <QImage>

#include <memory>

namespace vellix {

class PackedTiles;
class TiledImage;
class TilePatch;
class TileSource;

/// A drawing keyed at a whole-frame time. It holds its picture as pixels or, until someone asks for them, as
/// PNG bytes (packed). It also remembers the PNG bytes of its pixels until these change, so that packing
/// again costs nothing. Of most pictures it keeps only the tiles that hold something, until someone asks for
/// an image of them.
///
/// Bytes that turn out not to decode are kept: they are what GetPackedImage and copies give, and only
/// SetImage and SetPackedImage replace them. Every call that decodes throws std::bad_alloc when memory is
/// short, and leaves the frame as it was.
class Frame {
public:
    /// A frame without a picture.
    explicit Frame(const MTime& time);
    /// Copies the frame, packed. The copy shares no pixels with the other frame and has its own identity.
    Frame(const Frame& other);
    Frame& operator=(const Frame&) = delete;
    ~Frame();

    FrameId GetId() const;

    void SetTime(const MTime& time);
    MTime GetTime() const;
    /// The time in whole frames of the host's current time unit; reading truncates toward zero.
    void SetTimeValue(int frame);
    int GetTimeValue() const;

    /// Sets the pixels; the image is shared. A null image brings back the PNG bytes that the frame still
    /// holds, if any.
    void SetImage(const QImage& image);
    /// The pixels, unpacked on demand; transparent for a frame without a picture. The frame then stays
    /// unpacked. For a picture that does not decode: a transparent image that belongs to no frame, so that
    /// what is painted into it is not kept (see Unpack).
    QImage& GetImage();
    /// Makes the pixels, to be drawn on. Returns false if the picture does not decode.
    bool Unpack();
    bool IsUnpacked() const;
    /// Whether the frame was found to hold bytes that do not decode.
    bool IsDamaged() const;
    /// Whether IsDamaged, only the first time.
    bool TakeNewDamage() const;
    /// The pixels of a frame that IsUnpacked. Borrowed until the frame changes.
    TileSource Pixels() const;
    /// Encodes the pixels as PNG bytes and frees them. Keeps the pixels if encoding fails.
    void PackImage();

    /// The picture as PNG bytes, encoded only if the pixels changed since the last time; a transparent image
    /// for a frame without a picture. Empty if encoding fails. The frame stays packed or unpacked.
    QByteArray GetPackedImage() const;
    /// Swaps the tiles of the patch with those of the picture, and its key with the picture's. Returns false,
    /// with nothing changed, if the patch belongs to another picture, or if this one does not decode.
    bool Exchange(TilePatch& patch);
    /// The key of another picture, and the tiles in which this one differs from it.
    struct Change {
        qint64 before = 0;
        TileMask tiles;
    };
    /// What the last Exchange did, while the frame has its pixels and they are the same since; else the key
    /// is 0.
    Change LastChange() const;
    /// Replaces the picture. PNG bytes that are not sound (see PngStructure) are better refused before.
    void SetPackedImage(const QByteArray& png);

    /// The picture, without unpacking the frame: the shared pixels, or a decoded copy. Null for a frame
    /// without a picture or with one that does not decode.
    QImage PeekImage() const;
    /// The picture prepared for composition, without unpacking the frame. Empty where PeekImage() is null.
    PackedTiles PeekTiles() const;
    /// The same, if only the tiles `changed` have changed since it was prepared before.
    PackedTiles PeekTiles(const PackedTiles& earlier, const TileMask& changed) const;
    /// Identifies the picture: equal keys mean equal pixels, packed or not. 0 for a frame without a picture,
    /// also when it was unpacked and nothing has been painted.
    qint64 GetPictureKey() const;

private:
    /// A picture as PNG bytes, and its key.
    struct Packed {
        QByteArray png;
        qint64 key = 0;
    };

    enum class Damage { None, Found, Reported };

    /// The PNG bytes of the pixels; empty if encoding fails.
    QByteArray Encode() const;
    /// The pixels go by this key until they change.
    void SetKey(qint64 key);
    /// Takes the pixels of an image: its tiles, if these are few.
    void SetPixels(const QImage& image);
    /// Decodes packed_; null if it does not decode.
    QImage Decode() const;
    void ForgetPixels();

    const FrameId id_;
    MTime time_;
    QImage image_;                         ///< the pixels, if someone asked for them as an image
    std::unique_ptr<TiledImage> tiles_;    ///< the pixels, if not; while image_ is null
    Packed packed_;                        ///< the picture while there are no pixels
    mutable Damage damage_ = Damage::None; ///< of packed_
    qint64 key_ = 0;                       ///< of the pixels; of image_ it is valid while...
    qint64 keyFor_ = 0;                    ///< ...this is its QImage::cacheKey
    std::unique_ptr<Change> change_;       ///< the change that made the picture `key_`, or null
    mutable Packed encoded_;               ///< the last picture of the pixels that was encoded
};

} // namespace vellix
