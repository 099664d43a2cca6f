#pragma once

#include "scene/MeshData.h"
#include "scene/Plug.h"

#include <memory>

namespace lightbox {

class Host;

/// The geometry of a mesh node. The node holds geometry of its own, which scene files store as vrts, edges,
/// faces and so on. A connected inMesh replaces it; of the node's own geometry then only the tweaks (pnts)
/// count.
class MeshNode {
public:
    /// The hidden attribute that holds the geometry for the published attributes.
    static constexpr const char* OWN_GEOMETRY = "lightboxGeometry";

    static bool Is(const Node& node) { return node.Type().IsA("mesh"); }
    /// The plug that holds the node's own geometry.
    static Plug OwnPlug(const std::shared_ptr<Node>& node);
    /// The node's own geometry; null when there is none.
    static std::shared_ptr<const MeshData> Own(const Node& node);
    /// The mesh that is drawn and that outMesh returns; null when there is none. Returns the same object
    /// until something changes.
    static std::shared_ptr<const MeshData> Evaluate(const Node& node);

    /// Copies the mesh from inMesh into the node's own geometry, as an undoable edit. For when its history is
    /// deleted.
    static void KeepHistory(Host& host, const std::shared_ptr<Node>& node);
};

} // namespace lightbox
