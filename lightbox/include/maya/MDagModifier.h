#pragma once

#include <maya/MDGModifier.h>

/// A modifier that also edits the DAG.
class MDagModifier : public MDGModifier {
public:
    MDagModifier();
    ~MDagModifier() override;

    /// Creates a DAG node below the parent, or at the top level with none. A shape without a parent gets a
    /// transform, and that transform is returned.
    MObject createNode(const MTypeId& typeId, const MObject& parent = MObject::kNullObj,
                       MStatus* ReturnStatus = nullptr);
    MObject createNode(const MString& type, const MObject& parent = MObject::kNullObj,
                       MStatus* ReturnStatus = nullptr);

    /// Moves the node below the new parent, or to the top level with none.
    MStatus reparentNode(const MObject& node, const MObject& newParent = MObject::kNullObj);

private:
    MObject CreateDagNode(const std::shared_ptr<const lightbox::NodeType>& type, const MObject& parent,
                          MStatus* returnStatus);
};
