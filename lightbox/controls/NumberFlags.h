#pragma once

#include "controls/ControlType.h"

namespace lightbox {

/// A number as the command's kind of number.
inline mel::Value NumberValue(double value, bool isInteger) {
    return isInteger ? mel::Value(static_cast<int>(value)) : mel::Value(value);
}

/// A flag with one number, whole for the commands of whole numbers. `Target` finds what it is about in the
/// control.
template <class Object>
ControlFlag NumberFlag(const char* shortName, const char* longName, bool isInteger,
                       Object* (*target)(Control&), void (*set)(Object&, double),
                       double (*get)(const Object&)) {
    const std::string flag = longName;
    return {shortName,
            flag,
            {isInteger ? MSyntax::kLong : MSyntax::kDouble},
            [flag, isInteger, target, set](Control& control, const mel::CommandCall& call) {
                if (Object* const object = target(control)) {
                    set(*object, isInteger ? call.Int(flag.c_str()) : call.Float(flag.c_str()));
                }
            },
            [isInteger, target, get](Control& control) {
                Object* const object = target(control);
                return NumberValue(object ? get(*object) : 0.0, isInteger);
            }};
}

/// The control's own object.
template <class Object>
Object* OwnObject(Control& control) {
    return control.As<Object>();
}

} // namespace lightbox
