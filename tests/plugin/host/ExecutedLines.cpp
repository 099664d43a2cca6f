#include "plugin/host/ExecutedLines.h"

#include "scene/Host.h"
#include "scene/IdleQueue.h"

#include <maya/MCommandResult.h>
#include <maya/MGlobal.h>

namespace vellix {

namespace {

ExecutedLines* g_current = nullptr;

} // namespace

ExecutedLines::ExecutedLines(Mode mode)
    : mode_(mode)
    , outer_(g_current) {
    g_current = this;
}

ExecutedLines::~ExecutedLines() {
    g_current = outer_;
}

ExecutedLines* ExecutedLines::Current() {
    return g_current;
}

} // namespace vellix

namespace {

/// Whether that is all that is to be done with the line.
bool Keep(const MString& command, bool displayEnabled, bool undoEnabled) {
    vellix::ExecutedLines* const lines = vellix::ExecutedLines::Current();
    if (!lines) {
        return false;
    }
    lines->Keep(command.asUTF8(), displayEnabled, undoEnabled);
    return !lines->Executes();
}

} // namespace

// The program's own definitions stand before those of the host library, so the plug-in's lines pass here.

MStatus MGlobal::executeCommand(const MString& command, bool displayEnabled, bool undoEnabled) {
    if (Keep(command, displayEnabled, undoEnabled)) {
        return MS::kSuccess;
    }
    MCommandResult result;
    return executeCommand(command, result, displayEnabled, undoEnabled);
}

MStatus MGlobal::executeCommandOnIdle(const MString& command, bool displayEnabled) {
    if (Keep(command, displayEnabled, false)) {
        return MS::kSuccess;
    }
    lightbox::Host::Get().idle().Add(
        [command, displayEnabled] { executeCommand(command, displayEnabled, true); });
    return MS::kSuccess;
}
