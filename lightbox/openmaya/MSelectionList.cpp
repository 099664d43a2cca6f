#include "openmaya/ApiBridge.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>

#include <algorithm>

using lightbox::ApiBridge;

MStatus MSelectionList::clear() {
    items_.clear();
    return MS::kSuccess;
}

bool MSelectionList::isEmpty(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return items_.empty();
}

unsigned int MSelectionList::length(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return static_cast<unsigned int>(items_.size());
}

MStatus MSelectionList::getDependNode(unsigned int index, MObject& depNode) const {
    if (index >= items_.size()) {
        return MS::kInvalidParameter;
    }
    depNode = items_[index];
    return MS::kSuccess;
}

MStatus MSelectionList::getDagPath(unsigned int index, MDagPath& dagPath, MObject& component) const {
    if (index >= items_.size()) {
        return MS::kInvalidParameter;
    }
    if (&component != &MObject::kNullObj) {
        component = MObject();
    }
    return MDagPath::getAPathTo(items_[index], dagPath);
}

MStatus MSelectionList::getSelectionStrings(MStringArray& array) const {
    array.clear();
    for (const MObject& item : items_) {
        array.append(ApiBridge::Wrap(lightbox::Scene::ShownName(*ApiBridge::GetNode(item))));
    }
    return MS::kSuccess;
}

MStatus MSelectionList::getSelectionStrings(unsigned int index, MStringArray& array) const {
    array.clear();
    if (index >= items_.size()) {
        return MS::kInvalidParameter;
    }
    array.append(ApiBridge::Wrap(lightbox::Scene::ShownName(*ApiBridge::GetNode(items_[index]))));
    return MS::kSuccess;
}

MStatus MSelectionList::add(const MString& matchString, bool searchChildNamespaces) {
    lightbox::Scene& scene = lightbox::Host::Get().scene();
    std::string pattern = ApiBridge::Text(matchString);
    auto nodes = scene.Matching(pattern);
    if (searchChildNamespaces) {
        for (const std::string& nameSpace : scene.Namespaces()) {
            const auto more = scene.Matching(std::string(nameSpace).append(":").append(pattern));
            nodes.insert(nodes.end(), more.begin(), more.end());
        }
    }
    if (nodes.empty()) {
        return ApiBridge::Fail(MS::kInvalidParameter, "No object matches name: " + pattern);
    }
    for (const auto& node : nodes) {
        add(ApiBridge::Wrap(node), true);
    }
    return MS::kSuccess;
}

MStatus MSelectionList::add(const MObject& object, bool mergeWithExisting) {
    if (!ApiBridge::GetNode(object)) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The object is not a node");
    }
    if (!mergeWithExisting || !hasItem(object)) {
        items_.push_back(object);
    }
    return MS::kSuccess;
}

MStatus MSelectionList::add(const MDagPath& object, const MObject&, bool mergeWithExisting) {
    return add(object.node(), mergeWithExisting);
}

MStatus MSelectionList::remove(unsigned int index) {
    if (index >= items_.size()) {
        return MS::kInvalidParameter;
    }
    items_.erase(items_.begin() + index);
    return MS::kSuccess;
}

MStatus MSelectionList::replace(unsigned int index, const MObject& item) {
    if (index >= items_.size() || !ApiBridge::GetNode(item)) {
        return MS::kInvalidParameter;
    }
    items_[index] = item;
    return MS::kSuccess;
}

MStatus MSelectionList::merge(const MSelectionList& other, MergeStrategy strategy) {
    const std::vector<MObject> theirs = other.items_;
    for (const MObject& item : theirs) {
        const auto found = std::find(items_.begin(), items_.end(), item);
        if (found == items_.end()) {
            if (strategy != kRemoveFromList) {
                items_.push_back(item);
            }
        } else if (strategy != kMergeNormal) {
            items_.erase(std::remove(found, items_.end(), item), items_.end());
        }
    }
    return MS::kSuccess;
}

bool MSelectionList::hasItem(const MObject& object, MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return std::find(items_.begin(), items_.end(), object) != items_.end();
}

bool MSelectionList::hasItem(const MDagPath& object, const MObject&, MStatus* ReturnStatus) const {
    return hasItem(object.node(), ReturnStatus);
}
