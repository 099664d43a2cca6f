#include "scene/MeshTessellation.h"

#include "scene/MeshData.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace lightbox {

namespace {

using Imath::V3f;

constexpr std::uint32_t NONE = ~0u;
/// Scene files store this for a corner without a normal of its own.
constexpr float NO_NORMAL = 1e19f;
/// Maximum number of corners for ear clipping, whose time grows with their third power.
constexpr std::size_t MAX_CLIPPED_CORNERS = 400;

/// The face normal, twice as long as the face's area; also for faces that are not flat or not convex.
template <class PositionOf>
V3f AreaNormal(std::size_t count, const PositionOf& positionOf) {
    V3f sum(0.0f);
    const V3f origin = positionOf(0);
    for (std::size_t i = 1; i + 1 < count; ++i) {
        sum += (positionOf(i) - origin).cross(positionOf(i + 1) - origin);
    }
    return sum;
}

/// CornerGroups of corners that share a normal (a union-find).
class CornerGroups {
public:
    explicit CornerGroups(std::size_t count)
        : above_(count) {
        std::iota(above_.begin(), above_.end(), 0u);
    }
    std::uint32_t Find(std::uint32_t corner) {
        while (above_[corner] != corner) {
            above_[corner] = above_[above_[corner]];
            corner = above_[corner];
        }
        return corner;
    }
    void Join(std::uint32_t first, std::uint32_t second) { above_[Find(first)] = Find(second); }

private:
    std::vector<std::uint32_t> above_;
};

/// The vertex of each corner; -1 for all corners of a face with an invalid index.
std::vector<int> CornerVertices(const MeshData& mesh) {
    std::vector<int> vertices(mesh.corners.size());
    for (std::size_t face = 0; face < mesh.FaceCount(); ++face) {
        const std::size_t begin = mesh.FaceBegin(face);
        const std::size_t end = mesh.FaceEnd(face);
        bool isWhole = end >= begin + 3;
        for (std::size_t corner = begin; corner < end; ++corner) {
            vertices[corner] = mesh.VertexOf(mesh.corners[corner]);
            isWhole = isWhole && vertices[corner] >= 0;
        }
        if (!isWhole) {
            std::fill(vertices.begin() + static_cast<std::ptrdiff_t>(begin),
                      vertices.begin() + static_cast<std::ptrdiff_t>(end), -1);
        }
    }
    return vertices;
}

/// For each corner, the next one around its face.
std::vector<std::uint32_t> NextCorners(const MeshData& mesh) {
    std::vector<std::uint32_t> next(mesh.corners.size());
    for (std::size_t face = 0; face < mesh.FaceCount(); ++face) {
        for (std::size_t corner = mesh.FaceBegin(face); corner < mesh.FaceEnd(face); ++corner) {
            next[corner] = static_cast<std::uint32_t>(corner + 1 < mesh.FaceEnd(face) ? corner + 1
                                                                                      : mesh.FaceBegin(face));
        }
    }
    return next;
}

/// CornerGroups the corners at both ends of each smooth edge.
CornerGroups SmoothGroups(const MeshData& mesh, const std::vector<int>& vertices) {
    CornerGroups groups(mesh.corners.size());
    const std::vector<std::uint32_t> next = NextCorners(mesh);
    std::vector<std::uint32_t> firstAlong(mesh.edges.size(), NONE);
    for (std::size_t i = 0; i < mesh.corners.size(); ++i) {
        const auto corner = static_cast<std::uint32_t>(i);
        if (vertices[i] < 0) {
            continue;
        }
        const int number = mesh.corners[i];
        const auto edge = static_cast<std::size_t>(number < 0 ? -(number + 1) : number);
        if (mesh.edges[edge].smooth == 0) {
            continue;
        }
        const std::uint32_t other = firstAlong[edge];
        if (other == NONE) {
            firstAlong[edge] = corner;
            continue;
        }
        const bool isSameWay = vertices[other] == vertices[corner];
        groups.Join(corner, isSameWay ? other : next[other]);
        groups.Join(next[corner], isSameWay ? next[other] : other);
    }
    return groups;
}

std::vector<V3f> CornerNormals(const MeshData& mesh, const std::vector<int>& vertices) {
    CornerGroups groups = SmoothGroups(mesh, vertices);
    std::vector<V3f> sums(mesh.corners.size(), V3f(0.0f));
    for (std::size_t face = 0; face < mesh.FaceCount(); ++face) {
        const std::size_t begin = mesh.FaceBegin(face);
        const std::size_t end = mesh.FaceEnd(face);
        if (begin == end || vertices[begin] < 0) {
            continue;
        }
        const V3f normal = AreaNormal(end - begin, [&](std::size_t i) {
            return mesh.vertices[static_cast<std::size_t>(vertices[begin + i])];
        });
        for (std::size_t corner = begin; corner < end; ++corner) {
            sums[groups.Find(static_cast<std::uint32_t>(corner))] += normal;
        }
    }
    std::vector<V3f> normals(mesh.corners.size());
    const bool hasOwn = mesh.normals.size() == mesh.corners.size();
    for (std::size_t corner = 0; corner < normals.size(); ++corner) {
        const bool isOwn = hasOwn && std::abs(mesh.normals[corner].x) < NO_NORMAL;
        normals[corner] =
            (isOwn ? mesh.normals[corner] : sums[groups.Find(static_cast<std::uint32_t>(corner))])
                .normalized();
    }
    return normals;
}

} // namespace

MeshTessellation::MeshTessellation(const MeshData& mesh) {
    AddFaces(mesh);
    AddLines(mesh);
}

void MeshTessellation::AddFaces(const MeshData& mesh) {
    const std::vector<int> vertices = CornerVertices(mesh);
    const std::vector<V3f> normals = CornerNormals(mesh, vertices);
    corners_.reserve(mesh.corners.size());
    triangles_.reserve(mesh.corners.size() * 2);
    for (std::size_t face = 0; face < mesh.FaceCount(); ++face) {
        const std::size_t begin = mesh.FaceBegin(face);
        const std::size_t end = mesh.FaceEnd(face);
        if (begin == end || vertices[begin] < 0) {
            continue;
        }
        for (std::size_t corner = begin; corner < end; ++corner) {
            corners_.push_back({mesh.vertices[static_cast<std::size_t>(vertices[corner])], normals[corner]});
        }
        Triangulate(end - begin);
    }
}

void MeshTessellation::AddLines(const MeshData& mesh) {
    linePoints_ = mesh.vertices;
    lines_.reserve(mesh.edges.size() * 2);
    for (const MeshData::Edge& edge : mesh.edges) {
        const auto start = static_cast<std::size_t>(edge.start);
        const auto end = static_cast<std::size_t>(edge.end);
        if (start < mesh.vertices.size() && end < mesh.vertices.size()) {
            lines_.push_back(static_cast<std::uint32_t>(start));
            lines_.push_back(static_cast<std::uint32_t>(end));
        }
    }
}

void MeshTessellation::Triangulate(std::size_t count) {
    const std::size_t first = corners_.size() - count;
    const V3f normal = AreaNormal(count, [&](std::size_t i) { return corners_[first + i].position; });
    if (count > 3 && count <= MAX_CLIPPED_CORNERS && !IsFan(first, count, normal)) {
        ClipEars(first, count, normal);
        return;
    }
    for (std::size_t i = 1; i + 1 < count; ++i) {
        for (const std::size_t corner : {first, first + i, first + i + 1}) {
            triangles_.push_back(static_cast<std::uint32_t>(corner));
        }
    }
}

bool MeshTessellation::IsFan(std::size_t first, std::size_t count, const V3f& normal) const {
    const V3f& origin = corners_[first].position;
    for (std::size_t i = 1; i + 1 < count; ++i) {
        const V3f side = corners_[first + i].position - origin;
        const V3f next = corners_[first + i + 1].position - origin;
        if (side.cross(next).dot(normal) < 0.0f) {
            return false;
        }
    }
    return true;
}

void MeshTessellation::ClipEars(std::size_t first, std::size_t count, const V3f& normal) {
    std::vector<std::uint32_t> ring(count);
    std::iota(ring.begin(), ring.end(), static_cast<std::uint32_t>(first));
    const auto turn = [&](std::uint32_t a, std::uint32_t b, std::uint32_t c) {
        const V3f& middle = corners_[b].position;
        return (middle - corners_[a].position).cross(corners_[c].position - middle).dot(normal);
    };
    const auto isEar = [&](std::size_t at) {
        const std::size_t size = ring.size();
        const std::uint32_t a = ring[(at + size - 1) % size];
        const std::uint32_t b = ring[at];
        const std::uint32_t c = ring[(at + 1) % size];
        if (turn(a, b, c) <= 0.0f) {
            return false;
        }
        for (const std::uint32_t other : ring) {
            const bool isInside = other != a && other != b && other != c && turn(a, b, other) >= 0.0f &&
                                  turn(b, c, other) >= 0.0f && turn(c, a, other) >= 0.0f;
            if (isInside) {
                return false;
            }
        }
        return true;
    };
    std::size_t at = 0;
    while (ring.size() > 3) {
        // A face without an ear intersects itself; then any cut will do.
        for (std::size_t tries = 0; tries < ring.size() && !isEar(at % ring.size()); ++tries) {
            ++at;
        }
        at %= ring.size();
        const std::size_t size = ring.size();
        triangles_.insert(triangles_.end(), {ring[(at + size - 1) % size], ring[at], ring[(at + 1) % size]});
        ring.erase(ring.begin() + static_cast<std::ptrdiff_t>(at));
    }
    triangles_.insert(triangles_.end(), ring.begin(), ring.end());
}

} // namespace lightbox
