#include "core/Frame.h"

#include "host/FrameTime.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/Picture.h"

#include <utility>

namespace vellix {
namespace {

/// The PNG bytes of a transparent image, for frames without a picture. Encoded once, since scenes are full of
/// empty keys.
const QByteArray& TransparentPng() {
    static const QByteArray png = [] {
        QByteArray packed;
        DrawUtil::PackPngBuffer(Composite::TransparentImage(), packed);
        return packed;
    }();
    return png;
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
    , time_(other.time_)
    , packed_(other.image_.isNull() ? other.packed_ : other.Encode()) {}

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
    if (!image_.isNull()) {
        if (!Composite::IsLayerImage(image_)) {
            image_ = Composite::ToLayerImage(image_);
        }
        return image_;
    }
    Packed packed;
    std::swap(packed, packed_);
    if (!packed.png.isEmpty() && DrawUtil::UnpackPngBuffer(packed.png, image_)) {
        encoded_ = packed;
        encodedFor_ = image_.cacheKey();
    } else {
        image_ = Composite::TransparentImage();
    }
    return image_;
}

bool Frame::IsUnpacked() const {
    return !image_.isNull();
}

void Frame::PackImage() {
    if (!image_.isNull() && !Encode().png.isEmpty()) {
        packed_ = encoded_;
        encoded_ = Packed();
        image_ = QImage();
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
    encoded_ = Packed();
    image_ = QImage();
}

QImage Frame::PeekImage() const {
    QImage image = image_;
    if (image.isNull() && !packed_.png.isEmpty()) {
        DrawUtil::UnpackPngBuffer(packed_.png, image);
    }
    return Composite::ToLayerImage(image);
}

qint64 Frame::GetPictureKey() const {
    if (image_.isNull()) {
        return packed_.png.isEmpty() ? 0 : packed_.key;
    }
    return encodedFor_ == image_.cacheKey() ? encoded_.key : image_.cacheKey();
}

const Frame::Packed& Frame::Encode() const {
    if (encodedFor_ != image_.cacheKey() || encoded_.png.isEmpty()) {
        DrawUtil::PackPngBuffer(Composite::ToLayerImage(image_), encoded_.png);
        encoded_.key = image_.cacheKey();
        encodedFor_ = image_.cacheKey();
    }
    return encoded_;
}

} // namespace vellix
