#pragma once

#include <maya/MDGModifier.h>

/// A modifier that also edits the DAG.
class MDagModifier : public MDGModifier {
public:
    MDagModifier();
    ~MDagModifier() override;

    /// Creates a DAG node below the parent; at the top level without one. For a shape without a parent,
    /// creates a transform too and returns the transform.
    MObject createNode(const MTypeId& typeId, const MObject& parent = MObject::kNullObj,
                       MStatus* ReturnStatus = nullptr);
    MObject createNode(const MString& type, const MObject& parent = MObject::kNullObj,
                       MStatus* ReturnStatus = nullptr);

    /// Moves the node below the new parent; to the top level without one.
    MStatus reparentNode(const MObject& node, const MObject& newParent = MObject::kNullObj);

private:
    MObject CreateDagNode(const std::shared_ptr<const lightbox::NodeType>& type, const MObject& parent,
                          MStatus* returnStatus);
};
