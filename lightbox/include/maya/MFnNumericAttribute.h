#pragma once

#include <maya/MFnAttribute.h>
#include <maya/MFnNumericData.h>

/// Function set of numeric attributes.
class MFnNumericAttribute : public MFnAttribute {
public:
    MFnNumericAttribute();
    explicit MFnNumericAttribute(const MObject& object, MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;

    /// A type of two to four numbers gets a child for each, named after the attribute with 0, 1, 2 and 3.
    MObject create(const MString& fullName, const MString& briefName, MFnNumericData::Type type,
                   double defaultValue = 0, MStatus* ReturnStatus = nullptr);
    MFnNumericData::Type unitType(MStatus* ReturnStatus = nullptr) const;

    bool hasMin(MStatus* ReturnStatus = nullptr) const;
    bool hasMax(MStatus* ReturnStatus = nullptr) const;
    MStatus getMin(double& minValue) const;
    MStatus getMax(double& maxValue) const;
    MStatus setMin(double minValue);
    MStatus setMax(double maxValue);
    MStatus setSoftMin(double minValue);
    MStatus setSoftMax(double maxValue);
    MStatus getDefault(double& def) const;
    MStatus setDefault(double def);
};
