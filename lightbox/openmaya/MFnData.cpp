#include "openmaya/ApiBridge.h"

#include <maya/MFnData.h>

MFnData::MFnData() = default;

MFnData::MFnData(const MObject& object, MStatus* ReturnStatus) {
    lightbox::ApiBridge::Report(ReturnStatus, MFnBase::setObject(object));
}

MFn::Type MFnData::type() const {
    return MFn::kData;
}
