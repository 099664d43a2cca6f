// button, iconTextButton, symbolButton, shelfButton and the like.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Icons.h"
#include "controls/Registration.h"
#include "controls/ToggleFlags.h"
#include "controls/WindowCommandTable.h"

#include <QPushButton>
#include <QToolButton>

namespace lightbox {

namespace {

using mel::Value;

ControlFlag ButtonLabelFlag() {
    return ValueFlag<QAbstractButton, QString>("-l", "-label", &QAbstractButton::setText,
                                               &QAbstractButton::text);
}

ControlFlag ImageFlag(const char* shortName, const char* longName) {
    return ValueFlag<Control, std::string>(
        shortName, longName,
        [](Control& control, const std::string& name) {
            control.notes["-image"] = name;
            control.As<QAbstractButton>()->setIcon(Icons::Named(ToQt(name)));
        },
        [](Control& control) { return control.notes["-image"]; });
}

std::unique_ptr<Control> CreateButton(const ControlCreation& creation) {
    auto* const button = new QPushButton(ToQt(creation.name));
    auto control = std::make_unique<Control>(creation, button);
    QObject::connect(
        button, &QPushButton::clicked, button,
        [&registry = creation.registry, made = control.get()] { registry.Run(*made, "-command"); });
    return control;
}

/// Makes a button with an image, a text, or both.
std::unique_ptr<Control> MakeToolButton(const ControlCreation& creation, bool isCheckable) {
    auto* const button = new QToolButton;
    button->setAutoRaise(true);
    button->setCheckable(isCheckable);
    auto control = std::make_unique<Control>(creation, button);
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
    return NoteFlag("-st", "-style", TEXT, [](Control& control, const std::string& style) {
        control.As<QToolButton>()->setToolButtonStyle(
            style == "textOnly"              ? Qt::ToolButtonTextOnly
            : style == "iconAndTextVertical" ? Qt::ToolButtonTextUnderIcon
            : style.find("iconAndText") == 0 ? Qt::ToolButtonTextBesideIcon
                                             : Qt::ToolButtonIconOnly);
    });
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

std::unique_ptr<Control> CreateToolButton(const ControlCreation& creation) {
    auto control = MakeToolButton(creation, false);
    auto& button = *control->As<QToolButton>();
    const bool isShelf = creation.type.name == "shelfButton";
    constexpr int shelfIcon = 28;
    button.setIconSize(isShelf ? QSize(shelfIcon, shelfIcon) : button.iconSize());
    // Without a style, the button shows its image, or its label when it has no image.
    const bool hasImage = creation.call.Has("-image") || creation.call.Has("-image1");
    button.setToolButtonStyle(hasImage ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextOnly);
    return control;
}

} // namespace

void RegisterButtonCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    table.Add({"button", Family::Control,
               ControlFlags{ButtonLabelFlag(), ScriptFlag("-c", "-command"), NoteFlag("-al", "-align", TEXT),
                            NoteFlag("-rs", "-recomputeSize", ON)} +
                   CommonFlags(),
               CreateButton});
    for (const char* const name : {"iconTextButton", "symbolButton", "shelfButton"}) {
        table.Add({name, Family::Control, ToolButtonFlags() + CommonFlags(), CreateToolButton});
    }
    const ControlFlags value = {
        ValueFlag<QToolButton, bool>("-v", "-value", &QToolButton::setChecked, &QToolButton::isChecked)};
    for (const char* const name : {"iconTextCheckBox", "symbolCheckBox"}) {
        table.Add({name, Family::Control, ToolButtonFlags() + value + ToggleScripts() + CommonFlags(),
                   [](const ControlCreation& creation) { return MakeToolButton(creation, true); }});
    }
}

} // namespace lightbox
