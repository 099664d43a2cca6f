#pragma once

namespace lightbox {

class DagNode;

/// The edges of a frustum on the near clipping plane, in centimetres, x to the right and y upward.
struct Frustum {
    double left = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double top = 0.0;
};

/// The film and lens of a camera at the current time. Computes how much of the film a picture of a given
/// aspect ratio shows. The formulas are the published ones of the film fits: horizontal keeps the film's
/// width, vertical its height, fill shows only film, overscan shows the whole film.
class CameraFilm {
public:
    explicit CameraFilm(const DagNode& cameraShape);

    struct Options {
        bool overscan = false;
        bool squeeze = true;
        /// Applies 2D pan and zoom, if the camera enables them.
        bool panZoom = false;
    };
    /// The frustum of a picture; `pictureAspect` is width divided by height.
    Frustum FrustumOf(double pictureAspect, const Options& options) const;

    /// Width divided by height of the film, lens squeeze included.
    double Aspect() const { return width_ * squeeze_ / height_; }
    bool IsOrthographic() const { return isOrthographic_; }
    double NearClip() const { return nearClip_; }
    double FarClip() const { return farClip_; }
    double Overscan() const { return overscan_; }
    /// 2D pan: inches on the film for a perspective camera, centimetres for an orthographic one; 0 when off.
    double HorizontalPan() const { return isPanZoomed_ ? horizontalPan_ : 0.0; }
    double VerticalPan() const { return isPanZoomed_ ? verticalPan_ : 0.0; }
    /// 2D zoom: the fraction of the picture that is shown. At least 0.001; 1 when off.
    double Zoom() const { return isPanZoomed_ ? zoom_ : 1.0; }

    /// Whether a picture of that aspect shows the film's whole width; otherwise it shows the whole height.
    bool KeepsWidth(double pictureAspect) const;
    /// Width of the film area that a picture of that aspect shows, before overscan and 2D zoom: inches for a
    /// perspective camera, centimetres for an orthographic one.
    double VisibleWidth(double pictureAspect, bool squeeze = true) const;
    /// Centimetres on the near clipping plane for each unit of VisibleWidth().
    double NearPlaneScale() const;

private:
    enum class Fit { Fill, Horizontal, Vertical, Overscan };

    double width_;  ///< inches, camera scale included
    double height_; ///< inches, camera scale included
    double squeeze_;
    Fit fit_;
    double fitOffset_;
    double offsetX_; ///< inches, camera shake included
    double offsetY_;
    double focalLength_; ///< millimetres
    double nearClip_;
    double farClip_;
    double overscan_;
    bool isOrthographic_;
    double orthographicWidth_;
    bool isPanZoomed_;
    double horizontalPan_;
    double verticalPan_;
    double zoom_;
};

} // namespace lightbox
