#pragma once

#include <maya/MApiNamespace.h>

#include <QString>

namespace vellix {

/// Values of a command's flags. A flag that is not given, or not with such a value, leaves the default.
class FlagArgument {
public:
    static QString String(const MArgDatabase& arguments, const char* flag);
    static int Int(const MArgDatabase& arguments, const char* flag, unsigned int index, int otherwise);
};

} // namespace vellix
