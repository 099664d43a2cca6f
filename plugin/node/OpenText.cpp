#include "node/OpenText.h"

#include "host/Guarded.h"

#include <maya/MCallbackIdArray.h>
#include <maya/MEventMessage.h>
#include <maya/MGlobal.h>
#include <maya/MSceneMessage.h>

#include <utility>

namespace vellix {

namespace {

std::function<void()> g_commit; // empty while no text is open
MCallbackIdArray g_callbacks;   // of the host's changes while one is open
bool g_isWaiting = false;       // for the end of an undo or redo

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
    MMessage::removeCallbacks(g_callbacks);
    g_callbacks.clear();
    g_isWaiting = false;
    g_commit = std::move(commit);
    if (!g_commit) {
        return;
    }
    for (const char* event : {"timeChanged", "cameraChange"}) {
        g_callbacks.append(MEventMessage::addEventCallback(event, OnChange));
    }
    for (const char* event : {"Undo", "Redo"}) {
        g_callbacks.append(MEventMessage::addEventCallback(event, OnUndoRedo));
    }
    g_callbacks.append(MSceneMessage::addCallback(MSceneMessage::kBeforeSave, OnChange));
}

void OpenText::Commit() {
    if (MGlobal::isUndoing() || MGlobal::isRedoing()) {
        g_isWaiting = g_commit != nullptr;
    } else if (g_commit) {
        RunGuarded("The text", std::exchange(g_commit, nullptr));
    }
}

} // namespace vellix
