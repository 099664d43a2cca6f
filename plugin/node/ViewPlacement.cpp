#include "node/ViewPlacement.h"

#include "host/Settings.h"

#include <maya/M3dView.h>
#include <maya/MCommonRenderSettingsData.h>
#include <maya/MDagPath.h>
#include <maya/MFnCamera.h>
#include <maya/MFrameContext.h>
#include <maya/MMatrix.h>
#include <maya/MRenderUtil.h>

#include <QPointF>

#include <cmath>

namespace vellix {

namespace {

constexpr double SMALLEST_ZOOM = 0.001;

/// Truncates a size in pixels toward zero; 0 for NaN or a huge value.
int Truncate(double size) {
    constexpr double tooLarge = 1.0e9;
    return std::abs(size) < tooLarge ? static_cast<int>(size) : 0;
}

/// Rounds to the nearest integer, halves up, in single precision; 0 for NaN or a huge value.
int Round(double value) {
    constexpr float tooLarge = 1.0e9f;
    const float rounded = std::floor(static_cast<float>(value) + 0.5f);
    return std::abs(rounded) < tooLarge ? static_cast<int>(rounded) : 0;
}

/// Width of the gate relative to the view, for a perspective camera with fill film fit; overscan film fit
/// divides by it. Aspects are width over height.
double FitFactor(double viewAspect, double filmAspect, double renderAspect) {
    if (viewAspect < filmAspect) {
        return renderAspect <= filmAspect ? renderAspect / viewAspect : filmAspect / viewAspect;
    }
    return renderAspect < filmAspect ? renderAspect / filmAspect : 1.0;
}

/// The side of the square that covers the gate at zoom 1, in view pixels.
double GetGateSize(const MFnCamera& camera, double width, double height, double overscan) {
    const double renderAspect = ViewPlacement::GateAspect();
    const double horizontal = width / overscan;
    switch (camera.filmFit()) {
    case MFnCamera::kVerticalFilmFit:
        return height / overscan * renderAspect;
    case MFnCamera::kFillFilmFit:
        if (!camera.isOrtho()) {
            return horizontal * FitFactor(width / height, camera.aspectRatio(), renderAspect);
        }
        return horizontal;
    case MFnCamera::kOverscanFilmFit:
        if (!camera.isOrtho()) {
            return height / overscan / FitFactor(width / height, camera.aspectRatio(), renderAspect) *
                   renderAspect;
        }
        return height / overscan * renderAspect;
    default:
        return horizontal;
    }
}

/// The world point that 2D pan brings to the centre of the view.
MPoint GetPanPoint(const MDagPath& cameraPath) {
    const MFnCamera camera(cameraPath);
    if (camera.isOrtho()) {
        return camera.eyePoint(MSpace::kWorld);
    }
    return MPoint(camera.horizontalPan(), camera.verticalPan(), camera.farClippingPlane(), 1.0) *
           cameraPath.inclusiveMatrix();
}

} // namespace

ViewPlacement::ViewPlacement(const MDagPath& cameraPath, int width, int height)
    : width_(width)
    , height_(height)
    , center_(width * 0.5, height * 0.5, 0.0, 1.0) {
    const MFnCamera camera(cameraPath);
    displaySize_ = static_cast<float>(Truncate(GetGateSize(camera, width, height, camera.overscan())));
    halfSize_ = displaySize_ * 0.5f;
    panZoomActive_ = camera.panZoomEnabled() && !Settings::ignore2dPanZoom;
    if (panZoomActive_) {
        const auto zoom = static_cast<float>(camera.zoom() > 0.0 ? camera.zoom() : SMALLEST_ZOOM);
        halfSize_ /= zoom;
        displaySize_ /= zoom;
    }
}

double ViewPlacement::SideOnRender(const MDagPath& cameraPath, int width, int height) {
    const double side = GetGateSize(MFnCamera(cameraPath), width, height, 1.0);
    return side > 0.0 && side < 1.0e6 ? side : 0.0;
}

double ViewPlacement::GateAspect() {
    MCommonRenderSettingsData settings;
    MRenderUtil::getCommonRenderSettings(settings);
    return settings.height > 0 ? static_cast<double>(settings.width) / settings.height : 1.0;
}

ViewPlacement ViewPlacement::For(const M3dView& view) {
    MDagPath camera;
    return view.getCamera(camera) ? For(view, camera) : ViewPlacement();
}

ViewPlacement ViewPlacement::For(const M3dView& view, const MDagPath& camera) {
    ViewPlacement placement(camera, view.portWidth(), view.portHeight());
    placement.FollowPan(view, camera);
    return placement;
}

ViewPlacement ViewPlacement::For(const MHWRender::MFrameContext& frame, const MDagPath& camera) {
    int originX = 0;
    int originY = 0;
    int width = 0;
    int height = 0;
    frame.getViewportDimensions(originX, originY, width, height);
    ViewPlacement placement(camera, width, height);
    placement.FollowPan(frame, camera);
    return placement;
}

void ViewPlacement::FollowPan(const M3dView& view, const MDagPath& camera) {
    if (!panZoomActive_) {
        panOffset_ = MPoint();
        return;
    }
    short x = 0;
    short y = 0;
    view.worldToView(GetPanPoint(camera), x, y);
    SetPan(x, y);
}

void ViewPlacement::FollowPan(const MHWRender::MFrameContext& frame, const MDagPath& camera) {
    if (!panZoomActive_) {
        panOffset_ = MPoint();
        return;
    }
    double x = 0.0;
    double y = 0.0;
    frame.worldToViewport(GetPanPoint(camera), x, y);
    SetPan(x, y);
}

void ViewPlacement::SetPan(double x, double y) {
    panOffset_ = MPoint(center_.x - x, center_.y - y, center_.z, 1.0);
    center_ = MPoint(x, y, 0.0, 1.0);
}

float ViewPlacement::Scale() const {
    return displaySize_ / static_cast<float>(Settings::FINAL_IMAGE_WIDTH);
}

double ViewPlacement::Left() const {
    return (displaySize_ - width_) * 0.5 + panOffset_.x;
}

double ViewPlacement::Top() const {
    return (displaySize_ - height_) * 0.5 - panOffset_.y;
}

QPoint ViewPlacement::ToImage(const QPointF& point) const {
    const QPointF exact = ToImageExactly(point);
    return QPoint(Round(exact.x()), Round(exact.y()));
}

QPointF ViewPlacement::ToImageExactly(const QPointF& point) const {
    if (displaySize_ <= 0.0f) {
        return QPointF();
    }
    const double scale = static_cast<double>(Settings::FINAL_IMAGE_WIDTH) / displaySize_;
    return QPointF((point.x() + Left()) * scale, (height_ - point.y() + Top()) * scale);
}

MPoint ViewPlacement::ToView(const QPointF& pixel) const {
    const double scale = Scale();
    return MPoint(pixel.x() * scale - Left(), height_ + Top() - pixel.y() * scale, 0.0, 1.0);
}

} // namespace vellix
