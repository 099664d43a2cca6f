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
        Flag("ret", "retime", {&F::m_amount}).Does(&F::RetimeFrames, &F::RetimeFramesUndo),
        Flag("rel", "relative").Sets(&F::m_relative),
        Flag("mvn", "moveToNext").Sets(&F::m_moveToNext),
        Flag("mv", "move", {&F::m_amount, &F::m_rangeStart, &F::m_rangeEnd})
            .Does(&F::MoveFrames, &F::MoveFramesUndo),
    });
    return flags;
}

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
    m_camera = CameraArgument::Resolve(objects.length() > 0 ? MayaUtil::ToQString(objects[0]) : QString(),
                                       m_node, "Camera not specified");
    if (m_camera.isEmpty()) {
        return MS::kFailure;
    }
    m_flag = Flags().Read(*this, arguments);
    return MS::kSuccess;
}

MStatus FrameCommand::doIt(const MArgList& args) {
    m_node = BaseNode::GetMaster();
    MStatus status = Parse(args);
    if (!status) {
        return status;
    }
    if (m_node) {
        m_layerIndex = m_node->GetActiveLayerIndex(m_camera);
    }
    return redoIt();
}

MStatus FrameCommand::redoIt() {
    m_node = BaseNode::GetMaster();
    if (!m_node) {
        return RefuseEdit(m_flag ? m_flag->withoutNode : "Node not found");
    }
    if (!m_flag || (m_flag->check && !m_flag->check(*this))) {
        return MS::kFailure;
    }
    m_undoable = bool(m_flag->undo);
    MStatus status = m_flag->redo(*this);
    m_hasRun = m_hasRun || status;
    return status;
}

MStatus FrameCommand::undoIt() {
    m_node = BaseNode::GetMaster();
    return m_node ? m_flag->undo(*this) : MStatus(MS::kFailure);
}

Layer* FrameCommand::GetLayer() const {
    return m_node->GetLayer(m_camera, m_layerIndex);
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
    const bool done = m_exchange.Do(*layer);
    m_node->OnFramesChanged(m_camera, m_layerIndex);
    return done ? MS::kSuccess : MS::kFailure;
}

MStatus FrameCommand::ExchangeUndo() {
    Layer* const layer = GetLayer();
    if (!layer) {
        return MS::kSuccess;
    }
    const bool undone = m_exchange.Undo(*layer);
    m_node->OnFramesChanged(m_camera, m_layerIndex);
    return undone ? MS::kSuccess : MS::kFailure;
}

MStatus FrameCommand::InsertFrame() {
    if (!m_hasRun) {
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
            m_exchange.PutBlank(FromWholeFrames(time));
        }
    }
    return MS::kSuccess;
}

/// Adds the first layer of a camera without layers. A redo reinserts the same layer.
bool FrameCommand::PrepareLayer() {
    if (m_createdLayer) {
        return m_node->InsertLayer(m_camera, m_layerIndex, std::move(m_createdLayer)) >= 0;
    }
    if (m_hasRun || m_node->LayerCount(m_camera) > 0) {
        return true;
    }
    m_before.Remember(*m_node, {m_camera});
    m_layerIndex = m_node->InsertLayer(m_camera, -1, QString());
    m_layerCreated = m_layerIndex >= 0;
    return m_layerCreated;
}

MStatus FrameCommand::InsertFrameUndo() {
    MStatus undone = ExchangeUndo();
    if (m_layerCreated) {
        m_createdLayer = m_node->RemoveLayer(m_camera, m_layerIndex);
        m_before.Restore(*m_node);
    }
    return undone;
}

MStatus FrameCommand::DuplicateFrame() {
    MStatus planned = m_hasRun ? MStatus(MS::kSuccess) : PlanDuplicate();
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
    m_exchange.Put(std::move(copy));
    return MS::kSuccess;
}

MStatus FrameCommand::DuplicateFrameUndo() {
    MStatus undone = ExchangeUndo();
    return m_exchange.HasWaiting() ? undone : RefuseEdit("Failed to undo duplicate frame operation.");
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
                m_exchange.PutBlank(frame->GetTime());
            }
        }
    }
    m_exchange.TakeOut(std::move(times));
}

MStatus FrameCommand::DeleteFrames() {
    if (!m_hasRun) {
        PlanRemoval(false);
    }
    return Exchange();
}

MStatus FrameCommand::CutFrames() {
    if (!m_hasRun) {
        m_node->CopyFramesToClipboard(m_camera);
    }
    return DeleteFrames();
}

MStatus FrameCommand::ClearFrames() {
    if (!m_hasRun) {
        PlanRemoval(true);
    }
    return Exchange();
}

MStatus FrameCommand::CopyFrames() {
    m_node->CopyFramesToClipboard(m_camera);
    return MS::kSuccess;
}

MStatus FrameCommand::PasteFrames() {
    MStatus planned = m_hasRun ? MStatus(MS::kSuccess) : PlanPaste();
    return planned ? Exchange() : planned;
}

MStatus FrameCommand::PlanPaste() {
    const FrameRange range = FrameRange::FromTimeSlider();
    std::vector<int> times;
    for (const Frame* frame : m_node->GetClipboardFrames()) {
        const qint64 time = qint64(range.start) + frame->GetTimeValue();
        if (!IsWholeFrame(time)) {
            return RefuseEdit(QString("Paste Failed. Time %1 is out of range").arg(time));
        }
        auto copy = std::make_unique<Frame>(*frame);
        copy->SetTimeValue(int(time));
        times.push_back(int(time));
        m_exchange.Put(std::move(copy));
    }
    m_exchange.TakeOut(std::move(times));
    return MS::kSuccess;
}

// --- time -------------------------------------------------------------------------------------------------

MStatus FrameCommand::StepForward() {
    return StepTo(m_node->GetNextFrame(m_camera, true));
}

MStatus FrameCommand::StepBack() {
    return StepTo(m_node->GetPreviousFrame(m_camera, true));
}

MStatus FrameCommand::StepTo(const Frame* frame) {
    m_previousTime = MayaUtil::GetPlaybackTime();
    if (frame) {
        PlaybackTimeScope::SetTime(FromWholeFrames(frame->GetTimeValue()));
    }
    return MS::kSuccess;
}

MStatus FrameCommand::StepUndo() {
    PlaybackTimeScope::SetTime(m_previousTime);
    return MS::kSuccess;
}

MStatus FrameCommand::RetimeFrames() {
    Layer* const layer = GetLayer();
    if (!layer || layer->FrameCount() < 1) {
        return MS::kFailure;
    }
    const std::vector<int> times = GetTimes(*layer);
    if (!m_hasRun) {
        const FrameRange range = FrameRange::FromTimeSlider();
        m_retiming = Retiming(m_amount, m_relative);
        m_retiming.SetRange(range.start, range.end, times);
    }
    QList<int> newTimes;
    for (const qint64 time : m_retiming.GetTimes(times)) {
        if (!IsWholeFrame(time)) {
            return RefuseEdit(QString("Retime Failed. Time %1 is out of range").arg(time));
        }
        newTimes.append(int(time));
    }
    m_frameTimes.clear();
    for (int i = 0; i < layer->FrameCount(); ++i) {
        m_frameTimes.push_back(layer->GetFrame(i)->GetTime());
    }
    m_previousTime = MayaUtil::GetPlaybackTime();
    layer->SetFrameTimes(newTimes);
    PlaybackTimeScope::SetTime(FromWholeFrames(newTimes[m_retiming.FindTarget(times, m_moveToNext)]));
    m_node->OnFramesChanged(m_camera, m_layerIndex);
    return MS::kSuccess;
}

MStatus FrameCommand::RetimeFramesUndo() {
    Layer* const layer = GetLayer();
    if (!layer || layer->FrameCount() != int(m_frameTimes.size())) {
        return MS::kFailure;
    }
    for (int i = 0; i < layer->FrameCount(); ++i) {
        layer->GetFrame(i)->SetTime(m_frameTimes[std::size_t(i)]);
    }
    PlaybackTimeScope::SetTime(m_previousTime);
    m_node->OnFramesChanged(m_camera, m_layerIndex);
    return MS::kSuccess;
}

MStatus FrameCommand::MoveFrames() {
    if (!m_hasRun) {
        m_move = FrameMove(m_amount, m_rangeStart, m_rangeEnd);
    }
    Layer* const layer = GetLayer();
    if (!layer || m_move.IsStill()) {
        BaseNode::UpdateTimeControlOverlay();
        return MS::kSuccess;
    }
    QString refusal;
    if (!m_move.Do(*layer, refusal)) {
        return RefuseEdit(refusal);
    }
    m_node->OnFramesChanged(m_camera, m_layerIndex);
    return MS::kSuccess;
}

MStatus FrameCommand::MoveFramesUndo() {
    Layer* const layer = GetLayer();
    if (!layer || m_move.IsStill()) {
        BaseNode::UpdateTimeControlOverlay();
        return MS::kSuccess;
    }
    const bool undone = m_move.Undo(*layer);
    m_node->OnFramesChanged(m_camera, m_layerIndex);
    return undone ? MS::kSuccess : MS::kFailure;
}

} // namespace vellix
