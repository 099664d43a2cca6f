// checkBoxGrp and radioButtonGrp: up to four boxes or buttons in a row, with a label before them.

#include "controls/GroupControl.h"
#include "controls/Registration.h"
#include "controls/ToggleFlags.h"
#include "controls/WindowCommandTable.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

constexpr int MAX_BUTTONS = 4;

QAbstractButton* ButtonOf(Control& control, int number) {
    return Group(control).PartAs<QAbstractButton>(number);
}

QAbstractButton& ButtonOrFail(Control& control, const CommandCall& call, int number) {
    QAbstractButton* const button = ButtonOf(control, number);
    if (!button) {
        call.Fail("\"" + control.Path() + "\" has no button " + std::to_string(number) + ".");
    }
    return *button;
}

ControlFlag LabelOf(int number) {
    const std::string flag = "-label" + std::to_string(number);
    return {"-l" + std::to_string(number),
            flag,
            {MSyntax::kString},
            [flag, number](Control& control, const CommandCall& call) {
                ButtonOrFail(control, call, number).setText(ToQt(call.String(flag.c_str())));
            },
            [number](Control& control) {
                const QAbstractButton* const button = ButtonOf(control, number);
                return Value(button ? button->text().toStdString() : std::string());
            }};
}

ControlFlag EnableOf(int number) {
    const std::string flag = "-enable" + std::to_string(number);
    return {"-en" + std::to_string(number),
            flag,
            {MSyntax::kBoolean},
            [flag, number](Control& control, const CommandCall& call) {
                ButtonOrFail(control, call, number).setEnabled(call.Bool(flag.c_str()));
            },
            [number](Control& control) {
                const QAbstractButton* const button = ButtonOf(control, number);
                return Value(button && button->isEnabled());
            }};
}

/// The flag for all labels, as in -labelArray3 "a" "b" "c".
ControlFlag LabelsOf(int count) {
    const std::string flag = "-labelArray" + std::to_string(count);
    return {"-la" + std::to_string(count), flag,
            std::vector<MSyntax::MArgType>(static_cast<std::size_t>(count), MSyntax::kString),
            [flag, count](Control& control, const CommandCall& call) {
                for (int number = 1; number <= count; ++number) {
                    ButtonOrFail(control, call, number)
                        .setText(ToQt(call.String(flag.c_str(), static_cast<unsigned>(number - 1))));
                }
            },
            [count](Control& control) {
                Value::StringArray labels;
                for (int number = 1; number <= count; ++number) {
                    const QAbstractButton* const button = ButtonOf(control, number);
                    labels.push_back(button ? button->text().toStdString() : std::string());
                }
                return Value(std::move(labels));
            }};
}

ControlFlag ValueOf(int number) {
    const std::string flag = "-value" + std::to_string(number);
    return {"-v" + std::to_string(number),
            flag,
            {MSyntax::kBoolean},
            [flag, number](Control& control, const CommandCall& call) {
                ButtonOrFail(control, call, number).setChecked(call.Bool(flag.c_str()));
            },
            [number](Control& control) {
                const QAbstractButton* const button = ButtonOf(control, number);
                return Value(button && button->isChecked());
            }};
}

ControlFlag ValuesOf(int count) {
    const std::string flag = "-valueArray" + std::to_string(count);
    return {"-va" + std::to_string(count), flag,
            std::vector<MSyntax::MArgType>(static_cast<std::size_t>(count), MSyntax::kBoolean),
            [flag, count](Control& control, const CommandCall& call) {
                for (int number = 1; number <= count; ++number) {
                    ButtonOrFail(control, call, number)
                        .setChecked(call.Bool(flag.c_str(), static_cast<unsigned>(number - 1)));
                }
            },
            [count](Control& control) {
                Value::IntArray values;
                for (int number = 1; number <= count; ++number) {
                    const QAbstractButton* const button = ButtonOf(control, number);
                    values.push_back(button && button->isChecked() ? 1 : 0);
                }
                return Value(std::move(values));
            }};
}

ControlFlag NumberedScript(const char* shortName, const char* longName, int number) {
    const std::string count = std::to_string(number);
    return ScriptFlag((shortName + count).c_str(), (longName + count).c_str());
}

ControlFlags CommonGroupFlags() {
    ControlFlags flags = ToggleScripts();
    flags.push_back(CreateFlag("-vr", "-vertical", {MSyntax::kBoolean}));
    for (int number = 1; number <= MAX_BUTTONS; ++number) {
        flags.push_back(LabelOf(number));
        flags.push_back(EnableOf(number));
        flags.push_back(NumberedScript("-cc", "-changeCommand", number));
        flags.push_back(NumberedScript("-on", "-onCommand", number));
        flags.push_back(NumberedScript("-of", "-offCommand", number));
        if (number > 1) {
            flags.push_back(LabelsOf(number));
        }
    }
    return flags;
}

/// Makes the group. Each button runs the scripts of the whole group and those with its own number.
template <class Button>
std::unique_ptr<GroupControl> MakeGroup(const ControlCreation& creation, const char* countFlag) {
    const CommandCall& call = creation.call;
    const bool isVertical = call.Has("-vertical") && call.Bool("-vertical");
    auto group = std::make_unique<GroupControl>(creation, false, isVertical);
    const int count = std::clamp(call.IntOr(countFlag, 1), 1, MAX_BUTTONS);
    for (int number = 1; number <= count; ++number) {
        auto* const button = new Button;
        group->AddPart(button);
        QObject::connect(button, &Button::clicked, button,
                         [&registry = creation.registry, made = group.get(), number](bool on) {
                             const QPointer<QObject> alive = made->Object();
                             RunToggleScripts(registry, *made, on, std::to_string(number));
                             if (alive) {
                                 RunToggleScripts(registry, *made, on);
                             }
                         });
    }
    group->Finish();
    return group;
}

ControlType CheckBoxGroupType() {
    ControlType type;
    type.name = "checkBoxGrp";
    type.flags = CommonGroupFlags();
    type.flags.push_back(CreateFlag("-ncb", "-numberOfCheckBoxes", {MSyntax::kLong}, [](Control& control) {
        return Value(static_cast<int>(Group(control).Parts().size()));
    }));
    for (int number = 1; number <= MAX_BUTTONS; ++number) {
        type.flags.push_back(ValueOf(number));
        if (number > 1) {
            type.flags.push_back(ValuesOf(number));
        }
    }
    type.flags = std::move(type.flags) + GroupFlags();
    type.create = [](const ControlCreation& creation) {
        return MakeGroup<QCheckBox>(creation, "-numberOfCheckBoxes");
    };
    return type;
}

/// The button group that -shareCollection names; null without the flag.
QButtonGroup* SharedGroup(const ControlCreation& creation) {
    if (!creation.call.Has("-shareCollection")) {
        return nullptr;
    }
    Control& other = creation.registry.Named(creation.call.String("-shareCollection"));
    const QAbstractButton* const first = ButtonOf(other, 1);
    return first ? first->group() : nullptr;
}

int Selected(Control& control) {
    for (int number = 1; number <= MAX_BUTTONS; ++number) {
        const QAbstractButton* const button = ButtonOf(control, number);
        if (button && button->isChecked()) {
            return number;
        }
    }
    return 0;
}

void Select(Control& control, const CommandCall& call, int number) {
    if (number == 0) {
        // To turn the checked button off, suspend the group's exclusiveness.
        if (QAbstractButton* const checked = ButtonOf(control, std::max(1, Selected(control)))) {
            checked->group()->setExclusive(false);
            checked->setChecked(false);
            checked->group()->setExclusive(true);
        }
        return;
    }
    ButtonOrFail(control, call, number).setChecked(true);
}

ControlType RadioGroupType() {
    ControlType type;
    type.name = "radioButtonGrp";
    type.flags =
        CommonGroupFlags() +
        ControlFlags{
            CreateFlag(
                "-nrb", "-numberOfRadioButtons", {MSyntax::kLong},
                [](Control& control) { return Value(static_cast<int>(Group(control).Parts().size())); }),
            CreateFlag("-scl", "-shareCollection", {MSyntax::kString}),
            {"-sl",
             "-select",
             {MSyntax::kLong},
             [](Control& control, const CommandCall& call) { Select(control, call, call.Int("-select")); },
             [](Control& control) { return Value(Selected(control)); }},
        } +
        GroupFlags();
    type.create = [](const ControlCreation& creation) {
        auto group = MakeGroup<QRadioButton>(creation, "-numberOfRadioButtons");
        QButtonGroup* const shared = SharedGroup(creation);
        auto* const buttons = shared ? shared : new QButtonGroup(group->Widget());
        for (QWidget* const part : group->Parts()) {
            buttons->addButton(static_cast<QRadioButton*>(part));
        }
        return group;
    };
    return type;
}

} // namespace

void RegisterToggleGroupCommands(WindowCommandTable& table) {
    table.Add(CheckBoxGroupType());
    table.Add(RadioGroupType());
}

} // namespace lightbox
