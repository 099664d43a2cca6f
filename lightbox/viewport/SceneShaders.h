#pragma once

#include <QOpenGLShaderProgram>

namespace lightbox {

/// The two shader programs that draw the scene: lit surfaces, and lines with a colour per vertex.
class SceneShaders {
public:
    /// The locations of the vertex attributes; they are the same in both programs.
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
