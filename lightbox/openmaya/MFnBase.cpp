#include "openmaya/ApiBridge.h"

#include <maya/MFnBase.h>

using lightbox::ApiBridge;

MFnBase::MFnBase() = default;
MFnBase::~MFnBase() = default;

MFn::Type MFnBase::type() const {
    return MFn::kBase;
}

bool MFnBase::hasObj(MFn::Type type) const {
    return object_.hasFn(type);
}

bool MFnBase::hasObj(const MObject& object) const {
    return object.hasFn(type());
}

MObject MFnBase::object(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, object_.isNull() ? MS::kFailure : MS::kSuccess);
    return object_;
}

MStatus MFnBase::setObject(const MObject& object) {
    if (!object.hasFn(type())) {
        return ApiBridge::Fail(MS::kInvalidParameter, "Object is incompatible with this method");
    }
    object_ = object;
    return MS::kSuccess;
}
