// intField, floatField, intFieldGrp, floatFieldGrp.

#include "controls/ControlRegistry.h"
#include "controls/GroupControl.h"
#include "controls/NumberField.h"
#include "controls/NumberFlags.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

constexpr int MAX_FIELDS = 4;

ControlFlags FieldFlags(bool isInteger) {
    return {
        NumberFlag<NumberField>("-min", "-minValue", isInteger, &NumberField::SetMinimum,
                                &NumberField::Minimum),
        NumberFlag<NumberField>("-max", "-maxValue", isInteger, &NumberField::SetMaximum,
                                &NumberField::Maximum),
        NumberFlag<NumberField>(
            "-s", "-step", isInteger, [](NumberField& field, double value) { field.step = value; },
            &NumberField::step),
        ValueFlag<NumberField, int>("-pre", "-precision", &NumberField::SetPrecision,
                                    &NumberField::Precision),
        ValueFlag<NumberField, bool>("-tze", "-showTrailingZeros", &NumberField::ShowTrailingZeros,
                                     &NumberField::ShowsTrailingZeros),
        ValueFlag<NumberField, bool>(
            "-ed", "-editable", [](NumberField& field, bool on) { field.setReadOnly(!on); },
            [](const NumberField& field) { return !field.isReadOnly(); }),
        NumberFlag<NumberField>("-v", "-value", isInteger, &NumberField::SetValue, &NumberField::Value),
        ScriptFlag("-cc", "-changeCommand"),
        ScriptFlag("-dc", "-dragCommand"),
        ScriptFlag("-ec", "-enterCommand"),
        ScriptFlag("-rfc", "-receiveFocusCommand"),
    };
}

std::unique_ptr<Control> CreateField(const ControlCreation& creation, bool isInteger) {
    auto* const field = new NumberField(isInteger);
    auto control = std::make_unique<Control>(creation, field);
    ControlRegistry& registry = creation.registry;
    Control* const made = control.get();
    QObject::connect(field, &NumberField::Changed, field, [&registry, made, isInteger](double value) {
        registry.Run(*made, "-changeCommand", {NumberValue(value, isInteger)});
    });
    QObject::connect(field, &NumberField::Entered, field, [&registry, made, isInteger](double value) {
        registry.Run(*made, "-enterCommand", {NumberValue(value, isInteger)});
    });
    return control;
}

NumberField* FieldOf(Control& control, int number) {
    return Group(control).PartAs<NumberField>(number);
}

Value ValuesOf(Control& control, bool isInteger) {
    Value::IntArray whole;
    Value::FloatArray fractions;
    for (QWidget* const part : Group(control).Parts()) {
        const double value = qobject_cast<NumberField*>(part)->Value();
        whole.push_back(isInteger ? static_cast<int>(value) : 0);
        fractions.push_back(value);
    }
    return isInteger ? Value(std::move(whole)) : Value(std::move(fractions));
}

/// Adds -value1 to -value4 and -enable1 to -enable4.
void AddNumbered(ControlFlags& flags, bool isInteger) {
    for (int number = 1; number <= MAX_FIELDS; ++number) {
        const std::string count = std::to_string(number);
        const std::string value = "-value" + count;
        flags.push_back({"-v" + count,
                         value,
                         {isInteger ? MSyntax::kLong : MSyntax::kDouble},
                         [value, number, isInteger](Control& control, const CommandCall& call) {
                             NumberField* const field = FieldOf(control, number);
                             if (!field) {
                                 call.Fail("\"" + control.Path() + "\" has no field " +
                                           std::to_string(number) + ".");
                             }
                             field->SetValue(NumberArgument(call, value, isInteger));
                         },
                         [number, isInteger](Control& control) {
                             const NumberField* const field = FieldOf(control, number);
                             return NumberValue(field ? field->Value() : 0.0, isInteger);
                         }});
        flags.push_back(ValueFlag<QWidget, bool>(
            "-en" + count, "-enable" + count, &QWidget::setEnabled, &QWidget::isEnabled,
            [number](Control& control) { return Group(control).Part(number); }));
    }
}

ControlFlag AllValues(bool isInteger) {
    return {"-v", "-value",
            std::vector<MSyntax::MArgType>(MAX_FIELDS, isInteger ? MSyntax::kLong : MSyntax::kDouble),
            [isInteger](Control& control, const CommandCall& call) {
                for (int number = 1; number <= MAX_FIELDS; ++number) {
                    if (NumberField* const field = FieldOf(control, number)) {
                        field->SetValue(
                            NumberArgument(call, "-value", isInteger, static_cast<unsigned>(number - 1)));
                    }
                }
            },
            [isInteger](Control& control) { return ValuesOf(control, isInteger); }};
}

/// The precision of all fields.
ControlFlag PrecisionFlag() {
    return ValueFlag<GroupControl, int>(
        "-pre", "-precision",
        [](const GroupControl& group, int digits) {
            for (QWidget* const part : group.Parts()) {
                qobject_cast<NumberField*>(part)->SetPrecision(digits);
            }
        },
        [](const GroupControl& group) { return group.PartAs<NumberField>(1)->Precision(); });
}

ControlFlags FieldGroupFlags(bool isInteger) {
    ControlFlags flags = {
        CreateFlag("-nf", "-numberOfFields", {MSyntax::kLong},
                   [](Control& control) { return static_cast<int>(Group(control).Parts().size()); }),
        PrecisionFlag(),
        AllValues(isInteger),
        ScriptFlag("-cc", "-changeCommand"),
        ScriptFlag("-dc", "-dragCommand"),
    };
    AddNumbered(flags, isInteger);
    return flags + GroupFlags();
}

std::unique_ptr<Control> CreateFieldGroup(const ControlCreation& creation, bool isInteger) {
    auto group = std::make_unique<GroupControl>(creation);
    const int count = std::clamp(creation.call.IntOr("-numberOfFields", 1), 1, MAX_FIELDS);
    ControlRegistry& registry = creation.registry;
    GroupControl* const made = group.get();
    for (int i = 0; i < count; ++i) {
        auto* const field = new NumberField(isInteger);
        group->AddPart(field);
        QObject::connect(field, &NumberField::Changed, field, [&registry, made, isInteger] {
            std::vector<Value> values;
            ValuesOf(*made, isInteger).Flatten(values);
            registry.Run(*made, "-changeCommand", values);
        });
    }
    group->Finish();
    return group;
}

} // namespace

void RegisterNumberFieldCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    for (const bool isInteger : {true, false}) {
        const std::string prefix = isInteger ? "int" : "float";
        table.Add({prefix + "Field", Family::Control, FieldFlags(isInteger) + CommonFlags(),
                   [isInteger](const auto& creation) { return CreateField(creation, isInteger); }});
        table.Add({prefix + "FieldGrp", Family::Control, FieldGroupFlags(isInteger),
                   [isInteger](const auto& creation) { return CreateFieldGroup(creation, isInteger); }});
    }
}

} // namespace lightbox
