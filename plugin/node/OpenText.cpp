#include "node/OpenText.h"

#include "host/Guarded.h"
#include "host/HostCallbacks.h"

#include <maya/MEventMessage.h>
#include <maya/MGlobal.h>
#include <maya/MMessage.h>
#include <maya/MSceneMessage.h>

#include <utility>

namespace vellix {

namespace {

std::function<void()> g_commit; // empty while no text is open
bool g_isWaiting = false;       // for the end of an undo or redo

/// Of the host's changes while a text is open. Never destroyed: the host may be gone by then.
HostCallbacks& Callbacks() {
    static auto* const callbacks = new HostCallbacks;
    return *callbacks;
}

void Follow(const char* event, MMessage::MBasicFunction function) {
    Callbacks().Add(
        [&](MStatus* status) { return MEventMessage::addEventCallback(event, function, nullptr, status); });
}

void OnChange(void*) {
    OpenText::Commit();
}

void OnUndoRedo(void*) {
    if (std::exchange(g_isWaiting, false)) {
        OpenText::Commit();
    }
}

} // namespace

void OpenText::SetCommit(std::function<void()> commit) {
    Callbacks().Clear();
    g_isWaiting = false;
    g_commit = std::move(commit);
    if (!g_commit) {
        return;
    }
    for (const char* event : {"timeChanged", "cameraChange"}) {
        Follow(event, OnChange);
    }
    for (const char* event : {"Undo", "Redo"}) {
        Follow(event, OnUndoRedo);
    }
    Callbacks().Add([](MStatus* status) {
        return MSceneMessage::addCallback(MSceneMessage::kBeforeSave, OnChange, nullptr, status);
    });
}

void OpenText::Commit() {
    if (MGlobal::isUndoing() || MGlobal::isRedoing()) {
        g_isWaiting = g_commit != nullptr;
    } else if (g_commit) {
        RunGuarded("The text", std::exchange(g_commit, nullptr));
    }
}

} // namespace vellix
