#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QKeyEvent;
class QMenu;
class QMouseEvent;
class QWidget;

namespace vellix {

/// What the input handlers of the tools have in common: while installed, a handler filters the events of the
/// host's main window and of every 3D view that was active at a press since then, and knows whether the
/// backslash key is held, with which right clicks belong to the host. Widgets may go at any time. Main thread
/// only.
class ViewEventFilter : public QObject {
    Q_OBJECT

public:
    explicit ViewEventFilter(QObject* parent = nullptr);
    ~ViewEventFilter() override;

    /// Filters the active view as well, once, if it is not filtered yet. Views are so taken one by one, as
    /// they come into use.
    void UpdateActiveViewEventFilter();

protected:
    /// On the main window and the active view. Keys count as released.
    void InstallEventFilters();
    /// From everything that is filtered and still there.
    void RemoveEventFilters();

    bool IsMainWindow(const QObject* watched) const;
    bool IsWatchedView(const QObject* watched) const;

    /// Takes notice of a backslash pressed or released on the main window.
    void TrackBackslash(const QKeyEvent& event);
    bool IsBackslashHeld() const;
    /// The main window has lost the keyboard: releases will not be seen. Overrides call it.
    virtual void ForgetHeldKeys();

    /// A press of the right button with no modifier and no other button held. In a view it asks for the
    /// tool's menu, unless backslash is held.
    static bool IsPlainRightPress(const QMouseEvent& event);
    /// Shows the menu at the pointer until it is closed, and takes it over. The tool, and with it the
    /// handler, may be gone when it returns.
    static void ShowMenu(QMenu* menu);

    /// The main window's loss of the keyboard; overrides call it with what they do not handle.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QWidget> m_mainWindow;
    QList<QPointer<QWidget>> m_views;
    bool m_backslashHeld = false;
};

} // namespace vellix
