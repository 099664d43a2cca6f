#include "tools/Transformation.h"

#include "paint/Stroke.h"

#include <QTransform>

#include <algorithm>

namespace vellix {

namespace {

constexpr float SMALLEST_SCALE = 0.1f;
/// Growth of the scale per drag event and per pixel between the pointer and the press.
constexpr float SCALE_PER_PIXEL = 0.0001f;

} // namespace

void Transformation::Reset() {
    const Transformation before = *this;
    *this = Transformation();
    m_flipHorizontal = before.m_flipHorizontal;
    m_flipVertical = before.m_flipVertical;
}

void Transformation::BeginDrag(DragMode mode, const QPoint& position) {
    m_dragMode = mode;
    const auto x = static_cast<float>(position.x());
    const auto y = static_cast<float>(position.y());
    switch (mode) {
    case DragMode::Translate:
        m_translateAnchor = position - m_moveOffset;
        break;
    case DragMode::Rotate:
        m_rotateAnchor = x - m_rotation;
        break;
    case DragMode::Scale:
        m_scaleAnchorX = x - m_scaleX;
        m_scaleAnchorY = y - m_scaleY;
        break;
    case DragMode::None:
        break;
    }
}

bool Transformation::DragTo(const QPoint& position, bool uniform, const OffsetInImage& offsetInImage) {
    switch (m_dragMode) {
    case DragMode::Translate:
        m_moveOffset = position - m_translateAnchor;
        m_translation = offsetInImage(m_translateAnchor, position);
        return true;
    case DragMode::Rotate:
        m_rotation = static_cast<float>(position.x()) - m_rotateAnchor;
        return true;
    case DragMode::Scale:
        Scale(position, uniform);
        return true;
    case DragMode::None:
        break;
    }
    return false;
}

void Transformation::Scale(const QPoint& position, bool uniform) {
    m_scaleX += (static_cast<float>(position.x()) - m_scaleAnchorX) * SCALE_PER_PIXEL;
    m_scaleY =
        uniform ? m_scaleX : m_scaleY + (static_cast<float>(position.y()) - m_scaleAnchorY) * SCALE_PER_PIXEL;
    m_scaleX = std::max(m_scaleX, SMALLEST_SCALE);
    m_scaleY = std::max(m_scaleY, SMALLEST_SCALE);
}

void Transformation::SetViewScale(float scale) {
    m_moveOffset = QPoint(qRound(static_cast<float>(m_translation.x()) * scale),
                          -qRound(static_cast<float>(m_translation.y()) * scale));
}

Transformation::Corners Transformation::Map(const Corners& corners) const {
    const QPoint center((corners[0].x() + corners[2].x()) / 2, (corners[0].y() + corners[2].y()) / 2);
    QTransform matrix;
    matrix.translate(center.x(), center.y());
    matrix.rotate(static_cast<double>(-m_rotation));
    matrix.scale(static_cast<double>(m_scaleX), static_cast<double>(m_scaleY));
    matrix.translate(-center.x(), -center.y());
    Corners mapped = corners;
    for (QPoint& corner : mapped) {
        corner = matrix.map(corner) + m_moveOffset;
    }
    return mapped;
}

void Transformation::ApplyTo(Stroke& stroke) const {
    stroke.offsetX = m_translation.x();
    stroke.offsetY = m_translation.y();
    stroke.rotation = m_rotation;
    stroke.scaleX = static_cast<double>(m_flipHorizontal ? -m_scaleX : m_scaleX);
    stroke.scaleY = static_cast<double>(m_flipVertical ? -m_scaleY : m_scaleY);
}

} // namespace vellix
