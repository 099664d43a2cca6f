#pragma once

#include <Imath/ImathVec.h>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lightbox {

class MeshData;

/// The drawable form of a mesh: triangles with a normal at each corner, and its edges as lines. Leaves out
/// faces and edges with invalid indices.
class MeshTessellation {
public:
    explicit MeshTessellation(const MeshData& mesh);

    struct Corner {
        Imath::V3f position;
        Imath::V3f normal;
    };
    const std::vector<Corner>& Corners() const { return corners_; }
    /// Three indexes into Corners() for each triangle, counterclockwise from outside.
    const std::vector<std::uint32_t>& Triangles() const { return triangles_; }
    const std::vector<Imath::V3f>& LinePoints() const { return linePoints_; }
    /// Two indexes into LinePoints() for each edge.
    const std::vector<std::uint32_t>& Lines() const { return lines_; }

private:
    void AddFaces(const MeshData& mesh);
    void AddLines(const MeshData& mesh);
    /// Triangulates the face made of the last `count` corners.
    void Triangulate(std::size_t count);
    bool IsFan(std::size_t first, std::size_t count, const Imath::V3f& normal) const;
    void ClipEars(std::size_t first, std::size_t count, const Imath::V3f& normal);

    std::vector<Corner> corners_;
    std::vector<std::uint32_t> triangles_;
    std::vector<Imath::V3f> linePoints_;
    std::vector<std::uint32_t> lines_;
};

} // namespace lightbox
