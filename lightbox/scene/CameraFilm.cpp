#include "scene/CameraFilm.h"

#include "scene/DagNode.h"
#include "scene/Plug.h"

#include <algorithm>

namespace lightbox {

namespace {

constexpr double MILLIMETRES_PER_INCH = 25.4;
/// A lower bound for divisors, for scenes with values that make no picture.
constexpr double MIN_POSITIVE = 1e-5;

/// Reads a camera's numbers by name.
struct CameraReader {
    const DagNode& camera;

    double operator()(const char* attribute) const { return Plug::Of(camera, attribute).Number(); }
    double Positive(const char* attribute) const { return std::max(MIN_POSITIVE, (*this)(attribute)); }
};

} // namespace

CameraFilm::CameraFilm(const DagNode& cameraShape) {
    const CameraReader read{cameraShape};
    const double scale = read.Positive("cameraScale");
    width_ = read.Positive("horizontalFilmAperture") * scale;
    height_ = read.Positive("verticalFilmAperture") * scale;
    squeeze_ = read.Positive("lensSqueezeRatio");
    fit_ = static_cast<Fit>(std::clamp(static_cast<int>(read("filmFit")), 0, 3));
    fitOffset_ = read("filmFitOffset");
    offsetX_ = read("horizontalFilmOffset");
    offsetY_ = read("verticalFilmOffset");
    if (read("shakeEnabled") != 0.0) {
        offsetX_ += read("horizontalShake");
        offsetY_ += read("verticalShake");
    }
    focalLength_ = read.Positive("focalLength");
    isOrthographic_ = read("orthographic") != 0.0;
    nearClip_ = isOrthographic_ ? read("nearClipPlane") : read.Positive("nearClipPlane");
    farClip_ = std::max(nearClip_ + MIN_POSITIVE, read("farClipPlane"));
    overscan_ = read.Positive("overscan");
    orthographicWidth_ = read.Positive("orthographicWidth");
    isPanZoomed_ = read("panZoomEnabled") != 0.0;
    horizontalPan_ = read("horizontalPan");
    verticalPan_ = read("verticalPan");
    zoom_ = read("zoom");
    if (zoom_ <= 0.0) {
        zoom_ = 0.001;
    }
}

bool CameraFilm::KeepsWidth(double pictureAspect) const {
    switch (fit_) {
    case Fit::Vertical:
        return false;
    case Fit::Fill:
        return isOrthographic_ || pictureAspect >= Aspect();
    case Fit::Overscan:
        return !isOrthographic_ && pictureAspect < Aspect();
    default:
        return true;
    }
}

double CameraFilm::VisibleWidth(double pictureAspect, bool squeeze) const {
    // An orthographic camera sees a square as wide as its orthographic width; film and lens do not matter.
    const double filmWidth = isOrthographic_ ? orthographicWidth_ : width_ * (squeeze ? squeeze_ : 1.0);
    const double filmHeight = isOrthographic_ ? orthographicWidth_ : height_;
    return KeepsWidth(pictureAspect) ? filmWidth : filmHeight * pictureAspect;
}

double CameraFilm::NearPlaneScale() const {
    return isOrthographic_ ? 1.0 : MILLIMETRES_PER_INCH / focalLength_ * nearClip_;
}

Frustum CameraFilm::FrustumOf(double pictureAspect, const Options& options) const {
    const double zoom = options.panZoom ? Zoom() : 1.0;
    const double halfWidth =
        VisibleWidth(pictureAspect, options.squeeze) * 0.5 * (options.overscan ? overscan_ : 1.0) * zoom;
    const double halfHeight = halfWidth / pictureAspect;
    double x = options.panZoom ? HorizontalPan() : 0.0;
    double y = options.panZoom ? VerticalPan() : 0.0;
    if (!isOrthographic_) {
        // The film fit offset acts along the side that is not fitted.
        const bool keepsWidth = KeepsWidth(pictureAspect);
        x += offsetX_ + (keepsWidth ? 0.0 : fitOffset_);
        y += offsetY_ + (keepsWidth ? fitOffset_ : 0.0);
    }
    const double scale = NearPlaneScale();
    return {(x - halfWidth) * scale, (x + halfWidth) * scale, (y - halfHeight) * scale,
            (y + halfHeight) * scale};
}

} // namespace lightbox
