#include "host/Logger.h"

#include "host/MayaUtil.h"

#include <maya/MGlobal.h>

namespace vellix {

const char* const Logger::PREFIX = "[Vellix2] ";
const char* const Logger::DEBUG_PREFIX = "[DEBUG] ";

void Logger::Info(const MString& message) {
    MGlobal::displayInfo(MString(PREFIX) + message);
}

void Logger::Info(const QString& message) {
    Info(MayaUtil::ToMString(message));
}

void Logger::Info(const char* message) {
    Info(MString(message));
}

void Logger::Warning(const MString& message) {
    MGlobal::displayWarning(MString(PREFIX) + message);
}

void Logger::Warning(const QString& message) {
    Warning(MayaUtil::ToMString(message));
}

void Logger::Warning(const char* message) {
    Warning(MString(message));
}

void Logger::Error(const MString& message) {
    MGlobal::displayError(MString(PREFIX) + message);
}

void Logger::Error(const QString& message) {
    Error(MayaUtil::ToMString(message));
}

void Logger::Error(const char* message) {
    Error(MString(message));
}

} // namespace vellix
