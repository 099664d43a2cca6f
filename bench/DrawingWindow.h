#pragma once

#include "host/PluginMain.h"
#include "mel/Interpreter.h"
#include "node/BaseNode.h"
#include "scene/Host.h"
#include "scene/PluginManager.h"
#include "window/MainWindow.h"
#include "window/ViewportPanel.h"
#include "window/ViewportPanels.h"
#include "window/ViewportWidget.h"
#include "window/WindowInterface.h"
#include "window/WindowSession.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <functional>
#include <string>

namespace vellix {

/// The plug-in in a window whose view of persp has the given size, as far as the screen lets it.
class DrawingWindow {
public:
    explicit DrawingWindow(const QSize& view)
        : m_host({false, m_prefs.path().toStdString()})
        , m_session(m_host) {
        m_host.plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        Run("setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1; qmVellixNode -c persp");
        Window().show();
        for (int round = 0; round < 5 && View().size() != view; ++round) {
            Window().resize(Window().size() + view - View().size());
            Turn(50);
        }
        Window().move(0, 0);
        Turn(200);
    }

    lightbox::MainWindow& Window() { return *lightbox::WindowInterface::Current(m_host); }
    lightbox::ViewportWidget& View() { return Window().Panels().Find("modelPanel4")->View(); }
    static BaseNode& Node() { return *BaseNode::GetMaster(); }
    void Run(const std::string& mel) { m_host.interpreter().Execute(mel); }
    /// What main() does: the benchmarks, in an application with windows.
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
        QTimer heartbeat; // time may be what is waited for
        heartbeat.start(4);
        while (!done()) {
            QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        }
    }

private:
    QTemporaryDir m_prefs;
    lightbox::Host m_host;
    lightbox::WindowSession m_session;
};

} // namespace vellix
