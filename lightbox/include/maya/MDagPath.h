#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

/// The way from the world down to a node of the DAG.
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
    /// Goes down to the child.
    MStatus push(const MObject& child);
    /// Goes up; fails when that would leave the DAG.
    MStatus pop(unsigned int num = 1);
    /// From a transform with exactly one shape to that shape; a path to a shape stays.
    MStatus extendToShape();
    MStatus extendToShapeDirectlyBelow(unsigned int i);
    MStatus numberOfShapesDirectlyBelow(unsigned int& num) const;
    MStatus set(const MDagPath& src);

    /// Names separated and preceded by "|".
    MString fullPathName(MStatus* ReturnStatus = nullptr) const;
    /// The shortest path that names the node without ambiguity.
    MString partialPathName(MStatus* ReturnStatus = nullptr) const;
    bool isVisible(MStatus* ReturnStatus = nullptr) const;
    /// From the space of the path's node to the world.
    MMatrix inclusiveMatrix(MStatus* ReturnStatus = nullptr) const;
    MMatrix inclusiveMatrixInverse(MStatus* ReturnStatus = nullptr) const;

    bool operator==(const MDagPath& other) const { return node_ == other.node_; }
    bool operator!=(const MDagPath& other) const { return node_ != other.node_; }

private:
    friend class lightbox::ApiBridge;
    MObject node_;
};
