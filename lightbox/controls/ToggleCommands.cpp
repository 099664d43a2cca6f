// checkBox, radioButton, radioCollection, and the variants with images.

#include "controls/FlagTypes.h"
#include "controls/Icons.h"
#include "controls/Registration.h"
#include "controls/ToggleFlags.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>
#include <QToolButton>
#include <QVariant>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

ControlFlags LabelFlags() {
    return {ValueFlag<QAbstractButton, QString>(
                "-l", "-label", [](QAbstractButton& button, const QString& text) { button.setText(text); },
                [](const QAbstractButton& button) { return button.text(); }),
            NoteFlag("-al", "-align", TEXT), NoteFlag("-rs", "-recomputeSize", ON)};
}

ControlType CheckBoxType() {
    ControlType type;
    type.name = "checkBox";
    type.flags = LabelFlags() +
                 ControlFlags{ValueFlag<QCheckBox, bool>(
                     "-v", "-value", [](QCheckBox& box, bool on) { box.setChecked(on); },
                     [](const QCheckBox& box) { return box.isChecked(); })} +
                 ToggleScripts() + CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto* const box = new QCheckBox(ToQt(creation.name));
        auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent, box);
        QObject::connect(box, &QCheckBox::clicked, box,
                         [&registry = creation.registry, made = control.get()](bool on) {
                             RunToggleScripts(registry, *made, on);
                         });
        return control;
    };
    return type;
}

/// The collection that a new radio button joins: the one it names, else the last one made, else one that its
/// layout keeps.
QButtonGroup* RadioButtonGroup(const ControlCreation& creation) {
    const Control* collection = creation.registry.currentButtonCollection;
    if (creation.call.Has("-collection")) {
        collection = &creation.registry.Named(creation.call.String("-collection"));
    }
    if (collection) {
        if (auto* const group = collection->As<QButtonGroup>()) {
            return group;
        }
    }
    QWidget* const layout = creation.parent->Widget();
    auto* group = layout->findChild<QButtonGroup*>(QStringLiteral("buttons"), Qt::FindDirectChildrenOnly);
    if (!group) {
        group = new QButtonGroup(layout);
        group->setObjectName(QStringLiteral("buttons"));
    }
    return group;
}

/// The property of a button group that holds the control whose button was on last.
constexpr const char* LAST_ON = "lastOn";

void Clicked(ControlRegistry& registry, Control& control, QAbstractButton& button) {
    QObject* const last = button.group()->property(LAST_ON).value<QObject*>();
    button.group()->setProperty(LAST_ON, QVariant::fromValue<QObject*>(&button));
    const QPointer<QObject> alive = &button;
    for (Control* const other : registry.All()) {
        if (last != &button && other->Object() == last && last) {
            RunToggleScripts(registry, *other, false);
            break;
        }
    }
    if (alive && last != &button) {
        RunToggleScripts(registry, control, true);
    }
}

void Join(QAbstractButton& button, const ControlCreation& creation, Control& control) {
    QButtonGroup* const group = RadioButtonGroup(creation);
    group->addButton(&button);
    QObject::connect(&button, &QObject::destroyed, group,
                     [group] { group->setProperty(LAST_ON, QVariant()); });
    QObject::connect(
        &button, &QAbstractButton::clicked, &button,
        [&button, &registry = creation.registry, made = &control] { Clicked(registry, *made, button); });
}

void SelectButton(QAbstractButton& button) {
    button.setChecked(true);
    if (button.group()) {
        button.group()->setProperty(LAST_ON, QVariant::fromValue<QObject*>(&button));
    }
}

ControlFlags RadioFlags() {
    return {
        {"-sl",
         "-select",
         {},
         [](Control& control, const CommandCall&) { SelectButton(*control.As<QAbstractButton>()); },
         [](Control& control) { return Value(control.As<QAbstractButton>()->isChecked()); }},
        CreateFlag("-cl", "-collection", {TEXT}),
        NoteFlag("-da", "-data", MSyntax::kLong),
    };
}

ControlType RadioType() {
    ControlType type;
    type.name = "radioButton";
    type.flags = LabelFlags() + RadioFlags() + ToggleScripts() + CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto* const button = new QRadioButton(ToQt(creation.name));
        auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent, button);
        Join(*button, creation, *control);
        return control;
    };
    return type;
}

ControlType IconRadioType() {
    ControlType type;
    type.name = "iconTextRadioButton";
    type.flags =
        LabelFlags() + RadioFlags() + ToggleScripts() +
        ControlFlags{{"-i1",
                      "-image1",
                      {TEXT},
                      [](Control& control, const CommandCall& call) {
                          control.notes["-image1"] = call.String("-image1");
                          control.As<QToolButton>()->setIcon(Icons::Named(ToQt(call.String("-image1"))));
                      },
                      [](Control& control) { return Value(control.notes["-image1"]); }},
                     NoteFlag("-st", "-style", TEXT)} +
        CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto* const button = new QToolButton;
        button->setCheckable(true);
        button->setAutoRaise(true);
        auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent, button);
        Join(*button, creation, *control);
        return control;
    };
    return type;
}

Value ItemsOf(Control& control) {
    Value::StringArray names;
    for (const QAbstractButton* const button : control.As<QButtonGroup>()->buttons()) {
        names.push_back(button->objectName().toStdString());
    }
    return names;
}

ControlType CollectionType(const char* name, ControlRegistry* registry) {
    ControlType type;
    type.name = name;
    type.family = ControlType::Family::Collection;
    type.flags = {
        {"-sl",
         "-select",
         {TEXT},
         [registry](Control& control, const CommandCall& call) {
             auto* const button = registry->Named(call.String("-select")).As<QAbstractButton>();
             if (!button || button->group() != control.As<QButtonGroup>()) {
                 call.Fail("\"" + call.String("-select") + "\" is not a button of \"" + control.Name() +
                           "\".");
             }
             SelectButton(*button);
         },
         [](Control& control) {
             const QAbstractButton* const button = control.As<QButtonGroup>()->checkedButton();
             return Value(button ? button->objectName().toStdString() : std::string("NONE"));
         }},
        QueryFlag("-cia", "-collectionItemArray", ItemsOf),
        QueryFlag("-nci", "-numberOfCollectionItems",
                  [](Control& control) { return Value(static_cast<int>(ItemsOf(control).Size())); }),
        CreateFlag("-gl", "-global", {}),
    };
    type.create = [](const ControlCreation& creation) {
        auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent,
                                                 new QButtonGroup(creation.parent->Widget()));
        creation.registry.currentButtonCollection = control.get();
        return control;
    };
    return type;
}

} // namespace

void RegisterToggleCommands(WindowCommandTable& table) {
    table.Add(CheckBoxType());
    table.Add(RadioType());
    table.Add(IconRadioType());
    table.Add(CollectionType("radioCollection", table.Controls()));
    table.Add(CollectionType("iconTextRadioCollection", table.Controls()));
}

} // namespace lightbox
