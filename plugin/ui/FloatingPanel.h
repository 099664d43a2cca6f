#pragma once

#include <QByteArray>
#include <QDialog>

namespace vellix {

/// A tool window over the host's main window, in its palette and font. It opens where it was left, as large
/// as it was left, and always on a screen; the first time, and when its place was forgotten, in the middle of
/// the host's window. Escape and Return are left to what has the focus: a panel closes with its own button
/// only. Keys that move in a panel (space, return, arrows...) are its own while one of its widgets has the
/// focus, all other shortcuts remain the host's.
class FloatingPanel : public QDialog {
    Q_OBJECT

public:
    /// `geometry` is the member of Settings that keeps the panel's place; it has to outlive the panel.
    FloatingPanel(const QString& title, QByteArray& geometry, QWidget* parent);
    ~FloatingPanel() override;

    /// The place next to the wanted one that lies within `available`, as far as it is large enough. Both
    /// include the frame.
    static QRect MoveInto(const QRect& wanted, const QRect& available);

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    /// Done whenever the panel is shown.
    void RestorePlace();

private:
    QByteArray& m_geometry;
};

} // namespace vellix
