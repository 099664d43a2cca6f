#include "core/Frame.h"

#include "core/FrameTime.h"
#include "paint/Composite.h"
#include "paint/DrawUtil.h"

namespace vellix {
namespace {

/// What a frame without a picture is written as. Encoded once: scenes are full of empty keys.
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
    , m_packed(other.m_image.isNull() ? other.m_packed : other.EncodedImage()) {}

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
    QByteArray packed;
    packed.swap(m_packed);
    if (!packed.isEmpty() && DrawUtil::UnpackPngBuffer(packed, m_image)) {
        m_encoded = packed;
        m_encodedKey = m_image.cacheKey();
    } else {
        m_image = Composite::TransparentImage();
    }
    return m_image;
}

bool Frame::IsUnpacked() const {
    return !m_image.isNull();
}

void Frame::PackImage() {
    if (m_image.isNull()) {
        return;
    }
    const QByteArray packed = EncodedImage();
    if (!packed.isEmpty()) {
        SetPackedImage(packed);
    }
}

QByteArray Frame::GetPackedImage() const {
    if (!m_image.isNull()) {
        return EncodedImage();
    }
    return m_packed.isEmpty() ? TransparentPng() : m_packed;
}

void Frame::SetPackedImage(const QByteArray& png) {
    m_packed = png;
    m_image = QImage();
    m_encoded.clear();
    m_encodedKey = 0;
}

QImage Frame::PeekImage() const {
    QImage image = m_image;
    if (image.isNull() && !m_packed.isEmpty()) {
        DrawUtil::UnpackPngBuffer(m_packed, image);
    }
    return Composite::ToLayerImage(image);
}

QByteArray Frame::EncodedImage() const {
    if (m_encodedKey != m_image.cacheKey() || m_encoded.isEmpty()) {
        DrawUtil::PackPngBuffer(Composite::ToLayerImage(m_image), m_encoded);
        m_encodedKey = m_image.cacheKey();
    }
    return m_encoded;
}

} // namespace vellix
