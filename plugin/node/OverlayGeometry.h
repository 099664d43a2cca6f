#pragma once

#include <maya/MPoint.h>

#include <QPoint>

namespace vellix {

/// What the overlay's size and place depend on, as the host has it at the moment.
struct OverlayCamera {
    int filmFit = 1; ///< as MFnCamera::FilmFit
    bool orthographic = false;
    double overscan = 1.0;
    double filmAspect = 1.5;
    double renderAspect = 1.5;
    bool panZoomEnabled = false;
    double zoom = 1.0;
};

/// Where the square drawing lies over a view. View pixels count from the bottom left with y upward; image
/// pixels from the top left of the drawing with y downward, Settings::FINAL_IMAGE_WIDTH of them a side.
class OverlayGeometry {
public:
    /// Places the square over the gate of the camera, in the middle of a view of that size, until SetPan()
    /// says otherwise.
    void Update(const OverlayCamera& camera, int width, int height);
    /// The point on which the camera's 2D pan centres the view, in view pixels.
    void SetPan(double x, double y);
    void ClearPan();

    bool IsPanZoomActive() const { return m_panZoomActive; }
    /// Half the side of the square that is shown, view pixels.
    float HalfSize() const { return m_halfSize; }
    const MPoint& Center() const { return m_center; }
    /// View pixels to an image pixel.
    float Scale() const;

    /// The image pixel under a point of the view.
    QPoint ToImage(const QPointF& point) const;
    /// The point of the view at which an image pixel begins.
    MPoint ToView(const QPointF& pixel) const;

private:
    int m_width = 0;
    int m_height = 0;
    float m_halfSize = 0.0f;
    float m_displaySize = 0.0f; ///< side of the square that is shown, view pixels
    MPoint m_center;
    MPoint m_panOffset; ///< by how much the pan moves the square off the middle, to the left and down
    bool m_panZoomActive = false;
};

} // namespace vellix
