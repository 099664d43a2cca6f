#include "tools/TransformSelection.h"

#include "core/Layer.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"

#include <maya/MPoint.h>

#include <utility>

namespace vellix {

// --- camera, layer and frame ------------------------------------------------------------------------------

void TransformSelection::Forget() {
    camera_ = CameraHandle();
    corners_.fill(QPoint());
}

void TransformSelection::Begin(const BaseNode& node) {
    corners_.fill(QPoint());
    placement_ = Placement();
    frame_ = MayaUtil::GetPlaybackTimeValue();
    view_ = M3dView::active3dView();
    camera_ = CameraHandle(MayaUtil::GetCameraName(view_));
    layers_ = node.GetLayerManager();
}

bool TransformSelection::TakeActiveLayer(const BaseNode& node) {
    const Layer* const active = node.GetActiveLayer(GetCamera());
    layer_ = active ? active->GetId() : LayerId::None;
    return active != nullptr;
}

BaseNode* TransformSelection::GetNode() const {
    const std::shared_ptr<LayerManager> layers = GetLayers();
    BaseNode* node = layers ? BaseNode::GetMaster() : nullptr;
    return node != nullptr && node->GetLayerManager() == layers ? node : nullptr;
}

Stroke* TransformSelection::FindStroke(BaseNode& node) const {
    Stroke* stroke = node.HasActiveStroke() ? node.GetActiveStroke(GetCamera(), false) : nullptr;
    return stroke != nullptr && stroke->tool == ToolType::Transform ? stroke : nullptr;
}

bool TransformSelection::IsInActiveView() const {
    return HasBegun() && MayaUtil::GetActive3dViewCameraName() == GetCamera();
}

bool TransformSelection::IsCurrent() const {
    const BaseNode* node = GetNode();
    const Layer* active = node ? node->GetActiveLayer(GetCamera()) : nullptr;
    return active != nullptr && active->GetId() == layer_ && IsInActiveView() &&
           MayaUtil::GetPlaybackTimeValue() == frame_;
}

// --- rectangle --------------------------------------------------------------------------------------------

void TransformSelection::StretchTo(const QPoint& position) {
    corners_[1].setY(position.y());
    corners_[2] = position;
    corners_[3].setX(position.x());
}

void TransformSelection::Reorder() {
    Corners& p = corners_;
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
    placement_ = FindPlacement(node);
    region_ = QRect(node.ScreenCoordsToTexCoords(corners_[0]), node.ScreenCoordsToTexCoords(corners_[2]));
}

void TransformSelection::SelectAll(BaseNode& node) {
    // The region deliberately ends two pixels before the far edges.
    constexpr int last = Settings::FINAL_IMAGE_WIDTH - 2;
    region_ = QRect(QPoint(0, 0), QPoint(last, last));
    placement_ = FindPlacement(node);
    EncloseRegion(node);
}

// --- place in view and image ------------------------------------------------------------------------------

float TransformSelection::MeasureScale(BaseNode& node) {
    return FindPlacement(node).scale;
}

bool TransformSelection::LocateAgain(BaseNode& node) {
    const Placement placement = FindPlacement(node);
    if (placement_.scale <= 0.0f || placement == placement_) {
        return false;
    }
    placement_ = placement;
    EncloseRegion(node);
    return true;
}

bool TransformSelection::FollowActiveView() {
    const M3dView active = M3dView::active3dView();
    if (!IsInActiveView() || active.widget() == view_.widget()) {
        return false;
    }
    view_ = active;
    return true;
}

TransformSelection::Corners TransformSelection::InImage(BaseNode& node, const Corners& points) {
    node.UpdateOverlayValues(view_);
    Corners pixels{};
    for (size_t corner = 0; corner < points.size(); ++corner) {
        pixels[corner] = node.ScreenCoordsToTexCoords(points[corner]);
    }
    return pixels;
}

QPoint TransformSelection::OffsetInImage(BaseNode& node, const QPoint& from, const QPoint& to) {
    node.UpdateOverlayValues(view_);
    return node.ScreenCoordsToTexCoords(to) - node.ScreenCoordsToTexCoords(from);
}

TransformSelection::Placement TransformSelection::FindPlacement(BaseNode& node) {
    node.UpdateOverlayValues(view_);
    const MPoint center = node.GetOverlayCenter();
    return {center.x, center.y, node.TextureToScreenScale()};
}

/// Sets the corners from the region, in the view of the node's current overlay values.
void TransformSelection::EncloseRegion(const BaseNode& node) {
    const auto corner = [&](const QPoint& pixel) {
        const MPoint point = node.TexCoordsToScreenCoords(pixel);
        return QPoint(qRound(point.x), qRound(point.y));
    };
    corners_ = {{corner(region_.topLeft()), corner(region_.bottomLeft()), corner(region_.bottomRight()),
                 corner(region_.topRight())}};
}

} // namespace vellix
