#include "core/Frame.h"

#include "host/FrameTime.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/Picture.h"
#include "paint/TilePatch.h"

#include <utility>

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

QImage NewTransparentImage() {
    return composite::OrBadAlloc(composite::TransparentImage());
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
    const qint64 key = other.GetPictureKey();
    if (key == 0) {
        return;
    }
    packed_ = {other.Encode(), key};
    if (packed_.png.isEmpty()) {
        image_ = other.image_; // it cannot be encoded: better shared than lost
        SetKey(key);
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

bool Frame::Unpack() {
    if (!image_.isNull()) {
        if (!composite::IsLayerImage(image_)) {
            image_ = composite::OrBadAlloc(composite::ToLayerImage(image_));
        }
        return true;
    }
    if (packed_.png.isEmpty()) {
        image_ = NewTransparentImage();
        SetKey(0);
        return true;
    }
    image_ = Decode();
    if (image_.isNull()) {
        return false;
    }
    SetKey(packed_.key);
    encoded_ = std::move(packed_);
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
    if (image_.isNull()) {
        return;
    }
    const qint64 key = GetPictureKey();
    const Packed packed = key == 0 ? Packed() : Packed{Encode(), key};
    if (key == 0 || !packed.png.isEmpty()) {
        packed_ = packed;
        damage_ = Damage::None;
        ForgetPixels();
    }
}

QByteArray Frame::GetPackedImage() const {
    if (GetPictureKey() == 0) {
        return TransparentPng();
    }
    return image_.isNull() ? packed_.png : Encode();
}

bool Frame::Exchange(TilePatch& patch) {
    if (patch.IsNull() || patch.Before() != GetPictureKey() || !Unpack()) {
        return false;
    }
    if (!image_.isDetached()) {
        const qint64 key = GetPictureKey();
        image_ = composite::OrBadAlloc(image_.copy());
        SetKey(key);
    }
    auto change = std::make_unique<Change>();
    change->before = patch.Before();
    change->tiles = patch.Tiles();
    patch.Reserve();
    patch.Swap(image_);
    SetKey(patch.Before());
    change_ = std::move(change);
    if (GetPictureKey() == 0) {
        ForgetPixels();
    }
    return true;
}

void Frame::SetPackedImage(const QByteArray& png) {
    packed_.png = png;
    packed_.key = Picture::NewKey();
    damage_ = Damage::None;
    ForgetPixels();
}

QImage Frame::PeekImage() const {
    if (GetPictureKey() == 0) {
        return QImage();
    }
    if (image_.isNull()) {
        return Decode();
    }
    return composite::OrBadAlloc(composite::ToLayerImage(image_));
}

qint64 Frame::GetPictureKey() const {
    if (image_.isNull()) {
        return packed_.png.isEmpty() ? 0 : packed_.key;
    }
    return keyFor_ == image_.cacheKey() ? key_ : image_.cacheKey();
}

QByteArray Frame::Encode() const {
    const qint64 key = GetPictureKey();
    if (encoded_.key != key || encoded_.png.isEmpty()) {
        try {
            DrawUtil::PackPngBuffer(composite::ToLayerImage(image_), encoded_.png);
        } catch (const std::bad_alloc&) {
            encoded_.png.clear();
        }
        encoded_.key = key;
    }
    return encoded_.png;
}

Frame::Change Frame::LastChange() const {
    return change_ && keyFor_ == image_.cacheKey() ? *change_ : Change();
}

void Frame::SetKey(qint64 key) {
    key_ = key;
    change_.reset();
    keyFor_ = image_.cacheKey();
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
    change_.reset();
}

} // namespace vellix
