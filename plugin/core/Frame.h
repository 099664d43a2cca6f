#pragma once

#include <maya/MTime.h>

#include <QByteArray>
#include <QImage>

namespace vellix {

/// A drawing keyed at a whole-frame time. Its picture is held as pixels or, until someone asks for them, as
/// PNG bytes. Beside the pixels a frame remembers the PNG bytes that belong to them, for as long as the
/// pixels stay what they were.
class Frame {
public:
    /// A frame without a picture.
    explicit Frame(const MTime& time);
    /// An independent frame, packed; it never shares pixels with the other one.
    Frame(const Frame& other);
    Frame& operator=(const Frame&) = delete;
    ~Frame();

    void SetTime(const MTime& time);
    MTime GetTime() const;
    /// Whole frames in the host's current time unit; reading truncates toward zero.
    void SetTimeValue(int frame);
    int GetTimeValue() const;

    /// Shares the image. PNG bytes that the frame still holds stay as they are, and are unpacked again only
    /// when the image is null.
    void SetImage(const QImage& image);
    /// The pixels, unpacked on demand; a frame without a picture gets a transparent one. They stay unpacked.
    QImage& GetImage();
    bool IsUnpacked() const;
    /// Turns the pixels into PNG bytes and lets go of them. Pixels that cannot be encoded are kept.
    void PackImage();

    /// The picture as PNG bytes, encoded only when they are not at hand; a frame without a picture gives a
    /// transparent one. Empty when encoding fails. Changes nothing that can be seen.
    QByteArray GetPackedImage() const;
    /// Replaces the picture by PNG bytes that are known to decode (DrawUtil::CheckPngBuffer).
    void SetPackedImage(const QByteArray& png);

    /// The picture without unpacking the frame: shared pixels, or a decoded copy; null for a frame without a
    /// picture.
    QImage PeekImage() const;
    /// Names the picture: two pictures with the same key have the same pixels, packed or not. 0 for a frame
    /// without one.
    qint64 GetPictureKey() const;

private:
    /// A picture as PNG bytes, and its key.
    struct Packed {
        QByteArray png;
        qint64 key = 0;
    };

    const Packed& Encode() const;

    MTime time_;
    QImage image_;
    Packed packed_;                 ///< the picture while there are no pixels
    mutable Packed encoded_;        ///< the pixels as PNG bytes...
    mutable qint64 encodedFor_ = 0; ///< ...while this is their QImage::cacheKey
};

} // namespace vellix
