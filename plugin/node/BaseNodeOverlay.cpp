// BaseNode: the legacy viewport's draw(), the transform outline, and the stored placement.

#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"

#include <maya/M3dView.h>
#include <maya/MDagPath.h>

#include <QImage>

#include <new>

namespace vellix {

void BaseNode::draw(M3dView& view, const MDagPath&, M3dView::DisplayStyle, M3dView::DisplayStatus) {
    try {
        const QImage* const image = GetFinalImage(MayaUtil::GetCameraName(view));
        LegacyOutline* const tool = transformContext_ ? transformContext_ : adjustingContext_;
        LegacyOutline* const outline = IsMaster() ? tool : nullptr;
        QLineF string;
        if (image) {
            NotePlacement(ViewPlacement::For(view));
            string = GetPenString(MayaUtil::GetCameraName(view), placement_);
        }
        if (image || outline) {
            legacyPicture_.Draw(view, image, placement_, GetOpacity(), string, outline);
        }
    } catch (const std::bad_alloc&) {
        // The next refresh tries again; a message at each would bury the others.
    }
}

void BaseNode::SetTransformOutline(const QString& camera, const QPoint& p0, const QPoint& p1,
                                   const QPoint& p2, const QPoint& p3) {
    outlineCamera_ = camera;
    outline_ = {{p0, p1, p2, p3}};
    drawOutline_ = true;
}

void BaseNode::OnCameraRenamed(const QString& from, const QString& to, bool isUndo) {
    if (outlineCamera_ == from) {
        outlineCamera_ = to;
    }
    if (const std::shared_ptr<LayerManager> layers = GetLayerManager()) {
        layers->RenameCamera(from, to, isUndo);
    }
}

void BaseNode::ClearTransformOutline() {
    drawOutline_ = false;
}

bool BaseNode::DrawTransformOutline(const QString& camera) const {
    return drawOutline_ && outlineCamera_ == camera;
}

const std::array<QPoint, 4>& BaseNode::GetTransformOutline() const {
    return outline_;
}

void BaseNode::SetPenString(const QString& camera, const QLineF& string) {
    stringCamera_ = camera;
    penString_ = string;
}

QLineF BaseNode::GetPenString(const QString& camera, const ViewPlacement& placement) const {
    if (penString_.p1() == penString_.p2() || camera != stringCamera_) {
        return QLineF();
    }
    const MPoint brush = placement.ToView(penString_.p1());
    const MPoint pen = placement.ToView(penString_.p2());
    return QLineF(brush.x, brush.y, pen.x, pen.y);
}

// --- the stored placement ---------------------------------------------------------------------------------

void BaseNode::NotePlacement(const ViewPlacement& placement) {
    placement_ = placement;
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
    placement_.FollowPan(view, cameraPath);
}

void BaseNode::UpdateOverlayPan(const MDagPath& cameraPath, const MHWRender::MFrameContext& frameContext) {
    placement_.FollowPan(frameContext, cameraPath);
}

QPoint BaseNode::ScreenCoordsToTexCoords(const QPoint& point) const {
    return placement_.ToImage(point);
}

MPoint BaseNode::TexCoordsToScreenCoords(const QPoint& pixel) const {
    return placement_.ToView(pixel);
}

float BaseNode::TextureToScreenScale() const {
    return placement_.Scale();
}

MPoint BaseNode::GetOverlayCenter() const {
    return placement_.Center();
}

float BaseNode::GetOverlayScale() const {
    return placement_.HalfSize();
}

void BaseNode::TransformOutlinePoints(MPoint& p0, MPoint& p1, MPoint& p2, MPoint& p3) const {
    p0 = placement_.ToView(outline_[0]);
    p1 = placement_.ToView(outline_[1]);
    p2 = placement_.ToView(outline_[2]);
    p3 = placement_.ToView(outline_[3]);
}

} // namespace vellix
