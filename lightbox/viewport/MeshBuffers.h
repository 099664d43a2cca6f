#pragma once

#include <QOpenGLBuffer>

#include <cstdint>
#include <memory>
#include <unordered_map>

namespace lightbox {

class MeshData;

/// The meshes of one OpenGL context in its memory, by revision. What no frame asked for in a while is freed.
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

    /// Uploads the mesh unless it is there. The context has to be current, as for all others.
    Buffers& Get(const MeshData& mesh);
    /// A frame is complete: frees what the last ones did not use.
    void EndFrame();
    /// How many meshes were uploaded so far.
    unsigned UploadCount() const { return uploads_; }

private:
    std::unordered_map<std::uint64_t, std::unique_ptr<Buffers>> byRevision_;
    unsigned frame_ = 0;
    unsigned uploads_ = 0;
};

} // namespace lightbox
