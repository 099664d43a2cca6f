#pragma once

#include "scene/NonCopyable.h"

#include <memory>

namespace lightbox {

struct DrawnScene;

/// Draws the scene of a viewport with OpenGL: background, grid, meshes, and the outlines of cameras and
/// locators. It caches uploaded meshes, so each OpenGL context has its own renderer, and a mesh is uploaded
/// again only when it changed. It does not draw plug-in shapes.
class SceneRenderer : NonCopyable {
public:
    SceneRenderer();
    /// The context has to be current if Draw() was called before.
    ~SceneRenderer();

    /// Call once, with the context current: OpenGL 2.1 or a compatibility profile. False when the context is
    /// not usable; then Draw() does nothing.
    bool Initialize();
    /// Clears the bound framebuffer and draws the scene into it, with `devicePixelRatio` screen pixels per
    /// view pixel. If the scissor test is on, draws only within the scissor box. Resets OpenGL's state to its
    /// defaults except for the viewport and the scissor test. The depth buffer keeps the depth of the scene.
    void Draw(const DrawnScene& scene, double devicePixelRatio);
    /// The number of mesh uploads so far.
    unsigned UploadCount() const;

private:
    class Private;
    std::unique_ptr<Private> d_;
};

} // namespace lightbox
