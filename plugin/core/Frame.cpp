#include "core/Frame.h"

#include "host/FrameTime.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "paint/PackedTiles.h"
#include "paint/Picture.h"
#include "paint/TilePatch.h"
#include "paint/TiledImage.h"

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
    if (!other.IsUnpacked()) {
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
        image_ = other.PeekImage(); // it cannot be encoded: better shared than lost
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
    tiles_.reset();
}

QImage& Frame::GetImage() {
    if (Unpack()) {
        if (tiles_) {
            image_ = tiles_->ToImage();
            keyFor_ = image_.cacheKey();
            tiles_.reset();
        }
        return image_;
    }
    static QImage ofNoFrame;
    ofNoFrame = NewTransparentImage();
    return ofNoFrame;
}

bool Frame::Unpack() {
    if (IsUnpacked()) {
        if (!tiles_ && !composite::IsLayerImage(image_)) {
            image_ = composite::OrBadAlloc(composite::ToLayerImage(image_));
        }
        return true;
    }
    if (packed_.png.isEmpty()) {
        tiles_ = std::make_unique<TiledImage>();
        SetKey(0);
        return true;
    }
    const QImage image = Decode();
    if (image.isNull()) {
        return false;
    }
    SetPixels(image);
    SetKey(packed_.key);
    encoded_ = std::move(packed_);
    packed_ = Packed();
    return true;
}

void Frame::SetPixels(const QImage& image) {
    constexpr int few = TileMask::COUNT * TileMask::COUNT / 2;
    auto tiles = std::make_unique<TiledImage>(image);
    if (tiles->Tiles().Size() <= few) {
        tiles_ = std::move(tiles);
    } else {
        image_ = image;
    }
}

bool Frame::IsUnpacked() const {
    return tiles_ != nullptr || !image_.isNull();
}

TileSource Frame::Pixels() const {
    return tiles_ ? TileSource(*tiles_) : TileSource(image_);
}

bool Frame::IsDamaged() const {
    return !IsUnpacked() && damage_ != Damage::None;
}

bool Frame::TakeNewDamage() const {
    const bool isNew = IsDamaged() && damage_ == Damage::Found;
    if (isNew) {
        damage_ = Damage::Reported;
    }
    return isNew;
}

void Frame::PackImage() {
    if (!IsUnpacked()) {
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
    return IsUnpacked() ? Encode() : packed_.png;
}

bool Frame::Exchange(TilePatch& patch) {
    if (patch.IsNull() || patch.Before() != GetPictureKey() || !Unpack()) {
        return false;
    }
    if (tiles_) {
        tiles_->Add(patch.Tiles());
    } else if (!image_.isDetached()) {
        const qint64 key = GetPictureKey();
        image_ = composite::OrBadAlloc(image_.copy());
        SetKey(key);
    }
    auto change = std::make_unique<Change>();
    change->before = patch.Before();
    change->tiles = patch.Tiles();
    patch.Reserve();
    if (tiles_) {
        patch.Swap(*tiles_);
    } else {
        patch.Swap(image_);
    }
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
    if (tiles_) {
        return tiles_->ToImage();
    }
    return image_.isNull() ? Decode() : composite::OrBadAlloc(composite::ToLayerImage(image_));
}

PackedTiles Frame::PeekTiles() const {
    return tiles_ ? PackedTiles(*tiles_) : PackedTiles(PeekImage());
}

PackedTiles Frame::PeekTiles(const PackedTiles& earlier, const TileMask& changed) const {
    return tiles_ ? PackedTiles(*tiles_, earlier, changed) : PackedTiles(PeekImage(), earlier, changed);
}

qint64 Frame::GetPictureKey() const {
    if (tiles_) {
        return key_;
    }
    if (image_.isNull()) {
        return packed_.png.isEmpty() ? 0 : packed_.key;
    }
    return keyFor_ == image_.cacheKey() ? key_ : image_.cacheKey();
}

QByteArray Frame::Encode() const {
    const qint64 key = GetPictureKey();
    if (encoded_.key != key || encoded_.png.isEmpty()) {
        try {
            DrawUtil::PackPngBuffer(tiles_ ? tiles_->ToImage() : composite::ToLayerImage(image_),
                                    encoded_.png);
        } catch (const std::bad_alloc&) {
            encoded_.png.clear();
        }
        encoded_.key = key;
    }
    return encoded_.png;
}

Frame::Change Frame::LastChange() const {
    const bool isSame = tiles_ || keyFor_ == image_.cacheKey();
    return change_ && isSame ? *change_ : Change();
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
    tiles_.reset();
    encoded_ = Packed();
    change_.reset();
}

} // namespace vellix
