#include "openmaya/ApiBridge.h"
#include "scene/DataType.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <maya/MFnPluginData.h>

using lightbox::ApiBridge;

MFnPluginData::MFnPluginData() = default;

MFnPluginData::MFnPluginData(const MObject& object, MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, MFnBase::setObject(object));
}

MFn::Type MFnPluginData::type() const {
    return MFn::kPluginData;
}

MObject MFnPluginData::create(const MTypeId& id, MStatus* ReturnStatus) {
    const auto type = lightbox::Host::Get().scene().types().FindDataType(id.id());
    const auto value = type ? lightbox::TypeRegistry::MakeData(type) : nullptr;
    object_ = ApiBridge::Wrap(value);
    ApiBridge::Report(ReturnStatus, value ? MS::kSuccess : MS::kFailure);
    return object_;
}

MTypeId MFnPluginData::typeId(MStatus* ReturnStatus) const {
    const auto value = ApiBridge::GetData(object_);
    ApiBridge::Report(ReturnStatus, value ? MS::kSuccess : MS::kFailure);
    return MTypeId(value ? value->Type()->id : 0);
}

MPxData* MFnPluginData::data(MStatus* ReturnStatus) const {
    const auto value = ApiBridge::GetData(object_);
    ApiBridge::Report(ReturnStatus, value ? MS::kSuccess : MS::kFailure);
    return value ? &value->Data() : nullptr;
}

const MPxData* MFnPluginData::constData(MStatus* ReturnStatus) const {
    return data(ReturnStatus);
}
