#include "commands/NodeCommand.h"

#include "commands/CameraArgument.h"
#include "core/FrameRange.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MTime.h>

#include <memory>

namespace vellix {

namespace {

MStatus RefuseMode(const char* message) {
    Logger::Error(message);
    return MS::kInvalidParameter;
}

/// Calls an operation of the master node. Fails if there is none.
MStatus CallMaster(void (BaseNode::*operation)()) {
    BaseNode* const node = BaseNode::GetMaster();
    if (!node) {
        return MS::kFailure;
    }
    (node->*operation)();
    return MS::kSuccess;
}

} // namespace

// A command line without an action flag creates the node.
const FlagTable<NodeCommand>& NodeCommand::Flags() {
    using N = NodeCommand;
    using Value = Flag::Value;
    static const FlagTable<N> flags({
        Flag("-ex", "-exists").Does(&N::AnswerExists),
        Flag("-r", "-refresh").Does(&N::Refresh),
        Flag("-rg", "-refreshGhosting").Does(&N::RefreshGhosting),
        Flag("-l", "-layer").Sets(&N::layer_),
        Flag("-c", "-camera", {&N::camera_}).Answers(&N::AnswerCamera),
        Flag("-ln", "-layerName", {&N::layerName_}),
        Flag("-ls", "-layerState", {Value::Whole(&N::layerState_)}),
        Flag("-f", "-frame").Sets(&N::frame_),
    });
    return flags;
}

void* NodeCommand::Creator() {
    return new NodeCommand;
}

MSyntax NodeCommand::CommandSyntax() {
    return Flags().GetSyntax();
}

MString NodeCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::NODE_COMMAND_NAME);
}

MStatus NodeCommand::doIt(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return status;
    }
    if (arguments.isEdit()) {
        return RefuseMode("Invalid edit parameter");
    }
    if (arguments.isQuery()) {
        const Flag* const asked = Flags().FindGiven(arguments, &Flag::query);
        return asked ? asked->query(*this) : RefuseMode("Invalid query parameter");
    }
    if (const Flag* const flag = Flags().Read(*this, arguments)) {
        return flag->redo(*this);
    }
    undoable_ = true;
    status = redoIt();
    hasRun_ = bool(status);
    return status;
}

// A step that was refused changed nothing. The next step the other way then has nothing to do either.
MStatus NodeCommand::redoIt() {
    if (isDone_) {
        return MS::kSuccess;
    }
    MStatus status = Create();
    isDone_ = bool(status);
    return status;
}

MStatus NodeCommand::Create() {
    if (BaseNode::GetMaster()) {
        Logger::Error("Node already exists");
        return MS::kFailure;
    }
    if (layer_ && frame_ && !FrameRange::FromTimeSlider().CanBeFilled()) {
        Logger::Error(QString("Cannot insert more than %1 frames").arg(int(FrameRange::MAX_FRAMES)));
        return MS::kFailure;
    }
    if (layer_ && !hasRun_ && !camera_.isEmpty() && !CameraArgument::Check(camera_)) {
        return MS::kFailure;
    }
    MStatus created = creation_.Do();
    if (!created) {
        return created;
    }
    try {
        BaseNode* node = BaseNode::GetMaster();
        if (layer_ && node) {
            if (!hasRun_) {
                AddFirstLayer(*node);
            }
            MayaUtil::RefreshTimeControl(node->thisMObject());
        }
    } catch (...) {
        creation_.Undo();
        throw;
    }
    return MS::kSuccess;
}

MStatus NodeCommand::undoIt() {
    if (isDone_) {
        creation_.Undo();
        isDone_ = false;
        BaseNode::UpdatePlaybackTime();
    }
    return MS::kSuccess;
}

MStatus NodeCommand::AnswerExists() {
    setResult(BaseNode::GetMaster() != nullptr);
    return MS::kSuccess;
}

MStatus NodeCommand::Refresh() {
    return CallMaster(&BaseNode::RefreshActiveCamera);
}

MStatus NodeCommand::RefreshGhosting() {
    return CallMaster(&BaseNode::UpdateGhosting);
}

MStatus NodeCommand::AnswerCamera() {
    const BaseNode* node = BaseNode::GetMaster();
    if (!node) {
        return MS::kFailure;
    }
    setResult(MayaUtil::ToMString(node->GetActiveCamera()));
    return MS::kSuccess;
}

void NodeCommand::AddFirstLayer(BaseNode& node) {
    const QString camera = camera_.isEmpty() ? MayaUtil::GetActive3dViewCameraName() : camera_;
    if (camera.isEmpty() || node.LayerCount(camera) > 0) {
        return;
    }
    const std::shared_ptr<LayerManager> layers = node.GetLayerManager();
    const LayerManager::ChangeScope scope(*layers);
    const int index = node.InsertLayer(camera, -1, layerName_);
    if (index < 0) {
        return;
    }
    if (layerState_ >= 0) {
        node.SetLayerState(camera, index, ToLayerState(layerState_));
    }
    if (frame_) {
        AddFrames(node, camera);
    }
}

void NodeCommand::AddFrames(BaseNode& node, const QString& camera) {
    const FrameRange range = FrameRange::FromTimeSlider();
    for (int time = range.start; time < range.end; ++time) {
        node.AddFrame(camera, FromWholeFrames(time));
    }
}

} // namespace vellix
