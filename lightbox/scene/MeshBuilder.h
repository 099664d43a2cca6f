#pragma once

#include "scene/MeshData.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace lightbox {

/// Builds a mesh from vertices and faces; makes one edge where faces meet.
class MeshBuilder {
public:
    MeshBuilder();

    int AddVertex(const Imath::V3d& position);
    int AddUv(double u, double v);
    int VertexCount() const { return static_cast<int>(mesh_->vertices.size()); }
    /// Vertex indices, counterclockwise from outside. `uvs` is as long as `vertices`, or empty.
    void AddFace(const std::vector<int>& vertices, const std::vector<int>& uvs);
    /// Makes an edge hard. The edge must belong to a face.
    void Harden(int start, int end);
    /// Returns the mesh and ends the building.
    std::shared_ptr<MeshData> Take() { return std::move(mesh_); }

private:
    static std::uint64_t Key(int start, int end);

    std::shared_ptr<MeshData> mesh_;
    std::unordered_map<std::uint64_t, int> edges_;
};

} // namespace lightbox
