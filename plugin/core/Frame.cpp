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

} // namespace

Frame::Frame(const MTime& time)
    : m_time(time) {}

Frame::Frame(const Frame& other)
    : m_time(other.m_time)
    , m_packed(other.m_image.isNull() ? other.m_packed : other.Encode()) {}

Frame::~Frame() = default;

void Frame::SetTime(const MTime& time) {
    m_time = time;
}

MTime Frame::GetTime() const {
    return m_time;
}

void Frame::SetTimeValue(int frame) {
    m_time = FromWholeFrames(frame);
}

int Frame::GetTimeValue() const {
    return ToWholeFrames(m_time);
}

void Frame::SetImage(const QImage& image) {
    m_image = image;
}

QImage& Frame::GetImage() {
    if (!m_image.isNull()) {
        if (!Composite::IsLayerImage(m_image)) {
            m_image = Composite::ToLayerImage(m_image);
        }
        return m_image;
    }
    Packed packed;
    std::swap(packed, m_packed);
    if (!packed.png.isEmpty() && DrawUtil::UnpackPngBuffer(packed.png, m_image)) {
        m_encoded = packed;
        m_encodedFor = m_image.cacheKey();
    } else {
        m_image = Composite::TransparentImage();
    }
    return m_image;
}

bool Frame::IsUnpacked() const {
    return !m_image.isNull();
}

void Frame::PackImage() {
    if (!m_image.isNull() && !Encode().png.isEmpty()) {
        m_packed = m_encoded;
        m_encoded = Packed();
        m_image = QImage();
    }
}

QByteArray Frame::GetPackedImage() const {
    if (!m_image.isNull()) {
        return Encode().png;
    }
    return m_packed.png.isEmpty() ? TransparentPng() : m_packed.png;
}

void Frame::SetPackedImage(const QByteArray& png) {
    m_packed.png = png;
    m_packed.key = Picture::NewKey();
    m_encoded = Packed();
    m_image = QImage();
}

QImage Frame::PeekImage() const {
    QImage image = m_image;
    if (image.isNull() && !m_packed.png.isEmpty()) {
        DrawUtil::UnpackPngBuffer(m_packed.png, image);
    }
    return Composite::ToLayerImage(image);
}

qint64 Frame::GetPictureKey() const {
    if (m_image.isNull()) {
        return m_packed.png.isEmpty() ? 0 : m_packed.key;
    }
    return m_encodedFor == m_image.cacheKey() ? m_encoded.key : m_image.cacheKey();
}

const Frame::Packed& Frame::Encode() const {
    if (m_encodedFor != m_image.cacheKey() || m_encoded.png.isEmpty()) {
        DrawUtil::PackPngBuffer(Composite::ToLayerImage(m_image), m_encoded.png);
        m_encoded.key = m_image.cacheKey();
        m_encodedFor = m_image.cacheKey();
    }
    return m_encoded;
}

} // namespace vellix
