#pragma once

#include <maya/MStatus.h>

#include <memory>

class MDoubleArray;
class MIntArray;
class MString;
class MStringArray;

namespace lightbox {
namespace mel {
class Value;
}
} // namespace lightbox

/// The result of a command line, with its type. A getter for another type fails and leaves its argument
/// unchanged.
class MCommandResult {
public:
    enum Type {
        kInvalid = 0,
        kInt,
        kInt64,
        kIntArray,
        kDouble,
        kDoubleArray,
        kString,
        kStringArray,
        kVector,
        kVectorArray,
        kMatrix,
        kMatrixArray,
        kNumTypes
    };

    explicit MCommandResult(MStatus* ReturnStatus = nullptr);
    MCommandResult(const MCommandResult& other);
    MCommandResult& operator=(const MCommandResult& other);
    ~MCommandResult();

    Type resultType(MStatus* ReturnStatus = nullptr) const;
    MStatus getResult(int& result) const;
    MStatus getResult(MIntArray& result) const;
    MStatus getResult(double& result) const;
    MStatus getResult(MDoubleArray& result) const;
    MStatus getResult(MString& result) const;
    MStatus getResult(MStringArray& result) const;
    /// The result as text, whatever its type.
    MString stringResult(MStatus* ReturnStatus = nullptr) const;

private:
    friend class MGlobal;

    /// Called by MGlobal.
    void setValue(const lightbox::mel::Value& newValue);

    std::unique_ptr<lightbox::mel::Value> value_;
};
