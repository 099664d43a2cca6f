#include "tools/TransformSelection.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"

#include <maya/MPoint.h>

#include <utility>

namespace vellix {

// --- camera, layer and frame ------------------------------------------------------------------------------

void TransformSelection::Forget() {
    m_camera.clear();
    m_corners.fill(QPoint());
}

void TransformSelection::Begin(const BaseNode& node) {
    m_corners.fill(QPoint());
    m_placement = Placement();
    m_frame = MayaUtil::GetPlaybackTimeValue();
    m_view = M3dView::active3dView();
    m_camera = MayaUtil::GetCameraName(m_view);
    m_layers = node.GetLayerManager();
}

bool TransformSelection::TakeActiveLayer(const BaseNode& node) {
    m_layer = node.GetActiveLayer(m_camera);
    return m_layer != nullptr;
}

BaseNode* TransformSelection::GetNode() const {
    const std::shared_ptr<LayerManager> layers = GetLayers();
    BaseNode* node = layers ? BaseNode::GetMaster() : nullptr;
    return node != nullptr && node->GetLayerManager() == layers ? node : nullptr;
}

Stroke* TransformSelection::FindStroke(BaseNode& node) const {
    Stroke* stroke = node.HasActiveStroke() ? node.GetActiveStroke(m_camera, false) : nullptr;
    return stroke != nullptr && stroke->tool == ToolType::Transform ? stroke : nullptr;
}

bool TransformSelection::IsInActiveView() const {
    return HasBegun() && MayaUtil::GetActive3dViewCameraName() == m_camera;
}

bool TransformSelection::IsCurrent() const {
    const BaseNode* node = GetNode();
    return node != nullptr && IsInActiveView() && MayaUtil::GetPlaybackTimeValue() == m_frame &&
           node->GetActiveLayer(m_camera) == m_layer;
}

// --- rectangle --------------------------------------------------------------------------------------------

void TransformSelection::StretchTo(const QPoint& position) {
    m_corners[1].setY(position.y());
    m_corners[2] = position;
    m_corners[3].setX(position.x());
}

void TransformSelection::Reorder() {
    Corners& p = m_corners;
    if (p[2].x() < p[0].x()) {
        std::swap(p[0].rx(), p[3].rx());
        std::swap(p[1].rx(), p[2].rx());
    }
    if (p[0].y() < p[1].y()) {
        std::swap(p[0].ry(), p[1].ry());
        std::swap(p[3].ry(), p[2].ry());
    }
}

void TransformSelection::Locate(BaseNode& node) {
    m_placement = FindPlacement(node);
    m_region = QRect(node.ScreenCoordsToTexCoords(m_corners[0]), node.ScreenCoordsToTexCoords(m_corners[2]));
}

void TransformSelection::SelectAll(BaseNode& node) {
    // The region deliberately ends two pixels before the far edges.
    constexpr int last = Settings::FINAL_IMAGE_WIDTH - 2;
    m_region = QRect(QPoint(0, 0), QPoint(last, last));
    m_placement = FindPlacement(node);
    EncloseRegion(node);
}

// --- place in view and image ------------------------------------------------------------------------------

float TransformSelection::MeasureScale(BaseNode& node) {
    return FindPlacement(node).scale;
}

bool TransformSelection::LocateAgain(BaseNode& node) {
    const Placement placement = FindPlacement(node);
    if (m_placement.scale <= 0.0f || placement == m_placement) {
        return false;
    }
    m_placement = placement;
    EncloseRegion(node);
    return true;
}

bool TransformSelection::FollowActiveView() {
    const M3dView active = M3dView::active3dView();
    if (!IsInActiveView() || active.widget() == m_view.widget()) {
        return false;
    }
    m_view = active;
    return true;
}

TransformSelection::Corners TransformSelection::InImage(BaseNode& node, const Corners& points) {
    node.UpdateOverlayValues(m_view);
    Corners pixels{};
    for (size_t corner = 0; corner < points.size(); ++corner) {
        pixels[corner] = node.ScreenCoordsToTexCoords(points[corner]);
    }
    return pixels;
}

QPoint TransformSelection::OffsetInImage(BaseNode& node, const QPoint& from, const QPoint& to) {
    node.UpdateOverlayValues(m_view);
    return node.ScreenCoordsToTexCoords(to) - node.ScreenCoordsToTexCoords(from);
}

TransformSelection::Placement TransformSelection::FindPlacement(BaseNode& node) {
    node.UpdateOverlayValues(m_view);
    const MPoint center = node.GetOverlayCenter();
    return {center.x, center.y, node.TextureToScreenScale()};
}

/// Sets the corners from the region, in the view of the node's current overlay values.
void TransformSelection::EncloseRegion(const BaseNode& node) {
    const auto corner = [&](const QPoint& pixel) {
        const MPoint point = node.TexCoordsToScreenCoords(pixel);
        return QPoint(qRound(point.x), qRound(point.y));
    };
    m_corners = {{corner(m_region.topLeft()), corner(m_region.bottomLeft()), corner(m_region.bottomRight()),
                  corner(m_region.topRight())}};
}

} // namespace vellix
