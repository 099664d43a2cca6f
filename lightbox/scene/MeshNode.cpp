#include "scene/MeshNode.h"

#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

namespace lightbox {

namespace {

/// The last result of adding tweaks.
struct TweakedMesh {
    std::shared_ptr<const MeshData> base;
    std::shared_ptr<const MeshData> own;
    std::shared_ptr<const MeshData> result;
};

std::shared_ptr<const MeshData> MeshOf(const AttributeValue& value) {
    const auto* mesh = std::get_if<std::shared_ptr<const MeshData>>(&value);
    return mesh ? *mesh : nullptr;
}

std::shared_ptr<const MeshData> Incoming(const Node& node) {
    const Plug plug(std::const_pointer_cast<Node>(node.Shared()), node.Type().FindAttribute("inMesh"));
    return MeshOf(plug.Get());
}

} // namespace

Plug MeshNode::OwnPlug(const std::shared_ptr<Node>& node) {
    return Plug(node, node->Type().FindAttribute(OWN_GEOMETRY));
}

std::shared_ptr<const MeshData> MeshNode::Own(const Node& node) {
    const PlugState* state = node.FindState(*node.Type().FindAttribute(OWN_GEOMETRY));
    return state && state->isSet ? MeshOf(state->value) : nullptr;
}

std::shared_ptr<const MeshData> MeshNode::Evaluate(const Node& node) {
    const std::shared_ptr<const MeshData> own = Own(node);
    const std::shared_ptr<const MeshData> incoming = Incoming(node);
    const std::shared_ptr<const MeshData>& base = incoming ? incoming : own;
    if (!own || own->tweaks.empty()) {
        return base;
    }
    auto computed = std::static_pointer_cast<TweakedMesh>(node.computed);
    if (!computed || computed->base != base || computed->own != own) {
        computed =
            std::make_shared<TweakedMesh>(TweakedMesh{base, own, MeshData::Tweaked(base, own->tweaks)});
        node.computed = computed;
    }
    return computed->result;
}

void MeshNode::KeepHistory(Host& host, const std::shared_ptr<Node>& node) {
    const std::shared_ptr<const MeshData> incoming = Incoming(*node);
    if (!incoming) {
        return;
    }
    auto kept = std::make_shared<MeshData>(*incoming);
    if (const std::shared_ptr<const MeshData> own = Own(*node)) {
        kept->tweaks = own->tweaks;
    }
    edit::SetPlug(host, OwnPlug(node), std::shared_ptr<const MeshData>(kept));
}

} // namespace lightbox
