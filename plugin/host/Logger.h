#pragma once

#include <maya/MString.h>

#include <QString>

namespace vellix {

/// Writes messages to the host's script output, with a prefix that names the plug-in. Info and DEBUG_PREFIX
/// are part of the interface for other tools and not used here.
class Logger {
public:
    static void Info(const MString& message);
    static void Info(const QString& message);
    static void Info(const char* message);

    static void Warning(const MString& message);
    static void Warning(const QString& message);
    static void Warning(const char* message);

    static void Error(const MString& message);
    static void Error(const QString& message);
    static void Error(const char* message);

private:
    static const char* const PREFIX;
    static const char* const DEBUG_PREFIX;
};

} // namespace vellix
