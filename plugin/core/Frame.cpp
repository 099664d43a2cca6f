#include "core/Frame.h"

#include "host/FrameTime.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/Picture.h"

#include <new>

namespace vellix {
namespace {

/// The PNG bytes of a transparent image, for frames without a picture. Encoded once, since scenes are full of
/// empty keys.
const QByteArray& TransparentPng() {
    static QByteArray png;
    if (png.isEmpty()) { // at first, or when memory was short
        DrawUtil::PackPngBuffer(composite::TransparentImage(), png);
    }
    return png;
}

QImage OrBadAlloc(const QImage& image) {
    if (image.isNull()) {
        throw std::bad_alloc();
    }
    return image;
}

QImage NewTransparentImage() {
    return OrBadAlloc(composite::TransparentImage());
}

FrameId NewFrameId() {
    static quint64 last = 0;
    return static_cast<FrameId>(++last);
}

} // namespace

Frame::Frame(const MTime& time)
    : id_(NewFrameId())
    , time_(time) {}

Frame::Frame(const Frame& other)
    : id_(NewFrameId())
    , time_(other.time_) {
    if (other.image_.isNull()) {
        packed_ = other.packed_;
        damage_ = other.damage_;
        return;
    }
    packed_ = other.Encode();
    if (packed_.png.isEmpty()) {
        image_ = other.image_; // it cannot be encoded: better shared than lost
    }
}

Frame::~Frame() = default;

FrameId Frame::GetId() const {
    return id_;
}

void Frame::SetTime(const MTime& time) {
    time_ = time;
}

MTime Frame::GetTime() const {
    return time_;
}

void Frame::SetTimeValue(int frame) {
    time_ = FromWholeFrames(frame);
}

int Frame::GetTimeValue() const {
    return ToWholeFrames(time_);
}

void Frame::SetImage(const QImage& image) {
    image_ = image;
}

QImage& Frame::GetImage() {
    if (Unpack()) {
        return image_;
    }
    static QImage ofNoFrame;
    ofNoFrame = NewTransparentImage();
    return ofNoFrame;
}

QImage& Frame::GetOwnImage() {
    QImage& image = GetImage();
    if (!image.isDetached()) {
        image = OrBadAlloc(image.copy());
    }
    return image;
}

bool Frame::Unpack() {
    if (!image_.isNull()) {
        if (!composite::IsLayerImage(image_)) {
            image_ = OrBadAlloc(composite::ToLayerImage(image_));
        }
        return true;
    }
    if (packed_.png.isEmpty()) {
        image_ = NewTransparentImage();
        return true;
    }
    image_ = Decode();
    if (image_.isNull()) {
        return false;
    }
    encoded_ = packed_;
    encodedFor_ = image_.cacheKey();
    packed_ = Packed();
    return true;
}

bool Frame::IsUnpacked() const {
    return !image_.isNull();
}

bool Frame::IsDamaged() const {
    return image_.isNull() && damage_ != Damage::None;
}

bool Frame::TakeNewDamage() const {
    const bool isNew = IsDamaged() && damage_ == Damage::Found;
    if (isNew) {
        damage_ = Damage::Reported;
    }
    return isNew;
}

void Frame::PackImage() {
    if (!image_.isNull() && !Encode().png.isEmpty()) {
        packed_ = encoded_;
        damage_ = Damage::None;
        ForgetPixels();
    }
}

QByteArray Frame::GetPackedImage() const {
    if (!image_.isNull()) {
        return Encode().png;
    }
    return packed_.png.isEmpty() ? TransparentPng() : packed_.png;
}

void Frame::SetPackedImage(const QByteArray& png) {
    packed_.png = png;
    packed_.key = Picture::NewKey();
    damage_ = Damage::None;
    ForgetPixels();
}

QImage Frame::PeekImage() const {
    if (image_.isNull()) {
        return packed_.png.isEmpty() ? QImage() : Decode();
    }
    return OrBadAlloc(composite::ToLayerImage(image_));
}

qint64 Frame::GetPictureKey() const {
    if (image_.isNull()) {
        return packed_.png.isEmpty() ? 0 : packed_.key;
    }
    return encodedFor_ == image_.cacheKey() ? encoded_.key : image_.cacheKey();
}

const Frame::Packed& Frame::Encode() const {
    if (encodedFor_ != image_.cacheKey() || encoded_.png.isEmpty()) {
        try {
            DrawUtil::PackPngBuffer(composite::ToLayerImage(image_), encoded_.png);
        } catch (const std::bad_alloc&) {
            encoded_.png.clear();
        }
        encoded_.key = image_.cacheKey();
        encodedFor_ = image_.cacheKey();
    }
    return encoded_;
}

QImage Frame::Decode() const {
    QImage image;
    if (damage_ == Damage::None && !DrawUtil::UnpackPngBuffer(packed_.png, image)) {
        damage_ = Damage::Found;
    }
    return image;
}

void Frame::ForgetPixels() {
    image_ = QImage();
    encoded_ = Packed();
    encodedFor_ = 0;
}

} // namespace vellix
