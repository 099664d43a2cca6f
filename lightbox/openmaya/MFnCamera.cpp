#include "openmaya/ApiBridge.h"
#include "openmaya/ImathConversion.h"
#include "scene/Plug.h"

#include <maya/MFnCamera.h>

#include <Imath/ImathMatrix.h>

using lightbox::ApiBridge;
using lightbox::DagNode;
using lightbox::Plug;

namespace {

/// The camera's shape; null for any other object.
std::shared_ptr<DagNode> CameraOf(const MObject& object) {
    std::shared_ptr<DagNode> node = ApiBridge::GetDagNode(object);
    if (!node || node->HasFn(MFn::kCamera)) {
        return node;
    }
    for (DagNode* shape : node->Shapes()) {
        if (shape->HasFn(MFn::kCamera)) {
            return std::static_pointer_cast<DagNode>(shape->Shared());
        }
    }
    return nullptr;
}

double NumberOf(const MObject& object, const char* attribute, MStatus* status) {
    const std::shared_ptr<DagNode> camera = CameraOf(object);
    ApiBridge::Report(status, camera ? MS::kSuccess : MS::kFailure);
    return camera ? Plug::Of(*camera, attribute).Number() : 0.0;
}

/// Converts a direction from the camera's space to `space`.
MVector DirectionOf(const MObject& object, const MVector& own, MSpace::Space space, MStatus* status) {
    const std::shared_ptr<DagNode> camera = CameraOf(object);
    ApiBridge::Report(status, camera ? MS::kSuccess : MS::kFailure);
    if (!camera || space != MSpace::kWorld) {
        return own;
    }
    return (own * lightbox::FromImath(camera->WorldMatrix())).normal();
}

} // namespace

MFnCamera::MFnCamera() = default;

MFnCamera::MFnCamera(const MObject& object, MStatus* ReturnStatus) {
    const std::shared_ptr<DagNode> camera = CameraOf(object);
    ApiBridge::Report(ReturnStatus,
                      camera ? MFnBase::setObject(ApiBridge::Wrap(camera)) : MS::kInvalidParameter);
}

MFnCamera::MFnCamera(const MDagPath& object, MStatus* ReturnStatus)
    : MFnCamera(object.node(), ReturnStatus) {}

MFn::Type MFnCamera::type() const {
    return MFn::kCamera;
}

MPoint MFnCamera::eyePoint(MSpace::Space space, MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> camera = CameraOf(object_);
    ApiBridge::Report(ReturnStatus, camera ? MS::kSuccess : MS::kFailure);
    if (!camera || space != MSpace::kWorld) {
        return MPoint();
    }
    return MPoint() * lightbox::FromImath(camera->WorldMatrix());
}

MVector MFnCamera::viewDirection(MSpace::Space space, MStatus* ReturnStatus) const {
    return DirectionOf(object_, -MVector::zAxis, space, ReturnStatus);
}
MVector MFnCamera::upDirection(MSpace::Space space, MStatus* ReturnStatus) const {
    return DirectionOf(object_, MVector::yAxis, space, ReturnStatus);
}
MVector MFnCamera::rightDirection(MSpace::Space space, MStatus* ReturnStatus) const {
    return DirectionOf(object_, MVector::xAxis, space, ReturnStatus);
}

bool MFnCamera::isOrtho(MStatus* ReturnStatus) const {
    return NumberOf(object_, "orthographic", ReturnStatus) != 0.0;
}
double MFnCamera::orthoWidth(MStatus* ReturnStatus) const {
    return NumberOf(object_, "orthographicWidth", ReturnStatus);
}

MFnCamera::FilmFit MFnCamera::filmFit(MStatus* ReturnStatus) const {
    MStatus status;
    const int fit = static_cast<int>(NumberOf(object_, "filmFit", &status));
    ApiBridge::Report(ReturnStatus, status);
    return status && fit >= kFillFilmFit && fit < kInvalid ? static_cast<FilmFit>(fit) : kInvalid;
}

double MFnCamera::filmFitOffset(MStatus* ReturnStatus) const {
    return NumberOf(object_, "filmFitOffset", ReturnStatus);
}
double MFnCamera::overscan(MStatus* ReturnStatus) const {
    return NumberOf(object_, "overscan", ReturnStatus);
}

double MFnCamera::aspectRatio(MStatus* ReturnStatus) const {
    const double height = verticalFilmAperture(ReturnStatus);
    return height > 0.0 ? horizontalFilmAperture() * lensSqueezeRatio() / height : 1.0;
}

double MFnCamera::horizontalFilmAperture(MStatus* ReturnStatus) const {
    return NumberOf(object_, "horizontalFilmAperture", ReturnStatus);
}
double MFnCamera::verticalFilmAperture(MStatus* ReturnStatus) const {
    return NumberOf(object_, "verticalFilmAperture", ReturnStatus);
}
double MFnCamera::horizontalFilmOffset(MStatus* ReturnStatus) const {
    return NumberOf(object_, "horizontalFilmOffset", ReturnStatus);
}
double MFnCamera::verticalFilmOffset(MStatus* ReturnStatus) const {
    return NumberOf(object_, "verticalFilmOffset", ReturnStatus);
}
double MFnCamera::lensSqueezeRatio(MStatus* ReturnStatus) const {
    return NumberOf(object_, "lensSqueezeRatio", ReturnStatus);
}
double MFnCamera::cameraScale(MStatus* ReturnStatus) const {
    return NumberOf(object_, "cameraScale", ReturnStatus);
}
double MFnCamera::focalLength(MStatus* ReturnStatus) const {
    return NumberOf(object_, "focalLength", ReturnStatus);
}
double MFnCamera::nearClippingPlane(MStatus* ReturnStatus) const {
    return NumberOf(object_, "nearClipPlane", ReturnStatus);
}
double MFnCamera::farClippingPlane(MStatus* ReturnStatus) const {
    return NumberOf(object_, "farClipPlane", ReturnStatus);
}
bool MFnCamera::panZoomEnabled(MStatus* ReturnStatus) const {
    return NumberOf(object_, "panZoomEnabled", ReturnStatus) != 0.0;
}
double MFnCamera::horizontalPan(MStatus* ReturnStatus) const {
    return NumberOf(object_, "horizontalPan", ReturnStatus);
}
double MFnCamera::verticalPan(MStatus* ReturnStatus) const {
    return NumberOf(object_, "verticalPan", ReturnStatus);
}
double MFnCamera::zoom(MStatus* ReturnStatus) const {
    return NumberOf(object_, "zoom", ReturnStatus);
}
