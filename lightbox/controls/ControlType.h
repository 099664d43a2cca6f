#pragma once

#include "controls/Control.h"
#include "mel/CommandCall.h"
#include "mel/Value.h"

#include <maya/MSyntax.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
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
    std::vector<std::string> alsoFor = {};
};

/// A `create` for a class of controls that is made from the creation alone.
template <class Class>
std::unique_ptr<Control> Make(const ControlCreation& creation) {
    return std::make_unique<Class>(creation);
}

/// Joins two tables of flags.
ControlFlags operator+(ControlFlags first, const ControlFlags& second);

/// The flags of every control, and the additional flags of layouts.
const ControlFlags& CommonFlags();
const ControlFlags& LayoutFlags();

// Functions that make common flags.

/// The object that a flag changes: the control itself as one of its classes, or else its Qt object. Null when
/// it is of another class.
template <class Object>
Object* ObjectOf(Control& control) {
    if constexpr (std::is_base_of_v<Control, Object>) {
        return dynamic_cast<Object*>(&control);
    } else {
        return control.As<Object>();
    }
}

/// The MSyntax type of a bool, int, double or text.
template <class Value>
constexpr MSyntax::MArgType ARGUMENT_TYPE = std::is_same_v<Value, bool>     ? MSyntax::kBoolean
                                            : std::is_same_v<Value, int>    ? MSyntax::kLong
                                            : std::is_same_v<Value, double> ? MSyntax::kDouble
                                                                            : MSyntax::kString;

/// An argument of a flag as a bool, int, double, QString or std::string.
template <class Value>
Value ArgumentOf(const mel::CommandCall& call, const std::string& flag, unsigned index = 0) {
    if constexpr (std::is_same_v<Value, bool>) {
        return call.Bool(flag.c_str(), index);
    } else if constexpr (std::is_same_v<Value, int>) {
        return call.Int(flag.c_str(), index);
    } else if constexpr (std::is_same_v<Value, double>) {
        return call.Float(flag.c_str(), index);
    } else if constexpr (std::is_same_v<Value, QString>) {
        return ToQt(call.String(flag.c_str(), index));
    } else {
        return call.String(flag.c_str(), index);
    }
}

/// A value of C++ or Qt in MEL.
template <class Value>
mel::Value MelValue(const Value& value) {
    if constexpr (std::is_same_v<Value, QString>) {
        return value.toStdString();
    } else {
        return value;
    }
}

/// A flag with one value, a bool, int, double, QString or std::string. `target` finds the object that has the
/// value. When there is none, setting does nothing and a query answers a default value.
template <class Object, class Value>
ControlFlag ValueFlag(const std::string& shortName, const std::string& longName,
                      std::function<void(Object&, const Value&)> set, std::function<Value(Object&)> get,
                      const std::function<Object*(Control&)>& target = ObjectOf<Object>) {
    return {shortName,
            longName,
            {ARGUMENT_TYPE<Value>},
            [set = std::move(set), longName, target](Control& control, const mel::CommandCall& call) {
                if (Object* const object = target(control)) {
                    set(*object, ArgumentOf<Value>(call, longName));
                }
            },
            [get = std::move(get), target](Control& control) {
                Object* const object = target(control);
                return MelValue(object ? get(*object) : Value());
            }};
}

/// A flag without a value, which does something to an object of the control and cannot be queried.
template <class Object>
ControlFlag ActionFlag(const char* shortName, const char* longName, std::function<void(Object&)> act) {
    return {shortName,
            longName,
            {},
            [act = std::move(act)](Control& control, const mel::CommandCall&) {
                if (Object* const object = ObjectOf<Object>(control)) {
                    act(*object);
                }
            },
            nullptr};
}

/// A flag that one call may use several times; `each` is called for each use. It cannot be queried.
ControlFlag MultiFlag(const char* shortName, const char* longName, std::vector<MSyntax::MArgType> arguments,
                      std::function<void(Control&, const mel::CommandCall&, unsigned use)> each);
/// A flag with one argument for each of `count` columns, buttons and so on; `each` is called with the numbers
/// from 1. The count is at the end of the flag's names, as in -columnWidth3 80 75 150.
ControlFlag SeveralFlag(const std::string& shortName, const std::string& longName, int count,
                        MSyntax::MArgType type,
                        std::function<void(Control&, int number, const mel::Value&)> each);
/// A flag with a script that the control runs; it is kept in Control::scripts.
ControlFlag ScriptFlag(const char* shortName, const char* longName);
/// A flag with a value that is kept in Control::notes, mostly for queries alone.
/// `effect`, which may be null, then puts the value into effect.
ControlFlag NoteFlag(const char* shortName, const char* longName, MSyntax::MArgType type,
                     std::function<void(Control&, const std::string&)> effect = nullptr);
/// A flag that only counts when the control is created. A query calls `get`, which may be null.
ControlFlag CreateFlag(const char* shortName, const char* longName, std::vector<MSyntax::MArgType> arguments,
                       ControlFlag::Get get = nullptr);
/// A flag that can only be queried.
ControlFlag QueryFlag(const char* shortName, const char* longName, ControlFlag::Get get);
/// The number of names that the getter of another flag answers.
ControlFlag CountFlag(const char* shortName, const char* longName, const ControlFlag::Get& names);
/// A getter for the names of the children that `isWanted`.
ControlFlag::Get ChildNames(std::function<bool(const Control&)> isWanted);

} // namespace lightbox
