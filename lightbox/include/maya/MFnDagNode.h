#pragma once

#include <maya/MDagPath.h>
#include <maya/MFnDependencyNode.h>

/// Function set of DAG nodes.
class MFnDagNode : public MFnDependencyNode {
public:
    MFnDagNode();
    explicit MFnDagNode(const MObject& object, MStatus* ReturnStatus = nullptr);
    explicit MFnDagNode(const MDagPath& dagPath, MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;

    /// Top-level nodes have one parent, the world.
    unsigned int parentCount(MStatus* ReturnStatus = nullptr) const;
    MObject parent(unsigned int i, MStatus* ReturnStatus = nullptr) const;
    unsigned int childCount(MStatus* ReturnStatus = nullptr) const;
    MObject child(unsigned int i, MStatus* ReturnStatus = nullptr) const;
    bool hasParent(const MObject& node, MStatus* ReturnStatus = nullptr) const;
    bool hasChild(const MObject& node, MStatus* ReturnStatus = nullptr) const;
    MObject dagRoot(MStatus* ReturnStatus = nullptr);

    MStatus getPath(MDagPath& path) const;
    MString fullPathName(MStatus* ReturnStatus = nullptr) const;
    MString partialPathName(MStatus* ReturnStatus = nullptr) const;
};
