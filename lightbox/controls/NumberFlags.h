#pragma once

#include "controls/ControlType.h"
#include "mel/CommandCall.h"

#include <functional>
#include <string>

namespace lightbox {

/// A number as a MEL int or float.
inline mel::Value NumberValue(double value, bool isInteger) {
    return isInteger ? mel::Value(static_cast<int>(value)) : mel::Value(value);
}

/// An argument of a flag. An integer loses its fraction, as all integers of MEL.
inline double NumberArgument(const mel::CommandCall& call, const std::string& flag, bool isInteger,
                             unsigned index = 0) {
    return isInteger ? call.Int(flag.c_str(), index) : call.Float(flag.c_str(), index);
}

/// A flag with one number, an integer when `isInteger`. `target` finds the object to change in the control;
/// it may answer null.
template <class Object>
ControlFlag NumberFlag(const char* shortName, const char* longName, bool isInteger,
                       const std::function<void(Object&, double)>& set,
                       const std::function<double(Object&)>& get,
                       const std::function<Object*(Control&)>& target = ObjectOf<Object>) {
    const auto whole = [get](Object& object) { return static_cast<int>(get(object)); };
    return isInteger ? ValueFlag<Object, int>(shortName, longName, set, whole, target)
                     : ValueFlag<Object, double>(shortName, longName, set, get, target);
}

} // namespace lightbox
