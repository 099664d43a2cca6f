// button, iconTextButton, symbolButton, shelfButton and the like.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Icons.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

#include <QPushButton>
#include <QToolButton>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

ControlFlag ButtonLabelFlag() {
    return ValueFlag<QAbstractButton, QString>(
        "-l", "-label", [](QAbstractButton& button, const QString& text) { button.setText(text); },
        [](const QAbstractButton& button) { return button.text(); });
}

ControlFlag ImageFlag(const char* shortName, const char* longName) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {TEXT},
            [flag](Control& control, const CommandCall& call) {
                control.notes["-image"] = call.String(flag.c_str());
                control.As<QAbstractButton>()->setIcon(Icons::Named(ToQt(call.String(flag.c_str()))));
            },
            [](Control& control) { return Value(control.notes["-image"]); }};
}

ControlType ButtonType() {
    ControlType type;
    type.name = "button";
    type.flags = ControlFlags{ButtonLabelFlag(), ScriptFlag("-c", "-command"),
                              NoteFlag("-al", "-align", TEXT), NoteFlag("-rs", "-recomputeSize", ON)} +
                 CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto* const button = new QPushButton(ToQt(creation.name));
        auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent, button);
        QObject::connect(
            button, &QPushButton::clicked, button,
            [&registry = creation.registry, made = control.get()] { registry.Run(*made, "-command"); });
        return control;
    };
    return type;
}

/// Makes a button with an image, a text, or both.
std::unique_ptr<Control> MakeToolButton(const ControlCreation& creation, bool isCheckable) {
    auto* const button = new QToolButton;
    button->setAutoRaise(true);
    button->setCheckable(isCheckable);
    auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent, button);
    QObject::connect(button, &QToolButton::clicked, button,
                     [&registry = creation.registry, made = control.get(), isCheckable](bool checked) {
                         if (!isCheckable) {
                             registry.Run(*made, "-command");
                             return;
                         }
                         registry.Run(*made, checked ? "-onCommand" : "-offCommand", {Value(checked)});
                         registry.Run(*made, "-changeCommand", {Value(checked)});
                     });
    return control;
}

ControlFlag StyleFlag() {
    return {"-st",
            "-style",
            {TEXT},
            [](Control& control, const CommandCall& call) {
                const std::string& style = call.String("-style");
                control.notes["-style"] = style;
                control.As<QToolButton>()->setToolButtonStyle(
                    style == "textOnly"              ? Qt::ToolButtonTextOnly
                    : style == "iconAndTextVertical" ? Qt::ToolButtonTextUnderIcon
                    : style.find("iconAndText") == 0 ? Qt::ToolButtonTextBesideIcon
                                                     : Qt::ToolButtonIconOnly);
            },
            [](Control& control) { return Value(control.notes["-style"]); }};
}

ControlFlags ToolButtonFlags() {
    return {
        ButtonLabelFlag(),
        StyleFlag(),
        ImageFlag("-i", "-image"),
        ImageFlag("-i1", "-image1"),
        NoteFlag("-i2", "-image2", TEXT),
        NoteFlag("-i3", "-image3", TEXT),
        NoteFlag("-iol", "-imageOverlayLabel", TEXT),
        NoteFlag("-stp", "-sourceType", TEXT),
        NoteFlag("-fn", "-font", TEXT),
        NoteFlag("-fla", "-flat", ON),
        NoteFlag("-mw", "-marginWidth", INT),
        NoteFlag("-mh", "-marginHeight", INT),
        ScriptFlag("-c", "-command"),
        ScriptFlag("-dcc", "-doubleClickCommand"),
    };
}

ControlType ToolButtonType(const char* name) {
    ControlType type;
    type.name = name;
    type.flags = ToolButtonFlags() + CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto control = MakeToolButton(creation, false);
        auto& button = *control->As<QToolButton>();
        const bool isShelf = creation.type.name == "shelfButton";
        constexpr int shelfIcon = 28;
        button.setIconSize(isShelf ? QSize(shelfIcon, shelfIcon) : button.iconSize());
        // Without a style, the button shows its image, or its label when it has no image.
        const bool hasImage = creation.call.Has("-image") || creation.call.Has("-image1");
        button.setToolButtonStyle(hasImage ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextOnly);
        return control;
    };
    return type;
}

ControlType ToolCheckType(const char* name) {
    ControlType type;
    type.name = name;
    type.flags = ToolButtonFlags() +
                 ControlFlags{ValueFlag<QToolButton, bool>(
                                  "-v", "-value", [](QToolButton& button, bool on) { button.setChecked(on); },
                                  [](const QToolButton& button) { return button.isChecked(); }),
                              ScriptFlag("-cc", "-changeCommand"), ScriptFlag("-onc", "-onCommand"),
                              ScriptFlag("-ofc", "-offCommand")} +
                 CommonFlags();
    type.create = [](const ControlCreation& creation) { return MakeToolButton(creation, true); };
    return type;
}

} // namespace

void RegisterButtonCommands(WindowCommandTable& table) {
    table.Add(ButtonType());
    for (const char* const name : {"iconTextButton", "symbolButton", "shelfButton"}) {
        table.Add(ToolButtonType(name));
    }
    for (const char* const name : {"iconTextCheckBox", "symbolCheckBox"}) {
        table.Add(ToolCheckType(name));
    }
}

} // namespace lightbox
