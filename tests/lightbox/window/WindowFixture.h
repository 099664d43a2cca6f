#pragma once

#include "app/LightboxHost.h"
#include "mel/Interpreter.h"
#include "scene/DagNode.h"
#include "scene/Output.h"
#include "scene/Plug.h"
#include "scene/Scene.h"
#include "shell/MainWindow.h"
#include "shell/WindowInterface.h"
#include "shell/WindowSession.h"
#include "viewport/PanelLayout.h"
#include "viewport/ViewportPanel.h"
#include "viewport/ViewportPanels.h"
#include "viewport/ViewportWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QWidget>

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

/// A host with a window of a known size. Keeps the host's messages.
class WindowFixture : public ::testing::Test {
protected:
    WindowFixture() {
        LetGoOfButtons();
        Start();
    }

    /// Releases the buttons that tests before have left down: they are down for the whole program, and a
    /// window does not save automatically then.
    static void LetGoOfButtons() {
        QWidget nobody;
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            if (QGuiApplication::mouseButtons().testFlag(button)) {
                QTest::mouseRelease(&nobody, button);
            }
        }
    }

    void Start() {
        host_ = std::make_unique<lightbox::LightboxHost>(
            lightbox::Host::Options{false, prefs_.path().toStdString()});
        host_->output().SetSink([this](lightbox::Output::Kind kind, const std::string& text) {
            messages_.push_back(lightbox::Output::Worded(kind, text));
        });
        session_ = std::make_unique<lightbox::WindowSession>(*host_);
    }
    void Stop() {
        session_.reset();
        host_.reset();
    }
    /// Ends this host and starts another with the same preferences.
    void Restart() {
        Stop();
        Start();
    }

    lightbox::MainWindow& Window() { return *lightbox::WindowInterface::Current(*host_); }
    lightbox::ViewportPanel& Panel(const char* name) { return *Window().Panels().Find(name); }
    lightbox::ViewportWidget& View(const char* panel = "modelPanel4") { return Panel(panel).View(); }
    lightbox::mel::Value Run(const std::string& text) { return host_->interpreter().Execute(text); }
    double Number(const std::string& plug) { return host_->scene().FindPlug(plug).Number(); }

    void Show(const QSize& size = {1100, 900}) {
        Window().resize(size);
        Window().show();
        // Without a window manager, nobody else gives the window the keyboard focus.
        QApplication::setActiveWindow(&Window());
        Settle();
    }
    /// Runs the event loop until nothing is left to do.
    static void Settle(int milliseconds = 60) {
        QElapsedTimer timer;
        timer.start();
        // On a busy machine one round may take all the time and leave what it queued to the next.
        for (int round = 0; timer.elapsed() < milliseconds || round < 5; ++round) {
            QApplication::processEvents(QEventLoop::AllEvents, 10);
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QThread::msleep(1);
        }
    }
    /// Waits for the condition. False if it does not become true in time.
    static bool WaitFor(const std::function<bool()>& condition, int milliseconds = 5000) {
        QElapsedTimer timer;
        timer.start();
        while (!condition() && timer.elapsed() < milliseconds) {
            Settle(5);
        }
        return condition();
    }

    QTemporaryDir prefs_;
    std::vector<std::string> messages_;
    std::unique_ptr<lightbox::LightboxHost> host_;
    std::unique_ptr<lightbox::WindowSession> session_;
};
