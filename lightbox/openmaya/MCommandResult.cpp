#include "mel/Value.h"
#include "openmaya/ApiBridge.h"

#include <maya/MCommandResult.h>
#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

using lightbox::ApiBridge;
using lightbox::mel::Value;

namespace {

template <class Array, class Source>
void Fill(Array& result, const Source& source) {
    result.clear();
    for (const auto& element : source) {
        result.append(element);
    }
}

MStatus OtherType() {
    return ApiBridge::Fail(MS::kInvalidParameter, "The result is of another type.");
}

} // namespace

MCommandResult::MCommandResult(MStatus* ReturnStatus)
    : value_(std::make_unique<Value>()) {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
}

MCommandResult::MCommandResult(const MCommandResult& other)
    : value_(std::make_unique<Value>(*other.value_)) {}

MCommandResult& MCommandResult::operator=(const MCommandResult& other) {
    *value_ = *other.value_;
    return *this;
}

MCommandResult::~MCommandResult() = default;

void MCommandResult::setValue(const Value& newValue) {
    *value_ = newValue.Detached();
}

MCommandResult::Type MCommandResult::resultType(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    // In the order of mel::Type.
    static constexpr Type types[] = {kInvalid,     kInt,         kDouble,      kString, kVector, kIntArray,
                                     kDoubleArray, kStringArray, kVectorArray, kMatrix, kInvalid};
    return types[static_cast<int>(value_->GetType())];
}

MStatus MCommandResult::getResult(int& result) const {
    if (resultType() != kInt) {
        return OtherType();
    }
    result = value_->AsInt();
    return MS::kSuccess;
}

MStatus MCommandResult::getResult(MIntArray& result) const {
    if (resultType() != kIntArray) {
        return OtherType();
    }
    Fill(result, value_->Ints());
    return MS::kSuccess;
}

MStatus MCommandResult::getResult(double& result) const {
    if (resultType() != kDouble) {
        return OtherType();
    }
    result = value_->AsFloat();
    return MS::kSuccess;
}

MStatus MCommandResult::getResult(MDoubleArray& result) const {
    if (resultType() != kDoubleArray) {
        return OtherType();
    }
    Fill(result, value_->Floats());
    return MS::kSuccess;
}

MStatus MCommandResult::getResult(MString& result) const {
    if (resultType() != kString) {
        return OtherType();
    }
    result = ApiBridge::Wrap(value_->Text());
    return MS::kSuccess;
}

MStatus MCommandResult::getResult(MStringArray& result) const {
    if (resultType() != kStringArray) {
        return OtherType();
    }
    result.clear();
    for (const std::string& text : value_->Strings()) {
        result.append(ApiBridge::Wrap(text));
    }
    return MS::kSuccess;
}

MString MCommandResult::stringResult(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return ApiBridge::Wrap(value_->Shown());
}
