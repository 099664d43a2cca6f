#pragma once

#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

#include <iosfwd>

/// Base class of plug-in data types. The host makes values with the registered creator and copies them with
/// copy(); values write themselves to scene files and read themselves back.
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
