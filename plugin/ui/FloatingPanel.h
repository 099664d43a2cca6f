#pragma once

#include "ui/GuardedWidget.h"

#include <QByteArray>
#include <QDialog>
#include <QList>

namespace vellix {

enum class Panel;

/// A tool window over the host's main window, in the host's palette and font. It reopens at its last place
/// and size, always on a screen; without a saved place it opens at the side of the active view, beside the
/// panels that are open. Escape
/// and Return go to the focused widget: only the panel's own close button closes it. Keys that work inside a
/// panel (space, return, arrows and so on) belong to it while one of its widgets has the focus. All other
/// shortcuts remain the host's.
class FloatingPanel : public GuardedWidget<QDialog> {
    Q_OBJECT

public:
    /// Takes its title from PanelTable and keeps its place in Settings.
    FloatingPanel(Panel panel, QWidget* parent);
    ~FloatingPanel() override;

    /// Returns the rectangle nearest to `wanted` that lies within `available`, as far as it fits. Both
    /// include the window frame. Screen pixels.
    static QRect MoveInto(const QRect& wanted, const QRect& available);

protected:
    bool HandleEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    /// Moves the panel to its saved place. Called whenever the panel is shown.
    void RestorePlace();
    /// Moves the panel onto its screen, as far as it fits. Call when it has become larger.
    void KeepOnScreen();

private:
    /// Frames of the panels that are open beside this one, in screen pixels.
    QList<QRect> PlacesOfOthers() const;

    QByteArray& geometry_;
};

} // namespace vellix
