#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MPoint.h>

#include <QPoint>
#include <QPointF>

namespace vellix {

/// The placement of the square drawing over a camera's view. It describes the view and camera as they were
/// when it was made. View pixels count from the bottom left with y up. Image pixels count from the top left
/// of the drawing with y down; the drawing is Settings::FINAL_IMAGE_WIDTH pixels wide and high.
class ViewPlacement {
public:
    /// An empty placement: the scale is 0.
    ViewPlacement() = default;
    /// Over the camera's gate, centred in a view of this size (pixels), without 2D pan.
    ViewPlacement(const MDagPath& camera, int width, int height);

    /// With 2D pan, which M3dView rounds to whole pixels. Empty for a view without a camera.
    static ViewPlacement For(const M3dView& view);
    static ViewPlacement For(const M3dView& view, const MDagPath& camera);
    /// With 2D pan, in a frame drawn by Viewport 2.0.
    static ViewPlacement For(const MHWRender::MFrameContext& frame, const MDagPath& camera);

    /// The side of the square drawing, in pixels, on a rendered picture of this size, whose middle is the
    /// square's. A view shows that picture inside its gate: overscan, 2D pan and zoom move and scale both
    /// alike there, and are not rendered. 0 for a film that has no size.
    static double SideOnRender(const MDagPath& cameraPath, int width, int height);

    /// The width of the gate over its height, that of rendered pictures. The drawing is as wide as the gate,
    /// which lies in the middle of its height.
    static double GateAspect();

    /// Moves the placement by the camera's 2D pan.
    void FollowPan(const M3dView& view, const MDagPath& camera);
    void FollowPan(const MHWRender::MFrameContext& frame, const MDagPath& camera);

    const MPoint& Center() const { return center_; }
    /// Half the side of the square, in view pixels.
    float HalfSize() const { return halfSize_; }
    /// View pixels per image pixel.
    float Scale() const;

    /// The image pixel under a point of the view (view pixels).
    QPoint ToImage(const QPointF& point) const;
    /// The same place, not rounded to a pixel.
    QPointF ToImageExactly(const QPointF& point) const;
    /// The top left corner of an image pixel, as a point of the view.
    MPoint ToView(const QPointF& pixel) const;

private:
    void SetPan(double x, double y);
    double Left() const;
    double Top() const;

    int width_ = 0;
    int height_ = 0;
    float halfSize_ = 0.0f;
    float displaySize_ = 0.0f; ///< side of the square, view pixels
    MPoint center_;
    MPoint panOffset_; ///< offset by pan, view pixels; positive is left and down
    bool panZoomActive_ = false;
};

} // namespace vellix
