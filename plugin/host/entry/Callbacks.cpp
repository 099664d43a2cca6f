#include "host/entry/Callbacks.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"
#include "node/DocumentFollower.h"

#include <maya/MCallbackIdArray.h>
#include <maya/MDGMessage.h>
#include <maya/MEventMessage.h>

#include <QObject>
#include <QTimer>

#include <memory>

namespace vellix {

namespace {

constexpr int NO_SCRIPT_JOB = -1;

MCallbackIdArray g_callbacks;
int g_playbackScriptJob = NO_SCRIPT_JOB;
// While it is there, nodes that came or went are still to be followed.
std::unique_ptr<QObject> g_followUp;

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
    DocumentFollower::FollowScene();
}

void OnApplicationExit(void*) {
    BaseNode::Shutdown();
}

void OnUndoRedo(void*) {
    DocumentFollower::FollowScene();
}

/// While a node comes or goes, the scene is not yet as it will be.
void OnNodeAddedOrRemoved(MObject&, void*) {
    if (g_followUp) {
        return;
    }
    g_followUp = std::make_unique<QObject>();
    QTimer::singleShot(0, g_followUp.get(), [] {
        g_followUp.release()->deleteLater();
        DocumentFollower::FollowScene();
        DialogManager::FollowScene();
    });
}

/// Drawing nodes and cameras come and go by deleting, importing and scripts too, which say so by no event.
MStatus AddNodeCallbacks() {
    MStatus result;
    for (const MString& type : {BaseNode::GetTypeName(), MString("camera")}) {
        for (const auto add : {MDGMessage::addNodeAddedCallback, MDGMessage::addNodeRemovedCallback}) {
            MStatus status;
            const MCallbackId id = add(OnNodeAddedOrRemoved, type, nullptr, &status);
            if (status) {
                g_callbacks.append(id);
            } else {
                result = status;
            }
        }
    }
    return result;
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
    // They serve the panels alone.
    if (Settings::guiEnabled) {
        const MStatus status = AddNodeCallbacks();
        result = status ? result : status;
    }
    return result;
}

MStatus RemoveCallbacks() {
    g_followUp.reset();
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
