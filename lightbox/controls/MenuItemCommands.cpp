// menuItem and radioMenuItemCollection.

#include "controls/ControlMenu.h"
#include "controls/ControlRegistry.h"
#include "controls/Icons.h"
#include "controls/MenuControl.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"
#include "mel/SyntaxBuilder.h"

#include <QActionGroup>
#include <QKeySequence>

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

bool IsOn(const CommandCall& call, const char* flag) {
    return call.Has(flag) && call.Bool(flag);
}

/// The group of a radio item: the collection's, else one that the menu keeps for items without a collection.
QActionGroup* RadioItemGroup(const ControlCreation& creation) {
    const Control* collection = creation.registry.currentItemCollection;
    if (creation.call.Has("-collection")) {
        collection = &creation.registry.Named(creation.call.String("-collection"));
    }
    if (collection) {
        if (auto* const group = collection->As<QActionGroup>()) {
            return group;
        }
    }
    QWidget* const host = creation.parent->ItemHost();
    const auto own = host->findChild<QActionGroup*>(QStringLiteral("items"), Qt::FindDirectChildrenOnly);
    auto* const group = own ? own : new QActionGroup(host);
    group->setObjectName(QStringLiteral("items"));
    return group;
}

/// The action to insert the new item before; null to append it.
QAction* Successor(const ControlCreation& creation) {
    if (!creation.call.Has("-insertAfter")) {
        return nullptr;
    }
    const QList<QAction*> actions = creation.parent->ItemHost()->actions();
    const std::string& name = creation.call.String("-insertAfter");
    if (name.empty()) {
        return actions.value(0);
    }
    const int index = actions.indexOf(creation.registry.Named(name).Action());
    return index < 0 ? nullptr : actions.value(index + 1);
}

std::unique_ptr<Control> CreateSubmenu(const ControlCreation& creation) {
    QWidget* const host = creation.parent->ItemHost();
    auto* const menu = new ControlMenu(host);
    auto control = std::make_unique<MenuControl>(creation, menu);
    host->insertAction(Successor(creation), menu->menuAction());
    creation.registry.SetCurrentMenu(control.get());
    creation.registry.currentItemCollection = nullptr;
    return control;
}

void Triggered(ControlRegistry& registry, Control& control, const QAction& action) {
    std::vector<Value> values;
    if (action.isCheckable()) {
        values.emplace_back(action.isChecked());
    }
    registry.Run(control, "-command", values);
}

/// Makes the action a check box, radio item, divider, option box or plain item, as the call's flags say.
void SetUp(QAction& action, const ControlCreation& creation) {
    const CommandCall& call = creation.call;
    action.setCheckable(call.Has("-checkBox") || call.Has("-radioButton"));
    if (call.Has("-radioButton")) {
        RadioItemGroup(creation)->addAction(&action);
    }
    action.setSeparator(IsOn(call, "-divider") || call.Has("-dividerLabel") || IsOn(call, "-longDivider"));
    if (IsOn(call, "-optionBox")) {
        const QList<QAction*> before = creation.parent->ItemHost()->actions();
        if (before.isEmpty() || before.back()->isSeparator()) {
            call.Fail("There is no menu item for the option box.");
        }
        action.setProperty("isOptionBox", true);
        action.setVisible(false);
        ControlMenu::SetOptionBox(*before.back(), action);
    }
}

std::unique_ptr<Control> CreateItem(const ControlCreation& creation) {
    if (!creation.parent || !creation.parent->ItemHost()) {
        creation.call.Fail("There is no menu for the menu item.");
    }
    if (IsOn(creation.call, "-subMenu")) {
        return CreateSubmenu(creation);
    }
    QWidget* const host = creation.parent->ItemHost();
    auto* const action = new QAction(MenuLabel(ToQt(creation.name)), host);
    auto control = std::make_unique<Control>(creation, action);
    SetUp(*action, creation);
    host->insertAction(Successor(creation), action);
    if (creation.parent->Window() == &creation.registry.MainWindow()) {
        // The main window's shortcuts work in floating panels, too.
        action->setShortcutContext(Qt::ApplicationShortcut);
    }
    QObject::connect(action, &QAction::triggered, action,
                     [&registry = creation.registry, item = control.get(), action] {
                         Triggered(registry, *item, *action);
                     });
    return control;
}

ControlFlag ItemLabelFlag(const char* shortName, const char* longName) {
    return ValueFlag<Control, QString>(
        shortName, longName,
        [](const Control& control, const QString& text) { control.Action()->setText(MenuLabel(text)); },
        [](const Control& control) { return PlainLabel(control.Action()->text()); });
}

ControlFlag CheckedFlag(const char* shortName, const char* longName) {
    return ValueFlag<Control, bool>(
        shortName, longName,
        [](const Control& control, bool on) {
            if (!control.Action()->isCheckable()) {
                throw mel::Error("\"" + control.Path() + "\" has no check mark.");
            }
            control.Action()->setChecked(on);
        },
        [](const Control& control) { return control.Action()->isChecked(); });
}

ControlFlags StateFlags() {
    const auto isSeparator = [](const Control& control) { return control.Action()->isSeparator(); };
    const auto isOptionBox = [](const Control& control) {
        return control.Action()->property("isOptionBox").toBool();
    };
    return {
        ItemLabelFlag("-l", "-label"),
        CheckedFlag("-cb", "-checkBox"),
        CheckedFlag("-rb", "-radioButton"),
        CreateFlag("-sm", "-subMenu", {MSyntax::kBoolean},
                   [](const Control& control) { return control.Menu() != nullptr; }),
        CreateFlag("-d", "-divider", {MSyntax::kBoolean}, isSeparator),
        CreateFlag("-ld", "-longDivider", {MSyntax::kBoolean}, isSeparator),
        ItemLabelFlag("-dl", "-dividerLabel"),
        CreateFlag("-ob", "-optionBox", {MSyntax::kBoolean}, isOptionBox),
        QueryFlag("-iob", "-isOptionBox", isOptionBox),
        QueryFlag("-icb", "-isCheckBox",
                  [](const Control& control) {
                      const QAction* const action = control.Action();
                      return action->isCheckable() && !action->actionGroup();
                  }),
        QueryFlag("-irb", "-isRadioButton",
                  [](const Control& control) {
                      const QAction* const action = control.Action();
                      return action->isCheckable() && action->actionGroup();
                  }),
        CreateFlag("-cl", "-collection", {MSyntax::kString}),
        CreateFlag("-ia", "-insertAfter", {MSyntax::kString}),
        ScriptFlag("-c", "-command"),
        ScriptFlag("-ddc", "-dragDoubleClickCommand"),
        ScriptFlag("-dmc", "-dragMenuCommand"),
    };
}

/// Sets the shortcut from the key and modifiers in the control's notes.
void UpdateShortcut(Control& control) {
    const auto isOn = [&control](const char* flag) { return control.notes[flag] == "1"; };
    const QString key = ToQt(control.notes["-keyEquivalent"]);
    QString text = isOn("-ctrlModifier") || isOn("-commandModifier") ? QStringLiteral("Ctrl+") : QString();
    text += isOn("-altModifier") || isOn("-optionModifier") ? QStringLiteral("Alt+") : QString();
    // A capital letter implies Shift, as in the host's own hotkeys.
    const bool isCapital = key.size() == 1 && key.at(0).isUpper();
    text += isOn("-shiftModifier") || isCapital ? QStringLiteral("Shift+") : QString();
    control.Action()->setShortcut(key.isEmpty() ? QKeySequence() : QKeySequence(text + key.toUpper()));
}

/// A note flag that updates the shortcut.
ControlFlag KeyFlag(const char* shortName, const char* longName, MSyntax::MArgType type) {
    return NoteFlag(shortName, longName, type,
                    [](Control& control, const std::string&) { UpdateShortcut(control); });
}

ControlFlags KeyFlags() {
    constexpr auto on = MSyntax::kBoolean;
    return {KeyFlag("-ke", "-keyEquivalent", MSyntax::kString),
            KeyFlag("-ctl", "-ctrlModifier", on),
            KeyFlag("-alt", "-altModifier", on),
            KeyFlag("-sh", "-shiftModifier", on),
            KeyFlag("-cmd", "-commandModifier", on),
            KeyFlag("-opt", "-optionModifier", on)};
}

ControlFlag FontFlag(const char* shortName, const char* longName, void (QFont::*set)(bool),
                     bool (QFont::*get)() const) {
    return ValueFlag<Control, bool>(
        shortName, longName,
        [set](const Control& control, bool on) {
            QFont font = control.Action()->font();
            (font.*set)(on);
            control.Action()->setFont(font);
        },
        [get](const Control& control) { return (control.Action()->font().*get)(); });
}

ControlFlags LookFlags() {
    return {
        NoteFlag("-i", "-image", MSyntax::kString,
                 [](const Control& control, const std::string& name) {
                     control.Action()->setIcon(Icons::Named(ToQt(name)));
                 }),
        FontFlag("-bld", "-boldFont", &QFont::setBold, &QFont::bold),
        FontFlag("-itl", "-italicized", &QFont::setItalic, &QFont::italic),
        NoteFlag("-da", "-data", MSyntax::kLong),
        NoteFlag("-stp", "-sourceType", MSyntax::kString),
        NoteFlag("-rp", "-radialPosition", MSyntax::kString),
        NoteFlag("-iol", "-imageOverlayLabel", MSyntax::kString),
        NoteFlag("-obi", "-optionBoxIcon", MSyntax::kString),
        NoteFlag("-ec", "-echoCommand", MSyntax::kBoolean),
        NoteFlag("-ecr", "-enableCommandRepeat", MSyntax::kBoolean),
        NoteFlag("-ver", "-version", MSyntax::kString),
        NoteFlag("-ltv", "-ltVersion", MSyntax::kString),
        NoteFlag("-rtc", "-runTimeCommand", MSyntax::kString),
    };
}

std::unique_ptr<Control> CreateItemCollection(const ControlCreation& creation) {
    // The current menu owns the collection, unless -global or -parent is given.
    Control* const menu = creation.registry.CurrentMenu();
    Control* const parent =
        menu && !creation.call.Has("-global") && !creation.call.Has("-parent") ? menu : creation.parent;
    auto control = std::make_unique<Control>(creation.type, creation.name, parent,
                                             new QActionGroup(parent ? parent->Object() : nullptr));
    creation.registry.currentItemCollection = control.get();
    return control;
}

} // namespace

void RegisterMenuItemCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    table.Add({"menuItem", Family::MenuItem,
               StateFlags() + KeyFlags() + LookFlags() + MenuFlags() + CommonFlags(), CreateItem});
    table.Add({"radioMenuItemCollection",
               Family::Collection,
               {CreateFlag("-gl", "-global", {})},
               CreateItemCollection});
}

} // namespace lightbox
