#include "commands/FrameCommand.h"

#include "commands/CameraArgument.h"
#include "commands/PlaybackTimeScope.h"
#include "core/Frame.h"
#include "core/FrameRange.h"
#include "core/LayerState.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MStringArray.h>

namespace vellix {

namespace {

std::vector<int> GetTimes(const Layer& layer) {
    std::vector<int> times;
    times.reserve(std::size_t(layer.FrameCount()));
    for (int i = 0; i < layer.FrameCount(); ++i) {
        times.push_back(layer.GetFrame(i)->GetTimeValue());
    }
    return times;
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
    if (node_) {
        layerIndex_ = node_->GetActiveLayerIndex(camera_);
    }
    return redoIt();
}

MStatus FrameCommand::redoIt() {
    node_ = BaseNode::GetMaster();
    if (!node_) {
        return RefuseEdit(flag_ ? flag_->withoutNode : "Node not found");
    }
    if (!flag_ || (flag_->check && !flag_->check(*this))) {
        return MS::kFailure;
    }
    undoable_ = bool(flag_->undo);
    MStatus status = flag_->redo(*this);
    hasRun_ = hasRun_ || status;
    return status;
}

MStatus FrameCommand::undoIt() {
    node_ = BaseNode::GetMaster();
    return node_ ? flag_->undo(*this) : MStatus(MS::kFailure);
}

Layer* FrameCommand::GetLayer() const {
    return node_->GetLayer(camera_, layerIndex_);
}

bool FrameCommand::CheckUnlocked(const char* refusal) const {
    const Layer* const layer = GetLayer();
    const bool locked = layer && layer->GetState() == LayerState::Locked;
    return !locked || RefuseEdit(refusal);
}

// --- adding and removing frames ---------------------------------------------------------------------------

MStatus FrameCommand::Exchange() {
    Layer* const layer = GetLayer();
    if (!layer) {
        return MS::kSuccess; // a camera without layers has no frames
    }
    const bool done = exchange_.Do(*layer);
    node_->OnFramesChanged(camera_, layerIndex_);
    return done ? MS::kSuccess : MS::kFailure;
}

MStatus FrameCommand::ExchangeUndo() {
    Layer* const layer = GetLayer();
    if (!layer) {
        return MS::kSuccess;
    }
    const bool undone = exchange_.Undo(*layer);
    node_->OnFramesChanged(camera_, layerIndex_);
    return undone ? MS::kSuccess : MS::kFailure;
}

MStatus FrameCommand::InsertFrame() {
    if (!hasRun_) {
        MStatus planned = PlanInsert();
        if (!planned) {
            return planned;
        }
    }
    if (!PrepareLayer()) {
        return RefuseEdit("Failed to create layer for frame");
    }
    return Exchange();
}

MStatus FrameCommand::PlanInsert() {
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

/// Adds the first layer of a camera without layers. A redo reinserts the same layer.
bool FrameCommand::PrepareLayer() {
    if (createdLayer_) {
        return node_->InsertLayer(camera_, layerIndex_, std::move(createdLayer_)) >= 0;
    }
    if (hasRun_ || node_->LayerCount(camera_) > 0) {
        return true;
    }
    before_.Remember(*node_, {camera_});
    layerIndex_ = node_->InsertLayer(camera_, -1, QString());
    layerCreated_ = layerIndex_ >= 0;
    return layerCreated_;
}

MStatus FrameCommand::InsertFrameUndo() {
    MStatus undone = ExchangeUndo();
    if (layerCreated_) {
        createdLayer_ = node_->RemoveLayer(camera_, layerIndex_);
        before_.Restore(*node_);
    }
    return undone;
}

MStatus FrameCommand::DuplicateFrame() {
    MStatus planned = hasRun_ ? MStatus(MS::kSuccess) : PlanDuplicate();
    return planned ? Exchange() : planned;
}

MStatus FrameCommand::PlanDuplicate() {
    const Layer* const layer = GetLayer();
    if (layer && layer->FrameExists()) {
        return RefuseEdit("A frame already exists at the current time.");
    }
    const Frame* const previous = layer ? layer->GetPreviousFrame(false) : nullptr;
    if (!previous) {
        return MS::kFailure;
    }
    auto copy = std::make_unique<Frame>(*previous);
    copy->SetTimeValue(MayaUtil::GetPlaybackTimeValue());
    exchange_.Put(std::move(copy));
    return MS::kSuccess;
}

MStatus FrameCommand::DuplicateFrameUndo() {
    MStatus undone = ExchangeUndo();
    return exchange_.HasWaiting() ? undone : RefuseEdit("Failed to undo duplicate frame operation.");
}

void FrameCommand::PlanRemoval(bool blanks) {
    const FrameRange range = FrameRange::FromTimeSlider();
    const Layer* const layer = GetLayer();
    std::vector<int> times;
    for (int i = 0; layer && i < layer->FrameCount(); ++i) {
        const Frame* const frame = layer->GetFrame(i);
        const int time = frame->GetTimeValue();
        // Changing the time unit can put two frames on the same time.
        if (range.Contains(time) && (times.empty() || times.back() != time)) {
            times.push_back(time);
            if (blanks) {
                exchange_.PutBlank(frame->GetTime());
            }
        }
    }
    exchange_.TakeOut(std::move(times));
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
    const FrameRange range = FrameRange::FromTimeSlider();
    std::vector<int> times;
    for (const Frame* frame : node_->GetClipboardFrames()) {
        const qint64 time = qint64(range.start) + frame->GetTimeValue();
        if (!IsWholeFrame(time)) {
            return RefuseEdit(QString("Paste Failed. Time %1 is out of range").arg(time));
        }
        auto copy = std::make_unique<Frame>(*frame);
        copy->SetTimeValue(int(time));
        times.push_back(int(time));
        exchange_.Put(std::move(copy));
    }
    exchange_.TakeOut(std::move(times));
    return MS::kSuccess;
}

// --- time -------------------------------------------------------------------------------------------------

MStatus FrameCommand::StepForward() {
    return StepTo(node_->GetNextFrame(camera_, true));
}

MStatus FrameCommand::StepBack() {
    return StepTo(node_->GetPreviousFrame(camera_, true));
}

MStatus FrameCommand::StepTo(const Frame* frame) {
    previousTime_ = MayaUtil::GetPlaybackTime();
    if (frame) {
        PlaybackTimeScope::SetTime(FromWholeFrames(frame->GetTimeValue()));
    }
    return MS::kSuccess;
}

MStatus FrameCommand::StepUndo() {
    PlaybackTimeScope::SetTime(previousTime_);
    return MS::kSuccess;
}

MStatus FrameCommand::RetimeFrames() {
    Layer* const layer = GetLayer();
    if (!layer || layer->FrameCount() < 1) {
        return MS::kFailure;
    }
    const std::vector<int> times = GetTimes(*layer);
    if (!hasRun_) {
        const FrameRange range = FrameRange::FromTimeSlider();
        retiming_ = Retiming(amount_, relative_);
        retiming_.SetRange(range.start, range.end, times);
    }
    QList<int> newTimes;
    for (const qint64 time : retiming_.GetTimes(times)) {
        if (!IsWholeFrame(time)) {
            return RefuseEdit(QString("Retime Failed. Time %1 is out of range").arg(time));
        }
        newTimes.append(int(time));
    }
    frameTimes_.clear();
    for (int i = 0; i < layer->FrameCount(); ++i) {
        frameTimes_.push_back(layer->GetFrame(i)->GetTime());
    }
    previousTime_ = MayaUtil::GetPlaybackTime();
    layer->SetFrameTimes(newTimes);
    PlaybackTimeScope::SetTime(FromWholeFrames(newTimes[retiming_.FindTarget(times, moveToNext_)]));
    node_->OnFramesChanged(camera_, layerIndex_);
    return MS::kSuccess;
}

MStatus FrameCommand::RetimeFramesUndo() {
    Layer* const layer = GetLayer();
    if (!layer || layer->FrameCount() != int(frameTimes_.size())) {
        return MS::kFailure;
    }
    for (int i = 0; i < layer->FrameCount(); ++i) {
        layer->GetFrame(i)->SetTime(frameTimes_[std::size_t(i)]);
    }
    PlaybackTimeScope::SetTime(previousTime_);
    node_->OnFramesChanged(camera_, layerIndex_);
    return MS::kSuccess;
}

MStatus FrameCommand::MoveFrames() {
    if (!hasRun_) {
        move_ = FrameMove(amount_, rangeStart_, rangeEnd_);
    }
    Layer* const layer = GetLayer();
    if (!layer || move_.IsStill()) {
        BaseNode::UpdateTimeControlOverlay();
        return MS::kSuccess;
    }
    QString refusal;
    if (!move_.Do(*layer, refusal)) {
        return RefuseEdit(refusal);
    }
    node_->OnFramesChanged(camera_, layerIndex_);
    return MS::kSuccess;
}

MStatus FrameCommand::MoveFramesUndo() {
    Layer* const layer = GetLayer();
    if (!layer || move_.IsStill()) {
        BaseNode::UpdateTimeControlOverlay();
        return MS::kSuccess;
    }
    const bool undone = move_.Undo(*layer);
    node_->OnFramesChanged(camera_, layerIndex_);
    return undone ? MS::kSuccess : MS::kFailure;
}

} // namespace vellix
