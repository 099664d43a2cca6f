#pragma once

#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/UserInterface.h"
#include "scene/View.h"

#include <QWidget>

#include <map>
#include <memory>
#include <string>
#include <vector>

/// A viewport without OpenGL that counts its calls.
class FakeView : public lightbox::View {
public:
    FakeView(std::string panel, const std::string& camera, const QSize& size)
        : panel_(std::move(panel)) {
        widget_.resize(size);
        LookThrough(camera);
    }

    void LookThrough(const std::string& shape) {
        camera_ = std::dynamic_pointer_cast<lightbox::DagNode>(lightbox::Host::Get().scene().Find(shape));
    }

    std::string PanelName() const override { return panel_; }
    QWidget& Widget() override { return widget_; }
    int Width() const override { return widget_.width(); }
    int Height() const override { return widget_.height(); }
    std::shared_ptr<lightbox::DagNode> Camera() const override { return camera_; }
    void SetCamera(const std::shared_ptr<lightbox::DagNode>& camera) override { camera_ = camera; }
    bool IsViewport2() const override { return isViewport2; }
    void Refresh(bool) override { ++refreshes; }
    void BeginGl() override { ++openGl; }
    void EndGl() override { --openGl; }
    void Present() override { ++presentations; }

    bool isViewport2 = true;
    int refreshes = 0;
    int openGl = 0;
    int presentations = 0;

private:
    std::string panel_;
    QWidget widget_;
    std::shared_ptr<lightbox::DagNode> camera_;
};

/// A window with the views and controls of a test, which keeps their ownership.
class FakeWindow : public lightbox::UserInterface {
public:
    /// Makes a window for the host, which owns it.
    static FakeWindow& Open(lightbox::Host& host) {
        auto window = std::make_unique<FakeWindow>();
        FakeWindow& opened = *window;
        host.SetUserInterface(std::move(window));
        return opened;
    }

    QWidget& MainWindow() override { return main_; }
    std::vector<lightbox::View*> Views() override { return views; }
    lightbox::View* ActiveView() override { return views.empty() ? nullptr : views.front(); }
    void RefreshViews(bool now) override {
        for (lightbox::View* view : views) {
            view->Refresh(now);
        }
    }
    QWidget* FindControl(const std::string& name) override {
        const auto found = controls.find(name);
        return found == controls.end() ? nullptr : found->second;
    }
    void ShowHelp(const std::string& text) override { help = text; }
    bool SettleUnsavedChanges() override { return true; }
    void ShowProgress(const std::string& what, int) override {
        progress = what;
        ++progressShown;
    }
    bool IsInterruptRequested() override { return progressShown >= interruptAfter; }
    void EndProgress() override { progress.clear(); }

    std::vector<lightbox::View*> views;
    std::map<std::string, QWidget*> controls;
    std::string help;
    std::string progress; ///< while a computation is shown
    int progressShown = 0;
    int interruptAfter = 1 << 30; ///< calls of ShowProgress

private:
    QWidget main_;
};
