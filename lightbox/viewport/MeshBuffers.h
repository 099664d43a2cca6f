#pragma once

#include <QOpenGLBuffer>

#include <cstdint>
#include <memory>
#include <unordered_map>

namespace lightbox {

class MeshData;

/// Caches the vertex and index buffers of meshes in one OpenGL context, by mesh revision. Frees meshes that
/// no frame used for a while.
class MeshBuffers {
public:
    struct Buffers {
        QOpenGLBuffer corners{QOpenGLBuffer::VertexBuffer}; ///< position and normal, six floats
        QOpenGLBuffer triangles{QOpenGLBuffer::IndexBuffer};
        QOpenGLBuffer points{QOpenGLBuffer::VertexBuffer}; ///< position, three floats
        QOpenGLBuffer lines{QOpenGLBuffer::IndexBuffer};
        int triangleIndexes = 0;
        int lineIndexes = 0;
        unsigned lastFrame = 0;
    };

    /// The mesh's buffers, uploaded if necessary. The context has to be current in all calls.
    Buffers& Get(const MeshData& mesh);
    /// Ends a frame and frees the meshes that the last frames did not use.
    void EndFrame();
    /// The number of mesh uploads so far.
    unsigned UploadCount() const { return uploads_; }

private:
    std::unordered_map<std::uint64_t, std::unique_ptr<Buffers>> byRevision_;
    unsigned frame_ = 0;
    unsigned uploads_ = 0;
};

} // namespace lightbox
