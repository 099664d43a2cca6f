#pragma once

#include <QRectF>

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

namespace lightbox {

class DagNode;

/// The projection of a camera in a viewport of a given size. Positions are view pixels from the bottom left,
/// y upward. Matrices are for row vectors: clip = world * View() * Projection(), in OpenGL's clip space.
class CameraView {
public:
    /// Reads the camera's current film fit, film aspect, overscan, clipping planes and 2D pan and zoom, and
    /// the render resolution of the camera's scene. Width and height are view pixels.
    CameraView(const DagNode& cameraShape, int width, int height);

    int Width() const { return width_; }
    int Height() const { return height_; }
    const Imath::M44d& View() const { return view_; }
    const Imath::M44d& Projection() const { return projection_; }
    bool IsOrthographic() const { return isOrthographic_; }

    /// Projects a world point: x and y in view pixels, z the depth from 0 (near) to 1 (far). The division by
    /// a negative w mirrors a point behind the eye; `isInFront` (optional) receives false for one.
    Imath::V3d WorldToView(const Imath::V3d& world, bool* isInFront = nullptr) const;
    /// The points under a view pixel on the near and the far clipping plane.
    void ViewToWorld(double x, double y, Imath::V3d& nearPoint, Imath::V3d& farPoint) const;

    /// The film gate and the resolution gate to draw, in view pixels.
    QRectF FilmGate() const { return filmGate_; }
    QRectF ResolutionGate() const { return resolutionGate_; }
    /// The change of the camera's 2D pan that moves the picture by one view pixel.
    double PanPerPixel() const { return panPerPixel_; }

    /// Whether both views project every point to the same place.
    bool operator==(const CameraView& other) const {
        return width_ == other.width_ && height_ == other.height_ && view_ == other.view_ &&
               projection_ == other.projection_;
    }

private:
    int width_;
    int height_;
    bool isOrthographic_ = false;
    Imath::M44d view_;
    Imath::M44d projection_;
    Imath::M44d viewProjection_;
    Imath::M44d inverse_;
    double panPerPixel_ = 1.0;
    QRectF filmGate_;
    QRectF resolutionGate_;
};

} // namespace lightbox
