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
    flipHorizontal_ = before.flipHorizontal_;
    flipVertical_ = before.flipVertical_;
}

void Transformation::BeginDrag(DragMode mode, const QPoint& position) {
    dragMode_ = mode;
    const auto x = static_cast<float>(position.x());
    const auto y = static_cast<float>(position.y());
    switch (mode) {
    case DragMode::Translate:
        translateAnchor_ = position - moveOffset_;
        break;
    case DragMode::Rotate:
        rotateAnchor_ = x - rotation_;
        break;
    case DragMode::Scale:
        scaleAnchorX_ = x - scaleX_;
        scaleAnchorY_ = y - scaleY_;
        break;
    case DragMode::None:
        break;
    }
}

bool Transformation::DragTo(const QPoint& position, bool uniform, const OffsetInImage& offsetInImage) {
    switch (dragMode_) {
    case DragMode::Translate:
        moveOffset_ = position - translateAnchor_;
        translation_ = offsetInImage(translateAnchor_, position);
        return true;
    case DragMode::Rotate:
        rotation_ = static_cast<float>(position.x()) - rotateAnchor_;
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
    scaleX_ += (static_cast<float>(position.x()) - scaleAnchorX_) * SCALE_PER_PIXEL;
    scaleY_ =
        uniform ? scaleX_ : scaleY_ + (static_cast<float>(position.y()) - scaleAnchorY_) * SCALE_PER_PIXEL;
    scaleX_ = std::max(scaleX_, SMALLEST_SCALE);
    scaleY_ = std::max(scaleY_, SMALLEST_SCALE);
}

void Transformation::SetViewScale(float scale) {
    moveOffset_ = QPoint(qRound(static_cast<float>(translation_.x()) * scale),
                         -qRound(static_cast<float>(translation_.y()) * scale));
}

Transformation::Corners Transformation::Map(const Corners& corners) const {
    const QPoint center((corners[0].x() + corners[2].x()) / 2, (corners[0].y() + corners[2].y()) / 2);
    QTransform matrix;
    matrix.translate(center.x(), center.y());
    matrix.rotate(static_cast<double>(-rotation_));
    matrix.scale(static_cast<double>(scaleX_), static_cast<double>(scaleY_));
    matrix.translate(-center.x(), -center.y());
    Corners mapped = corners;
    for (QPoint& corner : mapped) {
        corner = matrix.map(corner) + moveOffset_;
    }
    return mapped;
}

void Transformation::ApplyTo(Stroke& stroke) const {
    stroke.offsetX = translation_.x();
    stroke.offsetY = translation_.y();
    stroke.rotation = rotation_;
    stroke.scaleX = static_cast<double>(flipHorizontal_ ? -scaleX_ : scaleX_);
    stroke.scaleY = static_cast<double>(flipVertical_ ? -scaleY_ : scaleY_);
}

} // namespace vellix
