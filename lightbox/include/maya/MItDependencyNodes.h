#pragma once

#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <vector>

/// Visits all nodes of the scene of the filter's type, in the order of their creation.
class MItDependencyNodes {
public:
    MItDependencyNodes(MFn::Type filter = MFn::kInvalid, MStatus* ReturnStatus = nullptr);

    MStatus reset(MFn::Type filter = MFn::kInvalid);
    MStatus next();
    bool isDone(MStatus* ReturnStatus = nullptr) const;
    MObject thisNode(MStatus* ReturnStatus = nullptr) const;
    MObject item(MStatus* ReturnStatus = nullptr) const;

private:
    std::vector<MObject> nodes_;
    std::size_t position_ = 0;
};
