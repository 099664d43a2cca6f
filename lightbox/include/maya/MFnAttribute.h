#pragma once

#include <maya/MFnBase.h>
#include <maya/MString.h>

/// Function set of all attributes.
class MFnAttribute : public MFnBase {
public:
    MFnAttribute();
    explicit MFnAttribute(const MObject& object, MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;

    MString name(MStatus* ReturnStatus = nullptr) const;
    MString shortName(MStatus* ReturnStatus = nullptr) const;

    bool isReadable(MStatus* ReturnStatus = nullptr) const;
    bool isWritable(MStatus* ReturnStatus = nullptr) const;
    bool isConnectable(MStatus* ReturnStatus = nullptr) const;
    bool isStorable(MStatus* ReturnStatus = nullptr) const;
    bool isKeyable(MStatus* ReturnStatus = nullptr) const;
    bool isHidden(MStatus* ReturnStatus = nullptr) const;
    bool isChannelBoxFlagSet(MStatus* ReturnStatus = nullptr) const;
    bool isArray(MStatus* ReturnStatus = nullptr) const;
    bool isDynamic(MStatus* ReturnStatus = nullptr) const;
    MObject parent(MStatus* ReturnStatus = nullptr) const;

    MStatus setReadable(bool state);
    MStatus setWritable(bool state);
    MStatus setConnectable(bool state);
    MStatus setStorable(bool state);
    MStatus setKeyable(bool state);
    MStatus setHidden(bool state);
    MStatus setChannelBox(bool state);
    MStatus setArray(bool state);
    MStatus setNiceNameOverride(const MString& localizedName);
};
