#pragma once

#include <maya/MFnDagNode.h>
#include <maya/MPoint.h>
#include <maya/MSpace.h>
#include <maya/MVector.h>

/// Function set of cameras. Accepts a camera shape, or a transform with one.
class MFnCamera : public MFnDagNode {
public:
    enum FilmFit { kFillFilmFit, kHorizontalFilmFit, kVerticalFilmFit, kOverscanFilmFit, kInvalid };

    MFnCamera();
    explicit MFnCamera(const MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnCamera(const MDagPath& object, MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;

    /// World space needs a DAG path.
    MPoint eyePoint(MSpace::Space space = MSpace::kObject, MStatus* ReturnStatus = nullptr) const;
    MVector viewDirection(MSpace::Space space = MSpace::kObject, MStatus* ReturnStatus = nullptr) const;
    MVector upDirection(MSpace::Space space = MSpace::kObject, MStatus* ReturnStatus = nullptr) const;
    MVector rightDirection(MSpace::Space space = MSpace::kObject, MStatus* ReturnStatus = nullptr) const;

    bool isOrtho(MStatus* ReturnStatus = nullptr) const;
    double orthoWidth(MStatus* ReturnStatus = nullptr) const;
    FilmFit filmFit(MStatus* ReturnStatus = nullptr) const;
    double filmFitOffset(MStatus* ReturnStatus = nullptr) const;
    double overscan(MStatus* ReturnStatus = nullptr) const;
    /// Width divided by height of the film back, lens squeeze included.
    double aspectRatio(MStatus* ReturnStatus = nullptr) const;
    /// Inches, like the film offsets and the pan.
    double horizontalFilmAperture(MStatus* ReturnStatus = nullptr) const;
    double verticalFilmAperture(MStatus* ReturnStatus = nullptr) const;
    double horizontalFilmOffset(MStatus* ReturnStatus = nullptr) const;
    double verticalFilmOffset(MStatus* ReturnStatus = nullptr) const;
    double lensSqueezeRatio(MStatus* ReturnStatus = nullptr) const;
    double cameraScale(MStatus* ReturnStatus = nullptr) const;
    /// Millimetres.
    double focalLength(MStatus* ReturnStatus = nullptr) const;
    double nearClippingPlane(MStatus* ReturnStatus = nullptr) const;
    double farClippingPlane(MStatus* ReturnStatus = nullptr) const;

    // 2D pan and zoom.
    bool panZoomEnabled(MStatus* ReturnStatus = nullptr) const;
    double horizontalPan(MStatus* ReturnStatus = nullptr) const;
    double verticalPan(MStatus* ReturnStatus = nullptr) const;
    double zoom(MStatus* ReturnStatus = nullptr) const;
};
