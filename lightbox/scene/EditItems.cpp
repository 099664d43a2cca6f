#include "scene/EditItems.h"

#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/Transformation.h"
#include "scene/UndoQueue.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <optional>
#include <set>
#include <utility>

namespace lightbox::edit {

namespace {

/// An edit made of two functions. Delays the selection's event until the edit is complete.
class FunctionItem : public UndoItem {
public:
    FunctionItem(Scene& scene, std::string name, std::function<void()> redo, std::function<void()> undo)
        : scene_(scene)
        , name_(std::move(name))
        , redo_(std::move(redo))
        , undo_(std::move(undo)) {}

    void Undo() override {
        Selection::Hold hold(scene_.selection());
        undo_();
    }
    void Redo() override {
        Selection::Hold hold(scene_.selection());
        redo_();
    }
    std::string Name() const override { return name_; }

private:
    Scene& scene_;
    std::string name_;
    std::function<void()> redo_;
    std::function<void()> undo_;
};

/// Detaches nodes and all their descendants, descendants first.
std::vector<NodePlace> DetachAll(Scene& scene, const std::vector<std::shared_ptr<Node>>& roots) {
    std::vector<NodePlace> places;
    for (const std::shared_ptr<Node>& root : roots) {
        if (!root->InScene()) {
            continue;
        }
        auto* dag = dynamic_cast<DagNode*>(root.get());
        std::vector<Node*> nodes;
        if (dag) {
            const std::vector<DagNode*> subtree = Scene::Subtree(*dag);
            nodes.assign(subtree.rbegin(), subtree.rend());
        } else {
            nodes.push_back(root.get());
        }
        for (Node* node : nodes) {
            places.push_back(scene.Detach(*node));
        }
    }
    return places;
}

void RestoreAll(Scene& scene, const std::vector<NodePlace>& places) {
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
        scene.Restore(*place);
    }
}

void CheckOneDeletable(const Node& node) {
    const std::string name = Scene::ShownName(node);
    if (node.isDefault || node.isShared) {
        throw SceneError("Cannot delete the default node '" + name + "'.");
    }
    if (node.locked) {
        throw SceneError("Cannot delete locked node '" + name + "'.");
    }
    if (!node.reference.empty()) {
        throw SceneError("Cannot delete node '" + name + "' from a referenced file.");
    }
}

bool AreCompatible(const Plug& source, const Plug& destination) {
    const Attribute& from = *source.attribute;
    const Attribute& to = *destination.attribute;
    if (source.IsArray() != destination.IsArray()) {
        return false;
    }
    if (from.IsNumber() && to.IsNumber()) {
        return true;
    }
    if (from.IsCompound() && to.IsCompound()) {
        return from.Children().size() == to.Children().size() &&
               from.IsNumericCompound() == to.IsNumericCompound();
    }
    return from.Kind() == to.Kind() && from.dataTypeId == to.dataTypeId;
}

std::vector<std::pair<const char*, Imath::V3d>> MovableParts(const Transformation& parts) {
    return {{"translate", parts.translate},
            {"rotate", parts.rotate},
            {"scale", parts.scale},
            {"shear", parts.shear}};
}

/// Sets a transform's world matrix, as far as its attributes can be set.
void SetWorldMatrix(DagNode& node, const Imath::M44d& world) {
    Transformation parts = node.LocalTransformation();
    const Imath::M44d parent = node.Parent() ? node.Parent()->WorldMatrix() : Imath::M44d();
    if (!parts.SetMatrix(world * parent.inverse())) {
        return;
    }
    for (const auto& part : MovableParts(parts)) {
        const Imath::V3d& numbers = part.second;
        Plug(node.Shared(), node.FindAttribute(part.first))
            .Set(std::vector<double>{numbers.x, numbers.y, numbers.z});
    }
}

} // namespace

std::unique_ptr<UndoItem> MakeItem(Scene& scene, const std::string& name, std::function<void()> redo,
                                   std::function<void()> undo) {
    return std::make_unique<FunctionItem>(scene, name, std::move(redo), std::move(undo));
}

std::unique_ptr<UndoItem> AddItem(Scene& scene, const std::shared_ptr<Node>& node, const std::string& name,
                                  const std::shared_ptr<DagNode>& parent) {
    auto places = std::make_shared<std::vector<NodePlace>>();
    auto namespaces = std::make_shared<std::set<std::string>>();
    const auto redo = [&scene, node, name, parent, places, namespaces] {
        if (parent && !parent->InScene()) {
            throw SceneError("The parent of a new node is not in the scene.");
        }
        *namespaces = scene.Namespaces();
        if (places->empty()) {
            scene.Attach(node, name, parent.get());
        } else {
            RestoreAll(scene, *places);
        }
    };
    return MakeItem(scene, "createNode", redo, [&scene, node, places, namespaces] {
        *places = DetachAll(scene, {node});
        scene.SetNamespaces(*namespaces);
    });
}

std::unique_ptr<UndoItem> DeleteItem(Scene& scene, const std::vector<std::shared_ptr<Node>>& nodes) {
    auto places = std::make_shared<std::vector<NodePlace>>();
    return MakeItem(
        scene, "delete", [&scene, nodes, places] { *places = DetachAll(scene, nodes); },
        [&scene, places] { RestoreAll(scene, *places); });
}

std::unique_ptr<UndoItem> RenameItem(Scene& scene, const std::shared_ptr<Node>& node,
                                     const std::string& name) {
    auto before = std::make_shared<std::string>();
    auto namespaces = std::make_shared<std::set<std::string>>();
    const auto redo = [&scene, node, name, before, namespaces] {
        *before = node->Name();
        *namespaces = scene.Namespaces();
        const auto* dag = dynamic_cast<const DagNode*>(node.get());
        scene.Rename(*node, scene.FreeName(name, *node, dag ? dag->Parent() : nullptr));
    };
    return MakeItem(scene, "rename", redo, [&scene, node, before, namespaces] {
        std::set<std::string> known = *namespaces;
        scene.Rename(*node, *before);
        scene.SetNamespaces(std::move(known));
    });
}

std::unique_ptr<UndoItem> MoveItem(Scene& scene, const std::shared_ptr<DagNode>& node,
                                   const std::shared_ptr<DagNode>& parent, bool keepWorld) {
    struct Before {
        std::shared_ptr<DagNode> parent;
        int index = -1;
        std::string name;
        std::vector<std::pair<Plug, std::optional<AttributeValue>>> values;
    };
    auto before = std::make_shared<Before>();
    const auto redo = [&scene, node, parent, keepWorld, before] {
        before->parent = std::static_pointer_cast<DagNode>(node->Parent()->Shared());
        before->index = node->IndexInParent();
        before->name = node->Name();
        before->values.clear();
        const Imath::M44d world = node->WorldMatrix();
        const bool moves =
            keepWorld && node->Type().IsTransform() && before->parent->WorldMatrix() != parent->WorldMatrix();
        const std::string name = scene.FreeName(node->Name(), *node, parent.get());
        scene.Move(*node, *parent);
        if (name != node->Name()) {
            scene.Rename(*node, name);
        }
        if (moves) {
            for (const auto& part : MovableParts({})) {
                const Plug plug(node, node->FindAttribute(part.first));
                for (std::size_t i = 0; i < 3; ++i) {
                    before->values.emplace_back(plug.Child(i), plug.Child(i).Stored());
                }
            }
            SetWorldMatrix(*node, world);
        }
    };
    const auto undo = [&scene, node, before] {
        for (const auto& value : before->values) {
            value.first.Store(value.second);
        }
        scene.Move(*node, *before->parent, before->index);
        if (node->Name() != before->name) {
            scene.Rename(*node, before->name);
        }
    };
    return MakeItem(scene, "parent", redo, undo);
}

namespace {

/// Those of the plug and its children whose values override their animation.
std::vector<Plug> HeldPlugs(const Plug& plug) {
    std::vector<Plug> held;
    if (plug.IsHeld()) {
        held.push_back(plug);
    }
    for (std::size_t i = 0; i < plug.attribute->Children().size(); ++i) {
        const std::vector<Plug> below = HeldPlugs(plug.Child(i));
        held.insert(held.end(), below.begin(), below.end());
    }
    return held;
}

} // namespace

std::unique_ptr<UndoItem> SetItem(Scene& scene, const Plug& plug, const AttributeValue& value) {
    auto before = std::make_shared<std::optional<AttributeValue>>();
    auto held = std::make_shared<std::vector<Plug>>();
    const auto redo = [plug, value, before, held] {
        *before = plug.Stored();
        *held = HeldPlugs(plug);
        if (!plug.Set(value)) {
            const std::string reason = plug.WhyNotSettable();
            throw SceneError(reason.empty() ? "The attribute '" + plug.Name() + "' cannot take that value."
                                            : reason);
        }
    };
    return MakeItem(scene, "setAttr", redo, [plug, before, held] {
        plug.Store(*before);
        for (const Plug& each : *held) {
            each.SetHeld(true);
        }
    });
}

std::unique_ptr<UndoItem> ConnectItem(Scene& scene, const Plug& source, const Plug& destination,
                                      bool connect) {
    const auto make = [&scene, source, destination] {
        if (!scene.connections().Add(source, destination)) {
            throw SceneError("'" + destination.Name() + "' already has an incoming connection from '" +
                             scene.connections().SourceOf(destination).Name() + "'.");
        }
    };
    const auto cut = [&scene, source, destination] {
        if (!scene.connections().Remove(source, destination)) {
            throw SceneError("There is no connection from '" + source.Name() + "' to '" + destination.Name() +
                             "' to disconnect.");
        }
    };
    // Undo must not fail if an unrecorded edit has done the same meanwhile.
    if (connect) {
        return MakeItem(scene, "connectAttr", make,
                        [&scene, source, destination] { scene.connections().Remove(source, destination); });
    }
    return MakeItem(scene, "disconnectAttr", cut,
                    [&scene, source, destination] { scene.connections().Add(source, destination); });
}

void DoItem(UndoQueue& undo, std::unique_ptr<UndoItem> item) {
    item->Redo();
    undo.Push(std::move(item));
}

void CheckConnectable(const Plug& source, const Plug& destination) {
    if (source == destination) {
        throw SceneError("Cannot connect '" + source.Name() + "' to itself.");
    }
    if (!source.attribute->readable || !source.attribute->connectable) {
        throw SceneError("The source attribute '" + source.Name() + "' cannot be connected.");
    }
    if (!destination.attribute->writable || !destination.attribute->connectable) {
        throw SceneError("The destination attribute '" + destination.Name() + "' cannot be written to.");
    }
    if (destination.IsLocked()) {
        throw SceneError("The destination attribute '" + destination.Name() + "' is locked.");
    }
    if (!AreCompatible(source, destination)) {
        throw SceneError("The attribute '" + source.Name() + "' cannot be connected to '" +
                         destination.Name() + "'.");
    }
}

void CheckDeletable(Node& node) {
    auto* dag = dynamic_cast<DagNode*>(&node);
    if (!dag) {
        CheckOneDeletable(node);
        return;
    }
    for (const DagNode* below : Scene::Subtree(*dag)) {
        CheckOneDeletable(*below);
    }
}

} // namespace lightbox::edit
