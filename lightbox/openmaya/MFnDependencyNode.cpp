#include "openmaya/ApiBridge.h"
#include "scene/EditItems.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"

#include <maya/MFnDependencyNode.h>

using lightbox::ApiBridge;
using lightbox::Attribute;
using lightbox::Host;
using lightbox::Node;
using lightbox::NodeType;
using lightbox::Plug;

namespace {

/// The node of a function set. Reports a failure and returns null when there is none.
std::shared_ptr<Node> NodeOf(const MObject& object, MStatus* status) {
    std::shared_ptr<Node> node = ApiBridge::GetNode(object);
    ApiBridge::Report(status, node ? MS::kSuccess : MS::kFailure);
    return node;
}

MObject Create(const std::shared_ptr<const NodeType>& type, const std::string& name, MStatus* status) {
    if (!type) {
        ApiBridge::Report(status, ApiBridge::Fail(MS::kInvalidParameter, "The node type is not known"));
        return MObject();
    }
    lightbox::Scene& scene = Host::Get().scene();
    try {
        const std::shared_ptr<Node> node = scene.Make(type);
        lightbox::DagNode* parent = nullptr;
        std::shared_ptr<Node> transform;
        if (type->IsShape()) {
            transform = scene.Make(scene.types().FindNodeType("transform"));
            scene.Attach(transform, std::string());
            parent = static_cast<lightbox::DagNode*>(transform.get());
        }
        scene.Attach(node, name, parent);
        ApiBridge::Report(status, MS::kSuccess);
        return ApiBridge::Wrap(node);
    } catch (const lightbox::SceneError& error) {
        ApiBridge::Report(status, ApiBridge::Fail(MS::kFailure, error.what()));
        return MObject();
    }
}

MPlug PlugOf(const std::shared_ptr<Node>& node, const std::shared_ptr<Attribute>& attribute,
             MStatus* status) {
    if (!node || !attribute) {
        ApiBridge::Report(status, ApiBridge::Fail(MS::kInvalidParameter, "The node has no such attribute"));
        return MPlug();
    }
    ApiBridge::Report(status, MS::kSuccess);
    return ApiBridge::Wrap(Plug(node, attribute));
}

} // namespace

MFnDependencyNode::MFnDependencyNode() = default;

MFnDependencyNode::MFnDependencyNode(const MObject& object, MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, MFnBase::setObject(object));
}

MFn::Type MFnDependencyNode::type() const {
    return MFn::kDependencyNode;
}

MObject MFnDependencyNode::create(const MTypeId& typeId, MStatus* ReturnStatus) {
    return create(typeId, MString(), ReturnStatus);
}

MObject MFnDependencyNode::create(const MTypeId& typeId, const MString& name, MStatus* ReturnStatus) {
    object_ =
        Create(Host::Get().scene().types().FindNodeType(typeId.id()), ApiBridge::Text(name), ReturnStatus);
    return object_;
}

MObject MFnDependencyNode::create(const MString& type, MStatus* ReturnStatus) {
    return create(type, MString(), ReturnStatus);
}

MObject MFnDependencyNode::create(const MString& type, const MString& name, MStatus* ReturnStatus) {
    object_ = Create(Host::Get().scene().types().FindNodeType(ApiBridge::Text(type)), ApiBridge::Text(name),
                     ReturnStatus);
    return object_;
}

MTypeId MFnDependencyNode::typeId(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return MTypeId(node ? node->Type().id : 0);
}

MString MFnDependencyNode::typeName(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node ? ApiBridge::Wrap(node->Type().Name()) : MString();
}

MString MFnDependencyNode::name(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node ? ApiBridge::Wrap(node->Name()) : MString();
}

MString MFnDependencyNode::setName(const MString& name, bool createNamespace, MStatus* ReturnStatus) {
    const auto node = NodeOf(object_, ReturnStatus);
    lightbox::Scene* scene = node ? node->InScene() : nullptr;
    const std::string nameSpace = lightbox::Scene::NamespaceOf(ApiBridge::Text(name));
    const bool knowsNamespace =
        nameSpace.empty() || createNamespace || (scene && scene->Namespaces().count(nameSpace));
    const bool isFixed = node && (node->locked || node->isDefault ||
                                  node.get() == &Host::Get().scene().world() || !node->reference.empty());
    if (!scene || name.length() == 0 || isFixed || !knowsNamespace) {
        ApiBridge::Report(ReturnStatus, MS::kFailure);
        return MString();
    }
    const auto* dag = dynamic_cast<const lightbox::DagNode*>(node.get());
    scene->Rename(*node, scene->FreeName(ApiBridge::Text(name), *node, dag ? dag->Parent() : nullptr));
    return ApiBridge::Wrap(node->Name());
}

bool MFnDependencyNode::hasUniqueName(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node && node->InScene() && node->InScene()->FindAll(node->Name()).size() == 1;
}

MPxNode* MFnDependencyNode::userNode(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node ? node->UserNode() : nullptr;
}

unsigned int MFnDependencyNode::attributeCount(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node ? static_cast<unsigned int>(node->Attributes().size()) : 0;
}

MObject MFnDependencyNode::attribute(unsigned int index, MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    const auto attributes = node ? node->Attributes() : std::vector<std::shared_ptr<Attribute>>();
    if (index >= attributes.size()) {
        ApiBridge::Report(ReturnStatus, MS::kInvalidParameter);
        return MObject();
    }
    return ApiBridge::Wrap(attributes[index]);
}

MObject MFnDependencyNode::attribute(const MString& attrName, MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    const auto attribute = node ? node->FindAttribute(ApiBridge::Text(attrName)) : nullptr;
    if (!attribute) {
        ApiBridge::Report(ReturnStatus, MS::kInvalidParameter);
        return MObject();
    }
    return ApiBridge::Wrap(attribute);
}

bool MFnDependencyNode::hasAttribute(const MString& name, MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node && node->FindAttribute(ApiBridge::Text(name));
}

MStatus MFnDependencyNode::addAttribute(const MObject& attr) {
    const auto node = ApiBridge::GetNode(object_);
    const auto attribute = ApiBridge::GetAttribute(attr);
    return node && attribute && !node->locked && node->AddDynamicAttribute(attribute) ? MS::kSuccess
                                                                                      : MS::kFailure;
}

MStatus MFnDependencyNode::removeAttribute(const MObject& attr) {
    const auto node = ApiBridge::GetNode(object_);
    const auto attribute = ApiBridge::GetAttribute(attr);
    if (!node || !attribute || node->locked || !node->RemoveDynamicAttribute(*attribute)) {
        return MS::kFailure;
    }
    node->TakeStates(*attribute);
    if (node->InScene()) {
        node->InScene()->connections().CutAttribute(*node, *attribute);
    }
    return MS::kSuccess;
}

MPlug MFnDependencyNode::findPlug(const MString& attrName, MStatus* ReturnStatus) const {
    const auto node = ApiBridge::GetNode(object_);
    return PlugOf(node, node ? node->FindAttribute(ApiBridge::Text(attrName)) : nullptr, ReturnStatus);
}

MPlug MFnDependencyNode::findPlug(const MString& attrName, bool, MStatus* ReturnStatus) const {
    return findPlug(attrName, ReturnStatus);
}

MPlug MFnDependencyNode::findPlug(const MObject& attr, MStatus* ReturnStatus) const {
    const auto node = ApiBridge::GetNode(object_);
    const auto attribute = ApiBridge::GetAttribute(attr);
    const bool belongs = node && attribute && node->FindAttribute(attribute->LongName()) == attribute;
    return PlugOf(node, belongs ? attribute : nullptr, ReturnStatus);
}

MPlug MFnDependencyNode::findPlug(const MObject& attr, bool, MStatus* ReturnStatus) const {
    return findPlug(attr, ReturnStatus);
}

bool MFnDependencyNode::isFromReferencedFile(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node && !node->reference.empty();
}

bool MFnDependencyNode::isDefaultNode(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node && node->isDefault;
}

bool MFnDependencyNode::isLocked(MStatus* ReturnStatus) const {
    const auto node = NodeOf(object_, ReturnStatus);
    return node && node->locked;
}

MStatus MFnDependencyNode::setLocked(bool locked) {
    const auto node = ApiBridge::GetNode(object_);
    if (!node) {
        return MS::kFailure;
    }
    node->locked = locked;
    return MS::kSuccess;
}
