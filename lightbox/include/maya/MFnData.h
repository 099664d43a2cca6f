#pragma once

#include <maya/MFnBase.h>

/// Function set of data values.
class MFnData : public MFnBase {
public:
    enum Type {
        kInvalid = 0,
        kNumeric,
        kPlugin,
        kPluginGeometry,
        kString,
        kMatrix,
        kStringArray,
        kDoubleArray,
        kFloatArray,
        kIntArray,
        kPointArray,
        kVectorArray,
        kMatrixArray,
        kComponentList,
        kMesh,
        kLattice,
        kNurbsCurve,
        kNurbsSurface,
        kSphere,
        kDynArrayAttrs,
        kDynSweptGeometry,
        kSubdSurface,
        kNObject,
        kNId,
        kAny,
        kLast
    };

    MFnData();
    explicit MFnData(const MObject& object, MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;
};
