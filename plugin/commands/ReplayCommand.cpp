#include "commands/ReplayCommand.h"

#include "commands/CameraArgument.h"
#include "commands/NodeCreation.h"
#include "commands/StrokePlayer.h"
#include "core/LayerManager.h"
#include "host/Guarded.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/OpenText.h"
#include "paint/ScopeExit.h"
#include "paint/StrokeRecording.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MComputation.h>
#include <maya/MTime.h>

namespace vellix {
namespace {

/// Returns what the step returns; false, with an error logged, when memory is short for it.
template <typename Step>
bool WithMemory(Step step) {
    try {
        return step();
    } catch (const std::bad_alloc& reason) {
        LogFailure("The replay", reason);
        return false;
    }
}

} // namespace

ReplayCommand::ReplayCommand() = default;
ReplayCommand::~ReplayCommand() = default;

const FlagTable<ReplayCommand>& ReplayCommand::Flags() {
    using Flag = FlagRow<ReplayCommand>;
    static const FlagTable<ReplayCommand> flags({
        Flag("-f", "-file", {&ReplayCommand::file_}).Sets(&ReplayCommand::hasFile_),
        Flag("-c", "-camera", {&ReplayCommand::camera_}),
        Flag("-fo", "-frameOffset", {&ReplayCommand::frameOffset_}),
    });
    return flags;
}

void* ReplayCommand::Creator() {
    return new ReplayCommand();
}

MString ReplayCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::REPLAY_COMMAND_NAME);
}

MSyntax ReplayCommand::CommandSyntax() {
    return Flags().GetSyntax();
}

MStatus ReplayCommand::doIt(const MArgList& args) {
    StrokeRecording recording;
    if (!ReadArguments(args) || !ReadRecording(recording)) {
        return MS::kFailure;
    }
    OpenText::Commit();
    camera_ = CameraArgument::Resolve(camera_, BaseNode::GetMaster());
    if (camera_.isEmpty()) {
        return MS::kFailure;
    }
    const int count = recording.GetStrokes().size();
    if (count > 0) {
        if (!ProvideNode()) {
            return MS::kFailure;
        }
        try {
            if (!DrawAll(recording)) {
                TakeBack();
                return MS::kFailure;
            }
        } catch (...) {
            TakeBack();
            throw;
        }
        undoable_ = true;
        isDone_ = true;
    }
    setResult(count);
    return MS::kSuccess;
}

bool ReplayCommand::ReadArguments(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return false;
    }
    Flags().Read(*this, arguments);
    if (!hasFile_) {
        Logger::Error("No recording. Name one with -file.");
        return false;
    }
    const int limit = StrokeRecording::MAX_FRAME_NUMBER;
    if (frameOffset_ < -limit || frameOffset_ > limit) {
        Logger::Error(QString("The frame offset must be from %1 to %2.").arg(-limit).arg(limit));
        return false;
    }
    return true;
}

bool ReplayCommand::ReadRecording(StrokeRecording& recording) const {
    QString fault;
    if (recording.Read(file_, fault)) {
        return true;
    }
    Logger::Error(QString("Cannot replay \"%1\": %2").arg(file_, fault));
    return false;
}

// The draw tool creates the node when it is activated; a replay has to do it itself.
bool ReplayCommand::ProvideNode() {
    if (BaseNode::GetMaster()) {
        return true;
    }
    node_ = std::make_unique<NodeCreation>();
    return bool(node_->Do());
}

bool ReplayCommand::DrawAll(const StrokeRecording& recording) {
    const std::shared_ptr<LayerManager> layers = BaseNode::GetMaster()->GetLayerManager();
    const LayerManager::ChangeScope scope(*layers);
    before_.Remember(*BaseNode::GetMaster(), {camera_});
    StrokePlayer player(*BaseNode::GetMaster(), camera_);
    MComputation computation;
    computation.beginComputation();
    const ScopeExit ended([&computation] { computation.endComputation(); });
    QString fault;
    for (int i = 0; i < recording.GetStrokes().size() && fault.isEmpty(); ++i) {
        const RecordedStroke& recorded = recording.GetStrokes()[i];
        const int time = recorded.frame + frameOffset_;
        if (!Draw(player, recorded, time)) {
            fault = QString("stroke %1 (frame %2) could not be drawn").arg(i + 1).arg(time);
        } else if (computation.isInterruptRequested()) {
            fault = QString("interrupted after stroke %1").arg(i + 1);
        }
    }
    if (!fault.isEmpty()) {
        Logger::Error(QString("Cannot replay \"%1\": %2. Nothing was changed.").arg(file_, fault));
        return false;
    }
    BaseNode::UpdatePlaybackTime();
    return true;
}

/// Too little memory is a fault like others: what was drawn before is taken back.
bool ReplayCommand::Draw(StrokePlayer& player, const RecordedStroke& recorded, int time) {
    return WithMemory([&] { return player.Draw(recorded, time, drawn_); });
}

/// After a drawing that failed.
void ReplayCommand::TakeBack() {
    UndoStrokes();
    UndoNode();
    BaseNode::UpdatePlaybackTime();
}

void ReplayCommand::UndoNode() {
    if (node_) {
        node_->Undo();
    }
}

bool ReplayCommand::UndoStrokes() {
    BaseNode* const node = BaseNode::GetMaster();
    if (!node) {
        return false;
    }
    if (drawn_.empty()) {
        return true; // the very first one could not be drawn
    }
    const std::shared_ptr<LayerManager> layers = node->GetLayerManager();
    const LayerManager::ChangeScope scope(*layers);
    for (auto drawn = drawn_.rbegin(); drawn != drawn_.rend(); ++drawn) {
        if (!WithMemory([&] { return (*drawn)->Undo(*node); })) {
            while (drawn != drawn_.rbegin()) {
                (*--drawn)->Redo(*node);
            }
            return false;
        }
    }
    before_.Restore(*node);
    return true;
}

bool ReplayCommand::RedoStrokes() {
    BaseNode* const node = BaseNode::GetMaster();
    if (!node) {
        return false;
    }
    const std::shared_ptr<LayerManager> layers = node->GetLayerManager();
    const LayerManager::ChangeScope scope(*layers);
    for (auto drawn = drawn_.begin(); drawn != drawn_.end(); ++drawn) {
        if (!WithMemory([&] { return (*drawn)->Redo(*node); })) {
            while (drawn != drawn_.begin()) {
                (*--drawn)->Undo(*node);
            }
            return false;
        }
    }
    return true;
}

MStatus ReplayCommand::undoIt() {
    if (!isDone_) {
        return MS::kSuccess; // it could not be redone
    }
    isDone_ = !UndoStrokes();
    if (!isDone_) {
        UndoNode();
    }
    BaseNode::UpdatePlaybackTime();
    return isDone_ ? MS::kFailure : MS::kSuccess;
}

MStatus ReplayCommand::redoIt() {
    if (isDone_) {
        return MS::kSuccess; // it could not be undone
    }
    if (node_) {
        MStatus status = node_->Do();
        if (!status) {
            return status;
        }
    }
    const ScopeExit takeOut([this] {
        if (!isDone_) { // also for lack of memory
            UndoNode();
        }
    });
    isDone_ = RedoStrokes();
    BaseNode::UpdatePlaybackTime();
    return isDone_ ? MS::kSuccess : MS::kFailure;
}

} // namespace vellix
