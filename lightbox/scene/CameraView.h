#pragma once

#include <QRectF>

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

namespace lightbox {

class DagNode;

/// What a camera shows in a viewport of some size. View pixels, from the bottom left with y upward. Matrices
/// are for row vectors: clip = world * View() * Projection(), with OpenGL's clip space.
class CameraView {
public:
    /// Reads the camera's film fit, film aspect, overscan, clipping planes and 2D pan and zoom as they are
    /// now, and the resolution to render from the scene that the camera is in.
    CameraView(const DagNode& cameraShape, int width, int height);

    int Width() const { return width_; }
    int Height() const { return height_; }
    const Imath::M44d& View() const { return view_; }
    const Imath::M44d& Projection() const { return projection_; }
    bool IsOrthographic() const { return isOrthographic_; }

    /// x and y in view pixels, z the depth from 0 (near) to 1 (far). A point behind the eye is mirrored, as
    /// the division by a negative w has it; `isInFront` tells.
    Imath::V3d WorldToView(const Imath::V3d& world, bool* isInFront = nullptr) const;
    /// The points on the near and on the far clipping plane under a view pixel.
    void ViewToWorld(double x, double y, Imath::V3d& nearPoint, Imath::V3d& farPoint) const;

    /// The gates as they are to be drawn, in view pixels: what the film sees, and what is rendered.
    QRectF FilmGate() const { return filmGate_; }
    QRectF ResolutionGate() const { return resolutionGate_; }
    /// By how much the camera's 2D pan has to change for the picture to move by one view pixel.
    double PanPerPixel() const { return panPerPixel_; }

    /// Whether both show a scene at the same places.
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
