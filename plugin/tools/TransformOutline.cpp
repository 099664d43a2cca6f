#include "tools/TransformOutline.h"

#include "node/BaseNode.h"

#include <maya/MColor.h>
#include <maya/MPoint.h>
#include <maya/MUIDrawManager.h>

#include <qopengl.h>

namespace vellix {

namespace {

// Inverting the highest bit of green is visible on every colour, mid-grey included, and gives at most two
// hues on a grey background.
constexpr GLubyte OUTLINE_INVERSION = 0x80;

/// Draws a closed outline through pixel centres.
void DrawLoop(const TransformOutline::Corners& corners) {
    constexpr float middle = 0.5f;
    glBegin(GL_LINE_LOOP);
    for (const QPoint& corner : corners) {
        glVertex2f(static_cast<float>(corner.x()) + middle, static_cast<float>(corner.y()) + middle);
    }
    glEnd();
}

void DrawLines(MHWRender::MUIDrawManager& manager, const TransformOutline::Corners& corners) {
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

void TransformOutline::Show(const M3dView& view, const Corners& corners) {
    Erase();
    Place(corners, true);
    Draw(view, corners);
}

void TransformOutline::Place(const Corners& corners, bool shown) {
    corners_ = corners;
    shown_ = shown;
}

void TransformOutline::Hide() {
    Erase();
    shown_ = false;
}

void TransformOutline::Erase() {
    if (drawn_ && IsLegacy(drawnView_)) {
        Draw(drawnView_, drawnCorners_);
    }
    drawn_ = false;
}

void TransformOutline::Forget() {
    shown_ = drawn_ = false;
}

void TransformOutline::Draw(const M3dView& view, const Corners& corners) {
    if (drawManager_) {
        DrawLines(*drawManager_, corners);
        return;
    }
    M3dView drawnView = view;
    if (!IsLegacy(drawnView) || !drawnView.beginXorDrawing()) {
        return;
    }
    constexpr float inversion = OUTLINE_INVERSION / 255.0f;
    drawnView.setDrawColor(MColor(0.0f, inversion, 0.0f));
    DrawLoop(corners);
    drawnView.endXorDrawing();
    drawn_ = !drawn_;
    drawnView_ = drawnView;
    drawnCorners_ = corners;
}

void TransformOutline::DrawAnew(const M3dView& view) {
    glColor3ub(0, OUTLINE_INVERSION, 0);
    DrawLoop(corners_);
    drawn_ = true;
    drawnView_ = view;
    drawnCorners_ = corners_;
}

void TransformOutline::ShowByNode(BaseNode& node, TransformSelection& selection) const {
    Corners right = corners_;
    for (QPoint& corner : right) {
        corner += QPoint(1, 0); // the node's outline lies one view pixel to the right
    }
    const Corners pixels = selection.InImage(node, right);
    node.SetTransformOutline(selection.GetCamera(), pixels[0], pixels[1], pixels[2], pixels[3]);
}

} // namespace vellix
