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

/// A polygon mesh, as the attributes of a mesh node hold it: vertices, edges between vertices, and faces made
/// of edges. What a scene file says may be wrong: indexes are checked where they are used. Values are shared
/// between plugs and do not change once a plug holds them; a copy may be changed first.
class MeshData {
public:
    struct Edge {
        int start = 0;
        int end = 0;
        int smooth = 1; ///< as in the file; 0 is a hard edge
        bool operator==(const Edge& other) const {
            return start == other.start && end == other.end && smooth == other.smooth;
        }
    };
    /// Texture coordinates by name, and which of them faces use: `faces` in rising order, and in `ids` as
    /// many for each of those faces as it has corners.
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
    /// What few faces have.
    struct FaceExtra {
        std::vector<std::vector<int>> holes; ///< edges, as those of faces
        /// Parts of the face's text that have no meaning here, each as it stands in a file: "mc 0 3 1 2 3".
        std::vector<std::string> otherParts;
        bool operator==(const FaceExtra& other) const {
            return holes == other.holes && otherParts == other.otherParts;
        }
    };

    MeshData();
    ~MeshData();
    /// The same mesh, to be changed.
    MeshData(const MeshData& other);
    MeshData& operator=(const MeshData&) = delete;
    /// Whether they hold the same, whatever their revisions.
    bool HasSameContent(const MeshData& other) const;

    /// Another one for each value: for those who keep what they made of it.
    std::uint64_t Revision() const { return revision_; }
    /// Before a mesh that nobody else holds is changed in place.
    void BeginChange();
    /// The same mesh with its tweaks added to the vertices of `base`; `base` itself when there are none.
    static std::shared_ptr<const MeshData> Tweaked(const std::shared_ptr<const MeshData>& base,
                                                   const std::map<int, Imath::V3f>& tweaks);

    std::size_t FaceCount() const { return faceBegins.size(); }
    /// The edges of a face begin here in `corners`, and end there.
    std::size_t FaceBegin(std::size_t face) const { return faceBegins[face]; }
    std::size_t FaceEnd(std::size_t face) const {
        return face + 1 < faceBegins.size() ? faceBegins[face + 1] : corners.size();
    }
    /// The vertex at which the edge of a corner begins; -1 when the file's indexes lead nowhere. An edge
    /// number of a face is the edge, or -(edge + 1) when the face runs along it backwards.
    int VertexOf(int edgeNumber) const;

    /// Around what is drawn; empty for a mesh without vertices.
    const Imath::Box3f& Bounds() const;
    /// Triangles and lines; made when first asked for, and kept.
    const MeshTessellation& Tessellation() const;

    std::vector<Imath::V3f> vertices;
    std::vector<Edge> edges;
    std::vector<std::size_t> faceBegins;
    std::vector<int> corners; ///< edge numbers of all faces, one after another
    std::map<std::size_t, FaceExtra> faceExtras;
    std::vector<UvSet> uvSets;
    /// A normal for each corner, where a file gives them.
    std::vector<Imath::V3f> normals;
    /// What is added to vertices: the attribute pnts.
    std::map<int, Imath::V3f> tweaks;

private:
    std::uint64_t revision_;
    mutable std::unique_ptr<const MeshTessellation> tessellation_;
    mutable std::unique_ptr<const Imath::Box3f> bounds_;
};

} // namespace lightbox
