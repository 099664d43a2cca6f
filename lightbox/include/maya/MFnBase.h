#pragma once

#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

/// Base of the function sets. Holds the object that the set works on, and refuses an object of another type.
class MFnBase {
public:
    virtual ~MFnBase();

    virtual MFn::Type type() const;
    bool hasObj(MFn::Type type) const;
    bool hasObj(const MObject& object) const;
    MObject object(MStatus* ReturnStatus = nullptr) const;
    virtual MStatus setObject(const MObject& object);

protected:
    MFnBase();
    MFnBase(const MFnBase&) = default;
    MFnBase& operator=(const MFnBase&) = default;

    MObject object_;
};
