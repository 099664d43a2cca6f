#include "scene/MeshData.h"

#include "scene/MeshTessellation.h"

namespace lightbox {

namespace {

std::uint64_t g_lastRevision = 0;

} // namespace

MeshData::MeshData()
    : revision_(++g_lastRevision) {}

MeshData::~MeshData() = default;

MeshData::MeshData(const MeshData& other)
    : vertices(other.vertices)
    , edges(other.edges)
    , faceBegins(other.faceBegins)
    , corners(other.corners)
    , faceExtras(other.faceExtras)
    , uvSets(other.uvSets)
    , normals(other.normals)
    , tweaks(other.tweaks)
    , revision_(++g_lastRevision) {}

void MeshData::BeginChange() {
    revision_ = ++g_lastRevision;
    tessellation_.reset();
    bounds_.reset();
}

bool MeshData::HasSameContent(const MeshData& other) const {
    return vertices == other.vertices && edges == other.edges && faceBegins == other.faceBegins &&
           corners == other.corners && faceExtras == other.faceExtras && uvSets == other.uvSets &&
           normals == other.normals && tweaks == other.tweaks;
}

std::shared_ptr<const MeshData> MeshData::Tweaked(const std::shared_ptr<const MeshData>& base,
                                                  const std::map<int, Imath::V3f>& tweaks) {
    if (!base || tweaks.empty()) {
        return base;
    }
    auto moved = std::make_shared<MeshData>(*base);
    moved->tweaks.clear();
    for (const auto& [vertex, offset] : tweaks) {
        if (static_cast<std::size_t>(vertex) < moved->vertices.size()) {
            moved->vertices[static_cast<std::size_t>(vertex)] += offset;
        }
    }
    return moved;
}

int MeshData::VertexOf(int edgeNumber) const {
    const bool backwards = edgeNumber < 0;
    const auto index = static_cast<std::size_t>(backwards ? -(edgeNumber + 1) : edgeNumber);
    if (index >= edges.size()) {
        return -1;
    }
    const int vertex = backwards ? edges[index].end : edges[index].start;
    return vertex >= 0 && static_cast<std::size_t>(vertex) < vertices.size() ? vertex : -1;
}

const Imath::Box3f& MeshData::Bounds() const {
    if (!bounds_) {
        Imath::Box3f bounds;
        for (const Imath::V3f& vertex : vertices) {
            bounds.extendBy(vertex);
        }
        bounds_ = std::make_unique<const Imath::Box3f>(bounds);
    }
    return *bounds_;
}

const MeshTessellation& MeshData::Tessellation() const {
    if (!tessellation_) {
        tessellation_ = std::make_unique<const MeshTessellation>(*this);
    }
    return *tessellation_;
}

} // namespace lightbox
