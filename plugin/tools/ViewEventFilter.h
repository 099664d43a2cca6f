#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QKeyEvent;
class QMenu;
class QMouseEvent;
class QWidget;

namespace vellix {

/// Base of the tools' input handlers. While installed, a handler filters the events of the host's main window
/// and of every 3D view that was active at a press since then. Tracks whether the backslash key is held,
/// which leaves right clicks to the host. Widgets may be deleted at any time. Main thread only.
class ViewEventFilter : public QObject {
    Q_OBJECT

public:
    explicit ViewEventFilter(QObject* parent = nullptr);
    ~ViewEventFilter() override;

    /// Also filters the active view, if it is not filtered yet. Called at every press, so that each view is
    /// added when it is first used.
    void UpdateActiveViewEventFilter();

    bool eventFilter(QObject* watched, QEvent* event) final;

protected:
    /// Installs the filter on the main window and the active view. Treats all keys as released.
    void InstallEventFilters();
    /// Removes the filter from all widgets that still exist.
    void RemoveEventFilters();

    bool IsMainWindow(const QObject* watched) const;
    bool IsWatchedView(const QObject* watched) const;

    /// Updates the backslash state from a key event of the main window.
    void TrackBackslash(const QKeyEvent& event);
    bool IsBackslashHeld() const;
    /// Called when the main window loses the keyboard focus, since releases will then be missed. Overrides
    /// must call it.
    virtual void ForgetHeldKeys();

    /// Returns whether this is a right press with no modifier and no other button held. In a view it opens
    /// the tool's menu, unless backslash is held.
    static bool IsPlainRightPress(const QMouseEvent& event);
    /// Shows the menu at the pointer until it closes, and deletes it. The tool, and with it the handler, may
    /// be gone when it returns.
    static void ShowMenu(QMenu* menu);

    /// Returns whether the event is consumed. Handles the main window's loss of focus; overrides must pass on
    /// the events that they do not handle. May throw, which is reported.
    virtual bool ProcessEvent(QObject* watched, QEvent* event);

private:
    QPointer<QWidget> mainWindow_;
    QList<QPointer<QWidget>> views_;
    bool backslashHeld_ = false;
};

} // namespace vellix
