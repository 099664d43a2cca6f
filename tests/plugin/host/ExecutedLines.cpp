#include "plugin/host/ExecutedLines.h"

#include "scene/Host.h"
#include "scene/IdleQueue.h"

#include <maya/MCommandResult.h>
#include <maya/MGlobal.h>

namespace vellix {

namespace {

ExecutedLines* g_current = nullptr;

} // namespace

ExecutedLines::ExecutedLines() {
    g_current = this;
}

ExecutedLines::~ExecutedLines() {
    g_current = nullptr;
}

ExecutedLines* ExecutedLines::Current() {
    return g_current;
}

} // namespace vellix

// The program's own definitions stand before those of the host library, so the plug-in's lines pass here.

MStatus MGlobal::executeCommand(const MString& command, bool displayEnabled, bool undoEnabled) {
    if (vellix::ExecutedLines* lines = vellix::ExecutedLines::Current()) {
        lines->Keep(command.asUTF8());
        return MS::kSuccess;
    }
    MCommandResult result;
    return executeCommand(command, result, displayEnabled, undoEnabled);
}

MStatus MGlobal::executeCommandOnIdle(const MString& command, bool displayEnabled) {
    if (vellix::ExecutedLines* lines = vellix::ExecutedLines::Current()) {
        lines->Keep(command.asUTF8());
        return MS::kSuccess;
    }
    lightbox::Host::Get().idle().Add(
        [command, displayEnabled] { executeCommand(command, displayEnabled, true); });
    return MS::kSuccess;
}
