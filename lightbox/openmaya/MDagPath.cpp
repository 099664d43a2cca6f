#include "openmaya/ApiBridge.h"
#include "openmaya/ImathConversion.h"

#include <maya/MDagPath.h>

#include <Imath/ImathMatrix.h>

using lightbox::ApiBridge;
using lightbox::DagNode;

MStatus MDagPath::getAPathTo(const MObject& node, MDagPath& path) {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(node);
    if (!dag) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The object is not a DAG node");
    }
    path.node_ = node;
    return MS::kSuccess;
}

bool MDagPath::isValid(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    return dag && dag->InScene();
}

MObject MDagPath::node(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, node_.isNull() ? MS::kFailure : MS::kSuccess);
    return node_;
}

MObject MDagPath::transform(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    for (DagNode* current = dag.get(); current; current = current->Parent()) {
        if (current->Type().IsTransform()) {
            ApiBridge::Report(ReturnStatus, MS::kSuccess);
            return ApiBridge::Wrap(current->Shared());
        }
    }
    ApiBridge::Report(ReturnStatus, MS::kFailure);
    return MObject();
}

bool MDagPath::hasFn(MFn::Type type, MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, node_.isNull() ? MS::kFailure : MS::kSuccess);
    return node_.hasFn(type);
}

MFn::Type MDagPath::apiType(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, node_.isNull() ? MS::kFailure : MS::kSuccess);
    return node_.apiType();
}

unsigned int MDagPath::length(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    ApiBridge::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    unsigned int count = 0;
    for (const DagNode* current = dag.get(); current && !current->IsWorld(); current = current->Parent()) {
        ++count;
    }
    return count;
}

unsigned int MDagPath::childCount(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    ApiBridge::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag ? static_cast<unsigned int>(dag->Children().size()) : 0;
}

MObject MDagPath::child(unsigned int i, MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    const bool exists = dag && i < dag->Children().size();
    ApiBridge::Report(ReturnStatus, exists ? MS::kSuccess : MS::kInvalidParameter);
    return exists ? ApiBridge::Wrap(dag->Children()[i]->Shared()) : MObject();
}

MStatus MDagPath::push(const MObject& child) {
    const std::shared_ptr<DagNode> below = ApiBridge::GetDagNode(child);
    if (!below || !below->Parent() || below->Parent() != ApiBridge::GetDagNode(*this).get()) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The object is not a child of the path's node");
    }
    node_ = child;
    return MS::kSuccess;
}

MStatus MDagPath::pop(unsigned int num) {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    DagNode* current = dag.get();
    for (; num > 0 && current; --num) {
        current = current->Parent();
    }
    if (!current) {
        return ApiBridge::Fail(MS::kFailure, "The path has fewer nodes than that");
    }
    node_ = ApiBridge::Wrap(current->Shared());
    return MS::kSuccess;
}

MStatus MDagPath::extendToShape() {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    if (dag && dag->Type().IsShape()) {
        return MS::kSuccess;
    }
    return dag && dag->Shapes().size() == 1
               ? extendToShapeDirectlyBelow(0)
               : ApiBridge::Fail(MS::kFailure, "The node does not have exactly one shape");
}

MStatus MDagPath::extendToShapeDirectlyBelow(unsigned int i) {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    if (!dag || i >= dag->Shapes().size()) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The node has fewer shapes than that");
    }
    node_ = ApiBridge::Wrap(dag->Shapes()[i]->Shared());
    return MS::kSuccess;
}

MStatus MDagPath::numberOfShapesDirectlyBelow(unsigned int& num) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    num = dag ? static_cast<unsigned int>(dag->Shapes().size()) : 0;
    return dag ? MS::kSuccess : MS::kFailure;
}

MStatus MDagPath::set(const MDagPath& src) {
    node_ = src.node_;
    return MS::kSuccess;
}

MString MDagPath::fullPathName(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    ApiBridge::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag ? ApiBridge::Wrap(dag->FullPath()) : MString();
}

MString MDagPath::partialPathName(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    ApiBridge::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag ? ApiBridge::Wrap(dag->PartialPath()) : MString();
}

MMatrix MDagPath::inclusiveMatrix(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    ApiBridge::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag ? lightbox::FromImath(dag->WorldMatrix()) : MMatrix();
}

MMatrix MDagPath::inclusiveMatrixInverse(MStatus* ReturnStatus) const {
    return inclusiveMatrix(ReturnStatus).inverse();
}

bool MDagPath::isVisible(MStatus* ReturnStatus) const {
    const std::shared_ptr<DagNode> dag = ApiBridge::GetDagNode(*this);
    ApiBridge::Report(ReturnStatus, dag ? MS::kSuccess : MS::kFailure);
    return dag && dag->IsVisible();
}
