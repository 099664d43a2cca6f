#include "openmaya/ApiBridge.h"
#include "scene/DataType.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <maya/MFnTypedAttribute.h>

using lightbox::ApiBridge;
using lightbox::Attribute;
using lightbox::AttributeKind;

namespace {

struct TypedRow {
    MFnData::Type type;
    AttributeKind kind;
};

const TypedRow TYPED[] = {
    {MFnData::kString, AttributeKind::String},           {MFnData::kMatrix, AttributeKind::Matrix},
    {MFnData::kStringArray, AttributeKind::StringArray}, {MFnData::kDoubleArray, AttributeKind::DoubleArray},
    {MFnData::kIntArray, AttributeKind::IntArray},       {MFnData::kPointArray, AttributeKind::PointArray},
    {MFnData::kVectorArray, AttributeKind::VectorArray}, {MFnData::kPlugin, AttributeKind::PluginData},
};

} // namespace

MFnTypedAttribute::MFnTypedAttribute() = default;

MFnTypedAttribute::MFnTypedAttribute(const MObject& object, MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, MFnBase::setObject(object));
}

MFn::Type MFnTypedAttribute::type() const {
    return MFn::kTypedAttribute;
}

MObject MFnTypedAttribute::create(const MString& fullName, const MString& briefName, const MTypeId& id,
                                  const MObject& defaultData, MStatus* ReturnStatus) {
    object_ = MObject();
    const auto type = lightbox::Host::Get().scene().types().FindDataType(id.id());
    if (!type || fullName.length() == 0) {
        ApiBridge::Report(ReturnStatus,
                          ApiBridge::Fail(MS::kInvalidParameter, "The data type is not registered"));
        return object_;
    }
    const auto attribute = std::make_shared<Attribute>(ApiBridge::Text(fullName), ApiBridge::Text(briefName),
                                                       AttributeKind::PluginData);
    attribute->dataTypeId = type->id;
    attribute->dataTypeName = type->name;
    if (const auto data = ApiBridge::GetData(defaultData)) {
        attribute->defaultValue = data;
    }
    object_ = ApiBridge::Wrap(attribute);
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return object_;
}

MObject MFnTypedAttribute::create(const MString& fullName, const MString& briefName, MFnData::Type type,
                                  const MObject&, MStatus* ReturnStatus) {
    object_ = MObject();
    for (const TypedRow& row : TYPED) {
        // A plug-in's type is given by its id, not by kPlugin.
        if (row.type == type && type != MFnData::kPlugin && fullName.length() > 0) {
            object_ = ApiBridge::Wrap(
                std::make_shared<Attribute>(ApiBridge::Text(fullName), ApiBridge::Text(briefName), row.kind));
        }
    }
    ApiBridge::Report(ReturnStatus, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
    return object_;
}

MFnData::Type MFnTypedAttribute::attrType(MStatus* ReturnStatus) const {
    const auto attribute = ApiBridge::GetAttribute(object_);
    ApiBridge::Report(ReturnStatus, attribute ? MS::kSuccess : MS::kFailure);
    for (const TypedRow& row : TYPED) {
        if (attribute && row.kind == attribute->Kind()) {
            return row.type;
        }
    }
    return MFnData::kInvalid;
}
