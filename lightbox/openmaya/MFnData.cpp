#include "openmaya/Access.h"

#include <maya/MFnData.h>

MFnData::MFnData() = default;

MFnData::MFnData(const MObject& object, MStatus* ReturnStatus) {
    lightbox::Access::Report(ReturnStatus, MFnBase::setObject(object));
}

MFn::Type MFnData::type() const {
    return MFn::kData;
}
