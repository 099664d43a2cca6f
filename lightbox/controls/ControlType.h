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

/// One flag of a window command: how it is spelled, and what it does to a control of that command.
struct ControlFlag {
    using Set = std::function<void(Control&, const mel::CommandCall&)>;
    using Get = std::function<mel::Value(Control&)>;

    /// With their hyphens.
    std::string shortName;
    std::string longName;
    std::vector<MSyntax::MArgType> arguments;
    /// Called when a control is made or edited with the flag; null for flags that only count when it is made,
    /// or in a query.
    Set set;
    /// Null for what cannot be queried.
    Get get;
    bool isMultiUse = false;
};

using ControlFlags = std::vector<ControlFlag>;

/// What a control is made from.
struct ControlCreation {
    ControlRegistry& registry;
    const ControlType& type;
    const mel::CommandCall& call;
    std::string name;
    /// Null for a window.
    Control* parent;
};

/// A kind of control: the command of that name, its flags, and how one is made. Flags are applied in the
/// order of the table, so that a range stands before the value in it.
struct ControlType {
    enum class Family { Window, Layout, Menu, MenuItem, Control, Collection, Panel };

    std::string name;
    Family family = Family::Control;
    ControlFlags flags;
    std::function<std::unique_ptr<Control>(const ControlCreation&)> create;
    /// The names of the types that the command can edit and query besides its own; "*" stands for all.
    std::vector<std::string> alsoFor;
};

/// Appends flags to a table.
ControlFlags operator+(ControlFlags first, const ControlFlags& second);

/// The flags that every control has, and those that layouts have besides.
const ControlFlags& CommonFlags();
const ControlFlags& LayoutFlags();

// The usual kinds of flags.

/// How a flag's value of one type is declared and read from a call.
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

/// A flag with one value, a QString, bool, int or double. `Object` is the Qt class of the control's object; a
/// control whose object is of another class is left alone and answers nothing.
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

/// A script that the control runs: kept in Control::scripts under the flag's long name.
ControlFlag ScriptFlag(const char* shortName, const char* longName);
/// A value that nothing but a query reads.
ControlFlag NoteFlag(const char* shortName, const char* longName, MSyntax::MArgType type);
/// A flag that counts only when the control is made, with what a query answers (may be null).
ControlFlag CreateFlag(const char* shortName, const char* longName, std::vector<MSyntax::MArgType> arguments,
                       ControlFlag::Get get = nullptr);
/// A flag that is only queried.
ControlFlag QueryFlag(const char* shortName, const char* longName, ControlFlag::Get get);

} // namespace lightbox
