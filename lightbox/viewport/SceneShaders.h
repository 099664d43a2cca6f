#pragma once

#include <QOpenGLShaderProgram>

namespace lightbox {

/// The two programs that draw the scene: lit surfaces, and lines of one colour each vertex.
class SceneShaders {
public:
    /// Places of the vertex attributes in both programs.
    enum Attribute { Position = 0, Normal = 1, Color = 1 };

    /// False when the context cannot compile them.
    bool Build();

    QOpenGLShaderProgram& Surface() { return surface_; }
    QOpenGLShaderProgram& Lines() { return lines_; }

private:
    QOpenGLShaderProgram surface_;
    QOpenGLShaderProgram lines_;
};

} // namespace lightbox
