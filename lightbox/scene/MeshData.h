#pragma once

#include <Imath/ImathBox.h>
#include <Imath/ImathVec.h>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

class MeshTessellation;

/// A polygon mesh as the attributes of a mesh node hold it: vertices, edges between vertices, and faces made
/// of edges. A scene file may hold wrong indices, so they are checked where they are used. Plugs share
/// values; a value that a plug holds does not change any more, a copy may be changed before a plug gets it.
class MeshData {
public:
    struct Edge {
        int start = 0;
        int end = 0;
        int smooth = 1; ///< as in the file; 0 means a hard edge
        bool operator==(const Edge& other) const {
            return start == other.start && end == other.end && smooth == other.smooth;
        }
    };
    /// A named set of texture coordinates and the faces that use it. `faces` is in ascending order; `ids`
    /// holds one id for each corner of those faces, face by face.
    struct UvSet {
        std::string name;
        std::vector<Imath::V2f> coordinates;
        std::vector<std::size_t> faces;
        std::vector<int> ids;
        bool operator==(const UvSet& other) const {
            return name == other.name && coordinates == other.coordinates && faces == other.faces &&
                   ids == other.ids;
        }
    };
    /// Face data that most faces lack.
    struct FaceExtra {
        std::vector<std::vector<int>> holes; ///< edge numbers, as in `corners`
        /// Parts of the face's text that this program does not interpret, as they are in the file: "mc 0 3 1
        /// 2 3".
        std::vector<std::string> otherParts;
        bool operator==(const FaceExtra& other) const {
            return holes == other.holes && otherParts == other.otherParts;
        }
    };

    MeshData();
    ~MeshData();
    /// Copies a mesh, to change the copy.
    MeshData(const MeshData& other);
    MeshData& operator=(const MeshData&) = delete;
    /// Whether both hold the same content; ignores revisions.
    bool HasSameContent(const MeshData& other) const;

    /// A new number for each object and after each BeginChange(), for caches to compare.
    std::uint64_t Revision() const { return revision_; }
    /// Call before changing in place a mesh that nobody else holds.
    void BeginChange();
    /// Returns `base` with the tweaks added to its vertices; `base` itself when there are none.
    static std::shared_ptr<const MeshData> Tweaked(const std::shared_ptr<const MeshData>& base,
                                                   const std::map<int, Imath::V3f>& tweaks);

    std::size_t FaceCount() const { return faceBegins.size(); }
    /// The range of a face's edges in `corners`.
    std::size_t FaceBegin(std::size_t face) const { return faceBegins[face]; }
    std::size_t FaceEnd(std::size_t face) const {
        return face + 1 < faceBegins.size() ? faceBegins[face + 1] : corners.size();
    }
    /// The vertex where an edge number of a face begins; -1 for an index out of range. An edge number is the
    /// index of the edge, or -(index + 1) when the face uses the edge backwards.
    int VertexOf(int edgeNumber) const;

    /// The bounding box of the drawn mesh; empty for a mesh without vertices.
    const Imath::Box3f& Bounds() const;
    /// Triangles and lines; made on the first call and cached.
    const MeshTessellation& Tessellation() const;

    std::vector<Imath::V3f> vertices;
    std::vector<Edge> edges;
    std::vector<std::size_t> faceBegins;
    std::vector<int> corners; ///< edge numbers of all faces, one after another
    std::map<std::size_t, FaceExtra> faceExtras;
    std::vector<UvSet> uvSets;
    /// One normal for each corner, if a file gives them.
    std::vector<Imath::V3f> normals;
    /// Offsets added to vertices, by vertex index: the attribute pnts.
    std::map<int, Imath::V3f> tweaks;

private:
    std::uint64_t revision_;
    mutable std::unique_ptr<const MeshTessellation> tessellation_;
    mutable std::unique_ptr<const Imath::Box3f> bounds_;
};

} // namespace lightbox
