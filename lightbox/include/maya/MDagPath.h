#pragma once

#include <maya/MMatrix.h>
#include <maya/MObject.h>
#include <maya/MSpace.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MVector.h>

/// A path from the world down to a node of the DAG.
class MDagPath {
public:
    MDagPath() = default;

    static MStatus getAPathTo(const MObject& node, MDagPath& path);

    bool isValid(MStatus* ReturnStatus = nullptr) const;
    MObject node(MStatus* ReturnStatus = nullptr) const;
    /// The lowest transform on the path.
    MObject transform(MStatus* ReturnStatus = nullptr) const;
    bool hasFn(MFn::Type type, MStatus* ReturnStatus = nullptr) const;
    MFn::Type apiType(MStatus* ReturnStatus = nullptr) const;
    /// Number of nodes on the path, without the world.
    unsigned int length(MStatus* ReturnStatus = nullptr) const;

    unsigned int childCount(MStatus* ReturnStatus = nullptr) const;
    MObject child(unsigned int i, MStatus* ReturnStatus = nullptr) const;
    /// Extends the path to a child.
    MStatus push(const MObject& child);
    /// Removes `num` nodes from the end; fails if that would leave the DAG.
    MStatus pop(unsigned int num = 1);
    /// Extends the path from a transform with exactly one shape to that shape. A path to a shape stays.
    MStatus extendToShape();
    MStatus extendToShapeDirectlyBelow(unsigned int i);
    MStatus numberOfShapesDirectlyBelow(unsigned int& num) const;
    MStatus set(const MDagPath& src);

    /// The full DAG path: "|a|b".
    MString fullPathName(MStatus* ReturnStatus = nullptr) const;
    /// The shortest unambiguous path.
    MString partialPathName(MStatus* ReturnStatus = nullptr) const;
    bool isVisible(MStatus* ReturnStatus = nullptr) const;
    /// The matrix from the node's space to the world.
    MMatrix inclusiveMatrix(MStatus* ReturnStatus = nullptr) const;
    MMatrix inclusiveMatrixInverse(MStatus* ReturnStatus = nullptr) const;

    bool operator==(const MDagPath& other) const { return node_ == other.node_; }
    bool operator!=(const MDagPath& other) const { return node_ != other.node_; }

private:
    friend class lightbox::ApiBridge;
    MObject node_;
};
