#pragma once

#include <string>
#include <vector>

class QWidget;

namespace lightbox {

class View;

/// The user interface as seen by the code below the window. Null in batch.
class UserInterface {
public:
    virtual ~UserInterface() = default;

    virtual QWidget& MainWindow() = 0;
    /// The existing viewports in the order of their panels, floating ones included.
    virtual std::vector<View*> Views() = 0;
    /// The view used last; null when there is none.
    virtual View* ActiveView() = 0;
    /// Redraws every viewport: at once with `now`, else from the event loop.
    virtual void RefreshViews(bool now) = 0;
    /// The widget of a MEL control, by its name or full path ("MayaWindow|pane|button1"); null when there is
    /// none.
    virtual QWidget* FindControl(const std::string& name) = 0;
    /// Shows a line about the current tool in the help line.
    virtual void ShowHelp(const std::string& text) = 0;
    /// Shows how far a long computation is, 0 to 100 percent. The user sees it, with a way to cancel, once it
    /// has taken a moment.
    virtual void ShowProgress(const std::string& what, int percent) = 0;
    /// Whether the user has cancelled the computation that is shown. Receives what the user does meanwhile,
    /// but nothing else: no timer, socket or other command runs in between.
    virtual bool IsInterruptRequested() = 0;
    virtual void EndProgress() = 0;
    /// Asks the user about unsaved changes, if there are any, and saves them on request. Returns false when
    /// the user cancels what was about to happen (a new scene, the end).
    virtual bool SettleUnsavedChanges() = 0;
};

} // namespace lightbox
