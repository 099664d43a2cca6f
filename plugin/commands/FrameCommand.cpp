#include "commands/FrameCommand.h"

#include "commands/CameraArgument.h"
#include "commands/FrameMove.h"
#include "commands/PlaybackTimeScope.h"
#include "core/Frame.h"
#include "core/FrameRange.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "host/FrameTime.h"
#include "host/Guarded.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/OpenText.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MStringArray.h>

#include <cstddef>
#include <memory>
#include <set>
#include <utility>

namespace vellix {

namespace {

/// The frames of the layer but for the empty one of a press that has not ended, which no undo step knows.
std::vector<const Frame*> GetFrames(const Layer& layer) {
    std::vector<const Frame*> frames;
    frames.reserve(static_cast<std::size_t>(layer.FrameCount()));
    for (int i = 0; i < layer.FrameCount(); ++i) {
        const Frame* const frame = layer.GetFrame(i);
        if (frame->GetId() != layer.GetProvisionalFrame()) {
            frames.push_back(frame);
        }
    }
    return frames;
}

MStatus RefuseEdit(const QString& message) {
    Logger::Error(message);
    return MS::kFailure;
}

} // namespace

// If several flags are given, the first one in the table wins.
const FlagTable<FrameCommand>& FrameCommand::Flags() {
    using F = FrameCommand;
    const auto unlocked = [](const char* refusal) {
        return [refusal](const F& command) { return command.CheckUnlocked(refusal); };
    };
    static const FlagTable<F> flags({
        Flag("-ins", "-insert")
            .Does(&F::InsertFrame, &F::InsertFrameUndo)
            .WithoutNode("Failed to insert key. Node does not exist.")
            .Needs(unlocked("Cannot add frames to a locked layer")),
        Flag("-dup", "-duplicate")
            .Does(&F::DuplicateFrame, &F::DuplicateFrameUndo)
            .Needs(unlocked("Cannot duplicate frames on a locked layer")),
        Flag("-del", "-delete")
            .Does(&F::DeleteFrames, &F::ExchangeUndo)
            .Needs(unlocked("Cannot remove frames from a locked layer")),
        Flag("-cut", "-cutFrame")
            .Does(&F::CutFrames, &F::ExchangeUndo)
            .Needs(unlocked("Cannot cut frames from a locked layer")),
        Flag("-cp", "-copy").Does(&F::CopyFrames),
        Flag("-pst", "-paste")
            .Does(&F::PasteFrames, &F::ExchangeUndo)
            .Needs(unlocked("Cannot paste frames to a locked layer")),
        Flag("-clr", "-clear").Does(&F::ClearFrames, &F::ExchangeUndo),
        Flag("-sf", "-stepForward").Does(&F::StepForward, &F::StepUndo),
        Flag("-sb", "-stepBack").Does(&F::StepBack, &F::StepUndo),
        Flag("ret", "retime", {&F::amount_}).Does(&F::RetimeFrames, &F::RetimeFramesUndo),
        Flag("rel", "relative").Sets(&F::relative_),
        Flag("mvn", "moveToNext").Sets(&F::moveToNext_),
        Flag("mv", "move", {&F::amount_, &F::rangeStart_, &F::rangeEnd_})
            .Does(&F::MoveFrames, &F::MoveFramesUndo),
    });
    return flags;
}

FrameCommand::FrameCommand() = default;

FrameCommand::~FrameCommand() = default;

void* FrameCommand::Creator() {
    return new FrameCommand();
}

MString FrameCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::FRAME_COMMAND_NAME);
}

MSyntax FrameCommand::CommandSyntax() {
    MSyntax syntax = Flags().GetSyntax();
    syntax.setObjectType(MSyntax::kStringObjects);
    return syntax;
}

// --- the command ------------------------------------------------------------------------------------------

MStatus FrameCommand::Parse(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return status;
    }
    MStringArray objects;
    arguments.getObjects(objects);
    camera_ = CameraArgument::Resolve(objects.length() > 0 ? MayaUtil::ToQString(objects[0]) : QString(),
                                      node_, "Camera not specified");
    if (camera_.isEmpty()) {
        return MS::kFailure;
    }
    flag_ = Flags().Read(*this, arguments);
    return MS::kSuccess;
}

MStatus FrameCommand::doIt(const MArgList& args) {
    node_ = BaseNode::GetMaster();
    MStatus status = Parse(args);
    if (!status) {
        return status;
    }
    OpenText::Commit(); // before its frame or the time changes
    const Layer* const layer = node_ ? node_->GetActiveLayer(camera_) : nullptr;
    layer_ = layer ? layer->GetId() : LayerId::None;
    undoable_ = flag_ && flag_->undo;
    return redoIt();
}

// A step that was refused changed nothing. The next step the other way then has nothing to do either.
MStatus FrameCommand::redoIt() {
    if (isDone_) {
        return MS::kSuccess;
    }
    const auto redo = [this](FrameCommand&) {
        return flag_->check && !flag_->check(*this) ? MStatus(MS::kFailure) : flag_->redo(*this);
    };
    return flag_ ? Run(redo) : Run(nullptr);
}

MStatus FrameCommand::undoIt() {
    return isDone_ ? Run(flag_->undo) : MStatus();
}

MStatus FrameCommand::Run(const Flag::Step& step) {
    node_ = BaseNode::GetMaster();
    const std::shared_ptr<LayerManager> layers = node_ ? node_->GetLayerManager() : nullptr;
    if (!layers) {
        return RefuseEdit(flag_ ? flag_->withoutNode : "Node not found");
    }
    const LayerManager::ChangeScope scope(*layers);
    if (!step || (hasRun_ && !CheckLayerExists())) {
        return MS::kFailure;
    }
    MStatus status = step(*this);
    if (status && undoable_) {
        isDone_ = !isDone_;
        hasRun_ = true;
    }
    return status;
}

MStatus FrameCommand::Refuse(const QString& reason) const {
    return RefuseEdit(!hasRun_ ? reason : QString("Cannot %1: %2").arg(isDone_ ? "undo" : "redo", reason));
}

Layer* FrameCommand::GetLayer() const {
    return createdLayer_ ? createdLayer_.get() : node_->FindLayer(layer_).layer;
}

bool FrameCommand::CheckLayerExists() const {
    if (layer_ == LayerId::None || GetLayer()) {
        return true;
    }
    Refuse("the layer no longer exists");
    return false;
}

bool FrameCommand::CheckUnlocked(const char* refusal) const {
    const Layer* const layer = GetLayer();
    const bool locked = layer && layer->GetState() == LayerState::Locked;
    return !locked || RefuseEdit(refusal);
}

/// No frame comes to a layer that the press of the stroke in progress added: when that is undone, the layer
/// would have to stay for the frame, known to no undo step.
bool FrameCommand::CheckNotOfStroke() const {
    return hasRun_ || !node_->GetLayerManager()->IsLayerOfStroke(layer_) ||
           RefuseEdit("The stroke that made the layer is still being drawn. Finish it first.");
}

// A change that was made does not fail because the time slider could not follow it.
void FrameCommand::RefreshHostTicks() const {
    RunGuarded("Refreshing the time slider", [this] { MayaUtil::RefreshTimeControl(node_->thisMObject()); });
}

/// Goes to a time after the frames have changed, which does not fail if the time cannot.
void FrameCommand::FollowTo(const MTime& time) {
    RunGuarded("Changing the time", [&time] { PlaybackTimeScope::SetTime(time); });
}

// --- adding and removing frames ---------------------------------------------------------------------------

MStatus FrameCommand::Exchange() {
    return Exchange(&FrameExchange::Do);
}

MStatus FrameCommand::ExchangeUndo() {
    return Exchange(&FrameExchange::Undo);
}

MStatus FrameCommand::Exchange(bool (FrameExchange::*step)(Layer& layer, QString& refusal)) {
    Layer* const layer = GetLayer();
    if (!layer) {
        return MS::kSuccess; // a camera without layers has no frames
    }
    QString refusal;
    if (!(exchange_.*step)(*layer, refusal)) {
        return Refuse(refusal);
    }
    RefreshHostTicks();
    return MS::kSuccess;
}

MStatus FrameCommand::InsertFrame() {
    if (!hasRun_) {
        MStatus planned = PlanInsert();
        if (!planned) {
            return planned;
        }
        if (layer_ == LayerId::None && node_->LayerCount(camera_) == 0 && !CreateLayer()) {
            return MS::kFailure;
        }
    }
    if (!layerCreated_) {
        return Exchange();
    }
    if (hasRun_) {
        return PutBackCreatedLayer();
    }
    const auto remove = [this] {
        TakeOutCreatedLayer();
        createdLayer_.reset();
        layer_ = LayerId::None;
        layerCreated_ = false;
    };
    try {
        MStatus inserted = Exchange();
        if (!inserted) {
            remove();
        }
        return inserted;
    } catch (...) {
        remove();
        throw;
    }
}

MStatus FrameCommand::PlanInsert() {
    if (!CheckNotOfStroke()) {
        return MS::kFailure;
    }
    const FrameRange range = FrameRange::FromTimeSlider();
    if (!range.CanBeFilled()) {
        return RefuseEdit(QString("Cannot insert more than %1 frames").arg(int(FrameRange::MAX_FRAMES)));
    }
    const Layer* const layer = GetLayer();
    for (int time = range.start; time < range.end; ++time) {
        if (!layer || !layer->FrameExists(time)) {
            exchange_.PutBlank(FromWholeFrames(time));
        }
    }
    return MS::kSuccess;
}

/// Adds the first layer of a camera without layers. Returns false, and logs an error, if it cannot.
bool FrameCommand::CreateLayer() {
    if (!CameraArgument::Check(camera_)) { // the active camera may have been deleted
        return false;
    }
    before_.Remember(*node_, {camera_});
    const std::shared_ptr<LayerManager> layers = node_->GetLayerManager();
    const int index = layers->InsertLayer(camera_, -1, QString());
    if (index < 0) {
        RefuseEdit("Failed to create layer for frame");
        return false;
    }
    layer_ = layers->GetLayer(camera_, index)->GetId();
    layerCreated_ = true;
    return true;
}

MStatus FrameCommand::InsertFrameUndo() {
    if (!layerCreated_) {
        return ExchangeUndo();
    }
    createdSpot_ = LayerSpot(*node_->GetLayerManager(), layer_);
    TakeOutCreatedLayer();
    RefreshHostTicks();
    return MS::kSuccess;
}

/// The frames that were inserted go and come with the layer.
void FrameCommand::TakeOutCreatedLayer() {
    const LayerPlace place = node_->FindLayer(layer_);
    createdLayer_ = node_->RemoveLayer(place.camera, place.index);
    before_.Restore(*node_);
}

MStatus FrameCommand::PutBackCreatedLayer() {
    const std::shared_ptr<LayerManager> layers = node_->GetLayerManager();
    const QString camera = createdSpot_.GetCamera();
    layers->InsertLayer(camera, createdSpot_.GetIndex(*layers, camera), createdLayer_);
    RefreshHostTicks();
    return MS::kSuccess;
}

MStatus FrameCommand::DuplicateFrame() {
    MStatus planned = hasRun_ ? MStatus(MS::kSuccess) : PlanDuplicate();
    return planned ? Exchange() : planned;
}

MStatus FrameCommand::PlanDuplicate() {
    const Layer* const layer = GetLayer();
    if (!CheckNotOfStroke()) {
        return MS::kFailure;
    }
    if (layer && layer->FrameExists()) {
        return RefuseEdit("A frame already exists at the current time.");
    }
    const Frame* const previous = layer ? layer->GetPreviousFrame(false) : nullptr;
    if (!previous) {
        return MS::kFailure;
    }
    auto copy = std::make_unique<Frame>(*previous);
    copy->SetTimeValue(MayaUtil::GetPlaybackTimeValue());
    duplicate_ = copy->GetId();
    exchange_.Put(std::move(copy));
    return MS::kSuccess;
}

MStatus FrameCommand::DuplicateFrameUndo() {
    return GetLayer()->FindFrame(duplicate_) ? ExchangeUndo()
                                             : RefuseEdit("Failed to undo duplicate frame operation.");
}

void FrameCommand::PlanRemoval(bool blanks) {
    const FrameRange range = FrameRange::FromTimeSlider();
    const Layer* const layer = GetLayer();
    const Frame* previous = nullptr;
    for (int i = 0; layer && i < layer->FrameCount(); ++i) {
        const Frame* const frame = layer->GetFrame(i);
        if (!range.Contains(frame->GetTimeValue()) || !exchange_.TakeOut(*layer, *frame)) {
            continue;
        }
        // Changing the time unit can put two frames on the same time.
        if (blanks && !(previous && previous->GetTimeValue() == frame->GetTimeValue())) {
            exchange_.PutBlank(frame->GetTime());
        }
        previous = frame;
    }
}

MStatus FrameCommand::DeleteFrames() {
    if (!hasRun_) {
        PlanRemoval(false);
    }
    return Exchange();
}

MStatus FrameCommand::CutFrames() {
    if (!hasRun_) {
        node_->CopyFramesToClipboard(camera_);
    }
    return DeleteFrames();
}

MStatus FrameCommand::ClearFrames() {
    if (!hasRun_) {
        PlanRemoval(true);
    }
    return Exchange();
}

MStatus FrameCommand::CopyFrames() {
    node_->CopyFramesToClipboard(camera_);
    return MS::kSuccess;
}

MStatus FrameCommand::PasteFrames() {
    MStatus planned = hasRun_ ? MStatus(MS::kSuccess) : PlanPaste();
    return planned ? Exchange() : planned;
}

MStatus FrameCommand::PlanPaste() {
    if (!CheckNotOfStroke()) {
        return MS::kFailure;
    }
    const FrameRange range = FrameRange::FromTimeSlider();
    const Layer* const layer = GetLayer();
    std::set<int> times;
    for (const Frame* frame : node_->GetClipboardFrames()) {
        const qint64 time = static_cast<qint64>(range.start) + frame->GetTimeValue();
        if (!IsWholeFrame(time)) {
            return RefuseEdit(QString("Paste Failed. Time %1 is out of range").arg(time));
        }
        if (layer && layer->IsBeingDrawn(static_cast<int>(time))) {
            return RefuseEdit(
                QString("Paste Failed. A stroke is being drawn at time %1. Finish it first.").arg(time));
        }
        auto copy = std::make_unique<Frame>(*frame);
        copy->SetTimeValue(static_cast<int>(time));
        times.insert(static_cast<int>(time));
        exchange_.Put(std::move(copy));
    }
    for (int i = 0; layer && i < layer->FrameCount(); ++i) {
        if (times.count(layer->GetFrame(i)->GetTimeValue()) > 0) {
            exchange_.TakeOut(*layer, *layer->GetFrame(i));
        }
    }
    return MS::kSuccess;
}

// --- time -------------------------------------------------------------------------------------------------

MStatus FrameCommand::StepForward() {
    return StepTo(hasRun_ ? nullptr : node_->GetNextFrame(camera_, true));
}

MStatus FrameCommand::StepBack() {
    return StepTo(hasRun_ ? nullptr : node_->GetPreviousFrame(camera_, true));
}

/// A redo goes where the first run went.
MStatus FrameCommand::StepTo(const Frame* frame) {
    previousTime_ = MayaUtil::GetPlaybackTime();
    if (!hasRun_) {
        layer_ = LayerId::None; // only the time changes
        targetTime_ = frame ? FromWholeFrames(frame->GetTimeValue()) : previousTime_;
    }
    PlaybackTimeScope::SetTime(targetTime_);
    return MS::kSuccess;
}

MStatus FrameCommand::StepUndo() {
    PlaybackTimeScope::SetTime(previousTime_);
    return MS::kSuccess;
}

MStatus FrameCommand::RetimeFrames() {
    MStatus planned = hasRun_ ? MStatus(MS::kSuccess) : PlanRetiming();
    if (!planned) {
        return planned;
    }
    previousTime_ = MayaUtil::GetPlaybackTime();
    QString refusal;
    if (!schedule_.Do(*GetLayer(), refusal)) {
        return Refuse(refusal);
    }
    FollowTo(targetTime_);
    RefreshHostTicks();
    return MS::kSuccess;
}

MStatus FrameCommand::PlanRetiming() {
    const Layer* const layer = GetLayer();
    if (!layer || layer->FrameCount() == 0) {
        return MS::kFailure;
    }
    const std::vector<const Frame*> frames = GetFrames(*layer);
    std::vector<int> times;
    times.reserve(frames.size());
    for (const Frame* frame : frames) {
        times.push_back(frame->GetTimeValue());
    }
    const FrameRange range = FrameRange::FromTimeSlider();
    Retiming retiming(amount_, relative_);
    retiming.SetRange(range.start, range.end, times);
    const std::vector<qint64> newTimes = retiming.GetTimes(times);
    for (std::size_t i = 0; i < newTimes.size(); ++i) {
        if (!IsWholeFrame(newTimes[i])) {
            return RefuseEdit(QString("Retime Failed. Time %1 is out of range").arg(newTimes[i]));
        }
        if (layer->IsBeingDrawn(static_cast<int>(newTimes[i]))) {
            return RefuseEdit(QString("Retime Failed. A stroke is being drawn at time %1. Finish it first.")
                                  .arg(newTimes[i]));
        }
        schedule_.Add(*frames[i], static_cast<int>(newTimes[i]));
    }
    const int target = retiming.FindTarget(times, moveToNext_);
    targetTime_ = FromWholeFrames(static_cast<int>(newTimes[static_cast<std::size_t>(target)]));
    return MS::kSuccess;
}

MStatus FrameCommand::RetimeFramesUndo() {
    QString refusal;
    if (!schedule_.Undo(*GetLayer(), refusal)) {
        return Refuse(refusal);
    }
    FollowTo(previousTime_);
    RefreshHostTicks();
    return MS::kSuccess;
}

MStatus FrameCommand::MoveFrames() {
    return Reschedule(&FrameSchedule::Do);
}

MStatus FrameCommand::MoveFramesUndo() {
    return Reschedule(&FrameSchedule::Undo);
}

MStatus FrameCommand::Reschedule(bool (FrameSchedule::*step)(Layer& layer, QString& refusal) const) {
    Layer* const layer = GetLayer();
    if (!layer || amount_ == 0) {
        BaseNode::UpdateTimeControlOverlay();
        return MS::kSuccess;
    }
    QString refusal;
    if (!hasRun_ && !FrameMove::Plan(*layer, amount_, rangeStart_, rangeEnd_, schedule_, refusal)) {
        return RefuseEdit(refusal);
    }
    if (!(schedule_.*step)(*layer, refusal)) {
        return Refuse(refusal);
    }
    RefreshHostTicks();
    return MS::kSuccess;
}

} // namespace vellix
