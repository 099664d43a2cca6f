#pragma once

#include <maya/MDagPath.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <vector>

class MStringArray;

/// A list of nodes. Keeps the nodes alive and lists them even when they are no longer in the scene.
class MSelectionList {
public:
    enum MergeStrategy { kMergeNormal = 0, kXORWithList = 1, kRemoveFromList = 2 };

    MStatus clear();
    bool isEmpty(MStatus* ReturnStatus = nullptr) const;
    unsigned int length(MStatus* ReturnStatus = nullptr) const;

    MStatus getDependNode(unsigned int index, MObject& depNode) const;
    /// Fails for a node that is not in the DAG.
    MStatus getDagPath(unsigned int index, MDagPath& dagPath, MObject& component = MObject::kNullObj) const;
    /// Returns the shortest unambiguous name of every item.
    MStatus getSelectionStrings(MStringArray& array) const;
    MStatus getSelectionStrings(unsigned int index, MStringArray& array) const;

    /// Adds every node that the name or pattern (* and ?) matches; fails when there is none.
    MStatus add(const MString& matchString, bool searchChildNamespaces = false);
    MStatus add(const MObject& object, bool mergeWithExisting = false);
    MStatus add(const MDagPath& object, const MObject& component = MObject::kNullObj,
                bool mergeWithExisting = false);
    MStatus remove(unsigned int index);
    MStatus replace(unsigned int index, const MObject& item);
    MStatus merge(const MSelectionList& other, MergeStrategy strategy = kMergeNormal);

    bool hasItem(const MObject& object, MStatus* ReturnStatus = nullptr) const;
    bool hasItem(const MDagPath& object, const MObject& component = MObject::kNullObj,
                 MStatus* ReturnStatus = nullptr) const;

private:
    friend class lightbox::ApiBridge;
    std::vector<MObject> items_;
};
