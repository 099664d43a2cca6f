#include "openmaya/ApiBridge.h"
#include "openmaya/ImathConversion.h"
#include "scene/CameraView.h"
#include "scene/Host.h"
#include "scene/UserInterface.h"
#include "scene/View.h"

#include <maya/M3dView.h>
#include <maya/MColor.h>

#include <QWidget>
#include <qopengl.h>

#include <Imath/ImathVec.h>
#include <algorithm>
#include <cmath>
#include <limits>

using lightbox::ApiBridge;
using lightbox::CameraView;
using lightbox::FromImath;
using lightbox::ToImath;
using lightbox::ToPoint;
using lightbox::UserInterface;
using lightbox::View;

namespace {

MStatus NoView() {
    return ApiBridge::Fail(MS::kFailure, "There is no 3d view");
}

/// The view, or null when it was closed. Reports the status.
View* ExistingView(View* view, MStatus* status = nullptr) {
    UserInterface* ui = view ? ApiBridge::Ui() : nullptr;
    if (ui) {
        const std::vector<View*> views = ui->Views();
        ui = std::find(views.begin(), views.end(), view) != views.end() ? ui : nullptr;
    }
    ApiBridge::Report(status, ui ? MStatus() : NoView());
    return ui ? view : nullptr;
}

/// Lets `act` work with the view, unless it was closed.
template <class Action>
MStatus WithView(View* view, Action act) {
    View* const existing = ExistingView(view);
    if (!existing) {
        return NoView();
    }
    act(*existing);
    return MS::kSuccess;
}

CameraView CameraOf(const View& view) {
    return CameraView(*view.Camera(), view.Width(), view.Height());
}

/// The nearest whole pixel in the range of short.
short Rounded(double value) {
    constexpr double low = std::numeric_limits<short>::min();
    constexpr double high = std::numeric_limits<short>::max();
    return std::isfinite(value) ? static_cast<short>(std::clamp(std::floor(value + 0.5), low, high)) : 0;
}

/// Saves the matrices of OpenGL.
void PushMatrices() {
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
}

/// Makes view pixels the unit of OpenGL calls.
void SetPixelSpace(const View& view) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0.0, view.Width(), 0.0, view.Height(), -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void PopMatrices() {
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

} // namespace

M3dView ApiBridge::Wrap(View& view) {
    M3dView wrapped;
    wrapped.view_ = &view;
    return wrapped;
}

M3dView M3dView::active3dView(MStatus* ReturnStatus) {
    UserInterface* ui = ApiBridge::Ui();
    View* view = ui ? ui->ActiveView() : nullptr;
    ApiBridge::Report(ReturnStatus, view ? MStatus() : NoView());
    return view ? ApiBridge::Wrap(*view) : M3dView();
}

unsigned int M3dView::numberOf3dViews() {
    UserInterface* ui = ApiBridge::Ui();
    return ui ? static_cast<unsigned int>(ui->Views().size()) : 0;
}

MStatus M3dView::get3dView(unsigned int index, M3dView& view) {
    if (index >= numberOf3dViews()) {
        return NoView();
    }
    view = ApiBridge::Wrap(*ApiBridge::Ui()->Views()[index]);
    return MS::kSuccess;
}

MStatus M3dView::getM3dViewFromModelPanel(const MString& modelPaneName, M3dView& view) {
    UserInterface* ui = ApiBridge::Ui();
    for (View* candidate : ui ? ui->Views() : std::vector<View*>()) {
        if (candidate->PanelName() == ApiBridge::Text(modelPaneName)) {
            view = ApiBridge::Wrap(*candidate);
            return MS::kSuccess;
        }
    }
    return NoView();
}

QWidget* M3dView::widget(MStatus* ReturnStatus) const {
    View* view = ExistingView(view_, ReturnStatus);
    return view ? &view->Widget() : nullptr;
}

int M3dView::portWidth(MStatus* ReturnStatus) const {
    const View* view = ExistingView(view_, ReturnStatus);
    return view ? view->Width() : 0;
}

int M3dView::portHeight(MStatus* ReturnStatus) const {
    const View* view = ExistingView(view_, ReturnStatus);
    return view ? view->Height() : 0;
}

bool M3dView::isVisible(MStatus* ReturnStatus) const {
    View* view = ExistingView(view_, ReturnStatus);
    return view && view->Widget().isVisible();
}

M3dView::RendererName M3dView::getRendererName(MStatus* ReturnStatus) const {
    const View* view = ExistingView(view_, ReturnStatus);
    return view && view->IsViewport2() ? kViewport2Renderer : kDefaultQualityRenderer;
}

MStatus M3dView::getCamera(MDagPath& camera) const {
    return WithView(view_, [&](const View& view) { camera = ApiBridge::Wrap(*view.Camera()); });
}

MStatus M3dView::setCamera(MDagPath& camera) {
    View* view = ExistingView(view_);
    if (!view) {
        return NoView();
    }
    MDagPath shape = camera;
    shape.extendToShape();
    const std::shared_ptr<lightbox::DagNode> node = ApiBridge::GetDagNode(shape);
    if (!node || !node->HasFn(MFn::kCamera)) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The path does not lead to a camera");
    }
    view->SetCamera(node);
    return MS::kSuccess;
}

MStatus M3dView::projectionMatrix(MMatrix& projectionMatrix) const {
    return WithView(view_,
                    [&](const View& view) { projectionMatrix = FromImath(CameraOf(view).Projection()); });
}

MStatus M3dView::modelViewMatrix(MMatrix& modelViewMatrix) const {
    return WithView(view_, [&](const View& view) { modelViewMatrix = FromImath(CameraOf(view).View()); });
}

MStatus M3dView::refresh(bool all, bool force) {
    return WithView(view_, [all, force](View& view) {
        all ? ApiBridge::Ui()->RefreshViews(force) : view.Refresh(force);
    });
}

MStatus M3dView::viewToWorld(short x_pos, short y_pos, MPoint& worldPt, MVector& worldVector) const {
    MPoint farPoint;
    MStatus status = viewToWorld(x_pos, y_pos, worldPt, farPoint);
    if (status) {
        worldVector = (farPoint - worldPt).normal();
    }
    return status;
}

MStatus M3dView::viewToWorld(short x_pos, short y_pos, MPoint& nearClipPt, MPoint& farClipPt) const {
    return WithView(view_, [&](const View& view) {
        Imath::V3d nearPoint;
        Imath::V3d farPoint;
        CameraOf(view).ViewToWorld(x_pos, y_pos, nearPoint, farPoint);
        nearClipPt = ToPoint(nearPoint);
        farClipPt = ToPoint(farPoint);
    });
}

bool M3dView::worldToView(const MPoint& worldPt, short& x_pos, short& y_pos, MStatus* ReturnStatus) const {
    const View* view = ExistingView(view_, ReturnStatus);
    if (!view) {
        return false;
    }
    bool isInFront = false;
    const Imath::V3d point = CameraOf(*view).WorldToView(ToImath(worldPt), &isInFront);
    x_pos = Rounded(point.x);
    y_pos = Rounded(point.y);
    return isInFront && point.x >= 0.0 && point.x <= view->Width() && point.y >= 0.0 &&
           point.y <= view->Height() && point.z >= 0.0 && point.z <= 1.0;
}

MStatus M3dView::beginGL() {
    return WithView(view_, [](View& view) { view.BeginGl(); });
}

MStatus M3dView::endGL() {
    return WithView(view_, [](View& view) { view.EndGl(); });
}

MStatus M3dView::beginXorDrawing(bool drawOrthographic, bool disableDepthTesting, float lineWidth,
                                 LineStipplePattern stipplePattern, const MColor& lineColor) {
    View* view = ExistingView(view_);
    if (!view) {
        return NoView();
    }
    view->BeginGl();
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    for (const GLenum capability : {GL_LIGHTING, GL_TEXTURE_2D, GL_BLEND, GL_CULL_FACE}) {
        glDisable(capability);
    }
    if (disableDepthTesting) {
        glDisable(GL_DEPTH_TEST);
    }
    // Leave the view's alpha unchanged.
    const GLboolean isSeen = view->IsViewport2() ? GL_FALSE : GL_TRUE;
    glColorMask(isSeen, isSeen, isSeen, GL_FALSE);
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(GL_XOR);
    glLineWidth(lineWidth);
    if (stipplePattern == kStippleDashed) {
        constexpr GLushort dashes = 0x0f0f;
        glEnable(GL_LINE_STIPPLE);
        glLineStipple(1, dashes);
    }
    PushMatrices();
    if (drawOrthographic) {
        SetPixelSpace(*view);
    }
    glColor4f(lineColor.r, lineColor.g, lineColor.b, lineColor.a);
    return MS::kSuccess;
}

MStatus M3dView::endXorDrawing() {
    return WithView(view_, [](View& view) {
        PopMatrices();
        glPopAttrib();
        view.EndGl();
        if (!view.IsViewport2()) {
            view.Present();
        }
    });
}

MStatus M3dView::setDrawColor(const MColor& color) {
    return WithView(view_, [&](const View&) { glColor4f(color.r, color.g, color.b, color.a); });
}
