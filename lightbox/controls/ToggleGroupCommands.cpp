// checkBoxGrp and radioButtonGrp: up to four boxes or buttons in a row, with a label before them.

#include "controls/GroupControl.h"
#include "controls/Registration.h"
#include "controls/ToggleFlags.h"
#include "controls/WindowCommandTable.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>

#include <algorithm>
#include <utility>

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

/// A flag for a value of one button. The button's number is at the end of the flag's names.
template <class Value>
ControlFlag OneButton(const std::string& shortName, const std::string& longName, int number,
                      std::function<void(QAbstractButton&, const Value&)> set,
                      std::function<Value(const QAbstractButton&)> get) {
    const std::string flag = longName + std::to_string(number);
    return {shortName + std::to_string(number),
            flag,
            {ARGUMENT_TYPE<Value>},
            [flag, number, set = std::move(set)](Control& control, const CommandCall& call) {
                set(ButtonOrFail(control, call, number), ArgumentOf<Value>(call, flag));
            },
            [number, get = std::move(get)](Control& control) {
                const QAbstractButton* const button = ButtonOf(control, number);
                return MelValue(button ? get(*button) : Value());
            }};
}

/// A flag for the values of the first `count` buttons, as in -labelArray3 "a" "b" "c".
template <class Value>
ControlFlag FirstButtons(const std::string& shortName, const std::string& longName, int count,
                         std::function<void(QAbstractButton&, const Value&)> set,
                         std::function<Value(const QAbstractButton&)> get) {
    const std::string flag = longName + std::to_string(count);
    return {shortName + std::to_string(count), flag,
            std::vector<MSyntax::MArgType>(static_cast<std::size_t>(count), ARGUMENT_TYPE<Value>),
            [flag, count, set = std::move(set)](Control& control, const CommandCall& call) {
                for (int number = 1; number <= count; ++number) {
                    set(ButtonOrFail(control, call, number),
                        ArgumentOf<Value>(call, flag, static_cast<unsigned>(number - 1)));
                }
            },
            [count, get = std::move(get)](Control& control) {
                std::vector<std::conditional_t<std::is_same_v<Value, bool>, int, Value>> values;
                for (int number = 1; number <= count; ++number) {
                    const QAbstractButton* const button = ButtonOf(control, number);
                    values.push_back(button ? get(*button) : Value());
                }
                return mel::Value(std::move(values));
            }};
}

ControlFlag NumberedScript(const char* shortName, const char* longName, int number) {
    const std::string count = std::to_string(number);
    return ScriptFlag((shortName + count).c_str(), (longName + count).c_str());
}

int ButtonCount(Control& control) {
    return static_cast<int>(Group(control).Parts().size());
}

ControlFlags CommonGroupFlags() {
    const auto setLabel = [](QAbstractButton& button, const std::string& text) {
        button.setText(ToQt(text));
    };
    const auto label = [](const QAbstractButton& button) { return button.text().toStdString(); };
    ControlFlags flags = ToggleScripts();
    flags.push_back(CreateFlag("-vr", "-vertical", {MSyntax::kBoolean}));
    for (int number = 1; number <= MAX_BUTTONS; ++number) {
        flags.push_back(OneButton<std::string>("-l", "-label", number, setLabel, label));
        flags.push_back(OneButton<bool>("-en", "-enable", number, &QWidget::setEnabled, &QWidget::isEnabled));
        flags.push_back(NumberedScript("-cc", "-changeCommand", number));
        flags.push_back(NumberedScript("-on", "-onCommand", number));
        flags.push_back(NumberedScript("-of", "-offCommand", number));
        if (number > 1) {
            flags.push_back(FirstButtons<std::string>("-la", "-labelArray", number, setLabel, label));
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

ControlFlags CheckBoxGroupFlags() {
    ControlFlags flags = CommonGroupFlags();
    flags.push_back(CreateFlag("-ncb", "-numberOfCheckBoxes", {MSyntax::kLong}, ButtonCount));
    for (int number = 1; number <= MAX_BUTTONS; ++number) {
        flags.push_back(OneButton<bool>("-v", "-value", number, &QAbstractButton::setChecked,
                                        &QAbstractButton::isChecked));
        if (number > 1) {
            flags.push_back(FirstButtons<bool>("-va", "-valueArray", number, &QAbstractButton::setChecked,
                                               &QAbstractButton::isChecked));
        }
    }
    return flags + GroupFlags();
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

ControlFlags RadioGroupFlags() {
    return CommonGroupFlags() +
           ControlFlags{
               CreateFlag("-nrb", "-numberOfRadioButtons", {MSyntax::kLong}, ButtonCount),
               CreateFlag("-scl", "-shareCollection", {MSyntax::kString}),
               {"-sl",
                "-select",
                {MSyntax::kLong},
                [](Control& control, const CommandCall& call) { Select(control, call, call.Int("-select")); },
                [](Control& control) { return Selected(control); }},
           } +
           GroupFlags();
}

std::unique_ptr<Control> CreateRadioGroup(const ControlCreation& creation) {
    auto group = MakeGroup<QRadioButton>(creation, "-numberOfRadioButtons");
    QButtonGroup* const shared = SharedGroup(creation);
    auto* const buttons = shared ? shared : new QButtonGroup(group->Widget());
    for (QWidget* const part : group->Parts()) {
        buttons->addButton(static_cast<QRadioButton*>(part));
    }
    return group;
}

} // namespace

void RegisterToggleGroupCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    table.Add({"checkBoxGrp", Family::Control, CheckBoxGroupFlags(), [](const ControlCreation& creation) {
                   return MakeGroup<QCheckBox>(creation, "-numberOfCheckBoxes");
               }});
    table.Add({"radioButtonGrp", Family::Control, RadioGroupFlags(), CreateRadioGroup});
}

} // namespace lightbox
