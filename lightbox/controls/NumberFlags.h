#pragma once

#include "controls/ControlType.h"

namespace lightbox {

/// A number as a MEL int or float.
inline mel::Value NumberValue(double value, bool isInteger) {
    return isInteger ? mel::Value(static_cast<int>(value)) : mel::Value(value);
}

/// A flag with one number, an integer when `isInteger`. `target` finds the object to change in the control;
/// it may answer null.
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

/// A `target` for NumberFlag(): the control's own object.
template <class Object>
Object* OwnObject(Control& control) {
    return control.As<Object>();
}

} // namespace lightbox
