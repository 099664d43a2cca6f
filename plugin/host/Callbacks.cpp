#include "host/Callbacks.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <maya/MCallbackIdArray.h>
#include <maya/MEventMessage.h>

namespace vellix {

namespace {

constexpr int NO_SCRIPT_JOB = -1;

MCallbackIdArray g_callbacks;
int g_playbackScriptJob = NO_SCRIPT_JOB;

void FillOrClearLayerManagerDialog() {
    if (BaseNode* master = BaseNode::GetMaster()) {
        master->UpdateLayerManagerDialog();
    } else {
        BaseNode::ClearLayerManagerDialog();
    }
}

void OnSelectionChanged(void*) {
    if (MayaUtil::IsRefreshingTimeControl()) {
        return;
    }
    BaseNode::UpdateTimeControlOverlay();
    if (BaseNode::GetMaster() == nullptr) {
        BaseNode::ClearLayerManagerDialog();
    }
}

void OnTimeChanged(void*) {
    BaseNode::UpdatePlaybackTime();
}

void OnTimeUnitChanged(void*) {
    BaseNode::UpdateTimeControlOverlay();
}

void OnSceneOpened(void*) {
    BaseNode::UpdatePlaybackTime();
    BaseNode::UpdateTimeControlOverlay();
    FillOrClearLayerManagerDialog();
}

void OnApplicationExit(void*) {
    BaseNode::Shutdown();
}

void OnUndoRedo(void*) {
    BaseNode::UpdateTimeControlOverlay();
    FillOrClearLayerManagerDialog();
}

} // namespace

MStatus AddCallbacks() {
    struct Handler {
        const char* event;
        MMessage::MBasicFunction function;
    };
    const Handler handlers[] = {
        {"SelectionChanged", OnSelectionChanged},
        {"timeChanged", OnTimeChanged},
        {"timeUnitChanged", OnTimeUnitChanged},
        {"SceneOpened", OnSceneOpened},
        {"quitApplication", OnApplicationExit},
        {"Undo", OnUndoRedo},
        {"Redo", OnUndoRedo},
        {"NewSceneOpened", OnSceneOpened},
    };
    MStatus result;
    for (const Handler& handler : handlers) {
        MStatus status;
        const MCallbackId id =
            MEventMessage::addEventCallback(handler.event, handler.function, nullptr, &status);
        if (status) {
            g_callbacks.append(id);
        } else {
            result = status;
        }
    }
    return result;
}

MStatus RemoveCallbacks() {
    MStatus status = MMessage::removeCallbacks(g_callbacks);
    g_callbacks.clear();
    return status;
}

MStatus AddScriptJobs() {
    const QString job =
        QStringLiteral("scriptJob -cf \"playingBack\" \"%1 -rg\"").arg(Settings::NODE_COMMAND_NAME);
    if (!MayaUtil::ExecuteMelIntResult(job, g_playbackScriptJob, false, false)) {
        g_playbackScriptJob = NO_SCRIPT_JOB;
    }
    return MS::kSuccess;
}

MStatus RemoveScriptJobs() {
    if (g_playbackScriptJob >= 0) {
        MayaUtil::ExecuteMel(QStringLiteral("scriptJob -f -k %1").arg(g_playbackScriptJob), false, false);
        g_playbackScriptJob = NO_SCRIPT_JOB;
    }
    return MS::kSuccess;
}

} // namespace vellix
