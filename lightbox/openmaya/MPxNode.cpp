#include "openmaya/ApiBridge.h"
#include "openmaya/NodeTypeSetup.h"
#include "scene/NodeType.h"

#include <maya/MPxNode.h>

using lightbox::ApiBridge;

namespace lightbox {

namespace {

NodeType* g_typeInSetup = nullptr;

} // namespace

NodeTypeSetup::NodeTypeSetup(NodeType& type)
    : before_(g_typeInSetup) {
    g_typeInSetup = &type;
}
NodeTypeSetup::~NodeTypeSetup() {
    g_typeInSetup = before_;
}
NodeType* NodeTypeSetup::Current() {
    return g_typeInSetup;
}

} // namespace lightbox

MPxNode::MPxNode() = default;
MPxNode::~MPxNode() = default;

void MPxNode::postConstructor() {}

void MPxNode::copyInternalData(MPxNode*) {}

MPxNode::Type MPxNode::type() const {
    return kDependNode;
}

MObject MPxNode::thisMObject() const {
    return node_ ? ApiBridge::Wrap(node_->Shared()) : MObject();
}

MTypeId MPxNode::typeId() const {
    return MTypeId(node_ ? node_->Type().id : 0);
}

MString MPxNode::typeName() const {
    return node_ ? ApiBridge::Wrap(node_->Type().Name()) : MString();
}

MString MPxNode::name() const {
    return node_ ? ApiBridge::Wrap(node_->Name()) : MString();
}

bool MPxNode::doNotWrite(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, node_ ? MS::kSuccess : MS::kFailure);
    return node_ && node_->doNotWrite;
}

MStatus MPxNode::setDoNotWrite(bool flag) {
    if (!node_) {
        return MS::kFailure;
    }
    node_->doNotWrite = flag;
    return MS::kSuccess;
}

MStatus MPxNode::addAttribute(const MObject& attr) {
    lightbox::NodeType* type = lightbox::NodeTypeSetup::Current();
    const std::shared_ptr<lightbox::Attribute> attribute = ApiBridge::GetAttribute(attr);
    if (!attribute) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The object is not an attribute");
    }
    if (!type) {
        return ApiBridge::Fail(MS::kFailure, "No node type is being registered");
    }
    if (!type->AddAttribute(attribute)) {
        return ApiBridge::Fail(MS::kFailure,
                               "The node type has an attribute '" + attribute->LongName() + "' already");
    }
    return MS::kSuccess;
}

MStatus MPxNode::attributeAffects(const MObject& whenChanges, const MObject& isAffected) {
    // Outputs are computed on every read, so the dependency only has to be valid.
    const bool areAttributes = ApiBridge::GetAttribute(whenChanges) && ApiBridge::GetAttribute(isAffected);
    return areAttributes && lightbox::NodeTypeSetup::Current() ? MS::kSuccess : MS::kFailure;
}
