#include "controls/ControlType.h"

#include "controls/ControlRegistry.h"

namespace lightbox {

namespace {

/// The text of a note as a MEL value of the flag's type.
mel::Value NoteValue(const std::string& text, MSyntax::MArgType type) {
    const mel::Value value(text);
    return type == MSyntax::kString   ? value
           : type == MSyntax::kDouble ? mel::Value(value.AsFloat())
                                      : mel::Value(value.AsInt());
}

} // namespace

ControlFlags operator+(ControlFlags first, const ControlFlags& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

ControlFlag ScriptFlag(const char* shortName, const char* longName) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {MSyntax::kString},
            [flag](Control& control, const mel::CommandCall& call) {
                control.scripts[flag] = call.String(flag.c_str());
            },
            [flag](Control& control) {
                const auto script = control.scripts.find(flag);
                return mel::Value(script == control.scripts.end() ? std::string() : script->second);
            }};
}

ControlFlag NoteFlag(const char* shortName, const char* longName, MSyntax::MArgType type) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {type},
            [flag, type](Control& control, const mel::CommandCall& call) {
                control.notes[flag] = type == MSyntax::kBoolean
                                          ? std::to_string(static_cast<int>(call.Bool(flag.c_str())))
                                          : call.Argument(flag.c_str()).AsString();
            },
            [flag, type](Control& control) {
                const auto note = control.notes.find(flag);
                return NoteValue(note == control.notes.end() ? std::string() : note->second, type);
            }};
}

ControlFlag CreateFlag(const char* shortName, const char* longName, std::vector<MSyntax::MArgType> arguments,
                       ControlFlag::Get get) {
    return {shortName, longName, std::move(arguments), nullptr, std::move(get)};
}

ControlFlag QueryFlag(const char* shortName, const char* longName, ControlFlag::Get get) {
    return {shortName, longName, {}, nullptr, std::move(get)};
}

} // namespace lightbox
