#include "host/entry/Callbacks.h"

#include "core/LayerManager.h"
#include "host/Guarded.h"
#include "host/HostCallbacks.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"
#include "node/CameraRenames.h"
#include "node/CamerasRead.h"
#include "node/DocumentFollower.h"
#include "node/Flipping.h"
#include "node/IdleWork.h"
#include "node/MasterNode.h"

#include <maya/MDGMessage.h>
#include <maya/MDagPath.h>
#include <maya/MEventMessage.h>
#include <maya/MFileIO.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MNodeMessage.h>
#include <maya/MObjectHandle.h>
#include <maya/MSceneMessage.h>
#include <maya/MTime.h>

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <vector>

namespace vellix {

namespace {

constexpr int NO_SCRIPT_JOB = -1;
const char* const FOLLOWING = "Following a change of the scene";

/// What the host calls: a callback whose exceptions become errors.
template <MMessage::MBasicFunction Callback>
void Safe(void* data) {
    CameraRenames::FollowLate();
    RunGuarded(FOLLOWING, [=] { Callback(data); });
}

template <MMessage::MNodeFunction Callback>
void SafeFor(MObject& node, void* data) {
    RunGuarded(FOLLOWING, [&] { Callback(node, data); });
}

int g_playbackScriptJob = NO_SCRIPT_JOB;
// Context of the pending update after nodes were added or removed; null if none is pending.
std::unique_ptr<QObject> g_followUp;
// The cameras and drawing nodes that the running import has added so far.
std::vector<MObjectHandle> g_imported;
bool g_isEnding = false; // the program, with its scene

void OnSelectionChanged(void*) {
    if (MayaUtil::IsRefreshingTimeControl()) {
        return;
    }
    BaseNode::UpdateTimeControlOverlay();
    if (!BaseNode::GetMaster()) {
        BaseNode::ClearLayerManagerDialog();
    }
}

void OnTimeChanged(void*) {
    BaseNode::UpdatePlaybackTime();
    IdleWork::Schedule();
}

/// Drawings keep their exact times, so that changing back separates them again.
void WarnOfCoveredFrames() {
    int covered = 0;
    for (const BaseNode* node : BaseNode::GetAll()) {
        const std::shared_ptr<LayerManager> layers = node->GetLayerManager();
        covered += layers ? layers->CountCoveredFrames() : 0;
    }
    if (covered > 0) {
        Logger::Warning(
            QStringLiteral("In the new time unit, %1 drawings are on a frame that another one has "
                           "too, and are not shown. Nothing is lost: change the time unit back, or "
                           "retime the layers. A scene that is saved and opened like this moves "
                           "them to the next free frames.")
                .arg(covered));
    }
}

void OnTimeUnitChanged(void*) {
    BaseNode::UpdatePlaybackTime();
    BaseNode::UpdateTimeControlOverlay();
    WarnOfCoveredFrames();
}

/// The names of the cameras of the file that this node was read from, if they are in its namespace.
QStringList CamerasBeside(const BaseNode& node) {
    const QString nameSpace = node.GetName().section(QLatin1Char(':'), 0, -2) + QLatin1Char(':');
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    QStringList beside;
    for (const QString& camera : cameras) {
        if (nameSpace.size() > 1 && camera.startsWith(nameSpace)) {
            beside.append(camera);
        }
    }
    return beside;
}

void FollowReferencedCameras() {
    for (BaseNode* node : BaseNode::GetAll()) {
        MObject object = node->thisMObject();
        if (MFnDependencyNode(object).isFromReferencedFile()) {
            CamerasRead::Follow(*node, CamerasBeside(*node));
        }
    }
}

void OnSceneOpened(void*) {
    Flipping::End();
    MasterNode::OnSceneRead({});
    FollowReferencedCameras();
    BaseNode::UpdatePlaybackTime();
    DocumentFollower::FollowScene();
}

/// The layers are stored under the names that their cameras have.
void OnBeforeSave(void*) {
    CameraRenames::FollowLate();
}

/// A stroke or transform that is not committed yet was not saved.
void OnSceneSaved(void*) {
    const BaseNode* const node = BaseNode::GetMaster();
    if (node && node->HasActiveStroke()) {
        MayaUtil::MarkSceneModified();
    }
}

void OnReferenceRead(void*) {
    FollowReferencedCameras();
    BaseNode::UpdatePlaybackTime();
    DocumentFollower::FollowScene();
}

void OnSceneImported(void*) {
    QStringList cameras;
    QList<BaseNode*> drawings;
    for (const MObjectHandle& handle : g_imported) {
        MDagPath path;
        if (BaseNode* const node = handle.isValid() ? BaseNode::FromObject(handle.object()) : nullptr) {
            drawings.append(node);
        } else if (handle.isValid() && MDagPath::getAPathTo(handle.object(), path)) {
            cameras.append(MayaUtil::GetCameraName(path));
        }
    }
    g_imported.clear();
    for (BaseNode* node : drawings) {
        CamerasRead::Follow(*node, cameras);
    }
    MasterNode::OnSceneRead(drawings);
    FollowReferencedCameras();
    BaseNode::UpdatePlaybackTime();
    DocumentFollower::FollowScene();
}

bool IsCameraTransform(MObject& node) {
    const MFnDagNode transform(node);
    for (unsigned int i = 0; i < transform.childCount(); ++i) {
        if (transform.child(i).hasFn(MFn::kCamera)) {
            return true;
        }
    }
    return false;
}

/// Undo and redo of a rename come here too, so that the layers follow the camera both ways.
void OnNameChanged(MObject& node, const MString& before, void*) {
    if (node.hasFn(MFn::kTransform) && IsCameraTransform(node)) {
        CameraRenames::Follow(node, before);
    }
}

void SafeOnNameChanged(MObject& node, const MString& before, void* data) {
    RunGuarded(FOLLOWING, [&] { OnNameChanged(node, before, data); });
}

void OnDrawingAdded(MObject& object, void*) {
    if (MFileIO::isImportingFile()) {
        g_imported.emplace_back(object);
    } else if (const BaseNode* const node = BaseNode::FromObject(object)) {
        MasterNode::OnAdded(*node);
    }
}

void OnDrawingRemoved(MObject& object, void*) {
    const BaseNode* const node = g_isEnding ? nullptr : BaseNode::FromObject(object);
    if (node) {
        MasterNode::OnRemoved(*node);
    }
}

void OnCameraAdded(MObject& object, void*) {
    if (MFileIO::isImportingFile()) {
        g_imported.emplace_back(object);
    }
}

void OnApplicationExit(void*) {
    g_isEnding = true;
    IdleWork::Stop();
    Flipping::Stop();
    BaseNode::Shutdown();
}

void OnToolChanged(void*) {
    Flipping::End();
}

void OnUndoRedo(void*) {
    DocumentFollower::FollowScene();
}

/// Defers the update: during the callback the scene is still about to change.
void OnNodeAddedOrRemoved(MObject&, void*) {
    if (g_followUp) {
        return;
    }
    g_followUp = std::make_unique<QObject>();
    QTimer::singleShot(0, g_followUp.get(), [] {
        g_followUp.release()->deleteLater();
        RunGuarded(FOLLOWING, [] {
            DocumentFollower::FollowScene();
            DialogManager::FollowScene();
        });
    });
}

/// Never destroyed: the host may be gone by then.
HostCallbacks& Callbacks() {
    static auto* const callbacks = new HostCallbacks;
    return *callbacks;
}

using AddNodeCallback = MCallbackId (*)(MMessage::MNodeFunction, const MString&, void*, MStatus*);

MStatus FollowNodes(AddNodeCallback add, MMessage::MNodeFunction function, const MString& type) {
    return Callbacks().Add([&](MStatus* status) { return add(function, type, nullptr, status); });
}

/// Deleting, importing and scripts add, remove and rename drawing nodes and cameras without a host event.
MStatus AddNodeCallbacks() {
    const MString drawing = BaseNode::GetTypeName();
    const MString camera = "camera";
    std::vector<MStatus> results = {
        FollowNodes(MDGMessage::addNodeAddedCallback, SafeFor<OnDrawingAdded>, drawing),
        FollowNodes(MDGMessage::addNodeRemovedCallback, SafeFor<OnDrawingRemoved>, drawing),
        FollowNodes(MDGMessage::addNodeAddedCallback, SafeFor<OnCameraAdded>, camera),
    };
    results.push_back(Callbacks().Add([](MStatus* status) {
        return MNodeMessage::addNameChangedCallback(MObject::kNullObj, SafeOnNameChanged, nullptr, status);
    }));
    if (Settings::guiEnabled) { // only the panels need these
        for (const MString& type : {drawing, camera}) {
            for (const auto add : {MDGMessage::addNodeAddedCallback, MDGMessage::addNodeRemovedCallback}) {
                results.push_back(FollowNodes(add, SafeFor<OnNodeAddedOrRemoved>, type));
            }
        }
    }
    MStatus result;
    for (const MStatus& one : results) {
        result = one ? result : one;
    }
    return result;
}

} // namespace

MStatus AddCallbacks() {
    g_isEnding = false;
    struct Handler {
        const char* event;
        MMessage::MBasicFunction function;
    };
    const Handler handlers[] = {
        {"SelectionChanged", Safe<OnSelectionChanged>},
        {"timeChanged", Safe<OnTimeChanged>},
        {"timeUnitChanged", Safe<OnTimeUnitChanged>},
        {"SceneOpened", Safe<OnSceneOpened>},
        {"SceneSaved", Safe<OnSceneSaved>},
        {"SceneImported", Safe<OnSceneImported>},
        {"ToolChanged", Safe<OnToolChanged>},
        {"quitApplication", Safe<OnApplicationExit>},
        {"Undo", Safe<OnUndoRedo>},
        {"Redo", Safe<OnUndoRedo>},
        {"NewSceneOpened", Safe<OnSceneOpened>},
    };
    MStatus result;
    for (const Handler& handler : handlers) {
        const MStatus status = Callbacks().Add([&](MStatus* added) {
            return MEventMessage::addEventCallback(handler.event, handler.function, nullptr, added);
        });
        result = status ? result : status;
    }
    const struct {
        MSceneMessage::Message message;
        MMessage::MBasicFunction function;
    } followers[] = {{MSceneMessage::kAfterCreateReference, Safe<OnReferenceRead>},
                     {MSceneMessage::kAfterLoadReference, Safe<OnReferenceRead>},
                     {MSceneMessage::kBeforeSave, OnBeforeSave}};
    for (const auto& follower : followers) {
        const MStatus status = Callbacks().Add([&](MStatus* added) {
            return MSceneMessage::addCallback(follower.message, follower.function, nullptr, added);
        });
        result = status ? result : status;
    }
    const MStatus status = AddNodeCallbacks();
    result = status ? result : status;
    if (Settings::guiEnabled) { // otherwise nobody waits
        IdleWork::Start();
    }
    return result;
}

MStatus RemoveCallbacks() {
    IdleWork::Stop();
    Flipping::Stop();
    g_followUp.reset();
    g_imported.clear();
    return Callbacks().Clear();
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
