#include "shell/WindowInterface.h"

#include "controls/ControlRegistry.h"
#include "scene/Host.h"
#include "shell/MainWindow.h"
#include "shell/ProgressDisplay.h"
#include "shell/ScriptedWindow.h"
#include "shell/UnsavedChanges.h"
#include "viewport/ViewportPanel.h"
#include "viewport/ViewportPanels.h"
#include "viewport/ViewportWidget.h"

namespace lightbox {

WindowInterface::WindowInterface(Host& host)
    : host_(host)
    , window_(std::make_unique<lightbox::MainWindow>(host))
    , scripted_(std::make_unique<ScriptedWindow>(host, *window_))
    , progress_(std::make_unique<ProgressDisplay>(*window_)) {}

WindowInterface::~WindowInterface() = default;

MainWindow* WindowInterface::Current(Host& host) {
    auto* const interface = dynamic_cast<WindowInterface*>(host.ui());
    return interface ? &interface->Window() : nullptr;
}

QWidget& WindowInterface::MainWindow() {
    return *window_;
}

std::vector<View*> WindowInterface::Views() {
    std::vector<View*> views;
    for (ViewportPanel* const panel : window_->Panels().All()) {
        views.push_back(&panel->View());
    }
    return views;
}

View* WindowInterface::ActiveView() {
    ViewportPanel* const panel = window_->Panels().Active();
    return panel ? &panel->View() : nullptr;
}

void WindowInterface::RefreshViews(bool now) {
    window_->Panels().Refresh().RedrawAll(now);
}

QWidget* WindowInterface::FindControl(const std::string& name) {
    return scripted_->Controls().FindWidget(name);
}

void WindowInterface::ShowHelp(const std::string& text) {
    window_->ShowHelp(QString::fromStdString(text));
}

bool WindowInterface::IsComputing() const {
    return progress_->IsRunning();
}

void WindowInterface::ShowProgress(const std::string& what, int percent) {
    progress_->Show(QString::fromStdString(what), percent);
}

bool WindowInterface::IsInterruptRequested() {
    return progress_->IsInterruptRequested();
}

void WindowInterface::EndProgress() {
    progress_->End();
}

bool WindowInterface::SettleUnsavedChanges() {
    return UnsavedChanges::Settle(host_.files(), host_.output(), window_.get());
}

} // namespace lightbox
