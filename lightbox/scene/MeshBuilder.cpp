#include "scene/MeshBuilder.h"

#include <Imath/ImathVec.h>
#include <algorithm>

namespace lightbox {

MeshBuilder::MeshBuilder()
    : mesh_(std::make_shared<MeshData>()) {
    mesh_->uvSets.push_back({"map1", {}, {}, {}});
}

int MeshBuilder::AddVertex(const Imath::V3d& position) {
    mesh_->vertices.emplace_back(position);
    return static_cast<int>(mesh_->vertices.size()) - 1;
}

int MeshBuilder::AddUv(double u, double v) {
    auto& coordinates = mesh_->uvSets.front().coordinates;
    coordinates.emplace_back(static_cast<float>(u), static_cast<float>(v));
    return static_cast<int>(coordinates.size()) - 1;
}

std::uint64_t MeshBuilder::Key(int start, int end) {
    const auto low = static_cast<std::uint64_t>(std::min(start, end));
    return low << 32 | static_cast<std::uint64_t>(std::max(start, end));
}

void MeshBuilder::AddFace(const std::vector<int>& vertices, const std::vector<int>& uvs) {
    MeshData::UvSet& uvSet = mesh_->uvSets.front();
    if (!uvs.empty()) {
        uvSet.faces.push_back(mesh_->FaceCount());
        uvSet.ids.insert(uvSet.ids.end(), uvs.begin(), uvs.end());
    }
    mesh_->faceBegins.push_back(mesh_->corners.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const int start = vertices[i];
        const int end = vertices[(i + 1) % vertices.size()];
        const auto [found, isNew] =
            edges_.try_emplace(Key(start, end), static_cast<int>(mesh_->edges.size()));
        if (isNew) {
            mesh_->edges.push_back({start, end, 1});
        }
        const int edge = found->second;
        const bool isForward = mesh_->edges[static_cast<std::size_t>(edge)].start == start;
        mesh_->corners.push_back(isForward ? edge : -edge - 1);
    }
}

void MeshBuilder::Harden(int start, int end) {
    const auto found = edges_.find(Key(start, end));
    if (found != edges_.end()) {
        mesh_->edges[static_cast<std::size_t>(found->second)].smooth = 0;
    }
}

} // namespace lightbox
