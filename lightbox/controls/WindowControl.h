#pragma once

#include "controls/Control.h"

#include <QMainWindow>

namespace lightbox {

class ControlRegistry;

/// The main window as a control. Layouts and controls that scripts make without saying where find a place in
/// it that is not shown, until whoever made them puts their widget elsewhere.
class MainWindowControl : public Control {
public:
    explicit MainWindowControl(QMainWindow& window);

    void AddChild(Control& child) override;
    bool TakesChildren() const override { return true; }
    QMenuBar* MenuBar() override;

private:
    QWidget* holder_;
};

/// The widget of a window that MEL made: it tells its control when the user closes it.
class ControlWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit ControlWindow(QWidget* parent);

    /// Keeps the window, hidden, when it is closed.
    bool isRetained = false;
    /// Whether a size or place was asked for, so that showing it need not choose one.
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

/// A window of its own.
class WindowControl : public Control {
public:
    WindowControl(const ControlType& type, const std::string& name, ControlRegistry& registry);

    void AddChild(Control& child) override;
    bool StretchesWidth(const Control&) const override { return true; }
    bool StretchesHeight(const Control&) const override { return true; }
    bool TakesChildren() const override { return true; }
    QMenuBar* MenuBar() override;

    /// Shows it in front, where it was when it was last closed.
    void Show();
    void Hide();

private:
    void Remember();

    ControlRegistry& registry_;
    ControlWindow* window_;
};

} // namespace lightbox
