#include "mel/ArgumentTokens.h"
#include "openmaya/ApiBridge.h"

#include <maya/MArgList.h>
#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MStringArray.h>
#include <maya/MTime.h>

#include <utility>

using lightbox::ApiBridge;
using lightbox::mel::ArgumentTokens;
using lightbox::mel::Value;

namespace {

MStatus Missing() {
    return ApiBridge::Fail(MS::kInvalidParameter, "There is no argument at that index.");
}

MStatus WrongType(const char* expected) {
    return ApiBridge::Fail(MS::kInvalidParameter, std::string("The argument is not ") + expected + ".");
}

/// Reads one argument with a conversion function.
template <class T>
T Read(const ArgumentTokens& tokens, unsigned int index, bool (*read)(const Value&, T&), const char* expected,
       MStatus* status) {
    T result = T();
    if (index >= tokens.Count()) {
        ApiBridge::Report(status, Missing());
    } else if (!read(tokens.At(index), result)) {
        ApiBridge::Report(status, WrongType(expected));
        result = T();
    } else {
        ApiBridge::Report(status, MS::kSuccess);
    }
    return result;
}

/// Reads the arguments up to the next flag.
template <class Array, class T>
Array ReadArray(const ArgumentTokens& tokens, unsigned int& index, bool (*read)(const Value&, T&),
                const char* expected, MStatus* status) {
    Array array;
    MStatus outcome = index < tokens.Count() ? MStatus() : Missing();
    while (index < tokens.Count() && !lightbox::mel::LooksLikeFlag(tokens.At(index))) {
        T element = T();
        if (!read(tokens.At(index), element)) {
            outcome = WrongType(expected);
            ++index;
            break;
        }
        array.append(element);
        ++index;
    }
    ApiBridge::Report(status, outcome);
    return array;
}

/// Reads the argument at the index and advances the index. Stores the value only if that succeeds.
template <class T>
MStatus Take(const MArgList& list, unsigned int& index, T (MArgList::*read)(unsigned int, MStatus*) const,
             T& value) {
    MStatus status;
    T taken = (list.*read)(index++, &status);
    if (status) {
        value = std::move(taken);
    }
    return status;
}

} // namespace

MArgList::MArgList()
    : tokens_(std::make_unique<ArgumentTokens>()) {}

MArgList::MArgList(const MArgList& other)
    : tokens_(std::make_unique<ArgumentTokens>(*other.tokens_)) {}

MArgList& MArgList::operator=(const MArgList& other) {
    *tokens_ = *other.tokens_;
    return *this;
}

MArgList::~MArgList() = default;

unsigned int MArgList::length(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return static_cast<unsigned int>(tokens_->Count());
}

bool MArgList::asBool(unsigned int index, MStatus* ReturnStatus) const {
    return Read<bool>(*tokens_, index, lightbox::mel::ReadBool, "a boolean", ReturnStatus);
}

int MArgList::asInt(unsigned int index, MStatus* ReturnStatus) const {
    return Read<int>(*tokens_, index, lightbox::mel::ReadInt, "a number", ReturnStatus);
}

double MArgList::asDouble(unsigned int index, MStatus* ReturnStatus) const {
    return Read<double>(*tokens_, index, lightbox::mel::ReadDouble, "a number", ReturnStatus);
}

MString MArgList::asString(unsigned int index, MStatus* ReturnStatus) const {
    return Read<MString>(*tokens_, index, ApiBridge::ReadString, "a string", ReturnStatus);
}

MTime MArgList::asTime(unsigned int index, MStatus* ReturnStatus) const {
    return Read<MTime>(*tokens_, index, lightbox::mel::ReadTime, "a time", ReturnStatus);
}

MIntArray MArgList::asIntArray(unsigned int& index, MStatus* ReturnStatus) const {
    return ReadArray<MIntArray, int>(*tokens_, index, lightbox::mel::ReadInt, "a number", ReturnStatus);
}

MDoubleArray MArgList::asDoubleArray(unsigned int& index, MStatus* ReturnStatus) const {
    return ReadArray<MDoubleArray, double>(*tokens_, index, lightbox::mel::ReadDouble, "a number",
                                           ReturnStatus);
}

MStringArray MArgList::asStringArray(unsigned int& index, MStatus* ReturnStatus) const {
    return ReadArray<MStringArray, MString>(*tokens_, index, ApiBridge::ReadString, "a string", ReturnStatus);
}

MStatus MArgList::get(unsigned int& index, bool& value) const {
    return Take(*this, index, &MArgList::asBool, value);
}

MStatus MArgList::get(unsigned int& index, int& value) const {
    return Take(*this, index, &MArgList::asInt, value);
}

MStatus MArgList::get(unsigned int& index, double& value) const {
    return Take(*this, index, &MArgList::asDouble, value);
}

MStatus MArgList::get(unsigned int& index, MString& value) const {
    return Take(*this, index, &MArgList::asString, value);
}

MStatus MArgList::get(unsigned int& index, MTime& value) const {
    return Take(*this, index, &MArgList::asTime, value);
}

MStatus MArgList::get(unsigned int& index, MIntArray& value) const {
    MStatus status;
    value = asIntArray(index, &status);
    return status;
}

MStatus MArgList::get(unsigned int& index, MDoubleArray& value) const {
    MStatus status;
    value = asDoubleArray(index, &status);
    return status;
}

MStatus MArgList::get(unsigned int& index, MStringArray& value) const {
    MStatus status;
    value = asStringArray(index, &status);
    return status;
}

MStatus MArgList::addArg(const bool& value) {
    tokens_->Add(value);
    return MS::kSuccess;
}

MStatus MArgList::addArg(const int& value) {
    tokens_->Add(value);
    return MS::kSuccess;
}

MStatus MArgList::addArg(const double& value) {
    tokens_->Add(value);
    return MS::kSuccess;
}

MStatus MArgList::addArg(const MString& value) {
    tokens_->Add(ApiBridge::Text(value));
    return MS::kSuccess;
}

MStatus MArgList::addArg(const MTime& value) {
    tokens_->Add(value.as(MTime::uiUnit()));
    return MS::kSuccess;
}

unsigned int MArgList::flagIndex(const char* shortFlag, const char* longFlag) const {
    const auto bare = [](std::string_view name) { return name.substr(!name.empty() && name[0] == '-'); };
    for (std::size_t i = 0; i < tokens_->Count(); ++i) {
        if (!lightbox::mel::LooksLikeFlag(tokens_->At(i))) {
            continue;
        }
        const std::string_view name = bare(tokens_->At(i).Text());
        if ((shortFlag && name == bare(shortFlag)) || (longFlag && name == bare(longFlag))) {
            return static_cast<unsigned int>(i);
        }
    }
    return kInvalidArgIndex;
}
