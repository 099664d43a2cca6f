#include "mel/ArgumentTokens.h"
#include "openmaya/ApiBridge.h"

#include <maya/MArgList.h>

#include <algorithm>
#include <limits>
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

/// Reads numbers from the index on and moves the index past them. Stores them only if all are there.
MStatus ReadNumbers(const ArgumentTokens& tokens, unsigned int& index, unsigned int count, double* numbers) {
    constexpr unsigned int longest = 16;
    const unsigned int first = index;
    double read[longest] = {};
    index = static_cast<unsigned int>(std::min(static_cast<std::size_t>(first) + count, tokens.Count()));
    if (count > longest || index - first < count) {
        return Missing();
    }
    for (unsigned int i = 0; i < count; ++i) {
        if (!lightbox::mel::ReadDouble(tokens.At(first + i), read[i])) {
            return WrongType("a number");
        }
    }
    std::copy(read, read + count, numbers);
    return MS::kSuccess;
}

/// Reads triples of numbers up to the next flag.
template <class Array, class Element>
Array ReadTriples(const ArgumentTokens& tokens, unsigned int& index, MStatus* status) {
    Array array;
    MStatus outcome = index < tokens.Count() ? MStatus() : Missing();
    while (outcome && index < tokens.Count() && !lightbox::mel::LooksLikeFlag(tokens.At(index))) {
        double numbers[3] = {};
        outcome = ReadNumbers(tokens, index, 3, numbers);
        if (outcome) {
            array.append(Element(numbers[0], numbers[1], numbers[2]));
        }
    }
    ApiBridge::Report(status, outcome);
    return array;
}

/// Reads a number of another type at the index and advances the index. Stores it only if it fits.
template <class T>
MStatus TakeNumber(const MArgList& list, unsigned int& index, T& value) {
    MStatus status;
    const double number = list.asDouble(index++, &status);
    if (!status) {
        return status;
    }
    // A fraction is cut off.
    if (!(number > static_cast<double>(std::numeric_limits<T>::lowest()) - 1.0 &&
          number < static_cast<double>(std::numeric_limits<T>::max()) + 1.0)) {
        return WrongType("a number that fits");
    }
    value = static_cast<T>(number);
    return status;
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

template <class Array>
MStatus TakeArray(const MArgList& list, unsigned int& index,
                  Array (MArgList::*read)(unsigned int&, MStatus*) const, Array& value) {
    MStatus status;
    Array taken = (list.*read)(index, &status);
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

MDistance MArgList::asDistance(unsigned int index, MStatus* ReturnStatus) const {
    return Read<MDistance>(*tokens_, index, ApiBridge::ReadDistance, "a length", ReturnStatus);
}

MAngle MArgList::asAngle(unsigned int index, MStatus* ReturnStatus) const {
    return Read<MAngle>(*tokens_, index, ApiBridge::ReadAngle, "an angle", ReturnStatus);
}

MVector MArgList::asVector(unsigned int& index, unsigned int numElements, MStatus* ReturnStatus) const {
    MVector value;
    ApiBridge::Report(ReturnStatus, get(index, value, numElements));
    return value;
}

MPoint MArgList::asPoint(unsigned int& index, unsigned int numElements, MStatus* ReturnStatus) const {
    MPoint value;
    ApiBridge::Report(ReturnStatus, get(index, value, numElements));
    return value;
}

MMatrix MArgList::asMatrix(unsigned int& index, MStatus* ReturnStatus) const {
    MMatrix value;
    ApiBridge::Report(ReturnStatus, get(index, value));
    return value;
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

MVectorArray MArgList::asVectorArray(unsigned int& index, MStatus* ReturnStatus) const {
    return ReadTriples<MVectorArray, MVector>(*tokens_, index, ReturnStatus);
}

MPointArray MArgList::asPointArray(unsigned int& index, MStatus* ReturnStatus) const {
    return ReadTriples<MPointArray, MPoint>(*tokens_, index, ReturnStatus);
}

MStatus MArgList::get(unsigned int& index, bool& value) const {
    return Take(*this, index, &MArgList::asBool, value);
}

MStatus MArgList::get(unsigned int& index, int& value) const {
    return Take(*this, index, &MArgList::asInt, value);
}

MStatus MArgList::get(unsigned int& index, unsigned int& value) const {
    return TakeNumber(*this, index, value);
}

MStatus MArgList::get(unsigned int& index, short& value) const {
    return TakeNumber(*this, index, value);
}

MStatus MArgList::get(unsigned int& index, float& value) const {
    return TakeNumber(*this, index, value);
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

MStatus MArgList::get(unsigned int& index, MDistance& value) const {
    return Take(*this, index, &MArgList::asDistance, value);
}

MStatus MArgList::get(unsigned int& index, MAngle& value) const {
    return Take(*this, index, &MArgList::asAngle, value);
}

MStatus MArgList::get(unsigned int& index, MVector& value, unsigned int numElements) const {
    double numbers[3] = {};
    MStatus status = ReadNumbers(*tokens_, index, std::min(numElements, 3u), numbers);
    if (status) {
        value = MVector(numbers);
    }
    return status;
}

MStatus MArgList::get(unsigned int& index, MPoint& value, unsigned int numElements) const {
    double numbers[4] = {0.0, 0.0, 0.0, 1.0};
    MStatus status = ReadNumbers(*tokens_, index, std::min(numElements, 4u), numbers);
    if (status) {
        value = MPoint(numbers);
    }
    return status;
}

MStatus MArgList::get(unsigned int& index, MMatrix& value) const {
    return ReadNumbers(*tokens_, index, 16, &value.matrix[0][0]);
}

MStatus MArgList::get(unsigned int& index, MIntArray& value) const {
    return TakeArray(*this, index, &MArgList::asIntArray, value);
}

MStatus MArgList::get(unsigned int& index, MDoubleArray& value) const {
    return TakeArray(*this, index, &MArgList::asDoubleArray, value);
}

MStatus MArgList::get(unsigned int& index, MStringArray& value) const {
    return TakeArray(*this, index, &MArgList::asStringArray, value);
}

MStatus MArgList::get(unsigned int& index, MVectorArray& value) const {
    return TakeArray(*this, index, &MArgList::asVectorArray, value);
}

MStatus MArgList::get(unsigned int& index, MPointArray& value) const {
    return TakeArray(*this, index, &MArgList::asPointArray, value);
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

MStatus MArgList::addArg(const MDistance& value) {
    tokens_->Add(value.as(MDistance::uiUnit()));
    return MS::kSuccess;
}

MStatus MArgList::addArg(const MAngle& value) {
    tokens_->Add(value.as(MAngle::uiUnit()));
    return MS::kSuccess;
}

MStatus MArgList::addArg(const MVector& value) {
    for (unsigned int i = 0; i < 3; ++i) {
        tokens_->Add(value[i]);
    }
    return MS::kSuccess;
}

MStatus MArgList::addArg(const MPoint& value) {
    MPoint place = value;
    return addArg(MVector(place.cartesianize()));
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
