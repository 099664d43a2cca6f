#pragma once

#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

#include <iosfwd>

/// Base of the data types that plug-ins define. The host makes values with the registered creator, copies
/// them with copy() and has them write and read themselves in scene files.
class MPxData {
public:
    enum Type { kData = 0, kGeometryData, kLast };

    MPxData();
    virtual ~MPxData();

    /// Reads the value from the tokens that writeASCII wrote; lastElement is the next unread token and is
    /// advanced.
    virtual MStatus readASCII(const MArgList& args, unsigned int& lastElement);
    virtual MStatus readBinary(std::istream& in, unsigned int length);
    virtual MStatus writeASCII(std::ostream& out);
    virtual MStatus writeBinary(std::ostream& out);

    virtual void copy(const MPxData& src) = 0;
    virtual MTypeId typeId() const = 0;
    virtual MString name() const = 0;

protected:
    MPxData(const MPxData&) = default;
    MPxData& operator=(const MPxData&) = default;
};
