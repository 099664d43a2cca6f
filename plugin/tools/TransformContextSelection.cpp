// The transform tool's selection: where it is, what is selected, how it is outlined.

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"
#include "tools/TransformContext.h"

#include <maya/MColor.h>
#include <maya/MPoint.h>
#include <maya/MUIDrawManager.h>

#include <QTransform>
#include <qopengl.h>

#include <utility>

namespace vellix {

namespace {

// Inverting the highest bit of green is seen on every colour, mid-grey ones too, and makes two hues of a
// grey background at the most.
constexpr GLubyte OUTLINE_INVERSION = 0x80;

/// A closed outline along whole pixels.
template <typename Corners>
void DrawLoop(const Corners& corners) {
    constexpr float middle = 0.5f;
    glBegin(GL_LINE_LOOP);
    for (const QPoint& corner : corners) {
        glVertex2f(static_cast<float>(corner.x()) + middle, static_cast<float>(corner.y()) + middle);
    }
    glEnd();
}

template <typename Corners>
void DrawLines(MHWRender::MUIDrawManager& manager, const Corners& corners) {
    const auto point = [&](size_t corner) {
        return MPoint(corners[corner].x(), corners[corner].y(), 0.0, 1.0);
    };
    manager.beginDrawable();
    manager.setColor(MColor(1.0f, 0.0f, 0.0f, 1.0f));
    manager.setLineWidth(1.0f);
    for (size_t corner = 0; corner < corners.size(); ++corner) {
        manager.line2d(point(corner), point((corner + 1) % corners.size()));
    }
    manager.endDrawable();
}

bool IsLegacy(const M3dView& view) {
    MStatus status;
    const M3dView::RendererName renderer = view.getRendererName(&status);
    return status && renderer != M3dView::kViewport2Renderer;
}

} // namespace

// --- where it is ------------------------------------------------------------------------------------------

bool TransformContext::BeginSelection() {
    const bool isBegun = !m_camera.isEmpty() && !m_invalid && GetSelectionNode() != nullptr;
    return isBegun || InitializeSelectStage(false);
}

bool TransformContext::InitializeSelectStage(bool paste) {
    BaseNode* node = BaseNode::GetMaster();
    if (node == nullptr) {
        return false;
    }
    m_paste = paste;
    m_invalid = m_cut = m_copy = m_flipHorizontal = m_flipVertical = false;
    m_corners.fill(QPoint());
    m_placement = Placement();
    m_pasteLayer = -1;
    m_pasteFrameCreated = false;

    m_frame = MayaUtil::GetPlaybackTimeValue();
    m_view = M3dView::active3dView();
    m_camera = MayaUtil::GetCameraName(m_view);
    m_layers = node->GetLayerManager();
    const bool isPrepared = !paste || node->PrepareForDraw(m_camera, m_pasteLayer, m_pasteFrameCreated);
    m_pasteFrameTime = MayaUtil::GetPlaybackTime();
    m_layer = node->GetActiveLayer(m_camera);
    if (!isPrepared || m_layer == nullptr) {
        m_invalid = true;
        return false;
    }
    if (node->GetActiveCamera() != m_camera) {
        SetSelectionOutlineDrawnByNodeEnabled(false);
        MayaUtil::SetActiveLayer(m_camera, node->GetActiveLayerIndex(m_camera));
    }
    return true;
}

BaseNode* TransformContext::GetSelectionNode() const {
    const std::shared_ptr<LayerManager> layers = m_layers.lock();
    BaseNode* node = layers ? BaseNode::GetMaster() : nullptr;
    return node != nullptr && node->GetLayerManager() == layers ? node : nullptr;
}

bool TransformContext::IsSelectionView() const {
    return !m_camera.isEmpty() && MayaUtil::GetActive3dViewCameraName() == m_camera;
}

bool TransformContext::SelectionIsCurrent() const {
    const BaseNode* node = GetSelectionNode();
    return node != nullptr && IsSelectionView() && MayaUtil::GetPlaybackTimeValue() == m_frame &&
           node->GetActiveLayer(m_camera) == m_layer;
}

bool TransformContext::HasStroke(BaseNode& node) const {
    const Stroke* stroke = node.HasActiveStroke() ? node.GetActiveStroke(m_camera, false) : nullptr;
    return stroke != nullptr && stroke->tool == ToolType::Transform;
}

// --- what is selected -------------------------------------------------------------------------------------

void TransformContext::ReorderSelectionPoints() {
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

void TransformContext::PreprocessSelection() {
    m_transformation = Transformation();
    m_translateAnchor = QPoint();
    m_rotateAnchor = m_scaleAnchorX = m_scaleAnchorY = 0.0f;
    m_dragMode = DragMode::None; // the button may still be down with which the selection was dragged out
    ReorderSelectionPoints();
    BaseNode* node = GetSelectionNode();
    Stroke* stroke = node != nullptr ? node->GetActiveStroke(m_camera, true) : nullptr;
    if (stroke == nullptr) {
        return;
    }
    m_placement = PlacementIn(*node, m_view);
    if (m_corners[0] == m_corners[2] && !m_paste) {
        // The whole image. Its region deliberately ends two pixels before the far edges.
        constexpr int last = Settings::FINAL_IMAGE_WIDTH - 2;
        m_region = QRect(QPoint(0, 0), QPoint(last, last));
        m_corners = CornersOf(*node, m_region);
    } else {
        m_region = RegionOf(*node, m_corners);
    }
    stroke->tool = ToolType::Transform;
    stroke->selection = m_region;
    stroke->freshSelection = true;
    stroke->liftedImageEmptied = m_cut;
    stroke->copyToClipboard = m_copy;
    stroke->pasted = m_paste;
    stroke->changed = true;
    RefreshView();
}

QRect TransformContext::RegionOf(const BaseNode& node, const Corners& corners) {
    return QRect(node.ScreenCoordsToTexCoords(corners[0]), node.ScreenCoordsToTexCoords(corners[2]));
}

TransformContext::Corners TransformContext::CornersOf(const BaseNode& node, const QRect& region) {
    const auto corner = [&](const QPoint& pixel) {
        const MPoint point = node.TexCoordsToScreenCoords(pixel);
        return QPoint(qRound(point.x), qRound(point.y));
    };
    return {{corner(region.topLeft()), corner(region.bottomLeft()), corner(region.bottomRight()),
             corner(region.topRight())}};
}

TransformContext::Placement TransformContext::PlacementIn(BaseNode& node, M3dView& view) {
    node.UpdateOverlayValues(view);
    const MPoint center = node.GetOverlayCenter();
    return {center.x, center.y, node.TextureToScreenScale()};
}

/// Answers whether the view has been panned, zoomed or resized; the selection then is where its region is.
bool TransformContext::FindSelectionAgain(BaseNode& node) {
    const Placement placement = PlacementIn(node, m_view);
    if (m_placement.scale <= 0.0f || placement == m_placement) {
        return false;
    }
    m_placement = placement;
    m_corners = CornersOf(node, m_region);
    const QPoint& translation = m_transformation.translation;
    m_transformation.moveOffset = QPoint(qRound(static_cast<float>(translation.x()) * placement.scale),
                                         -qRound(static_cast<float>(translation.y()) * placement.scale));
    return true;
}

void TransformContext::FollowView(BaseNode& node) {
    const M3dView active = M3dView::active3dView();
    if (IsSelectionView() && active.widget() != m_view.widget()) {
        EraseLegacyOutline();
        m_view = active;
    }
    if (FindSelectionAgain(node)) {
        TransformSelectionOutline();
    }
}

// --- how it is outlined -----------------------------------------------------------------------------------

void TransformContext::TransformSelectionOutline() {
    ShowOutline(TransformedCorners());
    // In Viewport 2.0 that one is gone with the next event; the node's, beside it, stays.
    SetSelectionOutlineDrawnByNodeEnabled(true);
}

TransformContext::Corners TransformContext::TransformedCorners() const {
    const QPoint center((m_corners[0].x() + m_corners[2].x()) / 2, (m_corners[0].y() + m_corners[2].y()) / 2);
    QTransform matrix;
    matrix.translate(center.x(), center.y());
    matrix.rotate(static_cast<double>(-m_transformation.rotation));
    matrix.scale(static_cast<double>(m_transformation.scaleX), static_cast<double>(m_transformation.scaleY));
    matrix.translate(-center.x(), -center.y());
    Corners corners = m_corners;
    for (QPoint& corner : corners) {
        corner = matrix.map(corner) + m_transformation.moveOffset;
    }
    return corners;
}

void TransformContext::ShowOutline(const Corners& corners) {
    EraseLegacyOutline();
    m_outline = corners;
    m_outlineShown = true;
    DrawSelectionOutline(corners[0].x(), corners[0].y(), corners[1].x(), corners[1].y(), corners[2].x(),
                         corners[2].y(), corners[3].x(), corners[3].y());
}

void TransformContext::EraseLegacyOutline() {
    if (m_outlineDrawn && IsLegacy(m_view)) {
        const Corners& drawn = m_drawnOutline;
        DrawSelectionOutline(drawn[0].x(), drawn[0].y(), drawn[1].x(), drawn[1].y(), drawn[2].x(),
                             drawn[2].y(), drawn[3].x(), drawn[3].y());
    }
    m_outlineDrawn = false;
}

void TransformContext::ForgetOutline() {
    EraseLegacyOutline();
    m_outlineShown = false;
    SetSelectionOutlineDrawnByNodeEnabled(false);
    RefreshView();
}

void TransformContext::DrawSelectionOutline() {
    ShowOutline(m_corners);
}

void TransformContext::DrawSelectionOutline(int x0, int y0, int x1, int y1, int x2, int y2, int x3, int y3) {
    const Corners corners{{QPoint(x0, y0), QPoint(x1, y1), QPoint(x2, y2), QPoint(x3, y3)}};
    if (m_drawManager != nullptr) {
        DrawLines(*m_drawManager, corners);
        return;
    }
    if (!IsLegacy(m_view) || !m_view.beginXorDrawing()) {
        return;
    }
    constexpr float inversion = OUTLINE_INVERSION / 255.0f;
    m_view.setDrawColor(MColor(0.0f, inversion, 0.0f));
    DrawLoop(corners);
    m_view.endXorDrawing();
    m_outlineDrawn = !m_outlineDrawn;
    m_drawnOutline = corners;
}

void TransformContext::OnViewDrawn(const M3dView& view) {
    BaseNode* node = m_outlineShown && view.widget() == m_view.widget() ? GetSelectionNode() : nullptr;
    if (node == nullptr) {
        return;
    }
    if (FindSelectionAgain(*node)) {
        m_outline = TransformedCorners();
    }
    for (const GLenum capability : {GL_TEXTURE_2D, GL_LINE_SMOOTH, GL_LINE_STIPPLE}) {
        glDisable(capability);
    }
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(GL_XOR);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    glLineWidth(1.0f);
    glColor3ub(0, OUTLINE_INVERSION, 0);
    DrawLoop(m_outline);
    m_outlineDrawn = true;
    m_drawnOutline = m_outline;
}

void TransformContext::SetSelectionOutlineDrawnByNodeEnabled(bool enabled) {
    BaseNode* node = enabled ? GetSelectionNode() : BaseNode::GetMaster();
    if (node == nullptr) {
        return;
    }
    if (!enabled) {
        node->ClearTransformOutline();
        return;
    }
    node->UpdateOverlayValues(m_view);
    const auto pixel = [&](size_t corner) {
        // The node's outline lies one pixel to the right.
        return node->ScreenCoordsToTexCoords(m_outline[corner] + QPoint(1, 0));
    };
    node->SetTransformOutline(m_camera, pixel(0), pixel(1), pixel(2), pixel(3));
}

} // namespace vellix
