#include "node/BaseNode.h"

#include "core/Frame.h"
#include "core/FrameRange.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/FrameTime.h"
#include "host/Guarded.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/SettingsWriter.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNodeLayerData.h"
#include "node/DocumentFollower.h"

#include <maya/M3dView.h>
#include <maya/MDagPath.h>
#include <maya/MDoubleArray.h>
#include <maya/MFn.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnPluginData.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MGlobal.h>
#include <maya/MItDag.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MSelectionList.h>

namespace vellix {

MObject BaseNode::layerData_;
MObject BaseNode::opacity_;
std::unique_ptr<TimelineOverlay> BaseNode::timelineOverlay_;
bool BaseNode::drawContextActive_ = false;
LegacyOutline* BaseNode::transformContext_ = nullptr;
LegacyOutline* BaseNode::adjustingContext_ = nullptr;
std::vector<std::unique_ptr<Frame>> BaseNode::clipboard_;

namespace {

bool g_hasShutDown = true; // as before the node type is made

const MString DRAW_CLASSIFICATION = MString("drawdb/geometry/") + Settings::NODE_TYPE_NAME;
const MString DRAW_REGISTRATION_ID = MString(Settings::NODE_TYPE_NAME) + "Plugin";

/// Offsets the times in a dragged range of the time slider, whose end is exclusive. `offset` is in frames.
void OffsetTimes(QList<int>& times, const MDoubleArray& range, int offset) {
    if (range.length() < 2) {
        return;
    }
    const FrameRange dragged = FrameRange::FromFrames(range[0], range[1]);
    for (int& time : times) {
        const qint64 moved = static_cast<qint64>(time) + offset;
        // An empty range stands for its first frame.
        if ((dragged.Contains(time) || time == dragged.start) && IsWholeFrame(moved)) {
            time = static_cast<int>(moved);
        }
    }
}

} // namespace

BaseNode::BaseNode() = default;

BaseNode::~BaseNode() = default;

void* BaseNode::Creator() {
    BaseNode* node = nullptr;
    RunGuarded("Making the drawing node", [&node] { node = new BaseNode; });
    return node;
}

MTypeId BaseNode::GetTypeID() {
    return MTypeId(0x11A886);
}

MString BaseNode::GetTypeName() {
    return MString(Settings::NODE_TYPE_NAME);
}

MString BaseNode::GetDrawDbClassification() {
    return DRAW_CLASSIFICATION;
}

MString BaseNode::GetDrawRegistrationId() {
    return DRAW_REGISTRATION_ID;
}

MStatus BaseNode::Initialize() {
    return Guarded("Making the node type", InitializeType);
}

MStatus BaseNode::InitializeType() {
    g_hasShutDown = false;
    DocumentFollower::Start();
    if (Settings::guiEnabled) {
        if (QWidget* timeSlider = MayaUtil::GetTimeControlWidget()) {
            timelineOverlay_ = DialogManager::CreateTimelineOverlay(timeSlider);
        } else {
            Logger::Error("Failed to get time control widget.");
        }
    }

    MFnTypedAttribute typed;
    layerData_ = typed.create("layerData", "ld", BaseNodeLayerData::GetTypeID());
    typed.setReadable(true);
    typed.setWritable(true);
    typed.setStorable(true);
    typed.setConnectable(false);
    typed.setHidden(true);
    addAttribute(layerData_);

    MFnNumericAttribute numeric;
    opacity_ = numeric.create("opacity", "op", MFnNumericData::kFloat, 1.0);
    numeric.setKeyable(true);
    numeric.setStorable(true);
    numeric.setReadable(true);
    numeric.setWritable(true);
    numeric.setHidden(false);
    numeric.setMin(0.0);
    numeric.setMax(1.0);
    addAttribute(opacity_);
    return MS::kSuccess;
}

MStatus BaseNode::Shutdown() {
    DocumentFollower::Stop();
    timelineOverlay_.reset();
    DialogManager::Shutdown();
    SettingsWriter::Stop();
    if (!g_hasShutDown) { // else the host quits and has unloaded us after that
        Settings::WriteUserConfig();
    }
    g_hasShutDown = true;
    return MS::kSuccess;
}

MStatus BaseNode::Cleanup() {
    // The attributes end with the node type; a remaining handle would keep them alive.
    layerData_ = MObject();
    opacity_ = MObject();
    clipboard_.clear();
    return Shutdown();
}

void BaseNode::postConstructor() {
    RunGuarded("Making the drawing node", [this] { Construct(); });
}

void BaseNode::Construct() {
    // A node read from a file gets its drawing, and whether it is the master, from the stored data.
    if (!MayaUtil::IsReadingScene()) {
        InitializeLayerManager();
        const std::shared_ptr<LayerManager> layers = GetLayerManager();
        if (layers && !GetMaster()) {
            layers->MakeMaster();
        }
    }
    for (const char* attribute : {"localPositionX", "localPositionY", "localPositionZ", "localScaleX",
                                  "localScaleY", "localScaleZ", "template"}) {
        LockAndHideAttribute(thisMObject(), attribute);
    }
}

// A copied value shares its drawing. The host may copy the values after this call, so it is looked at again
// whenever the drawing is asked for.
void BaseNode::copyInternalData(MPxNode* node) {
    RunGuarded("Copying the drawing", [this, node] {
        copiedFrom_ = BaseNodePointer(dynamic_cast<BaseNode*>(node));
        GetLayerManager();
    });
}

/// Gives this duplicate a drawing of its own, which is not drawn over the same one.
std::shared_ptr<LayerManager> BaseNode::Separate(const LayerManager& shared) const {
    std::shared_ptr<LayerManager> own = shared.Clone();
    copiedFrom_ = BaseNodePointer();
    if (!SetLayerManager(own)) {
        return nullptr;
    }
    GetVisibilityPlug().setValue(false);
    Logger::Info(QStringLiteral("The duplicate holds a copy of the drawing and is hidden."));
    return own;
}

bool BaseNode::isBounded() const {
    return false;
}

bool BaseNode::excludeAsLocator() const {
    return Settings::excludeAsLocator;
}

bool BaseNode::isTransparent() const {
    return true;
}

bool BaseNode::drawLast() const {
    return true;
}

MBoundingBox BaseNode::boundingBox() const {
    return MBoundingBox(MPoint(), MPoint());
}

// By value, since function sets take a non-const handle.
BaseNode* BaseNode::FromObject(MObject object) { // NOLINT(performance-unnecessary-value-param)
    return dynamic_cast<BaseNode*>(MFnDependencyNode(object).userNode());
}

QList<BaseNode*> BaseNode::GetAll() {
    QList<BaseNode*> nodes;
    for (MItDag items(MItDag::kDepthFirst, MFn::kPluginLocatorNode); !items.isDone(); items.next()) {
        BaseNode* node = FromObject(items.currentItem());
        if (node && !nodes.contains(node)) {
            nodes.append(node);
        }
    }
    return nodes;
}

BaseNode* BaseNode::GetMaster() {
    for (BaseNode* node : GetAll()) {
        if (node->IsMaster()) {
            return node;
        }
    }
    return nullptr;
}

BaseNode* BaseNode::GetSelected() {
    MSelectionList selected;
    MGlobal::getActiveSelectionList(selected);
    return GetFromSelectionList(selected);
}

BaseNode* BaseNode::GetFromSelectionList(const MSelectionList& list) {
    MObject item;
    if (list.length() != 1 || !list.getDependNode(0, item)) {
        return nullptr;
    }
    if (BaseNode* node = FromObject(item)) {
        return node;
    }
    MDagPath path;
    if (!list.getDagPath(0, path)) {
        return nullptr;
    }
    for (unsigned int child = 0; child < path.childCount(); ++child) {
        if (BaseNode* node = FromObject(path.child(child))) {
            return node;
        }
    }
    return nullptr;
}

bool BaseNode::InitializeLayerManager() {
    return SetLayerManager(std::make_shared<LayerManager>());
}

bool BaseNode::SetLayerManager(const std::shared_ptr<LayerManager>& layers) const {
    MObject self = thisMObject();
    MStatus status;
    MPlug plug = MFnDependencyNode(self).findPlug(layerData_, true, &status);
    if (!status) {
        Logger::Error("Failed to get layer data plug");
    } else {
        auto data = std::make_unique<BaseNodeLayerData>();
        data->SetLayerManager(layers);
        if (plug.setMPxData(data.get())) {
            static_cast<void>(data.release()); // the plug owns it now
            return true;
        }
        Logger::Error("Failed to set layer data");
    }
    Logger::Error("Failed to initialize layer manager");
    return false;
}

std::shared_ptr<LayerManager> BaseNode::GetLayerManager() const {
    std::shared_ptr<LayerManager> layers = ReadLayerManager();
    const BaseNode* original = copiedFrom_.GetAlive();
    return layers && original != nullptr && original->ReadLayerManager() == layers ? Separate(*layers)
                                                                                   : layers;
}

std::shared_ptr<LayerManager> BaseNode::ReadLayerManager() const {
    MObject self = thisMObject();
    MStatus status;
    const MPlug plug = MFnDependencyNode(self).findPlug(layerData_, true, &status);
    if (!status) {
        Logger::Error("Failed to get layer data plug");
        return nullptr;
    }
    MObject value = plug.asMObject(&status);
    if (!status) {
        if (!toldOfMissingData_) {
            toldOfMissingData_ = true; // the drawing is asked for at every change of time
            Logger::Error("Failed to get layer data plug as object");
        }
        return nullptr;
    }
    const auto* data = dynamic_cast<const BaseNodeLayerData*>(MFnPluginData(value).constData());
    return data ? data->GetLayerManager() : nullptr;
}

bool BaseNode::IsMaster() const {
    const std::shared_ptr<LayerManager> layers = GetLayerManager();
    return layers && layers->IsMaster();
}

void BaseNode::TakeOver() {
    if (const std::shared_ptr<LayerManager> layers = GetLayerManager()) {
        layers->MakeMaster();
        MPlug visibility = GetVisibilityPlug();
        shownAsMaster_ = !visibility.asBool();
        if (shownAsMaster_) {
            visibility.setValue(true);
        }
    }
}

void BaseNode::StepBack() {
    if (const std::shared_ptr<LayerManager> layers = GetLayerManager()) {
        layers->ResignMaster();
    }
    if (shownAsMaster_) {
        shownAsMaster_ = false;
        GetVisibilityPlug().setValue(false);
    }
}

QString BaseNode::GetName() const {
    return MayaUtil::ToQString(name());
}

QString BaseNode::GetPath() const {
    MObject self = thisMObject();
    return MayaUtil::ToQString(MFnDagNode(self).partialPathName());
}

MPlug BaseNode::GetVisibilityPlug() const {
    MObject self = thisMObject();
    return MFnDependencyNode(self).findPlug("visibility", true);
}

void BaseNode::SetOpacity(float opacity) {
    MObject self = thisMObject();
    MPlug plug = MFnDependencyNode(self).findPlug(opacity_, true);
    plug.setValue(opacity);
}

float BaseNode::GetOpacity() const {
    MObject self = thisMObject();
    return MFnDependencyNode(self).findPlug(opacity_, true).asFloat();
}

void BaseNode::QueueRefresh() {
    MObject self = thisMObject();
    MObject transform = MFnDagNode(self).parent(0);
    MStatus status;
    MPlug visibility = MFnDependencyNode(transform).findPlug("visibility", true, &status);
    if (status && visibility.setValue(visibility.asBool())) {
        return;
    }
    // The attribute is locked or connected.
    M3dView view = M3dView::active3dView(&status);
    if (status) {
        view.refresh(true);
    }
}

void BaseNode::RefreshActiveView() {
    QueueRefresh();
    MStatus status;
    M3dView view = M3dView::active3dView(&status);
    if (status) {
        view.refresh();
    }
}

void BaseNode::UpdateGhosting() {
    if (const std::shared_ptr<LayerManager> layers = GetLayerManager()) {
        layers->OnGhostingChanged();
    }
}

void BaseNode::ClearClipboard() {
    clipboard_.clear();
}

QList<Frame*> BaseNode::GetClipboardFrames() const {
    QList<Frame*> frames;
    for (const std::unique_ptr<Frame>& frame : clipboard_) {
        frames.append(frame.get());
    }
    return frames;
}

void BaseNode::CopyFramesToClipboard(const QString& camera) {
    const std::shared_ptr<LayerManager> layers = GetLayerManager();
    if (!layers || camera.isEmpty()) {
        return;
    }
    std::vector<std::unique_ptr<Frame>> copies; // what was copied before stays if memory is too short
    const FrameRange range = FrameRange::FromTimeSlider();
    const Layer* layer = layers->GetActiveLayer(camera);
    for (int i = 0; layer != nullptr && i < layer->FrameCount(); ++i) {
        const Frame& frame = *layer->GetFrame(i);
        const int time = frame.GetTimeValue();
        if (range.Contains(time)) {
            auto copy = std::make_unique<Frame>(frame);
            copy->SetTime(
                MTime(static_cast<double>(time) - static_cast<double>(range.start), MTime::uiUnit()));
            copies.push_back(std::move(copy));
        }
    }
    clipboard_ = std::move(copies);
}

void BaseNode::OnFramesChanged(const QString& camera, int index) {
    if (Layer* layer = GetLayer(camera, index)) {
        layer->FramesChanged();
    }
    MayaUtil::RefreshTimeControl(thisMObject());
}

void BaseNode::SetDrawContextActive(bool active) {
    if (drawContextActive_ == active) {
        return;
    }
    drawContextActive_ = active;
    if (timelineOverlay_) {
        timelineOverlay_->SetDrawContextActive(active);
    }
    if (Settings::timelineFrameDisplay == static_cast<int>(TimelineFrameDisplay::SelectionOrContext)) {
        UpdateTimeControlOverlay();
    }
}

bool BaseNode::IsDrawContextActive() {
    return drawContextActive_;
}

void BaseNode::SetActiveTransformContext(LegacyOutline* context) {
    transformContext_ = context;
}

LegacyOutline* BaseNode::GetActiveTransformContext() {
    return transformContext_;
}

void BaseNode::SetAdjustingContext(LegacyOutline* context) {
    adjustingContext_ = context;
}

bool BaseNode::TimeControlOverlayIsVisible(const BaseNode* node) {
    if (!node || Settings::timelineFrameDisplay == static_cast<int>(TimelineFrameDisplay::Off)) {
        return false;
    }
    if (Settings::timelineFrameDisplay == static_cast<int>(TimelineFrameDisplay::Always) ||
        drawContextActive_) {
        return true;
    }
    const BaseNode* selected = GetSelected();
    return selected != nullptr && selected->IsMaster();
}

void BaseNode::UpdateTimeControlOverlay() {
    if (!timelineOverlay_) {
        return;
    }
    const BaseNode* master = GetMaster();
    if (!TimeControlOverlayIsVisible(master)) {
        timelineOverlay_->ClearFrameTimes();
        if (timelineOverlay_->IsShown()) {
            timelineOverlay_->SetShown(false);
        }
        return;
    }
    QList<int> times;
    master->GetFrameTimes(master->GetActiveCamera(), times);
    if (timelineOverlay_->HasMoveOffset()) {
        OffsetTimes(times, timelineOverlay_->GetRangeForMoveOffset(), timelineOverlay_->GetMoveOffset());
    }
    timelineOverlay_->SetFrameTimes(times);
    timelineOverlay_->SetShown(true);
}

void BaseNode::OnPlaybackTimeChanged(int frame) {
    bool moving = false;
    if (timelineOverlay_) {
        timelineOverlay_->UpdateMoveOffset();
        moving = timelineOverlay_->HasMoveOffset();
        if (moving) {
            UpdateTimeControlOverlay();
        }
    }
    if (const std::shared_ptr<LayerManager> layers = GetLayerManager()) {
        layers->OnPlaybackTimeChanged(frame, moving);
    }
    if (DialogManager::HasLayerManagerDialog() && !MayaUtil::IsPlaying()) {
        UpdateLayerManagerDialog();
    }
}

void BaseNode::UpdatePlaybackTime() {
    const int frame = MayaUtil::GetPlaybackTimeValue();
    for (BaseNode* node : GetAll()) {
        node->OnPlaybackTimeChanged(frame);
    }
}

void BaseNode::LockAndHideAttribute(const MObject& node, const MString& attribute) {
    MObject owner = node; // NOLINT(performance-unnecessary-copy-initialization): as in FromObject
    MStatus status;
    MPlug plug = MFnDependencyNode(owner).findPlug(attribute, true, &status);
    if (status) {
        plug.setKeyable(false);
        plug.setLocked(true);
        plug.setChannelBox(false);
    }
}

} // namespace vellix
