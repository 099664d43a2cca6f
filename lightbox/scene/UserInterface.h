#pragma once

#include <string>
#include <vector>

class QWidget;

namespace lightbox {

class View;

/// The window, as everything below it sees it. In batch there is none.
class UserInterface {
public:
    virtual ~UserInterface() = default;

    virtual QWidget& MainWindow() = 0;
    /// The viewports that are there, in the order of their panels, floating ones included.
    virtual std::vector<View*> Views() = 0;
    /// The one that was used last; null when there is none.
    virtual View* ActiveView() = 0;
    /// Redraws every viewport: at once, or when the event loop comes to it.
    virtual void RefreshViews(bool now) = 0;
    /// The widget behind a control of MEL, by its name or its whole path ("MayaWindow|pane|button1"); null
    /// when there is none.
    virtual QWidget* FindControl(const std::string& name) = 0;
    /// A line about the tool in use, for the help line.
    virtual void ShowHelp(const std::string& text) = 0;
    /// Asks about unsaved changes when there are any, and saves them when that is wanted. True when what was
    /// about to happen (a new scene, the end) may go on.
    virtual bool SettleUnsavedChanges() = 0;
};

} // namespace lightbox
