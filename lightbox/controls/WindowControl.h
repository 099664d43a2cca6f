#pragma once

#include "controls/Control.h"

#include <QMainWindow>

namespace lightbox {

class ControlRegistry;

/// The main window as a control. Layouts and controls that scripts make without a parent go into a hidden
/// widget of the window, until their maker moves the widget elsewhere.
class MainWindowControl : public Control {
public:
    explicit MainWindowControl(QMainWindow& window);

    void AddChild(Control& child) override;
    bool TakesChildren() const override { return true; }
    QMenuBar* MenuBar() override;

private:
    QWidget* holder_;
};

/// The widget of a MEL window. It tells its control when the user closes, minimizes or restores it.
class ControlWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit ControlWindow(QWidget* parent);

    /// Hides the window when it is closed, instead of deleting it.
    bool isRetained = false;
    /// Whether a script set a size or position; otherwise Show() chooses one.
    bool hasSize = false;
    bool hasPlace = false;
    bool fitsChildren = false;

    void SetFlag(Qt::WindowType flag, bool on);

Q_SIGNALS:
    void Closed();
    void Minimized();
    void Restored();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
};

/// A window that MEL made.
class WindowControl : public Control {
public:
    WindowControl(const ControlType& type, const std::string& name, ControlRegistry& registry);

    void AddChild(Control& child) override;
    bool StretchesWidth(const Control&) const override { return true; }
    bool StretchesHeight(const Control&) const override { return true; }
    bool TakesChildren() const override { return true; }
    QMenuBar* MenuBar() override;

    /// Shows the window in front of the others, where it was when it was last closed.
    void Show();
    void Hide();

private:
    void Remember();

    ControlRegistry& registry_;
    ControlWindow* window_;
};

} // namespace lightbox
