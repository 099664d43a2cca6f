#pragma once

#include <maya/MFnData.h>
#include <maya/MTypeId.h>

/// Function set of values of a plug-in's own data type.
class MFnPluginData : public MFnData {
public:
    MFnPluginData();
    explicit MFnPluginData(const MObject& object, MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;

    /// Makes a new value with the type's registered creator; null when no such type is registered.
    MObject create(const MTypeId& id, MStatus* ReturnStatus = nullptr);
    MTypeId typeId(MStatus* ReturnStatus = nullptr) const;
    /// The plug-in's object. The data value owns it.
    MPxData* data(MStatus* ReturnStatus = nullptr) const;
    const MPxData* constData(MStatus* ReturnStatus = nullptr) const;
};
