#pragma once

#include <maya/MStatus.h>
#include <maya/MString.h>

#include <memory>

class MDoubleArray;
class MIntArray;
class MStringArray;
class MTime;

namespace lightbox {
namespace mel {
class ArgumentTokens;
}
} // namespace lightbox

/// The arguments of a command, or the tokens of an attribute's data in a scene file, in their order. A text
/// that reads as a number is taken where a number is asked for; what cannot be converted fails with
/// MS::kInvalidParameter, an index beyond the end likewise.
class MArgList {
public:
    enum { kInvalidArgIndex = 0xFFFFFFFF };

    MArgList();
    MArgList(const MArgList& other);
    MArgList& operator=(const MArgList& other);
    ~MArgList();

    unsigned int length(MStatus* ReturnStatus = nullptr) const;

    bool asBool(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    int asInt(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    double asDouble(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MString asString(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    /// A plain number counts in the current UI time unit; a number with a unit ("2sec") is taken as such.
    MTime asTime(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    /// The array forms take every argument from `index` on up to the next flag, and move the index behind
    /// them.
    MIntArray asIntArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    MDoubleArray asDoubleArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    MStringArray asStringArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;

    /// Reads one argument and moves the index behind it, also when the reading fails.
    MStatus get(unsigned int& index, bool& value) const;
    MStatus get(unsigned int& index, int& value) const;
    MStatus get(unsigned int& index, double& value) const;
    MStatus get(unsigned int& index, MString& value) const;
    MStatus get(unsigned int& index, MTime& value) const;
    MStatus get(unsigned int& index, MIntArray& value) const;
    MStatus get(unsigned int& index, MDoubleArray& value) const;
    MStatus get(unsigned int& index, MStringArray& value) const;

    MStatus addArg(const bool& value);
    MStatus addArg(const int& value);
    MStatus addArg(const double& value);
    MStatus addArg(const MString& value);
    MStatus addArg(const MTime& value);

    /// Position of a flag given by its short and long name, kInvalidArgIndex when it is not there.
    unsigned int flagIndex(const char* shortFlag, const char* longFlag = nullptr) const;

private:
    friend class lightbox::mel::ArgumentTokens;

    std::unique_ptr<lightbox::mel::ArgumentTokens> tokens_;
};
