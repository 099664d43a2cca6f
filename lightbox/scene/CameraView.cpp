#include "scene/CameraView.h"

#include "scene/CameraFilm.h"
#include "scene/DagNode.h"
#include "scene/Plug.h"
#include "scene/Scene.h"

#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

using Imath::M44d;
using Imath::V3d;

/// Width divided by height of the render resolution; 16:9 if the scene does not set it.
double RenderAspect(const Scene* scene) {
    const std::shared_ptr<Node> resolution = scene ? scene->Find("defaultResolution") : nullptr;
    const auto read = [&](const char* name) {
        const auto attribute = resolution ? resolution->FindAttribute(name) : nullptr;
        return attribute ? Plug(resolution, attribute).Number() : 0.0;
    };
    const double width = read("width") * read("pixelAspect");
    const double height = read("height");
    return width > 0.0 && height > 0.0 ? width / height : 16.0 / 9.0;
}

M44d ProjectionOf(const CameraFilm& film, const Frustum& frustum) {
    const double nearClip = film.NearClip();
    const double farClip = film.FarClip();
    const double width = frustum.right - frustum.left;
    const double height = frustum.top - frustum.bottom;
    const double depth = farClip - nearClip;
    const double x = (frustum.right + frustum.left) / width;
    const double y = (frustum.top + frustum.bottom) / height;
    if (film.IsOrthographic()) {
        return {2.0 / width,  0.0, 0.0, 0.0, 0.0,
                2.0 / height, 0.0, 0.0, 0.0, 0.0,
                -2.0 / depth, 0.0, -x,  -y,  -(farClip + nearClip) / depth,
                1.0};
    }
    return {2.0 * nearClip / width,
            0.0,
            0.0,
            0.0,
            0.0,
            2.0 * nearClip / height,
            0.0,
            0.0,
            x,
            y,
            -(farClip + nearClip) / depth,
            -1.0,
            0.0,
            0.0,
            -2.0 * farClip * nearClip / depth,
            0.0};
}

/// A point in clip space, before the division by w.
struct ClipPoint {
    V3d position;
    double w;
};

ClipPoint Transform(const V3d& point, const M44d& m) {
    return {V3d(point.x * m[0][0] + point.y * m[1][0] + point.z * m[2][0] + m[3][0],
                point.x * m[0][1] + point.y * m[1][1] + point.z * m[2][1] + m[3][1],
                point.x * m[0][2] + point.y * m[1][2] + point.z * m[2][2] + m[3][2]),
            point.x * m[0][3] + point.y * m[1][3] + point.z * m[2][3] + m[3][3]};
}

} // namespace

CameraView::CameraView(const DagNode& cameraShape, int width, int height)
    : width_(std::max(1, width))
    , height_(std::max(1, height)) {
    const CameraFilm film(cameraShape);
    const double viewAspect = static_cast<double>(width_) / height_;
    CameraFilm::Options options;
    options.overscan = true;
    options.panZoom = true;
    isOrthographic_ = film.IsOrthographic();
    view_ = cameraShape.WorldMatrix().inverse();
    projection_ = ProjectionOf(film, film.FrustumOf(viewAspect, options));

    // Pixels per unit of film, and the film's centre in the view. The gates stay with the film: a film offset
    // moves the picture, not the gate.
    const double scale = width_ / (film.VisibleWidth(viewAspect) * film.Overscan() * film.Zoom());
    const double centerX = width_ * 0.5 - film.HorizontalPan() * scale;
    const double centerY = height_ * 0.5 - film.VerticalPan() * scale;
    const auto gate = [&](double aspect, double gateWidth) {
        const double w = gateWidth * scale;
        const double h = w / aspect;
        return QRectF(centerX - w * 0.5, centerY - h * 0.5, w, h);
    };
    const double renderAspect = RenderAspect(cameraShape.InScene());
    resolutionGate_ = gate(renderAspect, film.VisibleWidth(renderAspect));
    filmGate_ = isOrthographic_ ? resolutionGate_ : gate(film.Aspect(), film.VisibleWidth(film.Aspect()));
    panPerPixel_ = 1.0 / scale;
    viewProjection_ = view_ * projection_;
    inverse_ = viewProjection_.inverse();
}

V3d CameraView::WorldToView(const V3d& world, bool* isInFront) const {
    const ClipPoint clip = Transform(world, viewProjection_);
    if (isInFront) {
        *isInFront = clip.w > 0.0;
    }
    // A point in the plane of the eye projects to infinity; any far position will do.
    const double w = std::abs(clip.w) < 1e-12 ? 1e-12 : clip.w;
    return {(clip.position.x / w + 1.0) * 0.5 * width_, (clip.position.y / w + 1.0) * 0.5 * height_,
            (clip.position.z / w + 1.0) * 0.5};
}

void CameraView::ViewToWorld(double x, double y, V3d& nearPoint, V3d& farPoint) const {
    const auto unproject = [&](double depth) {
        const ClipPoint point =
            Transform(V3d(x / width_ * 2.0 - 1.0, y / height_ * 2.0 - 1.0, depth), inverse_);
        return point.position / point.w;
    };
    nearPoint = unproject(-1.0);
    farPoint = unproject(1.0);
}

} // namespace lightbox
