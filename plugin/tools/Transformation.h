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
    void EndDrag() { m_dragMode = DragMode::None; }
    /// Follows the pointer. `uniform` keeps both scales equal. Returns false when no drag is in progress.
    bool DragTo(const QPoint& position, bool uniform, const OffsetInImage& offsetInImage);
    void FlipHorizontal() { m_flipHorizontal = !m_flipHorizontal; }
    void FlipVertical() { m_flipVertical = !m_flipVertical; }

    /// Recomputes the translation in view pixels for a view of the given scale (view pixels per image pixel).
    void SetViewScale(float scale);
    /// Returns the transformed corners of the selection, in view pixels.
    Corners Map(const Corners& corners) const;
    /// Writes the transformation into the stroke.
    void ApplyTo(Stroke& stroke) const;

private:
    void Scale(const QPoint& position, bool uniform);

    QPoint m_translation;    ///< image pixels
    QPoint m_moveOffset;     ///< the translation in view pixels
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
