#pragma once

#include "tools/TransformSelection.h"

#include <QPoint>

#include <functional>

namespace vellix {

struct Stroke;

/// How the transform tool has moved, turned, scaled and flipped its selection so far, and the drag that goes
/// on. Positions are view pixels.
class Transformation {
public:
    using Corners = TransformSelection::Corners;
    /// The distance in image pixels between two points of the view.
    using OffsetInImage = std::function<QPoint(const QPoint& from, const QPoint& to)>;

    enum class DragMode { None, Translate, Rotate, Scale };

    /// Takes back all but the flips, and ends the drag.
    void Reset();

    void BeginDrag(DragMode mode, const QPoint& position);
    void EndDrag() { m_dragMode = DragMode::None; }
    /// Follows the pointer; false when nothing is being dragged. `uniform`: both scales stay the same.
    bool DragTo(const QPoint& position, bool uniform, const OffsetInImage& offsetInImage);
    void FlipHorizontal() { m_flipHorizontal = !m_flipHorizontal; }
    void FlipVertical() { m_flipVertical = !m_flipVertical; }

    /// Says how far the selection has moved in a view of another scale, view pixels to an image pixel.
    void SetViewScale(float scale);
    /// Where the corners of the selection are put in the view.
    Corners Map(const Corners& corners) const;
    /// Makes the stroke do what was dragged and flipped.
    void ApplyTo(Stroke& stroke) const;

private:
    void Scale(const QPoint& position, bool uniform);

    QPoint m_translation;    ///< image pixels
    QPoint m_moveOffset;     ///< the same in view pixels
    float m_rotation = 0.0f; ///< degrees, clockwise as seen
    float m_scaleX = 1.0f;
    float m_scaleY = 1.0f;
    bool m_flipHorizontal = false;
    bool m_flipVertical = false;

    DragMode m_dragMode = DragMode::None;
    QPoint m_translateAnchor;
    float m_rotateAnchor = 0.0f;
    float m_scaleAnchorX = 0.0f;
    float m_scaleAnchorY = 0.0f;
};

} // namespace vellix
