#pragma once

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

#include <functional>
#include <gtest/gtest.h>

/// A current OpenGL context without a window.
class OffscreenGl {
public:
    OffscreenGl() {
        surface_.create();
        EXPECT_TRUE(context_.create());
        EXPECT_TRUE(context_.makeCurrent(&surface_));
    }
    ~OffscreenGl() { context_.doneCurrent(); }

    /// Draws into a cleared framebuffer of the size in pixels, and returns its image.
    QImage Picture(const QSize& size, const QColor& background, const std::function<void()>& draw) {
        QOpenGLFramebufferObject buffer(size, QOpenGLFramebufferObject::CombinedDepthStencil);
        buffer.bind();
        QOpenGLFunctions& gl = *context_.functions();
        gl.glViewport(0, 0, size.width(), size.height());
        gl.glClearColor(static_cast<float>(background.redF()), static_cast<float>(background.greenF()),
                        static_cast<float>(background.blueF()), 1.0f);
        gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        draw();
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return buffer.toImage().convertToFormat(QImage::Format_RGBA8888);
    }

private:
    QOffscreenSurface surface_;
    QOpenGLContext context_;
};
