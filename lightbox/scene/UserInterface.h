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
    /// Asks the user about unsaved changes, if there are any, and saves them on request. Returns false when
    /// the user cancels what was about to happen (a new scene, the end).
    virtual bool SettleUnsavedChanges() = 0;
};

} // namespace lightbox
