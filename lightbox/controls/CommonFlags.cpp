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

bool IsPopupMenu(const Control& child) {
    return child.Type().name == "popupMenu";
}

ControlFlag Annotation() {
    return ValueFlag<Control, QString>(
        "-ann", "-annotation",
        [](const Control& control, const QString& text) {
            if (QAction* const action = control.Action()) {
                action->setStatusTip(text);
            } else if (QWidget* const widget = control.Widget()) {
                widget->setToolTip(text);
                widget->setStatusTip(text);
            }
        },
        [](const Control& control) {
            const QAction* const action = control.Action();
            const QWidget* const widget = control.Widget();
            return action ? action->statusTip() : widget ? widget->toolTip() : QString();
        });
}

ControlFlag Enable() {
    return ValueFlag<Control, bool>(
        "-en", "-enable",
        [](const Control& control, bool on) {
            if (QAction* const action = control.Action()) {
                action->setEnabled(on);
            } else if (QWidget* const widget = control.Widget()) {
                widget->setEnabled(on);
            }
        },
        [](const Control& control) {
            const QAction* const action = control.Action();
            const QWidget* const widget = control.Widget();
            return action ? action->isEnabled() : widget && widget->isEnabledTo(widget->window());
        });
}

void Show(const Control& control, bool visible) {
    if (QAction* const action = control.Action()) {
        action->setVisible(visible);
    } else if (QWidget* const widget = control.Widget()) {
        widget->setVisible(visible);
    }
}

/// Whether the control itself is not hidden; its window may be closed.
bool IsShown(const Control& control) {
    const QAction* const action = control.Action();
    const QWidget* const widget = control.Widget();
    return action ? action->isVisible()
                  : widget && (widget->isWindow() ? widget->isVisible() : !widget->isHidden());
}

/// The width or height in pixels: of a visible widget, else as requested, else as the widget hints.
int SizeOf(const Control& control, int requested, int (QWidget::*shown)() const,
           int (QSize::*hinted)() const) {
    const QWidget* const widget = control.Widget();
    return widget && widget->isVisible() ? (widget->*shown)()
           : requested > 0               ? requested
           : widget                      ? (widget->sizeHint().*hinted)()
                                         : 0;
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

} // namespace

const ControlFlags& CommonFlags() {
    static const ControlFlags flags = {
        Annotation(),
        Enable(),
        ValueFlag<Control, bool>("-vis", "-visible", Show, IsShown),
        ValueFlag<Control, bool>("-m", "-manage", Show, IsShown),
        ValueFlag<Control, int>("-w", "-width", &Control::SetWidth,
                                [](const Control& control) {
                                    return SizeOf(control, control.RequestedWidth(), &QWidget::width,
                                                  &QSize::width);
                                }),
        ValueFlag<Control, int>("-h", "-height", &Control::SetHeight,
                                [](const Control& control) {
                                    return SizeOf(control, control.RequestedHeight(), &QWidget::height,
                                                  &QSize::height);
                                }),
        Background(),
        ValueFlag<QWidget, bool>("-ebg", "-enableBackground", &QWidget::setAutoFillBackground,
                                 &QWidget::autoFillBackground),
        ValueFlag<QWidget, bool>(
            "-nbg", "-noBackground", [](QWidget& widget, bool off) { widget.setAutoFillBackground(!off); },
            [](const QWidget& widget) { return !widget.autoFillBackground(); }),
        ValueFlag<QWidget, bool>(
            "-ekf", "-enableKeyboardFocus",
            [](QWidget& widget, bool on) { widget.setFocusPolicy(on ? Qt::StrongFocus : Qt::NoFocus); },
            [](const QWidget& widget) { return widget.focusPolicy() != Qt::NoFocus; }),
        ValueFlag<QWidget, QString>("-sbm", "-statusBarMessage", &QWidget::setStatusTip, &QWidget::statusTip),
        NoteFlag("-dtg", "-docTag", MSyntax::kString),
        NoteFlag("-ut", "-useTemplate", MSyntax::kString),
        NoteFlag("-po", "-preventOverride", MSyntax::kBoolean),
        QueryFlag("-fpn", "-fullPathName", [](Control& control) { return Value(control.Path()); }),
        QueryFlag("-io", "-isObscured",
                  [](Control& control) {
                      QWidget* const widget = control.Widget();
                      return Value(!widget || !widget->isVisible());
                  }),
        QueryFlag("-pma", "-popupMenuArray", ChildNames(IsPopupMenu)),
        CountFlag("-npm", "-numberOfPopupMenus", ChildNames(IsPopupMenu)),
    };
    return flags;
}

const ControlFlags& LayoutFlags() {
    const auto children = ChildNames([](const Control& child) { return child.Widget() && !child.Menu(); });
    static const ControlFlags flags = ControlFlags{QueryFlag("-ca", "-childArray", children),
                                                   CountFlag("-nch", "-numberOfChildren", children)} +
                                      CommonFlags();
    return flags;
}

} // namespace lightbox
