#pragma once

#include "controls/Control.h"
#include "mel/CommandCall.h"
#include "mel/Value.h"

#include <maya/MSyntax.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace lightbox {

class ControlRegistry;

/// One flag of a window command: its names, its arguments, and how it sets and gets a value of a control.
struct ControlFlag {
    using Set = std::function<void(Control&, const mel::CommandCall&)>;
    using Get = std::function<mel::Value(Control&)>;

    /// The names include their hyphens.
    std::string shortName;
    std::string longName;
    std::vector<MSyntax::MArgType> arguments;
    /// Called when a control is created or edited with the flag. Null for flags that only creation or a query
    /// reads.
    Set set;
    /// Null when the flag cannot be queried.
    Get get;
    bool isMultiUse = false;
};

using ControlFlags = std::vector<ControlFlag>;

/// The arguments for the creation of a control.
struct ControlCreation {
    ControlRegistry& registry;
    const ControlType& type;
    const mel::CommandCall& call;
    std::string name;
    /// Null for a window.
    Control* parent;
};

/// A type of control: the command of that name, its flags, and how it creates a control. Flags are applied in
/// the order of the table, so a range has to come before the value within it.
struct ControlType {
    enum class Family { Window, Layout, Menu, MenuItem, Control, Collection, Panel };

    std::string name;
    Family family = Family::Control;
    ControlFlags flags;
    std::function<std::unique_ptr<Control>(const ControlCreation&)> create;
    /// The names of other types that the command can also edit and query; "*" stands for all.
    std::vector<std::string> alsoFor;
};

/// Joins two tables of flags.
ControlFlags operator+(ControlFlags first, const ControlFlags& second);

/// The flags of every control, and the additional flags of layouts.
const ControlFlags& CommonFlags();
const ControlFlags& LayoutFlags();

// Functions that make common flags.

/// Declares the MSyntax type of a flag's value and reads it from a call.
template <class Value>
struct FlagValue;

template <>
struct FlagValue<QString> {
    static constexpr auto TYPE = MSyntax::kString;
    static QString Of(const mel::CommandCall& call, const std::string& flag) {
        return ToQt(call.String(flag.c_str()));
    }
};
template <>
struct FlagValue<bool> {
    static constexpr auto TYPE = MSyntax::kBoolean;
    static bool Of(const mel::CommandCall& call, const std::string& flag) { return call.Bool(flag.c_str()); }
};
template <>
struct FlagValue<int> {
    static constexpr auto TYPE = MSyntax::kLong;
    static int Of(const mel::CommandCall& call, const std::string& flag) { return call.Int(flag.c_str()); }
};
template <>
struct FlagValue<double> {
    static constexpr auto TYPE = MSyntax::kDouble;
    static double Of(const mel::CommandCall& call, const std::string& flag) {
        return call.Float(flag.c_str());
    }
};

/// A flag with one value, a QString, bool, int or double. `Object` is the Qt class of the control's object.
/// On a control with an object of another class, setting does nothing and a query answers a default value.
template <class Object, class Value>
ControlFlag ValueFlag(const char* shortName, const char* longName,
                      void (*set)(Object&, std::conditional_t<std::is_class_v<Value>, const Value&, Value>),
                      Value (*get)(const Object&)) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {FlagValue<Value>::TYPE},
            [set, flag](Control& control, const mel::CommandCall& call) {
                if (auto* const object = control.As<Object>()) {
                    set(*object, FlagValue<Value>::Of(call, flag));
                }
            },
            [get](Control& control) {
                auto* const object = control.As<Object>();
                const Value value = object ? get(*object) : Value();
                if constexpr (std::is_same_v<Value, QString>) {
                    return mel::Value(value.toStdString());
                } else {
                    return mel::Value(value);
                }
            }};
}

/// A flag with a script that the control runs; it is kept in Control::scripts.
ControlFlag ScriptFlag(const char* shortName, const char* longName);
/// A flag with a value that only a query reads; it is kept in Control::notes.
ControlFlag NoteFlag(const char* shortName, const char* longName, MSyntax::MArgType type);
/// A flag that only counts when the control is created. A query calls `get`, which may be null.
ControlFlag CreateFlag(const char* shortName, const char* longName, std::vector<MSyntax::MArgType> arguments,
                       ControlFlag::Get get = nullptr);
/// A flag that can only be queried.
ControlFlag QueryFlag(const char* shortName, const char* longName, ControlFlag::Get get);

} // namespace lightbox
