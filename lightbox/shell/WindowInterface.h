#pragma once

#include "scene/UserInterface.h"

#include <memory>

namespace lightbox {

class Host;
class MainWindow;
class ProgressDisplay;
class ScriptedWindow;

/// The implementation of UserInterface with the main window, which it owns.
class WindowInterface : public UserInterface {
public:
    explicit WindowInterface(Host& host);
    ~WindowInterface() override;

    lightbox::MainWindow& Window() { return *window_; }
    ScriptedWindow& Scripted() { return *scripted_; }
    /// The main window of the running host; null in batch.
    static lightbox::MainWindow* Current(Host& host);
    /// Whether a long computation is shown, amid which nothing else may begin.
    bool IsComputing() const;

    QWidget& MainWindow() override;
    std::vector<View*> Views() override;
    View* ActiveView() override;
    void RefreshViews(bool now) override;
    QWidget* FindControl(const std::string& name) override;
    void ShowHelp(const std::string& text) override;
    void ShowProgress(const std::string& what, int percent) override;
    bool IsInterruptRequested() override;
    void EndProgress() override;
    bool SettleUnsavedChanges() override;

private:
    Host& host_;
    std::unique_ptr<lightbox::MainWindow> window_;
    std::unique_ptr<ScriptedWindow> scripted_;
    std::unique_ptr<ProgressDisplay> progress_;
};

} // namespace lightbox
