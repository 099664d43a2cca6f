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
    const auto own = OwnObject<NumberField>;
    return {
        NumberFlag<NumberField>(
            "-min", "-minValue", isInteger, own,
            [](NumberField& field, double value) { field.SetMinimum(value); },
            [](const NumberField& field) { return field.Minimum(); }),
        NumberFlag<NumberField>(
            "-max", "-maxValue", isInteger, own,
            [](NumberField& field, double value) { field.SetMaximum(value); },
            [](const NumberField& field) { return field.Maximum(); }),
        NumberFlag<NumberField>(
            "-s", "-step", isInteger, own, [](NumberField& field, double value) { field.step = value; },
            [](const NumberField& field) { return field.step; }),
        ValueFlag<NumberField, int>(
            "-pre", "-precision", [](NumberField& field, int digits) { field.SetPrecision(digits); },
            [](const NumberField& field) { return field.Precision(); }),
        ValueFlag<NumberField, bool>(
            "-tze", "-showTrailingZeros", [](NumberField& field, bool on) { field.ShowTrailingZeros(on); },
            [](const NumberField& field) { return field.ShowsTrailingZeros(); }),
        ValueFlag<NumberField, bool>(
            "-ed", "-editable", [](NumberField& field, bool on) { field.setReadOnly(!on); },
            [](const NumberField& field) { return !field.isReadOnly(); }),
        NumberFlag<NumberField>(
            "-v", "-value", isInteger, own, [](NumberField& field, double value) { field.SetValue(value); },
            [](const NumberField& field) { return field.Value(); }),
        ScriptFlag("-cc", "-changeCommand"),
        ScriptFlag("-dc", "-dragCommand"),
        ScriptFlag("-ec", "-enterCommand"),
        ScriptFlag("-rfc", "-receiveFocusCommand"),
    };
}

ControlType NumberFieldType(bool isInteger) {
    ControlType type;
    type.name = isInteger ? "intField" : "floatField";
    type.flags = FieldFlags(isInteger) + CommonFlags();
    type.create = [isInteger](const ControlCreation& creation) {
        auto* const field = new NumberField(isInteger);
        auto control = std::make_unique<Control>(creation.type, creation.name, creation.parent, field);
        ControlRegistry& registry = creation.registry;
        Control* const made = control.get();
        QObject::connect(field, &NumberField::Changed, field, [&registry, made, isInteger](double value) {
            registry.Run(*made, "-changeCommand", {NumberValue(value, isInteger)});
        });
        QObject::connect(field, &NumberField::Entered, field, [&registry, made, isInteger](double value) {
            registry.Run(*made, "-enterCommand", {NumberValue(value, isInteger)});
        });
        return control;
    };
    return type;
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
        const std::string enable = "-enable" + count;
        flags.push_back({"-v" + count,
                         value,
                         {isInteger ? MSyntax::kLong : MSyntax::kDouble},
                         [value, number](Control& control, const CommandCall& call) {
                             NumberField* const field = FieldOf(control, number);
                             if (!field) {
                                 call.Fail("\"" + control.Path() + "\" has no field " +
                                           std::to_string(number) + ".");
                             }
                             field->SetValue(call.Float(value.c_str()));
                         },
                         [number, isInteger](Control& control) {
                             const NumberField* const field = FieldOf(control, number);
                             return NumberValue(field ? field->Value() : 0.0, isInteger);
                         }});
        flags.push_back({"-en" + count,
                         enable,
                         {MSyntax::kBoolean},
                         [enable, number](Control& control, const CommandCall& call) {
                             if (QWidget* const part = Group(control).Part(number)) {
                                 part->setEnabled(call.Bool(enable.c_str()));
                             }
                         },
                         [number](Control& control) {
                             const QWidget* const part = Group(control).Part(number);
                             return Value(part && part->isEnabled());
                         }});
    }
}

ControlFlag AllValues(bool isInteger) {
    return {"-v", "-value",
            std::vector<MSyntax::MArgType>(MAX_FIELDS, isInteger ? MSyntax::kLong : MSyntax::kDouble),
            [](Control& control, const CommandCall& call) {
                for (int number = 1; number <= MAX_FIELDS; ++number) {
                    if (NumberField* const field = FieldOf(control, number)) {
                        field->SetValue(call.Float("-value", static_cast<unsigned>(number - 1)));
                    }
                }
            },
            [isInteger](Control& control) { return ValuesOf(control, isInteger); }};
}

ControlFlag EachField(const char* shortName, const char* longName, void (*set)(NumberField&, int),
                      int (*get)(const NumberField&), MSyntax::MArgType type) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {type},
            [flag, set](Control& control, const CommandCall& call) {
                for (QWidget* const part : Group(control).Parts()) {
                    set(*qobject_cast<NumberField*>(part), call.Int(flag.c_str()));
                }
            },
            [get](Control& control) { return Value(get(*FieldOf(control, 1))); }};
}

ControlType NumberGroupType(bool isInteger) {
    ControlType type;
    type.name = isInteger ? "intFieldGrp" : "floatFieldGrp";
    type.flags = {
        CreateFlag("-nf", "-numberOfFields", {MSyntax::kLong},
                   [](Control& control) { return Value(static_cast<int>(Group(control).Parts().size())); }),
        EachField(
            "-pre", "-precision", [](NumberField& field, int digits) { field.SetPrecision(digits); },
            [](const NumberField& field) { return field.Precision(); }, MSyntax::kLong),
        AllValues(isInteger),
        ScriptFlag("-cc", "-changeCommand"),
        ScriptFlag("-dc", "-dragCommand"),
    };
    AddNumbered(type.flags, isInteger);
    type.flags = std::move(type.flags) + GroupFlags();
    type.create = [isInteger](const ControlCreation& creation) {
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
    };
    return type;
}

} // namespace

void RegisterNumberFieldCommands(WindowCommandTable& table) {
    for (const bool isInteger : {true, false}) {
        table.Add(NumberFieldType(isInteger));
        table.Add(NumberGroupType(isInteger));
    }
}

} // namespace lightbox
