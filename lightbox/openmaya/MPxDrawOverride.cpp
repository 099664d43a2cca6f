#include <maya/MPxDrawOverride.h>

namespace MHWRender {

MPxDrawOverride::MPxDrawOverride(const MObject&, GeometryDrawOverrideCb, bool) {}

MPxDrawOverride::~MPxDrawOverride() = default;

DrawAPI MPxDrawOverride::supportedDrawAPIs() const {
    return kOpenGL;
}

MMatrix MPxDrawOverride::transform(const MDagPath& objPath, const MDagPath&) const {
    return objPath.inclusiveMatrix();
}

bool MPxDrawOverride::isBounded(const MDagPath&, const MDagPath&) const {
    return true;
}

MBoundingBox MPxDrawOverride::boundingBox(const MDagPath&, const MDagPath&) const {
    return MBoundingBox();
}

bool MPxDrawOverride::hasUIDrawables() const {
    return false;
}

void MPxDrawOverride::addUIDrawables(const MDagPath&, MUIDrawManager&, const MFrameContext&,
                                     const MUserData*) {}

} // namespace MHWRender
