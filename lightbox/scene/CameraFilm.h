#pragma once

namespace lightbox {

class DagNode;

/// The edges of a frustum on its near clipping plane, in centimetres, x to the right and y upward.
struct Frustum {
    double left = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double top = 0.0;
};

/// A camera's film and lens as they are at the moment: how much of the film a picture of some aspect shows.
/// The formulas are the published ones of the film fits: horizontal keeps the film's width, vertical its
/// height, fill shows film only, overscan shows the whole film.
class CameraFilm {
public:
    explicit CameraFilm(const DagNode& cameraShape);

    struct Options {
        bool overscan = false;
        bool squeeze = true;
        /// Only when the camera has its 2D pan and zoom enabled.
        bool panZoom = false;
    };
    /// What a picture of that width by height shows.
    Frustum FrustumOf(double pictureAspect, const Options& options) const;

    /// Width by height of the film, with the lens squeeze.
    double Aspect() const { return width_ * squeeze_ / height_; }
    bool IsOrthographic() const { return isOrthographic_; }
    double NearClip() const { return nearClip_; }
    double FarClip() const { return farClip_; }
    double Overscan() const { return overscan_; }
    bool IsPanZoomed() const { return isPanZoomed_; }
    /// 2D pan: film inches for a perspective camera, centimetres for an orthographic one. 0 when it is off.
    double HorizontalPan() const { return isPanZoomed_ ? horizontalPan_ : 0.0; }
    double VerticalPan() const { return isPanZoomed_ ? verticalPan_ : 0.0; }
    /// 2D zoom, the part of the picture that is shown; 0.001 where it is not above 0, and 1 when it is off.
    double Zoom() const { return isPanZoomed_ ? zoom_ : 1.0; }

    /// Whether a picture of that aspect shows the film's whole width (else its whole height).
    bool KeepsWidth(double pictureAspect) const;
    /// Width of the part of the film that a picture of that aspect shows, overscan and 2D zoom left out: film
    /// inches, or centimetres for an orthographic camera.
    double VisibleWidth(double pictureAspect, bool squeeze = true) const;
    /// Centimetres on the near clipping plane for each unit of VisibleWidth().
    double NearPlaneScale() const;

private:
    enum class Fit { Fill, Horizontal, Vertical, Overscan };

    double width_;  ///< inches, with the camera's scale
    double height_; ///< inches, with the camera's scale
    double squeeze_;
    Fit fit_;
    double fitOffset_;
    double offsetX_; ///< inches, with the shake
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
