// window, showWindow, windowPref, toggleWindowVisibility.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "controls/WindowControl.h"
#include "mel/SyntaxBuilder.h"

#include <QMenuBar>
#include <QStatusBar>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;

void Resize(const Control& control, int width, int height) {
    if (auto* const window = control.As<QMainWindow>()) {
        window->resize(std::max(1, width > 0 ? width : window->width()),
                       std::max(1, height > 0 ? height : window->height()));
    }
    if (auto* const window = control.As<ControlWindow>()) {
        window->hasSize = true;
    }
}

void Move(const Control& control, int left, int top) {
    if (auto* const window = control.As<QMainWindow>()) {
        window->move(left, top);
    }
    if (auto* const window = control.As<ControlWindow>()) {
        window->hasPlace = true;
    }
}

ControlFlags SizeFlags() {
    return {
        ValueFlag<Control, int>(
            "-w", "-width", [](const Control& control, int width) { Resize(control, width, 0); },
            [](const Control& control) { return control.Widget()->width(); }),
        ValueFlag<Control, int>(
            "-h", "-height", [](const Control& control, int height) { Resize(control, 0, height); },
            [](const Control& control) { return control.Widget()->height(); }),
        {"-wh",
         "-widthHeight",
         {INT, INT},
         [](Control& control, const CommandCall& call) {
             Resize(control, call.Int("-widthHeight", 0), call.Int("-widthHeight", 1));
         },
         [](Control& control) {
             return Value(Value::IntArray{control.Widget()->width(), control.Widget()->height()});
         }},
        ValueFlag<Control, int>(
            "-te", "-topEdge",
            [](const Control& control, int top) { Move(control, control.Widget()->x(), top); },
            [](const Control& control) { return control.Widget()->y(); }),
        ValueFlag<Control, int>(
            "-le", "-leftEdge",
            [](const Control& control, int left) { Move(control, left, control.Widget()->y()); },
            [](const Control& control) { return control.Widget()->x(); }),
        {"-tlc",
         "-topLeftCorner",
         {INT, INT},
         [](Control& control, const CommandCall& call) {
             Move(control, call.Int("-topLeftCorner", 1), call.Int("-topLeftCorner", 0));
         },
         [](Control& control) {
             return Value(Value::IntArray{control.Widget()->y(), control.Widget()->x()});
         }},
        ValueFlag<ControlWindow, bool>(
            "-rtf", "-resizeToFitChildren", [](ControlWindow& window, bool on) { window.fitsChildren = on; },
            &ControlWindow::fitsChildren),
        ValueFlag<QMainWindow, bool>(
            "-s", "-sizeable",
            [](QMainWindow& window, bool on) {
                on ? window.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX)
                   : window.setFixedSize(window.size());
            },
            [](const QMainWindow& window) { return window.minimumSize() != window.maximumSize(); }),
    };
}

/// A flag that turns a part of the window's frame on or off.
ControlFlag FrameFlag(const char* shortName, const char* longName, Qt::WindowType flag) {
    const std::string name = longName;
    return {shortName,
            name,
            {MSyntax::kBoolean},
            [name, flag](Control& control, const CommandCall& call) {
                if (auto* const window = control.As<ControlWindow>()) {
                    window->SetFlag(flag, call.Bool(name.c_str()));
                }
            },
            [flag](Control& control) { return Value(bool(control.Widget()->windowFlags() & flag)); }};
}

ControlFlags FrameFlags() {
    return {
        ValueFlag<QWidget, QString>("-t", "-title", &QWidget::setWindowTitle, &QWidget::windowTitle),
        ValueFlag<QWidget, QString>("-in", "-iconName", &QWidget::setWindowIconText,
                                    &QWidget::windowIconText),
        FrameFlag("-mnb", "-minimizeButton", Qt::WindowMinimizeButtonHint),
        FrameFlag("-mxb", "-maximizeButton", Qt::WindowMaximizeButtonHint),
        FrameFlag("-tbm", "-titleBarMenu", Qt::WindowSystemMenuHint),
        FrameFlag("-tlb", "-toolbox", Qt::Tool),
        ValueFlag<ControlWindow, bool>(
            "-tb", "-titleBar",
            [](ControlWindow& window, bool on) { window.SetFlag(Qt::FramelessWindowHint, !on); },
            [](const ControlWindow& window) { return !(window.windowFlags() & Qt::FramelessWindowHint); }),
        ValueFlag<QWidget, bool>(
            "-i", "-iconify",
            [](QWidget& window, bool on) {
                window.setWindowState(on ? window.windowState() | Qt::WindowMinimized
                                         : window.windowState() & ~Qt::WindowMinimized);
            },
            &QWidget::isMinimized),
    };
}

ControlFlags MenuBarFlags() {
    const auto menus = ChildNames([](const Control& child) { return child.Type().name == "menu"; });
    return {
        ValueFlag<QMainWindow, bool>(
            "-mb", "-menuBar", [](QMainWindow& window, bool on) { window.menuBar()->setVisible(on); },
            [](const QMainWindow& window) { return window.menuWidget() != nullptr; }),
        ValueFlag<QMainWindow, bool>(
            "-mbv", "-menuBarVisible", [](QMainWindow& window, bool on) { window.menuBar()->setVisible(on); },
            [](const QMainWindow& window) {
                return window.menuWidget() && !window.menuWidget()->isHidden();
            }),
        QueryFlag("-ma", "-menuArray", menus),
        CountFlag("-nm", "-numberOfMenus", menus),
    };
}

void SetVisible(Control& control, bool visible) {
    if (auto* const window = dynamic_cast<WindowControl*>(&control)) {
        visible ? window->Show() : window->Hide();
    } else {
        control.Widget()->setVisible(visible);
    }
}

ControlFlags BehaviourFlags() {
    return {
        ActionFlag<ControlWindow>("-ret", "-retain", [](ControlWindow& window) { window.isRetained = true; }),
        ScriptFlag("-cc", "-closeCommand"),
        ScriptFlag("-mnc", "-minimizeCommand"),
        ScriptFlag("-rc", "-restoreCommand"),
        ValueFlag<Control, bool>("-vis", "-visible", SetVisible,
                                 [](const Control& control) { return control.Widget()->isVisible(); }),
        QueryFlag("-fw", "-frontWindow",
                  [](Control& control) { return Value(control.Widget()->isActiveWindow()); }),
        CreateFlag("-mw", "-mainWindow", {}),
        CreateFlag("-ip", "-interactivePlacement", {}),
        CreateFlag("-ds", "-dockStation", {}),
        NoteFlag("-nde", "-nestedDockingEnabled", MSyntax::kBoolean),
    };
}

std::unique_ptr<Control> CreateWindow(const ControlCreation& creation) {
    auto window = std::make_unique<WindowControl>(creation.type, creation.name, creation.registry);
    window->Widget()->setWindowTitle(ToQt(creation.name));
    creation.registry.SetCurrentMenu(nullptr);
    return window;
}

Value ShowWindow(CommandCall& call, ControlRegistry& registry) {
    Control* window = registry.CurrentParent();
    if (!call.Objects().empty()) {
        window = &registry.Named(call.Object(0).AsString());
    }
    window = window ? window->Window() : nullptr;
    if (!window) {
        call.Fail("There is no window to show.");
    }
    SetVisible(*window, true);
    return window->Name();
}

Value ToggleWindow(CommandCall& call, ControlRegistry& registry) {
    Control& window = registry.Named(call.Object(0).AsString());
    SetVisible(window, !window.Widget()->isVisible());
    return Value();
}

Value QueryWindowPref(const CommandCall& call, const QRect& place) {
    return call.Answer({{"-width", place.width()},
                        {"-height", place.height()},
                        {"-topEdge", place.top()},
                        {"-leftEdge", place.left()},
                        {"-widthHeight", Value::IntArray{place.width(), place.height()}},
                        {"-topLeftCorner", Value::IntArray{place.top(), place.left()}}});
}

/// The rectangle, changed as the call's flags say.
QRect PlaceFrom(const CommandCall& call, QRect place) {
    place.moveTo(call.IntOr("-leftEdge", place.left()), call.IntOr("-topEdge", place.top()));
    place.setSize({call.IntOr("-width", place.width()), call.IntOr("-height", place.height())});
    if (call.Has("-topLeftCorner")) {
        place.moveTo(call.Int("-topLeftCorner", 1), call.Int("-topLeftCorner", 0));
    }
    if (call.Has("-widthHeight")) {
        place.setSize({call.Int("-widthHeight", 0), call.Int("-widthHeight", 1)});
    }
    return place;
}

Value WindowPref(CommandCall& call, ControlRegistry& registry) {
    auto& places = registry.windowPlaces;
    if (call.Has("-removeAll")) {
        places.clear();
        return Value();
    }
    if (call.Has("-enableAll")) {
        return Value();
    }
    const std::string name = call.Object(0).AsString();
    if (call.Has("-exists")) {
        return Value(places.count(name) != 0);
    }
    if (call.Has("-remove")) {
        places.erase(name);
        return Value();
    }
    if (!call.IsCreate() && places.count(name) == 0) {
        call.Fail("Object '" + name + "' not found.");
    }
    if (call.IsQuery()) {
        return QueryWindowPref(call, places[name]);
    }
    constexpr QRect usual(100, 100, 400, 300);
    places[name] = PlaceFrom(call, call.IsEdit() ? places[name] : usual);
    return name;
}

} // namespace

void RegisterTopWindowCommands(WindowCommandTable& table) {
    // -visible is among the common flags, so they come last, when the window has its size.
    table.Add({"window", ControlType::Family::Window,
               FrameFlags() + SizeFlags() + MenuBarFlags() + BehaviourFlags() + CommonFlags(), CreateWindow});
    table.Add("showWindow", SyntaxBuilder().Objects(0, 1), ShowWindow);
    table.Add("toggleWindowVisibility", SyntaxBuilder().Objects(1, 1), ToggleWindow);
    table.Add("windowPref",
              SyntaxBuilder()
                  .Flag("-w", "-width", INT)
                  .Flag("-h", "-height", INT)
                  .Flag("-wh", "-widthHeight", INT, INT)
                  .Flag("-te", "-topEdge", INT)
                  .Flag("-le", "-leftEdge", INT)
                  .Flag("-tlc", "-topLeftCorner", INT, INT)
                  .Flag("-ex", "-exists")
                  .Flag("-r", "-remove")
                  .Flag("-ra", "-removeAll")
                  .Flag("-ea", "-enableAll", MSyntax::kBoolean)
                  .Query()
                  .Edit()
                  .Objects(0, 1),
              WindowPref);
}

} // namespace lightbox
