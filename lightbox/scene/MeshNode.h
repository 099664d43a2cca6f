#pragma once

#include "scene/MeshData.h"
#include "scene/Plug.h"

#include <memory>

namespace lightbox {

class Host;

/// What a mesh node shows. It holds geometry of its own, which scene files store as vrts, edges, faces and so
/// on; a connected inMesh goes before it, and then only the tweaks (pnts) of the node's own count.
class MeshNode {
public:
    /// The attribute behind the published ones of the geometry.
    static constexpr const char* OWN_GEOMETRY = "lightboxGeometry";

    static bool Is(const Node& node) { return node.Type().IsA("mesh"); }
    /// The plug that holds the node's own geometry.
    static Plug OwnPlug(const std::shared_ptr<Node>& node);
    /// Null when it has none.
    static std::shared_ptr<const MeshData> Own(const Node& node);
    /// What is drawn and what comes out of outMesh; null when there is nothing. The same value as long as
    /// nothing changes.
    static std::shared_ptr<const MeshData> Evaluate(const Node& node);

    /// Makes what comes into the node from its history its own, as an edit; for when the history goes.
    static void KeepHistory(Host& host, const std::shared_ptr<Node>& node);
};

} // namespace lightbox
