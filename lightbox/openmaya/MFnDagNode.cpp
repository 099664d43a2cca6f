#include "openmaya/ApiBridge.h"

#include <maya/MFnDagNode.h>

using lightbox::ApiBridge;
using lightbox::DagNode;

namespace {

std::shared_ptr<DagNode> DagOf(const MObject& object, MStatus* status) {
    std::shared_ptr<DagNode> node = ApiBridge::GetDagNode(object);
    ApiBridge::Report(status, node ? MS::kSuccess : MS::kFailure);
    return node;
}

} // namespace

MFnDagNode::MFnDagNode() = default;

MFnDagNode::MFnDagNode(const MObject& object, MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, MFnBase::setObject(object));
}

MFnDagNode::MFnDagNode(const MDagPath& dagPath, MStatus* ReturnStatus)
    : MFnDagNode(dagPath.node(), ReturnStatus) {}

MFn::Type MFnDagNode::type() const {
    return MFn::kDagNode;
}

unsigned int MFnDagNode::parentCount(MStatus* ReturnStatus) const {
    const auto node = DagOf(object_, ReturnStatus);
    return node && node->Parent() ? 1 : 0;
}

MObject MFnDagNode::parent(unsigned int i, MStatus* ReturnStatus) const {
    const auto node = DagOf(object_, ReturnStatus);
    if (!node || !node->Parent() || i > 0) {
        ApiBridge::Report(ReturnStatus, MS::kInvalidParameter);
        return MObject();
    }
    return ApiBridge::Wrap(node->Parent()->Shared());
}

unsigned int MFnDagNode::childCount(MStatus* ReturnStatus) const {
    const auto node = DagOf(object_, ReturnStatus);
    return node ? static_cast<unsigned int>(node->Children().size()) : 0;
}

MObject MFnDagNode::child(unsigned int i, MStatus* ReturnStatus) const {
    const auto node = DagOf(object_, ReturnStatus);
    if (!node || i >= node->Children().size()) {
        ApiBridge::Report(ReturnStatus, MS::kInvalidParameter);
        return MObject();
    }
    return ApiBridge::Wrap(node->Children()[i]->Shared());
}

bool MFnDagNode::hasParent(const MObject& node, MStatus* ReturnStatus) const {
    const auto self = DagOf(object_, ReturnStatus);
    return self && self->Parent() && self->Parent() == ApiBridge::GetDagNode(node).get();
}

bool MFnDagNode::hasChild(const MObject& node, MStatus* ReturnStatus) const {
    const auto self = DagOf(object_, ReturnStatus);
    const auto child = ApiBridge::GetDagNode(node);
    return self && child && child->Parent() == self.get();
}

MObject MFnDagNode::dagRoot(MStatus* ReturnStatus) {
    const auto self = DagOf(object_, ReturnStatus);
    DagNode* root = self.get();
    while (root && root->Parent()) {
        root = root->Parent();
    }
    return root ? ApiBridge::Wrap(root->Shared()) : MObject();
}

MStatus MFnDagNode::getPath(MDagPath& path) const {
    return MDagPath::getAPathTo(object_, path);
}

MString MFnDagNode::fullPathName(MStatus* ReturnStatus) const {
    const auto node = DagOf(object_, ReturnStatus);
    return node ? ApiBridge::Wrap(node->FullPath()) : MString();
}

MString MFnDagNode::partialPathName(MStatus* ReturnStatus) const {
    const auto node = DagOf(object_, ReturnStatus);
    return node ? ApiBridge::Wrap(node->PartialPath()) : MString();
}
