#pragma once

#include "tools/TransformSelection.h"

#include <QPoint>

#include <functional>

namespace vellix {

struct Stroke;

/// The translation, rotation, scale and flips applied to the selection so far, and the drag in progress.
/// Positions are view pixels.
class Transformation {
public:
    using Corners = TransformSelection::Corners;
    /// Returns the offset in image pixels between two points of the view.
    using OffsetInImage = std::function<QPoint(const QPoint& from, const QPoint& to)>;

    enum class DragMode { None, Translate, Rotate, Scale };

    /// Resets all but the flips, and ends the drag.
    void Reset();

    void BeginDrag(DragMode mode, const QPoint& position);
    void EndDrag() { dragMode_ = DragMode::None; }
    /// Follows the pointer. `uniform` keeps both scales equal. Returns false when no drag is in progress.
    bool DragTo(const QPoint& position, bool uniform, const OffsetInImage& offsetInImage);
    void FlipHorizontal() { flipHorizontal_ = !flipHorizontal_; }
    void FlipVertical() { flipVertical_ = !flipVertical_; }

    /// Recomputes the translation in view pixels for a view of the given scale (view pixels per image pixel).
    void SetViewScale(float scale);
    /// Returns the transformed corners of the selection, in view pixels.
    Corners Map(const Corners& corners) const;
    /// Writes the transformation into the stroke.
    void ApplyTo(Stroke& stroke) const;

private:
    void Scale(const QPoint& position, bool uniform);

    QPoint translation_;    ///< image pixels
    QPoint moveOffset_;     ///< the translation in view pixels
    float rotation_ = 0.0f; ///< degrees, clockwise as seen
    float scaleX_ = 1.0f;
    float scaleY_ = 1.0f;
    bool flipHorizontal_ = false;
    bool flipVertical_ = false;

    DragMode dragMode_ = DragMode::None;
    QPoint translateAnchor_;
    float rotateAnchor_ = 0.0f;
    float scaleAnchorX_ = 0.0f;
    float scaleAnchorY_ = 0.0f;
};

} // namespace vellix
