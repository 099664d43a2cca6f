// The flags that every control has.

#include "controls/ControlRegistry.h"
#include "controls/ControlType.h"

#include <QAction>
#include <QColor>
#include <QMenu>
#include <QPalette>
#include <QWidget>

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

bool IsPopupMenu(const Control* child) {
    return child->Type().name == "popupMenu";
}

Value PopupMenus(Control& control) {
    Value::StringArray names;
    for (const Control* const child : control.Children()) {
        if (IsPopupMenu(child)) {
            names.push_back(child->Name());
        }
    }
    return names;
}

ControlFlag Annotation() {
    return {"-ann",
            "-annotation",
            {MSyntax::kString},
            [](Control& control, const CommandCall& call) {
                const QString text = ToQt(call.String("-annotation"));
                if (QAction* const action = control.Action()) {
                    action->setStatusTip(text);
                } else if (QWidget* const widget = control.Widget()) {
                    widget->setToolTip(text);
                    widget->setStatusTip(text);
                }
            },
            [](Control& control) {
                QAction* const action = control.Action();
                QWidget* const widget = control.Widget();
                return Value(action   ? action->statusTip().toStdString()
                             : widget ? widget->toolTip().toStdString()
                                      : std::string());
            }};
}

ControlFlag Enable() {
    return {"-en",
            "-enable",
            {MSyntax::kBoolean},
            [](Control& control, const CommandCall& call) {
                if (QAction* const action = control.Action()) {
                    action->setEnabled(call.Bool("-enable"));
                } else if (QWidget* const widget = control.Widget()) {
                    widget->setEnabled(call.Bool("-enable"));
                }
            },
            [](Control& control) {
                QAction* const action = control.Action();
                QWidget* const widget = control.Widget();
                return Value(action ? action->isEnabled() : widget && widget->isEnabledTo(widget->window()));
            }};
}

void Show(Control& control, bool visible) {
    if (QAction* const action = control.Action()) {
        action->setVisible(visible);
    } else if (QWidget* const widget = control.Widget()) {
        widget->setVisible(visible);
    }
}

/// Whether the control itself is not hidden; its window may be closed.
bool IsShown(Control& control) {
    QAction* const action = control.Action();
    QWidget* const widget = control.Widget();
    return action ? action->isVisible()
                  : widget && (widget->isWindow() ? widget->isVisible() : !widget->isHidden());
}

ControlFlag Shown(const char* shortName, const char* longName) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {MSyntax::kBoolean},
            [flag](Control& control, const CommandCall& call) { Show(control, call.Bool(flag.c_str())); },
            [](Control& control) { return Value(IsShown(control)); }};
}

ControlFlag Width() {
    return {"-w",
            "-width",
            {MSyntax::kLong},
            [](Control& control, const CommandCall& call) { control.SetWidth(call.Int("-width")); },
            [](Control& control) {
                QWidget* const widget = control.Widget();
                return Value(widget && widget->isVisible()  ? widget->width()
                             : control.RequestedWidth() > 0 ? control.RequestedWidth()
                             : widget                       ? widget->sizeHint().width()
                                                            : 0);
            }};
}

ControlFlag Height() {
    return {"-h",
            "-height",
            {MSyntax::kLong},
            [](Control& control, const CommandCall& call) { control.SetHeight(call.Int("-height")); },
            [](Control& control) {
                QWidget* const widget = control.Widget();
                return Value(widget && widget->isVisible()   ? widget->height()
                             : control.RequestedHeight() > 0 ? control.RequestedHeight()
                             : widget                        ? widget->sizeHint().height()
                                                             : 0);
            }};
}

ControlFlag Background() {
    constexpr auto number = MSyntax::kDouble;
    return {"-bgc",
            "-backgroundColor",
            {number, number, number},
            [](Control& control, const CommandCall& call) {
                if (QWidget* const widget = control.Widget()) {
                    const auto part = [&call](unsigned index) {
                        return std::clamp(call.Float("-backgroundColor", index), 0.0, 1.0);
                    };
                    QPalette palette = widget->palette();
                    const QColor color = QColor::fromRgbF(part(0), part(1), part(2));
                    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
                        palette.setColor(role, color);
                    }
                    widget->setPalette(palette);
                    widget->setAutoFillBackground(true);
                }
            },
            [](Control& control) {
                QWidget* const widget = control.Widget();
                const QColor color = widget ? widget->palette().color(QPalette::Window) : QColor();
                return Value(Value::FloatArray{color.redF(), color.greenF(), color.blueF()});
            }};
}

ControlFlag FillsBackground() {
    return ValueFlag<QWidget, bool>(
        "-ebg", "-enableBackground", [](QWidget& widget, bool on) { widget.setAutoFillBackground(on); },
        [](const QWidget& widget) { return widget.autoFillBackground(); });
}

ControlFlag HidesBackground() {
    return ValueFlag<QWidget, bool>(
        "-nbg", "-noBackground", [](QWidget& widget, bool off) { widget.setAutoFillBackground(!off); },
        [](const QWidget& widget) { return !widget.autoFillBackground(); });
}

} // namespace

const ControlFlags& CommonFlags() {
    static const ControlFlags flags = {
        Annotation(),
        Enable(),
        Shown("-vis", "-visible"),
        Shown("-m", "-manage"),
        Width(),
        Height(),
        Background(),
        FillsBackground(),
        HidesBackground(),
        ValueFlag<QWidget, bool>(
            "-ekf", "-enableKeyboardFocus",
            [](QWidget& widget, bool on) { widget.setFocusPolicy(on ? Qt::StrongFocus : Qt::NoFocus); },
            [](const QWidget& widget) { return widget.focusPolicy() != Qt::NoFocus; }),
        ValueFlag<QWidget, QString>(
            "-sbm", "-statusBarMessage",
            [](QWidget& widget, const QString& text) { widget.setStatusTip(text); },
            [](const QWidget& widget) { return widget.statusTip(); }),
        NoteFlag("-dtg", "-docTag", MSyntax::kString),
        NoteFlag("-ut", "-useTemplate", MSyntax::kString),
        NoteFlag("-po", "-preventOverride", MSyntax::kBoolean),
        QueryFlag("-fpn", "-fullPathName", [](Control& control) { return Value(control.Path()); }),
        QueryFlag("-io", "-isObscured",
                  [](Control& control) {
                      QWidget* const widget = control.Widget();
                      return Value(!widget || !widget->isVisible());
                  }),
        QueryFlag("-pma", "-popupMenuArray", PopupMenus),
        QueryFlag("-npm", "-numberOfPopupMenus",
                  [](Control& control) {
                      const auto& all = control.Children();
                      return Value(static_cast<int>(std::count_if(all.begin(), all.end(), IsPopupMenu)));
                  }),
    };
    return flags;
}

const ControlFlags& LayoutFlags() {
    static const auto children = [](Control& control) {
        Value::StringArray names;
        for (const Control* const child : control.Children()) {
            if (child->Widget() && !child->Menu()) {
                names.push_back(child->Name());
            }
        }
        return names;
    };
    static const ControlFlags flags =
        ControlFlags{
            QueryFlag("-ca", "-childArray", [](Control& control) { return Value(children(control)); }),
            QueryFlag("-nch", "-numberOfChildren",
                      [](Control& control) { return Value(static_cast<int>(children(control).size())); }),
        } +
        CommonFlags();
    return flags;
}

} // namespace lightbox
