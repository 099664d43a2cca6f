// The drawing over a view: the legacy viewport's draw(), the transform outline, and the placement that the
// node notes.

#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"

#include <maya/M3dView.h>
#include <maya/MDagPath.h>

namespace vellix {

void BaseNode::draw(M3dView& view, const MDagPath&, M3dView::DisplayStyle, M3dView::DisplayStatus) {
    if (const QImage* image = GetFinalImage(MayaUtil::GetCameraName(view))) {
        NotePlacement(ViewPlacement::For(view));
        m_legacyPicture.Draw(view, *image, m_placement, GetOpacity(),
                             IsMaster() ? s_transformContext : nullptr);
    }
}

void BaseNode::SetTransformOutline(const QString& camera, const QPoint& p0, const QPoint& p1,
                                   const QPoint& p2, const QPoint& p3) {
    m_outlineCamera = camera;
    m_outline = {{p0, p1, p2, p3}};
    m_drawOutline = true;
}

void BaseNode::ClearTransformOutline() {
    m_drawOutline = false;
}

bool BaseNode::DrawTransformOutline(const QString& camera) const {
    return m_drawOutline && m_outlineCamera == camera;
}

const std::array<QPoint, 4>& BaseNode::GetTransformOutline() const {
    return m_outline;
}

// --- the noted placement ----------------------------------------------------------------------------------

void BaseNode::NotePlacement(const ViewPlacement& placement) {
    m_placement = placement;
    if (const std::shared_ptr<LayerManager> layers = GetLayerManager()) {
        layers->SetFrame(MayaUtil::GetPlaybackTimeValue());
    }
}

void BaseNode::UpdateOverlayValues(const MDagPath& cameraPath, int width, int height, bool) {
    NotePlacement(ViewPlacement(cameraPath, width, height));
}

void BaseNode::UpdateOverlayValues(M3dView& view) {
    MDagPath cameraPath;
    if (view.getCamera(cameraPath)) {
        NotePlacement(ViewPlacement::For(view, cameraPath));
    }
}

void BaseNode::UpdateOverlayPan(const MDagPath& cameraPath, const M3dView& view) {
    m_placement.FollowPan(view, cameraPath);
}

void BaseNode::UpdateOverlayPan(const MDagPath& cameraPath, const MHWRender::MFrameContext& frameContext) {
    m_placement.FollowPan(frameContext, cameraPath);
}

QPoint BaseNode::ScreenCoordsToTexCoords(const QPoint& point) const {
    return m_placement.ToImage(point);
}

MPoint BaseNode::TexCoordsToScreenCoords(const QPoint& pixel) const {
    return m_placement.ToView(pixel);
}

float BaseNode::TextureToScreenScale() const {
    return m_placement.Scale();
}

MPoint BaseNode::GetOverlayCenter() const {
    return m_placement.Center();
}

float BaseNode::GetOverlayScale() const {
    return m_placement.HalfSize();
}

void BaseNode::TransformOutlinePoints(MPoint& p0, MPoint& p1, MPoint& p2, MPoint& p3) const {
    p0 = m_placement.ToView(m_outline[0]);
    p1 = m_placement.ToView(m_outline[1]);
    p2 = m_placement.ToView(m_outline[2]);
    p3 = m_placement.ToView(m_outline[3]);
}

} // namespace vellix
