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
    return {ValueFlag<QAbstractButton, QString>("-l", "-label", &QAbstractButton::setText,
                                                &QAbstractButton::text),
            NoteFlag("-al", "-align", TEXT), NoteFlag("-rs", "-recomputeSize", ON)};
}

std::unique_ptr<Control> CreateCheckBox(const ControlCreation& creation) {
    auto* const box = new QCheckBox(ToQt(creation.name));
    auto control = std::make_unique<Control>(creation, box);
    QObject::connect(box, &QCheckBox::clicked, box,
                     [&registry = creation.registry, made = control.get()](bool on) {
                         RunToggleScripts(registry, *made, on);
                     });
    return control;
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

/// Makes a control of a button that is one of a collection.
std::unique_ptr<Control> CreateChoice(const ControlCreation& creation, QAbstractButton* button) {
    auto control = std::make_unique<Control>(creation, button);
    Join(*button, creation, *control);
    return control;
}

std::unique_ptr<Control> CreateRadioButton(const ControlCreation& creation) {
    return CreateChoice(creation, new QRadioButton(ToQt(creation.name)));
}

std::unique_ptr<Control> CreateIconRadioButton(const ControlCreation& creation) {
    auto* const button = new QToolButton;
    button->setCheckable(true);
    button->setAutoRaise(true);
    return CreateChoice(creation, button);
}

Value ItemsOf(Control& control) {
    Value::StringArray names;
    for (const QAbstractButton* const button : control.As<QButtonGroup>()->buttons()) {
        names.push_back(button->objectName().toStdString());
    }
    return names;
}

ControlFlags CollectionFlags(ControlRegistry* registry) {
    return {
        ValueFlag<Control, std::string>(
            "-sl", "-select",
            [registry](const Control& control, const std::string& name) {
                auto* const button = registry->Named(name).As<QAbstractButton>();
                if (!button || button->group() != control.As<QButtonGroup>()) {
                    throw mel::Error("\"" + name + "\" is not a button of \"" + control.Name() + "\".");
                }
                SelectButton(*button);
            },
            [](const Control& control) {
                const QAbstractButton* const button = control.As<QButtonGroup>()->checkedButton();
                return button ? button->objectName().toStdString() : "NONE";
            }),
        QueryFlag("-cia", "-collectionItemArray", ItemsOf),
        CountFlag("-nci", "-numberOfCollectionItems", ItemsOf),
        CreateFlag("-gl", "-global", {}),
    };
}

std::unique_ptr<Control> CreateCollection(const ControlCreation& creation) {
    auto control = std::make_unique<Control>(creation, new QButtonGroup(creation.parent->Widget()));
    creation.registry.currentButtonCollection = control.get();
    return control;
}

} // namespace

void RegisterToggleCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    const ControlFlags value = {
        ValueFlag<QCheckBox, bool>("-v", "-value", &QCheckBox::setChecked, &QCheckBox::isChecked)};
    table.Add({"checkBox", Family::Control, LabelFlags() + value + ToggleScripts() + CommonFlags(),
               CreateCheckBox});
    const ControlFlags radioFlags = LabelFlags() + RadioFlags() + ToggleScripts();
    table.Add({"radioButton", Family::Control, radioFlags + CommonFlags(), CreateRadioButton});
    const ControlFlags look = {NoteFlag("-i1", "-image1", TEXT,
                                        [](Control& control, const std::string& name) {
                                            control.As<QToolButton>()->setIcon(Icons::Named(ToQt(name)));
                                        }),
                               NoteFlag("-st", "-style", TEXT)};
    table.Add(
        {"iconTextRadioButton", Family::Control, radioFlags + look + CommonFlags(), CreateIconRadioButton});
    for (const char* const name : {"radioCollection", "iconTextRadioCollection"}) {
        table.Add({name, Family::Collection, CollectionFlags(table.Controls()), CreateCollection});
    }
}

} // namespace lightbox
