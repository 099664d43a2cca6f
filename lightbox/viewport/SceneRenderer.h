#pragma once

#include "scene/NonCopyable.h"

#include <memory>

namespace lightbox {

struct DrawnScene;

/// Draws the scene of a viewport with OpenGL: background, grid, meshes, and the outlines of cameras and
/// locators. It keeps what it uploaded, so there is one for each OpenGL context, and a mesh is uploaded again
/// only when it changed. What plug-ins draw is not its concern.
class SceneRenderer : NonCopyable {
public:
    SceneRenderer();
    /// The context has to be current when anything was drawn.
    ~SceneRenderer();

    /// Once, with the context current; the context is of OpenGL 2.1 or a compatibility profile. False when
    /// the context cannot be drawn with; then Draw() does nothing.
    bool Initialize();
    /// Clears the bound framebuffer and draws the scene into it, at view pixels times `devicePixelRatio`;
    /// with the scissor test on, only within the box. Leaves OpenGL's state as a new context has it, but for
    /// the viewport and the scissor test, and the depth buffer as it was drawn.
    void Draw(const DrawnScene& scene, double devicePixelRatio);
    /// Meshes brought to the card so far.
    unsigned UploadCount() const;

private:
    class Private;
    std::unique_ptr<Private> d_;
};

} // namespace lightbox
