#include "node/OverlayGeometry.h"

#include "host/Settings.h"

#include <maya/MFnCamera.h>

#include <QPointF>

#include <cmath>

namespace vellix {

namespace {

constexpr double SMALLEST_ZOOM = 0.001;

/// Toward zero; 0 for what is no number of pixels.
int Truncate(double size) {
    constexpr double tooLarge = 1.0e9;
    return std::abs(size) < tooLarge ? static_cast<int>(size) : 0;
}

/// The nearest whole number, halves upward, in single precision.
int Round(double value) {
    constexpr float tooLarge = 1.0e9f;
    const float rounded = std::floor(static_cast<float>(value) + 0.5f);
    return std::abs(rounded) < tooLarge ? static_cast<int>(rounded) : 0;
}

/// By how much a gate that fills a perspective view, or lies in it with overscan, differs from the view's own
/// width.
double FitFactor(double viewAspect, double filmAspect, double renderAspect) {
    if (viewAspect < filmAspect) {
        return renderAspect <= filmAspect ? renderAspect / viewAspect : filmAspect / viewAspect;
    }
    return renderAspect < filmAspect ? renderAspect / filmAspect : 1.0;
}

double GateSizeOf(const OverlayCamera& camera, double width, double height) {
    const double horizontal = width / camera.overscan;
    switch (camera.filmFit) {
    case MFnCamera::kVerticalFilmFit:
        return height / camera.overscan * camera.renderAspect;
    case MFnCamera::kFillFilmFit:
        if (!camera.orthographic) {
            return horizontal * FitFactor(width / height, camera.filmAspect, camera.renderAspect);
        }
        return horizontal;
    case MFnCamera::kOverscanFilmFit:
        if (!camera.orthographic) {
            return height / camera.overscan /
                   FitFactor(width / height, camera.filmAspect, camera.renderAspect) * camera.renderAspect;
        }
        return height / camera.overscan * camera.renderAspect;
    default:
        return horizontal;
    }
}

} // namespace

void OverlayGeometry::Update(const OverlayCamera& camera, int width, int height) {
    m_width = width;
    m_height = height;
    m_displaySize = static_cast<float>(Truncate(GateSizeOf(camera, width, height)));
    m_halfSize = m_displaySize * 0.5f;
    m_center = MPoint(width * 0.5, height * 0.5, 0.0, 1.0);
    m_panZoomActive = camera.panZoomEnabled && !Settings::ignore2dPanZoom;
    if (m_panZoomActive) {
        const auto zoom = static_cast<float>(camera.zoom > 0.0 ? camera.zoom : SMALLEST_ZOOM);
        m_halfSize /= zoom;
        m_displaySize /= zoom;
    }
    ClearPan();
}

void OverlayGeometry::SetPan(double x, double y) {
    m_panOffset = MPoint(m_center.x - x, m_center.y - y, m_center.z, 1.0);
    m_center = MPoint(x, y, 0.0, 1.0);
}

void OverlayGeometry::ClearPan() {
    m_panOffset = MPoint(0.0, 0.0, 0.0, 1.0);
}

float OverlayGeometry::Scale() const {
    return m_displaySize / static_cast<float>(Settings::FINAL_IMAGE_WIDTH);
}

QPoint OverlayGeometry::ToImage(const QPointF& point) const {
    if (m_displaySize <= 0.0f) {
        return QPoint();
    }
    const double scale = static_cast<double>(Settings::FINAL_IMAGE_WIDTH) / m_displaySize;
    const double left = (m_displaySize - m_width) * 0.5 + m_panOffset.x;
    const double top = (m_displaySize - m_height) * 0.5 - m_panOffset.y;
    return QPoint(Round((point.x() + left) * scale), Round((m_height - point.y() + top) * scale));
}

MPoint OverlayGeometry::ToView(const QPointF& pixel) const {
    const double scale = Scale();
    const double left = (m_displaySize - m_width) * 0.5 + m_panOffset.x;
    const double top = (m_displaySize - m_height) * 0.5 - m_panOffset.y;
    return MPoint(pixel.x() * scale - left, m_height + top - pixel.y() * scale, 0.0, 1.0);
}

} // namespace vellix
