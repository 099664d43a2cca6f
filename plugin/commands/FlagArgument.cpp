#include "commands/FlagArgument.h"

#include "host/MayaUtil.h"

#include <maya/MArgDatabase.h>

namespace vellix {

QString FlagArgument::String(const MArgDatabase& arguments, const char* flag) {
    MString value;
    return arguments.isFlagSet(flag) && arguments.getFlagArgument(flag, 0, value) ? MayaUtil::ToQString(value)
                                                                                  : QString();
}

int FlagArgument::Int(const MArgDatabase& arguments, const char* flag, unsigned int index, int otherwise) {
    MStatus status;
    const int value = arguments.flagArgumentInt(flag, index, &status);
    return status ? value : otherwise;
}

} // namespace vellix
