#include "openmaya/ApiBridge.h"
#include "openmaya/DrawState.h"
#include "openmaya/ImathConversion.h"
#include "scene/CameraView.h"
#include "scene/View.h"

#include <maya/MFrameContext.h>

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

using lightbox::ApiBridge;
using lightbox::CameraView;

namespace MHWRender {

MFrameContext::MFrameContext(std::unique_ptr<State> state)
    : state_(std::move(state)) {}

MFrameContext::~MFrameContext() = default;

MMatrix MFrameContext::getMatrix(MatrixType mtype, MStatus* ReturnStatus) const {
    // Each group of four is: the matrix, its transpose, its inverse, and the transpose of the inverse.
    const int group = mtype / 4;
    const int form = mtype % 4;
    const CameraView& camera = state_->camera;
    Imath::M44d matrix;
    switch (group) {
    case kViewMtx / 4:
        matrix = camera.View();
        break;
    case kProjectionMtx / 4:
        matrix = camera.Projection();
        break;
    case kViewProjMtx / 4:
        matrix = camera.View() * camera.Projection();
        break;
    default:
        ApiBridge::Report(ReturnStatus, ApiBridge::Fail(MS::kInvalidParameter, "There is no object"));
        return MMatrix();
    }
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    matrix = form >= 2 ? matrix.inverse() : matrix;
    return lightbox::FromImath(form % 2 != 0 ? matrix.transposed() : matrix);
}

MStatus MFrameContext::getViewportDimensions(int& originX, int& originY, int& width, int& height) const {
    originX = 0;
    originY = 0;
    width = state_->camera.Width();
    height = state_->camera.Height();
    return MS::kSuccess;
}

MDagPath MFrameContext::getCurrentCameraPath(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return state_->cameraPath;
}

MFrameContext::RenderingDestination MFrameContext::renderingDestination(MString& destination) const {
    destination = ApiBridge::Wrap(state_->view.PanelName());
    return k3dViewport;
}

MStatus MFrameContext::worldToViewport(const MPoint& worldPoint, double& x, double& y) const {
    const Imath::V3d point = state_->camera.WorldToView(lightbox::ToImath(worldPoint));
    x = point.x;
    y = point.y;
    return MS::kSuccess;
}

MStatus MFrameContext::viewportToWorld(double x, double y, MPoint& nearPoint, MPoint& farPoint) const {
    Imath::V3d nearest;
    Imath::V3d farthest;
    state_->camera.ViewToWorld(x, y, nearest, farthest);
    nearPoint = lightbox::ToPoint(nearest);
    farPoint = lightbox::ToPoint(farthest);
    return MS::kSuccess;
}

} // namespace MHWRender

std::unique_ptr<MHWRender::MFrameContext> ApiBridge::MakeFrameContext(const View& view,
                                                                      const CameraView& camera) {
    std::unique_ptr<MHWRender::MFrameContext::State> state(
        new MHWRender::MFrameContext::State{view, camera, Wrap(*view.Camera())});
    return std::unique_ptr<MHWRender::MFrameContext>(new MHWRender::MFrameContext(std::move(state)));
}
