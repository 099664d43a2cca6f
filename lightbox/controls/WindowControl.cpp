#include "controls/WindowControl.h"

#include "controls/ControlRegistry.h"
#include "controls/ControlType.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QVBoxLayout>

#include <algorithm>

namespace lightbox {

namespace {

const ControlType& MainWindowType() {
    static const ControlType type = [] {
        ControlType made;
        made.name = "window";
        made.family = ControlType::Family::Window;
        return made;
    }();
    return type;
}

} // namespace

MainWindowControl::MainWindowControl(QMainWindow& window)
    : Control(MainWindowType(), "MayaWindow", nullptr, &window)
    , holder_(new QWidget(&window)) {
    holder_->hide();
    new QVBoxLayout(holder_);
}

void MainWindowControl::AddChild(Control& child) {
    holder_->layout()->addWidget(child.Widget());
}

QMenuBar* MainWindowControl::MenuBar() {
    return As<QMainWindow>()->menuBar();
}

ControlWindow::ControlWindow(QWidget* parent)
    : QMainWindow(parent, Qt::Window) {
    auto* const holder = new QWidget(this);
    auto* const layout = new QVBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    setCentralWidget(holder);
}

void ControlWindow::SetFlag(Qt::WindowType flag, bool on) {
    const bool wasVisible = isVisible();
    setWindowFlags(on ? windowFlags() | flag : windowFlags() & ~flag);
    setVisible(wasVisible);
}

void ControlWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    Q_EMIT Closed();
}

void ControlWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        const bool was = static_cast<QWindowStateChangeEvent*>(event)->oldState() & Qt::WindowMinimized;
        if (was != isMinimized()) {
            was ? Restored() : Minimized();
        }
    }
}

WindowControl::WindowControl(const ControlType& type, const std::string& name, ControlRegistry& registry)
    : Control(type, name, nullptr, new ControlWindow(registry.MainWindow().Widget()))
    , registry_(registry)
    , window_(As<ControlWindow>()) {
    QObject::connect(window_, &ControlWindow::Minimized, window_,
                     [this] { registry_.Run(*this, "-minimizeCommand"); });
    QObject::connect(window_, &ControlWindow::Restored, window_,
                     [this] { registry_.Run(*this, "-restoreCommand"); });
    QObject::connect(window_, &ControlWindow::Closed, window_, [this] {
        Remember();
        const auto found = scripts.find("-closeCommand");
        const std::string script = found == scripts.end() ? std::string() : found->second;
        ControlRegistry& registry = registry_;
        if (!window_->isRetained) {
            registry.Delete(*this);
        }
        // Run the script after the window is deleted: it may make a window of the same name.
        registry.RunScript(script);
    });
}

void WindowControl::AddChild(Control& child) {
    window_->centralWidget()->layout()->addWidget(child.Widget());
}

QMenuBar* WindowControl::MenuBar() {
    return window_->menuBar();
}

void WindowControl::Remember() {
    registry_.windowPlaces[Name()] = QRect(window_->pos(), window_->size());
}

void WindowControl::Show() {
    const bool wasVisible = window_->isVisible();
    const auto place = registry_.windowPlaces.find(Name());
    if (!wasVisible && place != registry_.windowPlaces.end()) {
        window_->resize(place->second.size());
        window_->move(place->second.topLeft());
    } else if (!wasVisible && (!window_->hasSize || window_->fitsChildren)) {
        window_->adjustSize();
        constexpr int leastWidth = 160;
        window_->resize(std::max(window_->width(), leastWidth), window_->height());
    }
    if (!wasVisible && !window_->hasPlace && place == registry_.windowPlaces.end()) {
        const QRect around = registry_.MainWindow().Widget()->frameGeometry();
        window_->move(around.center() - window_->rect().center());
        window_->hasPlace = true;
    }
    window_->isMinimized() ? window_->showNormal() : window_->show();
    window_->raise();
    window_->activateWindow();
}

void WindowControl::Hide() {
    if (window_->isVisible()) {
        Remember();
    }
    window_->hide();
}

} // namespace lightbox
