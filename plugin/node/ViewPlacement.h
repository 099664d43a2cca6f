#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MPoint.h>

#include <QPoint>

namespace vellix {

/// Where the square drawing lies over a view of a camera. It holds for the view and the camera as they are
/// when it is asked for. View pixels count from the bottom left with y upward; image pixels from the top left
/// of the drawing with y downward, Settings::FINAL_IMAGE_WIDTH of them a side.
class ViewPlacement {
public:
    /// Nowhere: the scale is 0.
    ViewPlacement() = default;
    /// Over the camera's gate, in the middle of a view of that size; 2D pan left aside.
    ViewPlacement(const MDagPath& camera, int width, int height);

    /// With 2D pan, which M3dView rounds to whole pixels. Nowhere for a view without a camera.
    static ViewPlacement For(const M3dView& view);
    static ViewPlacement For(const M3dView& view, const MDagPath& camera);
    /// With 2D pan, in a frame that Viewport 2.0 draws.
    static ViewPlacement For(const MHWRender::MFrameContext& frame, const MDagPath& camera);

    /// Moves it by the camera's 2D pan.
    void FollowPan(const M3dView& view, const MDagPath& camera);
    void FollowPan(const MHWRender::MFrameContext& frame, const MDagPath& camera);

    const MPoint& Center() const { return center_; }
    /// Half the side of the square, view pixels.
    float HalfSize() const { return halfSize_; }
    /// View pixels to an image pixel.
    float Scale() const;

    /// The image pixel under a point of the view.
    QPoint ToImage(const QPointF& point) const;
    /// The point of the view at which an image pixel begins.
    MPoint ToView(const QPointF& pixel) const;

private:
    void SetPan(double x, double y);
    double Left() const;
    double Top() const;

    int width_ = 0;
    int height_ = 0;
    float halfSize_ = 0.0f;
    float displaySize_ = 0.0f; ///< side of the square
    MPoint center_;
    MPoint panOffset_; ///< by how much the pan moves the square to the left and down
    bool panZoomActive_ = false;
};

} // namespace vellix
