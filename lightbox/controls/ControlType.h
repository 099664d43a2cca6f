#pragma once

#include "controls/Control.h"
#include "mel/CommandCall.h"
#include "mel/Value.h"

#include <maya/MSyntax.h>

#include <functional>
#include <memory>
#include <string>
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

// The usual kinds of flags. `Object` is the Qt class of the control's object; a control whose object is of
// another class is left alone and answers nothing.

template <class Object>
ControlFlag TextFlag(const char* shortName, const char* longName, void (*set)(Object&, const QString&),
                     QString (*get)(const Object&)) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {MSyntax::kString},
            [set, flag](Control& control, const mel::CommandCall& call) {
                if (auto* const object = control.As<Object>()) {
                    set(*object, ToQt(call.String(flag.c_str())));
                }
            },
            [get](Control& control) {
                auto* const object = control.As<Object>();
                return mel::Value(object ? get(*object).toStdString() : std::string());
            }};
}

template <class Object>
ControlFlag BoolFlag(const char* shortName, const char* longName, void (*set)(Object&, bool),
                     bool (*get)(const Object&)) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {MSyntax::kBoolean},
            [set, flag](Control& control, const mel::CommandCall& call) {
                if (auto* const object = control.As<Object>()) {
                    set(*object, call.Bool(flag.c_str()));
                }
            },
            [get](Control& control) {
                auto* const object = control.As<Object>();
                return mel::Value(object && get(*object));
            }};
}

template <class Object>
ControlFlag IntFlag(const char* shortName, const char* longName, void (*set)(Object&, int),
                    int (*get)(const Object&)) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {MSyntax::kLong},
            [set, flag](Control& control, const mel::CommandCall& call) {
                if (auto* const object = control.As<Object>()) {
                    set(*object, call.Int(flag.c_str()));
                }
            },
            [get](Control& control) {
                auto* const object = control.As<Object>();
                return mel::Value(object ? get(*object) : 0);
            }};
}

template <class Object>
ControlFlag FloatFlag(const char* shortName, const char* longName, void (*set)(Object&, double),
                      double (*get)(const Object&)) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {MSyntax::kDouble},
            [set, flag](Control& control, const mel::CommandCall& call) {
                if (auto* const object = control.As<Object>()) {
                    set(*object, call.Float(flag.c_str()));
                }
            },
            [get](Control& control) {
                auto* const object = control.As<Object>();
                return mel::Value(object ? get(*object) : 0.0);
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
