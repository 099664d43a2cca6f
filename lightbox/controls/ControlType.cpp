#include "controls/ControlType.h"

#include "controls/ControlRegistry.h"

#include <utility>

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

ControlFlag MultiFlag(const char* shortName, const char* longName, std::vector<MSyntax::MArgType> arguments,
                      std::function<void(Control&, const mel::CommandCall&, unsigned use)> each) {
    const std::string flag = longName;
    auto set = [flag, each = std::move(each)](Control& control, const mel::CommandCall& call) {
        for (unsigned use = 0; use < call.UseCount(flag.c_str()); ++use) {
            each(control, call, use);
        }
    };
    return {shortName, flag, std::move(arguments), std::move(set), nullptr, true};
}

ControlFlag SeveralFlag(const std::string& shortName, const std::string& longName, int count,
                        MSyntax::MArgType type,
                        std::function<void(Control&, int number, const mel::Value&)> each) {
    const std::string flag = longName + std::to_string(count);
    auto set = [flag, count, each = std::move(each)](Control& control, const mel::CommandCall& call) {
        for (int number = 1; number <= count; ++number) {
            each(control, number, call.Argument(flag.c_str(), static_cast<unsigned>(number - 1)));
        }
    };
    return {shortName + std::to_string(count), flag,
            std::vector<MSyntax::MArgType>(static_cast<std::size_t>(count), type), std::move(set), nullptr};
}

ControlFlag ScriptFlag(const char* shortName, const char* longName) {
    const std::string flag = longName;
    return ValueFlag<Control, std::string>(
        shortName, longName,
        [flag](Control& control, const std::string& script) { control.scripts[flag] = script; },
        [flag](const Control& control) {
            const auto script = control.scripts.find(flag);
            return script == control.scripts.end() ? std::string() : script->second;
        });
}

ControlFlag NoteFlag(const char* shortName, const char* longName, MSyntax::MArgType type,
                     std::function<void(Control&, const std::string&)> effect) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {type},
            [flag, type, effect = std::move(effect)](Control& control, const mel::CommandCall& call) {
                std::string& note = control.notes[flag];
                note = type == MSyntax::kBoolean ? std::to_string(static_cast<int>(call.Bool(flag.c_str())))
                                                 : call.Argument(flag.c_str()).AsString();
                if (effect) {
                    effect(control, note);
                }
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

ControlFlag CountFlag(const char* shortName, const char* longName, const ControlFlag::Get& names) {
    return QueryFlag(shortName, longName,
                     [names](Control& control) { return static_cast<int>(names(control).Size()); });
}

ControlFlag::Get ChildNames(std::function<bool(const Control&)> isWanted) {
    return [isWanted = std::move(isWanted)](Control& control) {
        mel::Value::StringArray names;
        for (const Control* const child : control.Children()) {
            if (isWanted(*child)) {
                names.push_back(child->Name());
            }
        }
        return names;
    };
}

} // namespace lightbox
