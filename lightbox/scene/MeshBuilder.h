#pragma once

#include "scene/MeshData.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace lightbox {

/// Puts a mesh together from vertices and faces; edges are found where faces meet.
class MeshBuilder {
public:
    MeshBuilder();

    int AddVertex(const Imath::V3d& position);
    int AddUv(double u, double v);
    int VertexCount() const { return static_cast<int>(mesh_->vertices.size()); }
    /// Counterclockwise from outside. `uvs` is as long, or empty.
    void AddFace(const std::vector<int>& vertices, const std::vector<int>& uvs);
    /// Makes an edge hard; it has to be one of a face.
    void Harden(int start, int end);
    /// Ends the building.
    std::shared_ptr<MeshData> Take() { return std::move(mesh_); }

private:
    static std::uint64_t Key(int start, int end);

    std::shared_ptr<MeshData> mesh_;
    std::unordered_map<std::uint64_t, int> edges_;
};

} // namespace lightbox
