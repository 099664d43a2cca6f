#pragma once

#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "host/entry/PluginMain.h"
#include "mel/Interpreter.h"
#include "node/BaseNode.h"
#include "shell/MainWindow.h"
#include "shell/WindowInterface.h"
#include "shell/WindowSession.h"
#include "viewport/ViewportPanel.h"
#include "viewport/ViewportPanels.h"
#include "viewport/ViewportWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <functional>
#include <string>

namespace vellix {

/// The plug-in in a window whose view of persp has the given size, if the screen is large enough.
class DrawingWindow {
public:
    explicit DrawingWindow(const QSize& view)
        : host_({false, prefs_.path().toStdString()})
        , session_(host_) {
        host_.plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        Run("setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1; qmVellixNode -c persp");
        Window().show();
        for (int round = 0; round < 5 && View().size() != view; ++round) {
            Window().resize(Window().size() + view - View().size());
            Turn(50);
        }
        Window().move(0, 0);
        Turn(200);
    }

    lightbox::MainWindow& Window() { return *lightbox::WindowInterface::Current(host_); }
    lightbox::ViewportWidget& View() { return Window().Panels().Find("modelPanel4")->View(); }
    static BaseNode& Node() { return *BaseNode::GetMaster(); }
    /// Draws the view and waits for the last pixel. Turns the event loop, because the window's composition
    /// begins no frame before the previous one is shown.
    void DrawNow() {
        const unsigned before = View().FrameCount();
        View().Refresh(false);
        Until([&] { return View().FrameCount() != before; });
        View().makeCurrent();
        QOpenGLContext::currentContext()->functions()->glFinish();
        View().doneCurrent();
    }
    void Run(const std::string& mel) { host_.interpreter().Execute(mel); }
    /// Runs the benchmarks in an application with windows. Called by main().
    static int RunBenchmarks(int argc, char** argv) {
        benchmark::Initialize(&argc, argv);
        lightbox::WindowSession::PrepareApplication();
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
        const QApplication application(argc, argv);
        benchmark::RunSpecifiedBenchmarks();
        return 0;
    }
    static void Turn(int milliseconds) {
        QElapsedTimer timer;
        timer.start();
        Until([&] { return timer.elapsed() >= milliseconds; });
    }
    static void Until(const std::function<bool()>& done) {
        QTimer heartbeat; // wakes the loop, since `done` may wait for time alone
        heartbeat.start(4);
        while (!done()) {
            QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        }
    }

private:
    QTemporaryDir prefs_;
    lightbox::LightboxHost host_;
    lightbox::WindowSession session_;
};

/// Uploads an image of a drawing's size to a texture in the view's OpenGL context.
class ImageUpload {
public:
    explicit ImageUpload(QOpenGLWidget& view)
        : view_(view)
        , image_(1024, 1024, QImage::Format_RGBA8888) {
        image_.fill(Qt::transparent);
        view_.makeCurrent();
        gl_ = QOpenGLContext::currentContext()->functions();
        gl_->glGenTextures(1, &texture_);
        gl_->glBindTexture(GL_TEXTURE_2D, texture_);
        gl_->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, image_.width(), image_.height(), 0, GL_RGBA,
                          GL_UNSIGNED_BYTE, nullptr);
        view_.doneCurrent();
    }
    ~ImageUpload() {
        view_.makeCurrent();
        gl_->glDeleteTextures(1, &texture_);
        view_.doneCurrent();
    }
    ImageUpload(const ImageUpload&) = delete;
    ImageUpload& operator=(const ImageUpload&) = delete;

    /// Uploads the image and waits until that is done.
    void Run() const {
        view_.makeCurrent();
        gl_->glBindTexture(GL_TEXTURE_2D, texture_);
        gl_->glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, image_.width(), image_.height(), GL_RGBA,
                             GL_UNSIGNED_BYTE, image_.constBits());
        gl_->glFinish();
        view_.doneCurrent();
    }

private:
    QOpenGLWidget& view_;
    QImage image_;
    QOpenGLFunctions* gl_ = nullptr;
    GLuint texture_ = 0;
};

} // namespace vellix
