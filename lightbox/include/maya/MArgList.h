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

/// The arguments of a command, or the tokens of an attribute's data in a scene file, in order. A text that
/// reads as a number counts as a number. A getter fails with MS::kInvalidParameter for an argument that
/// cannot be converted and for an index beyond the end.
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
    /// A plain number is in the current UI time unit; a number may have its own unit ("2sec").
    MTime asTime(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    /// The array forms read the arguments from `index` up to the next flag, and move the index past them.
    MIntArray asIntArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    MDoubleArray asDoubleArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    MStringArray asStringArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;

    /// Reads one argument and moves the index past it, even on failure.
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

    /// The position of a flag, given by its short and long name; kInvalidArgIndex when it is missing.
    unsigned int flagIndex(const char* shortFlag, const char* longFlag = nullptr) const;

private:
    friend class lightbox::mel::ArgumentTokens;

    std::unique_ptr<lightbox::mel::ArgumentTokens> tokens_;
};
