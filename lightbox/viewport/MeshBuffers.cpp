#include "viewport/MeshBuffers.h"

#include "scene/MeshData.h"
#include "scene/MeshTessellation.h"

#include <vector>

namespace lightbox {

namespace {

/// An unused mesh is freed after this number of frames. Meshes that blink stay.
constexpr unsigned MAX_UNUSED_MESH_FRAMES = 8;

template <class T>
void Upload(QOpenGLBuffer& buffer, const std::vector<T>& elements) {
    buffer.create();
    buffer.bind();
    buffer.allocate(elements.data(), static_cast<int>(elements.size() * sizeof(T)));
    buffer.release();
}

} // namespace

MeshBuffers::Buffers& MeshBuffers::Get(const MeshData& mesh) {
    std::unique_ptr<Buffers>& buffers = byRevision_[mesh.Revision()];
    if (!buffers) {
        const MeshTessellation& tessellation = mesh.Tessellation();
        buffers = std::make_unique<Buffers>();
        Upload(buffers->corners, tessellation.Corners());
        Upload(buffers->triangles, tessellation.Triangles());
        Upload(buffers->points, tessellation.LinePoints());
        Upload(buffers->lines, tessellation.Lines());
        buffers->triangleIndexes = static_cast<int>(tessellation.Triangles().size());
        buffers->lineIndexes = static_cast<int>(tessellation.Lines().size());
        ++uploads_;
    }
    buffers->lastFrame = frame_;
    return *buffers;
}

void MeshBuffers::EndFrame() {
    ++frame_;
    for (auto entry = byRevision_.begin(); entry != byRevision_.end();) {
        entry = frame_ - entry->second->lastFrame > MAX_UNUSED_MESH_FRAMES ? byRevision_.erase(entry)
                                                                           : std::next(entry);
    }
}

} // namespace lightbox
