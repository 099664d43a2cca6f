#pragma once

#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <memory>

/// Visits the nodes of the DAG below a root (the world by default). Returns only nodes of the filter's type;
/// all nodes with MFn::kInvalid.
class MItDag {
public:
    enum TraversalType { kInvalidType = 0, kDepthFirst = 1, kBreadthFirst = 2 };

    MItDag(TraversalType type = kDepthFirst, MFn::Type filter = MFn::kInvalid,
           MStatus* ReturnStatus = nullptr);
    ~MItDag();
    MItDag(const MItDag&) = delete;
    MItDag& operator=(const MItDag&) = delete;

    /// Starts over at the world, in the same order and with the same filter.
    MStatus reset();
    MStatus reset(const MObject& object, TraversalType type = kDepthFirst, MFn::Type filter = MFn::kInvalid);
    bool isDone(MStatus* ReturnStatus = nullptr) const;
    MStatus next();
    /// Skips the descendants of the current node.
    MStatus prune();

    MObject currentItem(MStatus* ReturnStatus = nullptr);
    MStatus getPath(MDagPath& dagPath) const;
    MString fullPathName(MStatus* ReturnStatus = nullptr) const;
    MString partialPathName(MStatus* ReturnStatus = nullptr) const;
    /// Levels below the root of the iteration.
    unsigned int depth(MStatus* ReturnStatus = nullptr) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};
