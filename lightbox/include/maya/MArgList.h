#pragma once

#include <maya/MAngle.h>
#include <maya/MDistance.h>
#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>
#include <maya/MTime.h>
#include <maya/MVector.h>
#include <maya/MVectorArray.h>

#include <memory>

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
    /// A plain number is in the unit of the user interface; a number may have its own unit ("2in", "1rad").
    MDistance asDistance(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    MAngle asAngle(unsigned int index, MStatus* ReturnStatus = nullptr) const;
    /// Read as many numbers as are asked for, at most 3 of a vector and 4 of a point, and move the index past
    /// them. A matrix has 16.
    MVector asVector(unsigned int& index, unsigned int numElements = 3,
                     MStatus* ReturnStatus = nullptr) const;
    MPoint asPoint(unsigned int& index, unsigned int numElements = 3, MStatus* ReturnStatus = nullptr) const;
    MMatrix asMatrix(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    /// The array forms read the arguments from `index` up to the next flag, and move the index past them.
    MIntArray asIntArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    MDoubleArray asDoubleArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    MStringArray asStringArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    MVectorArray asVectorArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;
    MPointArray asPointArray(unsigned int& index, MStatus* ReturnStatus = nullptr) const;

    /// Read one value and move the index past it, even on failure. A failure leaves the value as it is.
    MStatus get(unsigned int& index, bool& value) const;
    MStatus get(unsigned int& index, int& value) const;
    MStatus get(unsigned int& index, unsigned int& value) const;
    MStatus get(unsigned int& index, short& value) const;
    MStatus get(unsigned int& index, float& value) const;
    MStatus get(unsigned int& index, double& value) const;
    MStatus get(unsigned int& index, MString& value) const;
    MStatus get(unsigned int& index, MTime& value) const;
    MStatus get(unsigned int& index, MDistance& value) const;
    MStatus get(unsigned int& index, MAngle& value) const;
    MStatus get(unsigned int& index, MVector& value, unsigned int numElements = 3) const;
    MStatus get(unsigned int& index, MPoint& value, unsigned int numElements = 3) const;
    MStatus get(unsigned int& index, MMatrix& value) const;
    MStatus get(unsigned int& index, MIntArray& value) const;
    MStatus get(unsigned int& index, MDoubleArray& value) const;
    MStatus get(unsigned int& index, MStringArray& value) const;
    MStatus get(unsigned int& index, MVectorArray& value) const;
    MStatus get(unsigned int& index, MPointArray& value) const;

    MStatus addArg(const bool& value);
    MStatus addArg(const int& value);
    MStatus addArg(const double& value);
    MStatus addArg(const MString& value);
    MStatus addArg(const MTime& value);
    MStatus addArg(const MDistance& value);
    MStatus addArg(const MAngle& value);
    /// Add three numbers.
    MStatus addArg(const MVector& value);
    MStatus addArg(const MPoint& value);

    /// The position of a flag, given by its short and long name; kInvalidArgIndex when it is missing.
    unsigned int flagIndex(const char* shortFlag, const char* longFlag = nullptr) const;

private:
    friend class lightbox::mel::ArgumentTokens;

    std::unique_ptr<lightbox::mel::ArgumentTokens> tokens_;
};
