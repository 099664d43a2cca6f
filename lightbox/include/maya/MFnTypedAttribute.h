#pragma once

#include <maya/MFnAttribute.h>
#include <maya/MFnData.h>
#include <maya/MTypeId.h>

/// Function set of attributes that hold a data value.
class MFnTypedAttribute : public MFnAttribute {
public:
    MFnTypedAttribute();
    explicit MFnTypedAttribute(const MObject& object, MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;

    /// An attribute of a plug-in's own data type.
    MObject create(const MString& fullName, const MString& briefName, const MTypeId& id,
                   const MObject& defaultData = MObject::kNullObj, MStatus* ReturnStatus = nullptr);
    MObject create(const MString& fullName, const MString& briefName, MFnData::Type type,
                   const MObject& defaultData = MObject::kNullObj, MStatus* ReturnStatus = nullptr);
    MFnData::Type attrType(MStatus* ReturnStatus = nullptr) const;
};
