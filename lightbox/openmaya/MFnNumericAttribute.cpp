#include "openmaya/ApiBridge.h"

#include <maya/MFnNumericAttribute.h>

#include <optional>

using lightbox::ApiBridge;
using lightbox::Attribute;
using lightbox::AttributeKind;

namespace {

struct NumericRow {
    MFnNumericData::Type type;
    AttributeKind kind;
    unsigned count;
};

const NumericRow NUMERIC[] = {
    {MFnNumericData::kBoolean, AttributeKind::Bool, 1},
    {MFnNumericData::kByte, AttributeKind::Byte, 1},
    {MFnNumericData::kChar, AttributeKind::Char, 1},
    {MFnNumericData::kShort, AttributeKind::Short, 1},
    {MFnNumericData::k2Short, AttributeKind::Short, 2},
    {MFnNumericData::k3Short, AttributeKind::Short, 3},
    {MFnNumericData::kLong, AttributeKind::Long, 1},
    {MFnNumericData::k2Long, AttributeKind::Long, 2},
    {MFnNumericData::k3Long, AttributeKind::Long, 3},
    {MFnNumericData::kInt64, AttributeKind::Int64, 1},
    {MFnNumericData::kFloat, AttributeKind::Float, 1},
    {MFnNumericData::k2Float, AttributeKind::Float, 2},
    {MFnNumericData::k3Float, AttributeKind::Float, 3},
    {MFnNumericData::kDouble, AttributeKind::Double, 1},
    {MFnNumericData::k2Double, AttributeKind::Double, 2},
    {MFnNumericData::k3Double, AttributeKind::Double, 3},
    {MFnNumericData::k4Double, AttributeKind::Double, 4},
};

MStatus SetLimit(const MObject& object, std::optional<double> Attribute::*limit, double value) {
    const auto attribute = ApiBridge::GetAttribute(object);
    if (!attribute) {
        return MS::kFailure;
    }
    (*attribute).*limit = value;
    for (const auto& child : attribute->Children()) {
        (*child).*limit = value;
    }
    return MS::kSuccess;
}

MStatus GetLimit(const MObject& object, std::optional<double> Attribute::*limit, double& value) {
    const auto attribute = ApiBridge::GetAttribute(object);
    if (!attribute || !((*attribute).*limit)) {
        return MS::kFailure;
    }
    value = *((*attribute).*limit);
    return MS::kSuccess;
}

bool HasLimit(const MObject& object, std::optional<double> Attribute::*limit, MStatus* status) {
    const auto attribute = ApiBridge::GetAttribute(object);
    ApiBridge::Report(status, attribute ? MS::kSuccess : MS::kFailure);
    return attribute && (*attribute).*limit;
}

} // namespace

MFnNumericAttribute::MFnNumericAttribute() = default;

MFnNumericAttribute::MFnNumericAttribute(const MObject& object, MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, MFnBase::setObject(object));
}

MFn::Type MFnNumericAttribute::type() const {
    return MFn::kNumericAttribute;
}

MObject MFnNumericAttribute::create(const MString& fullName, const MString& briefName,
                                    MFnNumericData::Type type, double defaultValue, MStatus* ReturnStatus) {
    object_ = MObject();
    const std::string& longName = ApiBridge::Text(fullName);
    const std::string& shortName = ApiBridge::Text(briefName);
    for (const NumericRow& row : NUMERIC) {
        if (row.type != type || longName.empty()) {
            continue;
        }
        if (row.count == 1) {
            const auto attribute = std::make_shared<Attribute>(longName, shortName, row.kind);
            attribute->defaultValue = defaultValue;
            object_ = ApiBridge::Wrap(attribute);
        } else {
            std::vector<std::string> suffixes;
            for (unsigned i = 0; i < row.count; ++i) {
                suffixes.push_back(std::to_string(i));
            }
            object_ = ApiBridge::Wrap(lightbox::MakeNumericCompound(longName, shortName, row.kind, suffixes,
                                                                    suffixes, defaultValue));
        }
    }
    ApiBridge::Report(ReturnStatus, object_.isNull() ? MS::kInvalidParameter : MS::kSuccess);
    return object_;
}

MFnNumericData::Type MFnNumericAttribute::unitType(MStatus* ReturnStatus) const {
    const auto attribute = ApiBridge::GetAttribute(object_);
    ApiBridge::Report(ReturnStatus, attribute ? MS::kSuccess : MS::kFailure);
    if (!attribute) {
        return MFnNumericData::kInvalid;
    }
    const std::size_t count = attribute->IsCompound() ? attribute->Children().size() : 1;
    const AttributeKind kind =
        attribute->IsNumericCompound() ? attribute->Children().front()->Kind() : attribute->Kind();
    for (const NumericRow& row : NUMERIC) {
        if (row.kind == kind && row.count == count) {
            return row.type;
        }
    }
    return MFnNumericData::kInvalid;
}

bool MFnNumericAttribute::hasMin(MStatus* status) const {
    return HasLimit(object_, &Attribute::minimum, status);
}
bool MFnNumericAttribute::hasMax(MStatus* status) const {
    return HasLimit(object_, &Attribute::maximum, status);
}
MStatus MFnNumericAttribute::getMin(double& minValue) const {
    return GetLimit(object_, &Attribute::minimum, minValue);
}
MStatus MFnNumericAttribute::getMax(double& maxValue) const {
    return GetLimit(object_, &Attribute::maximum, maxValue);
}
MStatus MFnNumericAttribute::setMin(double minValue) {
    return SetLimit(object_, &Attribute::minimum, minValue);
}
MStatus MFnNumericAttribute::setMax(double maxValue) {
    return SetLimit(object_, &Attribute::maximum, maxValue);
}
MStatus MFnNumericAttribute::setSoftMin(double minValue) {
    return SetLimit(object_, &Attribute::softMinimum, minValue);
}
MStatus MFnNumericAttribute::setSoftMax(double maxValue) {
    return SetLimit(object_, &Attribute::softMaximum, maxValue);
}

MStatus MFnNumericAttribute::getDefault(double& def) const {
    const auto attribute = ApiBridge::GetAttribute(object_);
    if (!attribute || !attribute->IsNumber()) {
        return MS::kFailure;
    }
    def = std::get<double>(attribute->Default());
    return MS::kSuccess;
}

MStatus MFnNumericAttribute::setDefault(double def) {
    const auto attribute = ApiBridge::GetAttribute(object_);
    if (!attribute || !attribute->IsNumber()) {
        return MS::kFailure;
    }
    attribute->defaultValue = def;
    return MS::kSuccess;
}
