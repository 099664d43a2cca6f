// intSlider, floatSlider, intSliderGrp, floatSliderGrp.

#include "controls/ControlRegistry.h"
#include "controls/GroupControl.h"
#include "controls/NumberField.h"
#include "controls/NumberFlags.h"
#include "controls/Registration.h"
#include "controls/ValueSlider.h"
#include "controls/WindowCommandTable.h"

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;

/// The slider of a control: its widget, or a part of its group.
ValueSlider* SliderOf(Control& control) {
    auto* const group = dynamic_cast<GroupControl*>(&control);
    if (!group) {
        return control.As<ValueSlider>();
    }
    for (QWidget* const part : group->Parts()) {
        if (auto* const slider = qobject_cast<ValueSlider*>(part)) {
            return slider;
        }
    }
    return nullptr;
}

NumberField* SliderField(Control& control) {
    return Group(control).PartAs<NumberField>(1);
}

/// The control's value: the field's, which may exceed the slider's range, else the slider's.
double NumberOf(Control& control) {
    const auto* const group = dynamic_cast<GroupControl*>(&control);
    const NumberField* const field = group ? SliderField(control) : nullptr;
    return field ? field->Value() : SliderOf(control)->Value();
}

void SetNumber(Control& control, double value) {
    const auto* const group = dynamic_cast<GroupControl*>(&control);
    NumberField* const field = group ? SliderField(control) : nullptr;
    if (field) {
        // A value outside the slider's range widens it, at most to the range of the field.
        ValueSlider& slider = *SliderOf(control);
        field->SetValue(value);
        slider.SetRange(std::min(slider.Minimum(), field->Value()),
                        std::max(slider.Maximum(), field->Value()));
    }
    SliderOf(control)->SetValue(field ? field->Value() : value);
}

/// A flag for one end of the field's range; without a field it has no effect.
ControlFlag FieldEnd(const char* shortName, const char* longName, bool isInteger, bool isMinimum) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {isInteger ? MSyntax::kLong : MSyntax::kDouble},
            [flag, isInteger, isMinimum](Control& control, const CommandCall& call) {
                if (NumberField* const field = SliderField(control)) {
                    const double value = NumberArgument(call, flag, isInteger);
                    isMinimum ? field->SetMinimum(value) : field->SetMaximum(value);
                }
            },
            [isInteger, isMinimum](Control& control) {
                const NumberField* const field = SliderField(control);
                const double end = !field ? 0.0 : isMinimum ? field->Minimum() : field->Maximum();
                return NumberValue(end, isInteger);
            }};
}

/// Gives the field the slider's limit when the call sets none for the field.
void LimitField(Control& control, const CommandCall& call, bool isMinimum, double value) {
    auto* const group = dynamic_cast<GroupControl*>(&control);
    NumberField* const field = group ? SliderField(control) : nullptr;
    if (field && call.IsCreate() && !call.Has(isMinimum ? "-fieldMinValue" : "-fieldMaxValue")) {
        isMinimum ? field->SetMinimum(value) : field->SetMaximum(value);
    }
}

ControlFlag SliderEnd(const char* shortName, const char* longName, bool isInteger, bool isMinimum) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {isInteger ? MSyntax::kLong : MSyntax::kDouble},
            [flag, isInteger, isMinimum](Control& control, const CommandCall& call) {
                ValueSlider& slider = *SliderOf(control);
                const double value = NumberArgument(call, flag, isInteger);
                const double other = isMinimum ? slider.Maximum() : slider.Minimum();
                slider.SetRange(isMinimum ? value : std::min(value, other),
                                isMinimum ? std::max(value, other) : value);
                LimitField(control, call, isMinimum, value);
            },
            [isInteger, isMinimum](Control& control) {
                const ValueSlider& slider = *SliderOf(control);
                return NumberValue(isMinimum ? slider.Minimum() : slider.Maximum(), isInteger);
            }};
}

ControlFlags SliderFlags(bool isInteger) {
    const auto type = isInteger ? MSyntax::kLong : MSyntax::kDouble;
    return {
        SliderEnd("-max", "-maxValue", isInteger, false),
        SliderEnd("-min", "-minValue", isInteger, true),
        NumberFlag<ValueSlider>("-s", "-step", isInteger, &ValueSlider::SetStep, &ValueSlider::Step,
                                SliderOf),
        {"-v",
         "-value",
         {type},
         [isInteger](Control& control, const CommandCall& call) {
             SetNumber(control, NumberArgument(call, "-value", isInteger));
         },
         [isInteger](Control& control) { return NumberValue(NumberOf(control), isInteger); }},
        ScriptFlag("-cc", "-changeCommand"),
        ScriptFlag("-dc", "-dragCommand"),
    };
}

void RunWithNumber(ControlRegistry& registry, Control& control, const char* flag, bool isInteger) {
    registry.Run(control, flag, {NumberValue(NumberOf(control), isInteger)});
}

void Connect(ValueSlider& slider, Control& control, ControlRegistry& registry, NumberField* field) {
    const bool isInteger = slider.IsInteger();
    const auto follow = [&control, &registry, field, isInteger](const char* flag, double value) {
        if (field) {
            field->SetValue(value);
        }
        RunWithNumber(registry, control, flag, isInteger);
    };
    QObject::connect(&slider, &ValueSlider::Dragged, &slider,
                     [follow](double value) { follow("-dragCommand", value); });
    QObject::connect(&slider, &ValueSlider::Changed, &slider,
                     [follow](double value) { follow("-changeCommand", value); });
    if (field) {
        QObject::connect(field, &NumberField::Changed, field, [&control, &registry, isInteger](double value) {
            SetNumber(control, value);
            RunWithNumber(registry, control, "-changeCommand", isInteger);
        });
    }
}

std::unique_ptr<Control> CreateSlider(const ControlCreation& creation, bool isInteger) {
    const CommandCall& call = creation.call;
    const bool isVertical = call.Has("-horizontal") && !call.Bool("-horizontal");
    auto* const slider = new ValueSlider(isInteger, isVertical ? Qt::Vertical : Qt::Horizontal);
    auto control = std::make_unique<Control>(creation, slider);
    Connect(*slider, *control, creation.registry, nullptr);
    return control;
}

ControlFlags SliderGroupFlags(bool isInteger) {
    return {
        CreateFlag("-f", "-field", {MSyntax::kBoolean},
                   [](Control& control) { return SliderField(control) != nullptr; }),
        ValueFlag<NumberField, int>("-pre", "-precision", &NumberField::SetPrecision, &NumberField::Precision,
                                    SliderField),
        NoteFlag("-fs", "-fieldStep", MSyntax::kDouble),
        NoteFlag("-ss", "-sliderStep", MSyntax::kDouble),
        FieldEnd("-fmx", "-fieldMaxValue", isInteger, false),
        FieldEnd("-fmn", "-fieldMinValue", isInteger, true),
    };
}

std::unique_ptr<Control> CreateSliderGroup(const ControlCreation& creation, bool isInteger) {
    const CommandCall& call = creation.call;
    auto group = std::make_unique<GroupControl>(creation);
    auto* const slider = new ValueSlider(isInteger, Qt::Horizontal);
    NumberField* field = nullptr;
    if (call.Has("-field") && call.Bool("-field")) {
        field = new NumberField(isInteger);
        field->SetMaximum(slider->Maximum());
        field->SetMinimum(slider->Minimum());
        group->AddPart(field);
    }
    constexpr int usualWidth = 120;
    slider->setMinimumWidth(usualWidth);
    group->AddPart(slider);
    group->Finish();
    Connect(*slider, *group, creation.registry, field);
    return group;
}

} // namespace

void RegisterSliderCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    const ControlFlag isHorizontal =
        CreateFlag("-hr", "-horizontal", {MSyntax::kBoolean},
                   [](Control& control) { return SliderOf(control)->orientation() == Qt::Horizontal; });
    for (const bool isInteger : {true, false}) {
        const std::string prefix = isInteger ? "int" : "float";
        table.Add({prefix + "Slider", Family::Control,
                   ControlFlags{isHorizontal} + SliderFlags(isInteger) + CommonFlags(),
                   [isInteger](const auto& creation) { return CreateSlider(creation, isInteger); }});
        table.Add({prefix + "SliderGrp", Family::Control,
                   SliderGroupFlags(isInteger) + SliderFlags(isInteger) + GroupFlags(),
                   [isInteger](const auto& creation) { return CreateSliderGroup(creation, isInteger); }});
    }
}

} // namespace lightbox
