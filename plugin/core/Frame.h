#pragma once

#include "core/Identity.h"

#include <maya/MTime.h>

#include <QByteArray>
#include <QImage>

namespace vellix {

/// A drawing keyed at a whole-frame time. It holds its picture as pixels or, until someone asks for them, as
/// PNG bytes (packed). It also remembers the PNG bytes of its pixels until these change, so that packing
/// again costs nothing.
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
    /// unpacked.
    QImage& GetImage();
    bool IsUnpacked() const;
    /// Encodes the pixels as PNG bytes and frees them. Keeps the pixels if encoding fails.
    void PackImage();

    /// The picture as PNG bytes, encoded only if the pixels changed since the last time; a transparent image
    /// for a frame without a picture. Empty if encoding fails. The frame stays packed or unpacked.
    QByteArray GetPackedImage() const;
    /// Replaces the picture. The PNG bytes must be known to decode (see DrawUtil::CheckPngBuffer).
    void SetPackedImage(const QByteArray& png);

    /// The picture, without unpacking the frame: the shared pixels, or a decoded copy. Null for a frame
    /// without a picture.
    QImage PeekImage() const;
    /// Identifies the picture: equal keys mean equal pixels, packed or not. 0 for a frame without a picture.
    qint64 GetPictureKey() const;

private:
    /// A picture as PNG bytes, and its key.
    struct Packed {
        QByteArray png;
        qint64 key = 0;
    };

    const Packed& Encode() const;

    const FrameId id_;
    MTime time_;
    QImage image_;
    Packed packed_;                 ///< the picture while image_ is null
    mutable Packed encoded_;        ///< image_ as PNG bytes, valid while...
    mutable qint64 encodedFor_ = 0; ///< ...this is its QImage::cacheKey
};

} // namespace vellix
