#include "openmaya/ApiBridge.h"
#include "scene/EditItems.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"

#include <maya/MDagModifier.h>
#include <maya/MPlug.h>
#include <maya/MTime.h>

#include <vector>

using namespace lightbox;

struct MDGModifier::State {
    std::vector<std::unique_ptr<UndoItem>> items;
    std::size_t done = 0;

    void Add(std::unique_ptr<UndoItem> item) { items.push_back(std::move(item)); }

    /// Makes a node, which doIt() will put into the scene.
    MObject Create(const std::shared_ptr<const NodeType>& type, const std::shared_ptr<DagNode>& parent,
                   MStatus* returnStatus) {
        Scene& scene = Host::Get().scene();
        try {
            const std::shared_ptr<Node> node = scene.Make(type);
            Add(edit::AddItem(scene, node, std::string(), parent));
            ApiBridge::Report(returnStatus, MS::kSuccess);
            return ApiBridge::Wrap(node);
        } catch (const SceneError& error) {
            ApiBridge::Report(returnStatus, ApiBridge::Fail(MS::kInvalidParameter, error.what()));
            return MObject();
        }
    }

    MStatus Set(const MPlug& plug, const AttributeValue& value) {
        const Plug target = ApiBridge::GetPlug(plug);
        if (!target) {
            return MS::kInvalidParameter;
        }
        Add(edit::SetItem(Host::Get().scene(), target, value));
        return MS::kSuccess;
    }
};

MDGModifier::MDGModifier()
    : state_(std::make_unique<State>()) {}
MDGModifier::~MDGModifier() = default;

namespace {

std::shared_ptr<const NodeType> TypeOf(const MTypeId& id) {
    return Host::Get().scene().types().FindNodeType(id.id());
}

std::shared_ptr<const NodeType> TypeOf(const MString& name) {
    return Host::Get().scene().types().FindNodeType(ApiBridge::Text(name));
}

bool RefuseType(const std::shared_ptr<const NodeType>& type, bool isDag, MStatus* returnStatus) {
    if (type && type->IsDag() == isDag) {
        return false;
    }
    ApiBridge::Report(returnStatus, ApiBridge::Fail(MS::kInvalidParameter,
                                                    type ? type->Name() + " is not a type for this modifier"
                                                         : std::string("The node type is not known")));
    return true;
}

} // namespace

MObject MDGModifier::createNode(const MTypeId& typeId, MStatus* ReturnStatus) {
    const auto type = TypeOf(typeId);
    return RefuseType(type, false, ReturnStatus) ? MObject() : state_->Create(type, nullptr, ReturnStatus);
}

MObject MDGModifier::createNode(const MString& type, MStatus* ReturnStatus) {
    const auto nodeType = TypeOf(type);
    return RefuseType(nodeType, false, ReturnStatus) ? MObject()
                                                     : state_->Create(nodeType, nullptr, ReturnStatus);
}

MStatus MDGModifier::deleteNode(const MObject& node) {
    const std::shared_ptr<Node> target = ApiBridge::GetNode(node);
    if (!target || !target->InScene()) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The object is not a node of the scene");
    }
    try {
        edit::CheckDeletable(*target);
    } catch (const SceneError& error) {
        return ApiBridge::Fail(MS::kFailure, error.what());
    }
    state_->Add(edit::DeleteItem(Host::Get().scene(), {target}));
    return MS::kSuccess;
}

MStatus MDGModifier::renameNode(const MObject& node, const MString& newName) {
    const std::shared_ptr<Node> target = ApiBridge::GetNode(node);
    if (!target || newName.length() == 0) {
        return MS::kInvalidParameter;
    }
    if (target->locked || target->isDefault || !target->reference.empty()) {
        return ApiBridge::Fail(MS::kFailure, "The node is read only");
    }
    state_->Add(edit::RenameItem(Host::Get().scene(), target, ApiBridge::Text(newName)));
    return MS::kSuccess;
}

MStatus MDGModifier::connect(const MPlug& source, const MPlug& dest) {
    const Plug from = ApiBridge::GetPlug(source);
    const Plug to = ApiBridge::GetPlug(dest);
    if (!from || !to) {
        return MS::kInvalidParameter;
    }
    try {
        edit::CheckConnectable(from, to);
    } catch (const SceneError& error) {
        return ApiBridge::Fail(MS::kFailure, error.what());
    }
    state_->Add(edit::ConnectItem(Host::Get().scene(), from, to, true));
    return MS::kSuccess;
}

MStatus MDGModifier::disconnect(const MPlug& source, const MPlug& dest) {
    const Plug from = ApiBridge::GetPlug(source);
    const Plug to = ApiBridge::GetPlug(dest);
    if (!from || !to) {
        return MS::kInvalidParameter;
    }
    state_->Add(edit::ConnectItem(Host::Get().scene(), from, to, false));
    return MS::kSuccess;
}

MStatus MDGModifier::newPlugValueBool(const MPlug& plug, bool value) {
    return state_->Set(plug, value ? 1.0 : 0.0);
}
MStatus MDGModifier::newPlugValueInt(const MPlug& plug, int value) {
    return state_->Set(plug, static_cast<double>(value));
}
MStatus MDGModifier::newPlugValueFloat(const MPlug& plug, float value) {
    return state_->Set(plug, static_cast<double>(value));
}
MStatus MDGModifier::newPlugValueDouble(const MPlug& plug, double value) {
    return state_->Set(plug, value);
}
MStatus MDGModifier::newPlugValueMTime(const MPlug& plug, const MTime& value) {
    return state_->Set(plug, value.as(MTime::uiUnit()));
}
MStatus MDGModifier::newPlugValueString(const MPlug& plug, const MString& value) {
    return state_->Set(plug, ApiBridge::Text(value));
}

MStatus MDGModifier::doIt() {
    const std::size_t first = state_->done;
    try {
        for (; state_->done < state_->items.size(); ++state_->done) {
            state_->items[state_->done]->Redo();
        }
    } catch (const SceneError& error) {
        while (state_->done > first) {
            state_->items[--state_->done]->Undo();
        }
        return ApiBridge::Fail(MS::kFailure, error.what());
    }
    return MS::kSuccess;
}

MStatus MDGModifier::undoIt() {
    while (state_->done > 0) {
        state_->items[--state_->done]->Undo();
    }
    return MS::kSuccess;
}

MDagModifier::MDagModifier() = default;
MDagModifier::~MDagModifier() = default;

MObject MDagModifier::createNode(const MTypeId& typeId, const MObject& parent, MStatus* ReturnStatus) {
    return CreateDagNode(TypeOf(typeId), parent, ReturnStatus);
}

MObject MDagModifier::createNode(const MString& type, const MObject& parent, MStatus* ReturnStatus) {
    return CreateDagNode(TypeOf(type), parent, ReturnStatus);
}

MObject MDagModifier::CreateDagNode(const std::shared_ptr<const lightbox::NodeType>& type,
                                    const MObject& parent, MStatus* returnStatus) {
    if (RefuseType(type, true, returnStatus)) {
        return MObject();
    }
    const std::shared_ptr<DagNode> above = ApiBridge::GetDagNode(parent);
    if (!parent.isNull() && (!above || !(above->Type().IsTransform() || above->IsWorld()))) {
        ApiBridge::Report(returnStatus,
                          ApiBridge::Fail(MS::kInvalidParameter, "The parent is not a transform"));
        return MObject();
    }
    if (type->IsShape() && (!above || above->IsWorld())) {
        const MObject transform = state_->Create(TypeOf(MString("transform")), nullptr, returnStatus);
        const MObject shape = state_->Create(type, ApiBridge::GetDagNode(transform), returnStatus);
        return shape.isNull() ? shape : transform;
    }
    return state_->Create(type, above, returnStatus);
}

MStatus MDagModifier::reparentNode(const MObject& node, const MObject& newParent) {
    const std::shared_ptr<DagNode> target = ApiBridge::GetDagNode(node);
    std::shared_ptr<DagNode> above = ApiBridge::GetDagNode(newParent);
    if (!above) {
        above = std::static_pointer_cast<DagNode>(Host::Get().scene().world().Shared());
    }
    if (!target || (!newParent.isNull() && !ApiBridge::GetDagNode(newParent)) || above->IsBelow(*target) ||
        !(above->Type().IsTransform() || above->IsWorld())) {
        return MS::kInvalidParameter;
    }
    state_->Add(edit::MoveItem(Host::Get().scene(), target, above, false));
    return MS::kSuccess;
}
