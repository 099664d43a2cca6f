#include "openmaya/Access.h"
#include "openmaya/ImathAccess.h"

#include <maya/MDagPath.h>

using lightbox::Access;
using lightbox::DagNode;

MStatus MDagPath::getAPathTo(const MObject& node, MDagPath& path) {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(node);
    if (!dag) {
        return Access::Fail(MS::kInvalidParameter, "The object is not a DAG node");
    }
    path.node_ = node;
    return MS::kSuccess;
}

bool MDagPath::isValid(MStatus* ReturnStatus) const {
    Access::Report(ReturnStatus, MS::kSuccess);
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    return dag && dag->InScene();
}

MObject MDagPath::node(MStatus* ReturnStatus) const {
    Access::Report(ReturnStatus, node_.isNull() ? MS::kFailure : MS::kSuccess);
    return node_;
}

MObject MDagPath::transform(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    for (DagNode* current = dag.get(); current; current = current->Parent()) {
        if (current->Type().IsTransform()) {
            Access::Report(ReturnStatus, MS::kSuccess);
            return Access::Wrap(current->Shared());
        }
    }
    Access::Report(ReturnStatus, MS::kFailure);
    return MObject();
}

bool MDagPath::hasFn(MFn::Type type, MStatus* ReturnStatus) const {
    Access::Report(ReturnStatus, node_.isNull() ? MS::kFailure : MS::kSuccess);
    return node_.hasFn(type);
}

MFn::Type MDagPath::apiType(MStatus* ReturnStatus) const {
    Access::Report(ReturnStatus, node_.isNull() ? MS::kFailure : MS::kSuccess);
    return node_.apiType();
}

unsigned int MDagPath::length(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    Access::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    unsigned int count = 0;
    for (const DagNode* current = dag.get(); current && !current->IsWorld(); current = current->Parent()) {
        ++count;
    }
    return count;
}

unsigned int MDagPath::childCount(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    Access::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag ? static_cast<unsigned int>(dag->Children().size()) : 0;
}

MObject MDagPath::child(unsigned int i, MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    const bool exists = dag && i < dag->Children().size();
    Access::Report(ReturnStatus, exists ? MS::kSuccess : MS::kInvalidParameter);
    return exists ? Access::Wrap(dag->Children()[i]->Shared()) : MObject();
}

MStatus MDagPath::push(const MObject& child) {
    const std::shared_ptr<DagNode> below = Access::GetDagNode(child);
    if (!below || !below->Parent() || below->Parent() != Access::GetDagNode(*this).get()) {
        return Access::Fail(MS::kInvalidParameter, "The object is not a child of the path's node");
    }
    node_ = child;
    return MS::kSuccess;
}

MStatus MDagPath::pop(unsigned int num) {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    DagNode* current = dag.get();
    for (; num > 0 && current; --num) {
        current = current->Parent();
    }
    if (!current) {
        return Access::Fail(MS::kFailure, "The path has fewer nodes than that");
    }
    node_ = Access::Wrap(current->Shared());
    return MS::kSuccess;
}

MStatus MDagPath::extendToShape() {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    if (dag && dag->Type().IsShape()) {
        return MS::kSuccess;
    }
    return dag && dag->Shapes().size() == 1
               ? extendToShapeDirectlyBelow(0)
               : Access::Fail(MS::kFailure, "The node does not have exactly one shape");
}

MStatus MDagPath::extendToShapeDirectlyBelow(unsigned int i) {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    if (!dag || i >= dag->Shapes().size()) {
        return Access::Fail(MS::kInvalidParameter, "The node has fewer shapes than that");
    }
    node_ = Access::Wrap(dag->Shapes()[i]->Shared());
    return MS::kSuccess;
}

MStatus MDagPath::numberOfShapesDirectlyBelow(unsigned int& num) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    num = dag ? static_cast<unsigned int>(dag->Shapes().size()) : 0;
    return dag ? MS::kSuccess : MS::kFailure;
}

MStatus MDagPath::set(const MDagPath& src) {
    node_ = src.node_;
    return MS::kSuccess;
}

MString MDagPath::fullPathName(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    Access::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag ? Access::Wrap(dag->FullPath()) : MString();
}

MString MDagPath::partialPathName(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    Access::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag ? Access::Wrap(dag->PartialPath()) : MString();
}

MMatrix MDagPath::inclusiveMatrix(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    Access::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag ? lightbox::FromImath(dag->WorldMatrix()) : MMatrix();
}

MMatrix MDagPath::inclusiveMatrixInverse(MStatus* ReturnStatus) const {
    return inclusiveMatrix(ReturnStatus).inverse();
}

bool MDagPath::isVisible(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = Access::GetDagNode(*this);
    Access::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag && dag->IsVisible();
}
