#include "commands/LayerCommand.h"

#include "commands/CameraArgument.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "core/LightTable.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/OpenText.h"
#include "paint/ScopeExit.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

namespace vellix {

// If several flags are given, the first one in the table wins.
const FlagTable<LayerCommand>& LayerCommand::Flags() {
    using L = LayerCommand;
    using Value = Flag::Value;
    static const auto index = Value::Whole(&L::layerIndex_);
    static const FlagTable<L> flags({
        Flag("-act", "-active", {index}).Does(&L::EditActive, &L::EditActiveUndo).Answers(&L::QueryActive),
        Flag("-cnt", "-count").Does(&L::Count),
        Flag("-add", "-addLayer")
            .Does(&L::Add, &L::InsertUndo)
            .Needs(&L::CheckCamera)
            .WithoutNode("Failed to add layer. Node does not exist."),
        Flag("-ins", "-insert", {&L::destination_})
            .Does(&L::Insert, &L::InsertUndo)
            .Needs(&L::CheckCamera)
            .WithoutNode("Failed to insert layer. Node does not exist."),
        Flag("-del", "-delete", {index}).Does(&L::Delete, &L::DeleteUndo),
        Flag("-da", "-deleteAll").Does(&L::DeleteAll, &L::DeleteUndo),
        Flag("-mv", "-move", {index, &L::destination_}).Does(&L::Move, &L::MoveUndo),
        Flag("-mva", "-moveAll", {&L::newCamera_}).Does(&L::MoveAll, &L::MoveAllUndo),
        Flag("-n", "-name", {&L::layerName_}),
        Flag("-nc", "-newCamera", {&L::newCamera_}),
        Flag("-en", "editName", {&L::layerName_, index}).Exchanges(&L::ExchangeName).Needs(&L::CheckLayer),
        Flag("-qn", "queryName", {index}).Does(&L::QueryName).Needs(&L::CheckLayer),
        Flag("-ev", "editVis", {&L::visible_, index}).Exchanges(&L::ExchangeVisibility).Needs(&L::CheckLayer),
        Flag("-qv", "queryVis", {index}).Does(&L::QueryVisibility).Needs(&L::CheckLayer),
        // What is marked is only seen, so that it is no step of undo.
        Flag("-em", "editMark", {&L::marked_, index}).Does(&L::EditMark).Needs(&L::CheckLayer),
        Flag("-qm", "queryMark", {index}).Does(&L::QueryMark).Needs(&L::CheckLayer),
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
    camera_ = CameraArgument::RequireWithLayers(arguments, node_);
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
    node_ = BaseNode::GetMaster();
    MStatus status = Parse(args);
    if (!status) {
        return status;
    }
    if (node_ && !flag_) {
        Logger::Error(refusal_);
        return MS::kInvalidParameter;
    }
    if (node_ && flag_->check && !flag_->check(*this)) {
        return MS::kFailure;
    }
    const bool changes = flag_ && flag_->undo && !isQuery_;
    // A text that is open goes into its own layer, as an undo step of its own, before another one becomes
    // active.
    if (changes && !flag_->exchanges) {
        OpenText::Commit();
    }
    undoable_ = changes; // what an undoable command runs leaves no step
    status = Run(isQuery_ && flag_ ? flag_->query : flag_ ? flag_->redo : Flag::Step());
    if (status && undoable_ && !flag_->exchanges) {
        RememberActive();
    }
    return status;
}

// A step that was refused changed nothing. The next step the other way then has nothing to do either.
MStatus LayerCommand::redoIt() {
    if (isDone_) {
        return MStatus();
    }
    MStatus status = Run(flag_->redo);
    if (status && after_) {
        after_->Restore(*node_);
    }
    return status;
}

/// Remembers what is active after the first run, for redo: what is active before a step may have been changed
/// without an undo step. When memory is short, redo goes by what it finds.
void LayerCommand::RememberActive() noexcept {
    try {
        after_ = std::make_unique<ActiveLayers>(before_.Now(*node_));
    } catch (const std::bad_alloc&) {
        after_.reset();
    }
}

MStatus LayerCommand::undoIt() {
    return isDone_ ? Run(flag_->undo) : MStatus();
}

MStatus LayerCommand::Run(const Flag::Step& step) {
    node_ = BaseNode::GetMaster();
    drawing_ = node_ ? node_->GetLayerManager() : nullptr;
    const ScopeExit released([this] { drawing_.reset(); });
    if (!drawing_) {
        Logger::Error(flag_ ? flag_->withoutNode : "Node not found");
        return MS::kFailure;
    }
    const LayerManager::ChangeScope scope(*drawing_);
    MStatus status = step(*this);
    if (status && undoable_) {
        isDone_ = !isDone_;
        hasRun_ = true;
    }
    return status;
}

bool LayerCommand::CheckCamera() const {
    return CameraArgument::Check(camera_);
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

/// At the first run, chooses the layer at the index. Returns false, without a message, if there is none.
bool LayerCommand::ChooseLayer() {
    if (!hasRun_) {
        const Layer* const layer = node_->GetLayer(camera_, layerIndex_);
        layer_ = layer ? layer->GetId() : LayerId::None;
    }
    return layer_ != LayerId::None;
}

/// Finds where the layer is that the first run chose or made. Returns false, and logs an error, if it is
/// gone.
bool LayerCommand::FindLayer(LayerId id, LayerPlace& place) const {
    place = node_->FindLayer(id);
    if (!place.layer) {
        Logger::Error(QString("Cannot %1: the layer no longer exists").arg(isDone_ ? "undo" : "redo"));
    }
    return place.layer != nullptr;
}

bool LayerCommand::FindLayers(const std::vector<LayerId>& ids, const QString& camera) const {
    return std::all_of(ids.begin(), ids.end(), [&](LayerId id) {
        LayerPlace place;
        if (!FindLayer(id, place)) {
            return false;
        }
        if (place.camera != camera) {
            Logger::Error(QString("Cannot %1: the layer \"%2\" is no longer on the camera %3")
                              .arg(isDone_ ? "undo" : "redo", place.layer->GetName(), camera));
        }
        return place.camera == camera;
    });
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
    if (!ChooseLayer()) {
        node_->SetActiveLayer(camera_, layerIndex_, true); // logs why not
        return MS::kFailure;
    }
    LayerPlace place;
    if (!FindLayer(layer_, place)) {
        return MS::kFailure;
    }
    before_.Remember(*node_, {place.camera});
    if (!hasRun_ && before_.GetCamera() == place.camera && before_.GetLayer() == layer_) {
        return MS::kFailure;
    }
    node_->SetActiveLayer(place.camera, place.index, true);
    setResult(place.index);
    return MS::kSuccess;
}

MStatus LayerCommand::EditActiveUndo() {
    before_.Restore(*node_);
    return MS::kSuccess;
}

// --- adding and inserting ---------------------------------------------------------------------------------

// Without a state the layer is added, but the command fails: the state is a required part of it.
MStatus LayerCommand::InsertNewLayer(int destination) {
    before_.Remember(*node_, {camera_});
    const int index = drawing_->InsertLayer(camera_, destination, layerName_);
    if (index < 0) {
        return MS::kFailure;
    }
    if (layerState_ < 0) {
        MayaUtil::MarkSceneModified(); // no undo step says so
        return MS::kFailure;
    }
    drawing_->SetLayerState(camera_, index, ToLayerState(layerState_));
    layer_ = drawing_->GetLayer(camera_, index)->GetId();
    setResult(index);
    return MS::kSuccess;
}

MStatus LayerCommand::Add() {
    MStatus status = hasRun_ ? PutBack() : InsertNewLayer(-1);
    if (status) {
        const LayerPlace place = drawing_->FindLayer(layer_);
        drawing_->SetActiveLayer(place.camera, place.index, true);
    }
    return status;
}

MStatus LayerCommand::Insert() {
    return hasRun_ ? PutBack() : InsertNewLayer(destination_);
}

MStatus LayerCommand::InsertUndo() {
    if (!TakeOut({layer_})) {
        return MS::kFailure;
    }
    before_.Restore(*node_);
    return MS::kSuccess;
}

// --- deleting ---------------------------------------------------------------------------------------------

/// Takes layers out of the drawing, given from the bottom up, and keeps them with their spots. Takes none if
/// one is gone.
bool LayerCommand::TakeOut(const std::vector<LayerId>& ids) {
    LayerPlace place;
    for (const LayerId id : ids) {
        if (!FindLayer(id, place)) {
            return false;
        }
    }
    std::vector<Removed> removed;
    removed.reserve(ids.size());
    for (const LayerId id : ids) {
        removed.push_back({id, LayerSpot(*drawing_, id), nullptr, drawing_->IsLayerOfStroke(id)});
    }
    removed_ = std::move(removed);
    TakeOutAgain(removed_.size());
    return true;
}

/// Takes so many of the layers out, from the top down. Needs no memory.
void LayerCommand::TakeOutAgain(std::size_t count) {
    while (count-- > 0) {
        const LayerPlace place = drawing_->FindLayer(removed_[count].id);
        removed_[count].layer = drawing_->RemoveLayer(place.camera, place.index);
    }
}

/// A layer that a press had added goes with its stroke, if that was dropped while the layer was out: no undo
/// step knows of it. Returns whether it was the active one, so that its camera was active for the press
/// alone.
bool LayerCommand::ForgetLayersOfDroppedStrokes() {
    const auto isKept = [this](const Removed& removed) {
        return !removed.isOfStroke || removed.layer->FrameCount() > 0 ||
               drawing_->IsLayerOfStroke(removed.id);
    };
    bool wasActive = false;
    for (const Removed& removed : removed_) {
        if (!isKept(removed)) {
            wasActive = wasActive || removed.id == before_.GetLayer();
            layers_.erase(std::remove(layers_.begin(), layers_.end(), removed.id), layers_.end());
        }
    }
    removed_.erase(std::stable_partition(removed_.begin(), removed_.end(), isKept), removed_.end());
    return wasActive;
}

MStatus LayerCommand::PutBack() {
    ForgetLayersOfDroppedStrokes();
    std::size_t count = 0;
    try {
        for (Removed& removed : removed_) {
            const QString camera = removed.spot.GetCamera();
            drawing_->InsertLayer(camera, removed.spot.GetIndex(*drawing_, camera), removed.layer);
            ++count;
        }
    } catch (...) {
        TakeOutAgain(count);
        throw;
    }
    removed_.clear();
    return MS::kSuccess;
}

MStatus LayerCommand::Delete() {
    if (!ChooseLayer()) {
        return MS::kFailure;
    }
    if (!hasRun_) {
        layers_ = {layer_};
    }
    return DeleteChosen();
}

MStatus LayerCommand::DeleteAll() {
    ChooseAllLayers();
    return DeleteChosen();
}

MStatus LayerCommand::DeleteChosen() {
    before_.Remember(*node_, {layers_.empty() ? camera_ : node_->FindLayer(layers_.front()).camera});
    return TakeOut(layers_) ? MS::kSuccess : MS::kFailure;
}

MStatus LayerCommand::DeleteUndo() {
    const bool wasOfPress = ForgetLayersOfDroppedStrokes();
    PutBack();
    if (wasOfPress) {
        after_.reset(); // what was active then was so for the press
    } else {
        before_.Restore(*node_);
    }
    return MS::kSuccess;
}

/// At the first run, chooses the camera's layers, from the bottom up.
void LayerCommand::ChooseAllLayers() {
    if (!hasRun_) {
        for (const Layer* layer : node_->GetLayers(camera_)) {
            layers_.push_back(layer->GetId());
        }
    }
}

// --- moving -----------------------------------------------------------------------------------------------

/// Moves the layer to a spot. Returns false, and logs an error, if it is gone.
bool LayerCommand::MoveTo(const LayerSpot& spot) {
    LayerPlace place;
    if (!FindLayer(layer_, place)) {
        return false;
    }
    const QString camera = spot.GetCamera();
    const int index = spot.GetIndex(*drawing_, camera, layer_);
    setResult(drawing_->MoveLayer(place.camera, place.index, camera, index));
    return true;
}

MStatus LayerCommand::Move() {
    if (hasRun_) {
        return MoveAgain();
    }
    if (newCamera_.isEmpty()) {
        newCamera_ = camera_;
    }
    if (newCamera_ != camera_ && !CameraArgument::Check(newCamera_)) {
        return MS::kFailure;
    }
    if (!ChooseLayer()) {
        return MS::kFailure;
    }
    before_.Remember(*node_, {camera_, newCamera_});
    from_ = LayerSpot(*drawing_, layer_);
    const int index = newCamera_ == camera_
                          ? drawing_->MoveLayer(camera_, layerIndex_, destination_)
                          : drawing_->MoveLayer(camera_, layerIndex_, newCamera_, destination_);
    if (index < 0) {
        return MS::kFailure;
    }
    try {
        to_ = LayerSpot(*drawing_, layer_);
    } catch (...) {
        MoveTo(from_);
        before_.Restore(*node_);
        throw;
    }
    FollowActiveLayer();
    setResult(index);
    return MS::kSuccess;
}

MStatus LayerCommand::MoveAgain() {
    before_.Remember(*node_, {from_.GetCamera(), to_.GetCamera()});
    if (!MoveTo(to_)) {
        return MS::kFailure;
    }
    FollowActiveLayer();
    return MS::kSuccess;
}

/// After the active layer of the active camera went to another camera: it is active there too.
void LayerCommand::FollowActiveLayer() {
    const LayerPlace place = drawing_->FindLayer(layer_);
    if (before_.GetLayer() == layer_ && before_.GetCamera() != place.camera) {
        drawing_->SetActiveLayer(place.camera, place.index, true);
    }
}

MStatus LayerCommand::MoveUndo() {
    if (!MoveTo(from_)) {
        return MS::kFailure;
    }
    before_.Restore(*node_);
    return MS::kSuccess;
}

MStatus LayerCommand::MoveAll() {
    if (!hasRun_) {
        if (!CameraArgument::Check(newCamera_)) {
            return MS::kFailure;
        }
        if (newCamera_ == camera_) {
            Logger::Error("Invalid command parameters");
            return MS::kInvalidParameter;
        }
        source_ = CameraHandle(camera_);
        target_ = CameraHandle(newCamera_);
        ChooseAllLayers();
    }
    const QString source = source_.Name();
    const QString target = target_.Name();
    if (!FindLayers(layers_, source)) {
        return MS::kFailure;
    }
    before_.Remember(*node_, {source, target});
    spots_.clear();
    for (const LayerId id : layers_) {
        spots_.emplace_back(*drawing_, id);
    }
    const bool isFromActive = before_.GetCamera() == source;
    drawing_->ReserveLayers(target, static_cast<int>(layers_.size())); // nothing below needs memory
    for (const LayerId id : layers_) {
        drawing_->MoveLayer(source, drawing_->FindLayer(id).index, target, -1);
    }
    const LayerPlace active = drawing_->FindLayer(before_.GetLayer());
    if (isFromActive && active.layer && active.camera == target) {
        drawing_->SetActiveLayer(target, active.index, true);
    }
    return MS::kSuccess;
}

MStatus LayerCommand::MoveAllUndo() {
    const QString source = source_.Name();
    const QString target = target_.Name();
    if (!FindLayers(layers_, target)) {
        return MS::kFailure;
    }
    drawing_->ReserveLayers(source, static_cast<int>(layers_.size())); // nothing below needs memory
    for (std::size_t i = 0; i < layers_.size(); ++i) {
        drawing_->MoveLayer(target, drawing_->FindLayer(layers_[i]).index, source,
                            spots_[i].GetIndex(*drawing_, source));
    }
    before_.Restore(*node_);
    return MS::kSuccess;
}

// --- properties of a layer --------------------------------------------------------------------------------

template <typename Value, typename Get, typename Set>
MStatus LayerCommand::Exchange(Value& value, Get get, Set set) {
    LayerPlace place;
    if (!hasRun_) {
        layer_ = node_->GetLayer(camera_, layerIndex_)->GetId();
    }
    if (!FindLayer(layer_, place)) {
        return MS::kFailure;
    }
    const auto old = (place.layer->*get)();
    (place.layer->*set)(static_cast<decltype(old)>(value));
    value = static_cast<Value>(old);
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeName() {
    return Exchange(layerName_, &Layer::GetName, &Layer::SetName);
}

MStatus LayerCommand::QueryName() {
    setResult(MayaUtil::ToMString(node_->GetLayerName(camera_, layerIndex_)));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeVisibility() {
    return Exchange(visible_, &Layer::IsVisible, &Layer::SetVisible);
}

MStatus LayerCommand::QueryVisibility() {
    setResult(node_->IsLayerVisible(camera_, layerIndex_));
    return MS::kSuccess;
}

MStatus LayerCommand::EditMark() {
    drawing_->SetLayerMarked(node_->GetLayer(camera_, layerIndex_)->GetId(), marked_);
    return MS::kSuccess;
}

MStatus LayerCommand::QueryMark() {
    setResult(drawing_->GetLightTable().IsMarked(node_->GetLayer(camera_, layerIndex_)->GetId()));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeOpacity() {
    return Exchange(opacity_, &Layer::GetOpacity, &Layer::SetOpacity);
}

MStatus LayerCommand::QueryOpacity() {
    setResult(static_cast<double>(node_->GetLayerOpacity(camera_, layerIndex_)));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeState() {
    return Exchange(stateValue_, &Layer::GetState, &Layer::SetState);
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
