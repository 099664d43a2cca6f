#include "commands/LayerCommand.h"

#include "commands/CameraArgument.h"
#include "core/Layer.h"
#include "core/LayerState.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/OpenText.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>

#include <memory>
#include <utility>

namespace vellix {

// If several flags are given, the first one in the table wins.
const FlagTable<LayerCommand>& LayerCommand::Flags() {
    using L = LayerCommand;
    using Value = Flag::Value;
    static const auto index = Value::Whole(&L::layerIndex_);
    static const FlagTable<L> flags({
        Flag("-act", "-active", {index}).Does(&L::EditActive, &L::RestoreActive).Answers(&L::QueryActive),
        Flag("-cnt", "-count").Does(&L::Count),
        Flag("-add", "-addLayer")
            .Does(&L::Add, &L::InsertUndo)
            .WithoutNode("Failed to add layer. Node does not exist."),
        Flag("-ins", "-insert", {&L::destination_})
            .Does(&L::Insert, &L::InsertUndo)
            .WithoutNode("Failed to insert layer. Node does not exist."),
        Flag("-del", "-delete", {index}).Does(&L::Delete, &L::DeleteUndo),
        Flag("-da", "-deleteAll").Does(&L::DeleteAll, &L::DeleteAllUndo),
        Flag("-mv", "-move", {index, &L::destination_}).Does(&L::Move, &L::MoveUndo),
        Flag("-mva", "-moveAll", {&L::newCamera_}).Does(&L::MoveAll, &L::MoveAllUndo),
        Flag("-n", "-name", {&L::layerName_}),
        Flag("-nc", "-newCamera", {&L::newCamera_}),
        Flag("-en", "editName", {&L::layerName_, index}).Exchanges(&L::ExchangeName).Needs(&L::CheckLayer),
        Flag("-qn", "queryName", {index}).Does(&L::QueryName).Needs(&L::CheckLayer),
        Flag("-ev", "editVis", {&L::visible_, index}).Exchanges(&L::ExchangeVisibility).Needs(&L::CheckLayer),
        Flag("-qv", "queryVis", {index}).Does(&L::QueryVisibility).Needs(&L::CheckLayer),
        Flag("-eo", "editOpacity", {&L::opacity_, index})
            .Exchanges(&L::ExchangeOpacity)
            .Needs(&L::CheckLayer),
        Flag("-qo", "queryOpacity", {index}).Does(&L::QueryOpacity).Needs(&L::CheckLayer),
        Flag("-es", "editState", {Value::Whole(&L::stateValue_), index})
            .Exchanges(&L::ExchangeState)
            .Needs(&L::CheckState),
        Flag("-qs", "queryState", {index}).Does(&L::QueryState).Needs(&L::CheckLayer),
        Flag("-ls", "layerState", {Value::Whole(&L::layerState_)}),
        Flag("-itv", "importTavlo", {MSyntax::kString, MSyntax::kString}).Does(&L::Import),
    });
    return flags;
}

LayerCommand::LayerCommand() = default;
LayerCommand::~LayerCommand() = default;

void* LayerCommand::Creator() {
    return new LayerCommand();
}

MString LayerCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::LAYER_COMMAND_NAME);
}

MSyntax LayerCommand::CommandSyntax() {
    MSyntax syntax = Flags().GetSyntax();
    // Optional in the syntax only, so that the plug-in's own message reports a missing camera.
    syntax.setObjectType(MSyntax::kStringObjects);
    return syntax;
}

// --- the command ------------------------------------------------------------------------------------------

MStatus LayerCommand::Parse(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return status;
    }
    camera_ = CameraArgument::Require(arguments);
    if (camera_.isEmpty()) {
        return MS::kFailure;
    }
    const bool edits = arguments.isEdit();
    isQuery_ = arguments.isQuery() && !edits;
    refusal_ = edits      ? "Invalid edit parameter"
               : isQuery_ ? "Invalid query parameter"
                          : "Invalid command parameters";
    flag_ = Flags().Read(*this, arguments);
    // -edit and -query require a flag that answers queries; without them such a flag is refused.
    if (flag_ && bool(flag_->query) != (edits || isQuery_)) {
        flag_ = nullptr;
    }
    return MS::kSuccess;
}

MStatus LayerCommand::doIt(const MArgList& args) {
    const MStatus status = Parse(args);
    if (!status) {
        return status;
    }
    // A text that is open goes into its own layer before another one becomes active.
    if (flag_ && flag_->undo && !flag_->exchanges) {
        OpenText::Commit();
    }
    return redoIt();
}

MStatus LayerCommand::redoIt() {
    node_ = BaseNode::GetMaster();
    if (!node_) {
        Logger::Error(flag_ ? flag_->withoutNode : "Node not found");
        return MS::kFailure;
    }
    if (!flag_) {
        Logger::Error(refusal_);
        return MS::kInvalidParameter;
    }
    undoable_ = flag_->undo && !isQuery_;
    return Run(isQuery_ ? flag_->query : flag_->redo);
}

MStatus LayerCommand::undoIt() {
    node_ = BaseNode::GetMaster();
    return node_ && undoable_ ? Run(flag_->undo) : MStatus(MS::kFailure);
}

MStatus LayerCommand::Run(const Flag::Step& step) {
    return flag_->check && !flag_->check(*this) ? MStatus(MS::kFailure) : step(*this);
}

bool LayerCommand::CheckLayer() const {
    if (node_->LayerExists(camera_, layerIndex_)) {
        return true;
    }
    Logger::Error(QString("Layer does not exist for camera (index): %1 (%2)").arg(camera_).arg(layerIndex_));
    return false;
}

bool LayerCommand::CheckState() const {
    if (!IsLayerState(stateValue_)) {
        Logger::Error(QString("Invalid state value: %1").arg(stateValue_));
        return false;
    }
    return CheckLayer();
}

MStatus LayerCommand::Count() {
    setResult(node_->LayerCount(camera_));
    return MS::kSuccess;
}

// --- the active layer -------------------------------------------------------------------------------------

MStatus LayerCommand::QueryActive() {
    setResult(node_->GetActiveLayerIndex(camera_));
    return MS::kSuccess;
}

MStatus LayerCommand::EditActive() {
    before_.Remember(*node_, {camera_});
    if (before_.GetCamera() == camera_ && before_.GetIndex() == layerIndex_) {
        return MS::kFailure;
    }
    if (!node_->SetActiveLayer(camera_, layerIndex_, true)) {
        return MS::kFailure;
    }
    setResult(layerIndex_);
    return MS::kSuccess;
}

MStatus LayerCommand::RestoreActive() {
    before_.Restore(*node_);
    return MS::kSuccess;
}

// --- adding and inserting ---------------------------------------------------------------------------------

// Without a state the layer is added, but the command fails: the state is a required part of it.
MStatus LayerCommand::InsertNewLayer(int destination) {
    before_.Remember(*node_, {camera_});
    resultIndex_ = node_->InsertLayer(camera_, destination, layerName_);
    if (resultIndex_ < 0 || layerState_ < 0) {
        return MS::kFailure;
    }
    node_->SetLayerState(camera_, resultIndex_, ToLayerState(layerState_));
    setResult(resultIndex_);
    return MS::kSuccess;
}

MStatus LayerCommand::Add() {
    MStatus status = InsertNewLayer(-1);
    if (status) {
        node_->SetActiveLayer(camera_, resultIndex_, true);
    }
    return status;
}

MStatus LayerCommand::Insert() {
    return InsertNewLayer(destination_);
}

MStatus LayerCommand::InsertUndo() {
    if (!node_->RemoveLayer(camera_, resultIndex_)) {
        return MS::kFailure;
    }
    return RestoreActive();
}

// --- deleting ---------------------------------------------------------------------------------------------

MStatus LayerCommand::Delete() {
    before_.Remember(*node_, {camera_});
    std::unique_ptr<Layer> removed = node_->RemoveLayer(camera_, layerIndex_);
    if (!removed) {
        return MS::kFailure;
    }
    removedLayers_.push_back(std::move(removed));
    return MS::kSuccess;
}

MStatus LayerCommand::DeleteUndo() {
    return PutBack(layerIndex_);
}

MStatus LayerCommand::DeleteAll() {
    before_.Remember(*node_, {camera_});
    node_->RemoveAllLayers(camera_, removedLayers_);
    return MS::kSuccess;
}

MStatus LayerCommand::DeleteAllUndo() {
    return PutBack(0);
}

/// Reinserts the removed layers, the lowest at the index, and restores the active layer.
MStatus LayerCommand::PutBack(int index) {
    for (; !removedLayers_.empty(); ++index) {
        std::unique_ptr<Layer> layer = std::move(removedLayers_.front());
        removedLayers_.erase(removedLayers_.begin());
        if (node_->InsertLayer(camera_, index, std::move(layer)) < 0) {
            return MS::kFailure;
        }
    }
    return RestoreActive();
}

// --- moving -----------------------------------------------------------------------------------------------

MStatus LayerCommand::MoveWithin(int from, int to) {
    resultIndex_ = node_->MoveLayer(camera_, from, to);
    if (resultIndex_ < 0) {
        return MS::kFailure;
    }
    setResult(resultIndex_);
    return MS::kSuccess;
}

MStatus LayerCommand::MoveAcross() {
    before_.Remember(*node_, {camera_, newCamera_});
    const bool wasActive = before_.GetCamera() == camera_ && before_.GetIndex() == layerIndex_;
    resultIndex_ = node_->MoveLayer(camera_, layerIndex_, newCamera_, destination_);
    if (resultIndex_ < 0) {
        return MS::kFailure;
    }
    if (wasActive) {
        node_->SetActiveLayer(newCamera_, resultIndex_, true);
    }
    setResult(resultIndex_);
    return MS::kSuccess;
}

MStatus LayerCommand::Move() {
    if (newCamera_.isEmpty() || newCamera_ == camera_) {
        newCamera_.clear();
        return MoveWithin(layerIndex_, destination_);
    }
    return CameraArgument::Check(newCamera_) ? MoveAcross() : MStatus(MS::kFailure);
}

MStatus LayerCommand::MoveUndo() {
    if (newCamera_.isEmpty()) {
        return node_->MoveLayer(camera_, resultIndex_, layerIndex_) < 0 ? MS::kFailure : MS::kSuccess;
    }
    if (node_->MoveLayer(newCamera_, resultIndex_, camera_, layerIndex_) < 0) {
        return MS::kFailure;
    }
    return RestoreActive();
}

MStatus LayerCommand::MoveAll() {
    if (!CameraArgument::Check(newCamera_)) {
        return MS::kFailure;
    }
    if (newCamera_ == camera_) {
        Logger::Error("Invalid command parameters");
        return MS::kInvalidParameter;
    }
    before_.Remember(*node_, {camera_, newCamera_});
    const bool wasActive = before_.GetCamera() == camera_;
    destination_ = node_->LayerCount(newCamera_);
    movedCount_ = node_->LayerCount(camera_);
    for (int i = movedCount_ - 1; i >= 0; --i) {
        node_->MoveLayer(camera_, i, newCamera_, destination_);
    }
    if (wasActive && before_.GetIndex() >= 0) {
        node_->SetActiveLayer(newCamera_, before_.GetIndex() + destination_, true);
    }
    return MS::kSuccess;
}

MStatus LayerCommand::MoveAllUndo() {
    for (int i = destination_ + movedCount_ - 1; i >= destination_; --i) {
        node_->MoveLayer(newCamera_, i, camera_, 0);
    }
    return RestoreActive();
}

// --- properties of a layer --------------------------------------------------------------------------------

template <typename Value, typename Get, typename Set>
MStatus LayerCommand::Exchange(Value& value, Get get, Set set) {
    const auto old = (node_->*get)(camera_, layerIndex_);
    (node_->*set)(camera_, layerIndex_, static_cast<decltype(old)>(value));
    value = static_cast<Value>(old);
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeName() {
    return Exchange(layerName_, &BaseNode::GetLayerName, &BaseNode::SetLayerName);
}

MStatus LayerCommand::QueryName() {
    setResult(MayaUtil::ToMString(node_->GetLayerName(camera_, layerIndex_)));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeVisibility() {
    return Exchange(visible_, &BaseNode::IsLayerVisible, &BaseNode::SetLayerVisible);
}

MStatus LayerCommand::QueryVisibility() {
    setResult(node_->IsLayerVisible(camera_, layerIndex_));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeOpacity() {
    return Exchange(opacity_, &BaseNode::GetLayerOpacity, &BaseNode::SetLayerOpacity);
}

MStatus LayerCommand::QueryOpacity() {
    setResult(static_cast<double>(node_->GetLayerOpacity(camera_, layerIndex_)));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeState() {
    return Exchange(stateValue_, &BaseNode::GetLayerState, &BaseNode::SetLayerState);
}

MStatus LayerCommand::QueryState() {
    setResult(static_cast<int>(node_->GetLayerState(camera_, layerIndex_)));
    return MS::kSuccess;
}

// Accepted without effect: files of the companion tool are not imported.
MStatus LayerCommand::Import() {
    return MS::kSuccess;
}

} // namespace vellix
