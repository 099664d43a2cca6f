#include "commands/LayerCommand.h"

#include "commands/CameraArgument.h"
#include "core/Layer.h"
#include "core/LayerState.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>

#include <memory>
#include <utility>

namespace vellix {

// Where several flags are given, the first of the table is done.
const FlagTable<LayerCommand>& LayerCommand::Flags() {
    using L = LayerCommand;
    using Value = Flag::Value;
    static const auto index = Value::Whole(&L::m_layerIndex);
    static const FlagTable<L> flags({
        Flag("-act", "-active", {index}).Does(&L::EditActive, &L::RestoreActive).Answers(&L::QueryActive),
        Flag("-cnt", "-count").Does(&L::Count),
        Flag("-add", "-addLayer")
            .Does(&L::Add, &L::InsertUndo)
            .WithoutNode("Failed to add layer. Node does not exist."),
        Flag("-ins", "-insert", {&L::m_destination})
            .Does(&L::Insert, &L::InsertUndo)
            .WithoutNode("Failed to insert layer. Node does not exist."),
        Flag("-del", "-delete", {index}).Does(&L::Delete, &L::DeleteUndo),
        Flag("-da", "-deleteAll").Does(&L::DeleteAll, &L::DeleteAllUndo),
        Flag("-mv", "-move", {index, &L::m_destination}).Does(&L::Move, &L::MoveUndo),
        Flag("-mva", "-moveAll", {&L::m_newCamera}).Does(&L::MoveAll, &L::MoveAllUndo),
        Flag("-n", "-name", {&L::m_layerName}),
        Flag("-nc", "-newCamera", {&L::m_newCamera}),
        Flag("-en", "editName", {&L::m_layerName, index}).Exchanges(&L::ExchangeName).Needs(&L::CheckLayer),
        Flag("-qn", "queryName", {index}).Does(&L::QueryName).Needs(&L::CheckLayer),
        Flag("-ev", "editVis", {&L::m_visible, index})
            .Exchanges(&L::ExchangeVisibility)
            .Needs(&L::CheckLayer),
        Flag("-qv", "queryVis", {index}).Does(&L::QueryVisibility).Needs(&L::CheckLayer),
        Flag("-eo", "editOpacity", {&L::m_opacity, index})
            .Exchanges(&L::ExchangeOpacity)
            .Needs(&L::CheckLayer),
        Flag("-qo", "queryOpacity", {index}).Does(&L::QueryOpacity).Needs(&L::CheckLayer),
        Flag("-es", "editState", {Value::Whole(&L::m_stateValue), index})
            .Exchanges(&L::ExchangeState)
            .Needs(&L::CheckState),
        Flag("-qs", "queryState", {index}).Does(&L::QueryState).Needs(&L::CheckLayer),
        Flag("-ls", "layerState", {Value::Whole(&L::m_layerState)}),
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
    // The camera is needed; that it is missing is said in the plug-in's own words.
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
    m_camera = CameraArgument::Require(arguments);
    if (m_camera.isEmpty()) {
        return MS::kFailure;
    }
    const bool edits = arguments.isEdit();
    m_asks = arguments.isQuery() && !edits;
    m_refusal = edits    ? "Invalid edit parameter"
                : m_asks ? "Invalid query parameter"
                         : "Invalid command parameters";
    m_flag = Flags().Read(*this, arguments);
    // With -edit or -query go the flags that answer, without them the others.
    if (m_flag && bool(m_flag->query) != (edits || m_asks)) {
        m_flag = nullptr;
    }
    return MS::kSuccess;
}

MStatus LayerCommand::doIt(const MArgList& args) {
    const MStatus status = Parse(args);
    return status ? redoIt() : status;
}

MStatus LayerCommand::redoIt() {
    m_node = BaseNode::GetMaster();
    if (!m_node) {
        Logger::Error(m_flag ? m_flag->withoutNode : "Node not found");
        return MS::kFailure;
    }
    if (!m_flag) {
        Logger::Error(m_refusal);
        return MS::kInvalidParameter;
    }
    m_undoable = m_flag->undo && !m_asks;
    return Run(m_asks ? m_flag->query : m_flag->redo);
}

MStatus LayerCommand::undoIt() {
    m_node = BaseNode::GetMaster();
    return m_node && m_undoable ? Run(m_flag->undo) : MStatus(MS::kFailure);
}

MStatus LayerCommand::Run(const Flag::Step& step) {
    return m_flag->check && !m_flag->check(*this) ? MStatus(MS::kFailure) : step(*this);
}

bool LayerCommand::CheckLayer() const {
    if (m_node->LayerExists(m_camera, m_layerIndex)) {
        return true;
    }
    Logger::Error(
        QString("Layer does not exist for camera (index): %1 (%2)").arg(m_camera).arg(m_layerIndex));
    return false;
}

bool LayerCommand::CheckState() const {
    if (!IsLayerState(m_stateValue)) {
        Logger::Error(QString("Invalid state value: %1").arg(m_stateValue));
        return false;
    }
    return CheckLayer();
}

MStatus LayerCommand::Count() {
    setResult(m_node->LayerCount(m_camera));
    return MS::kSuccess;
}

// --- the active layer -------------------------------------------------------------------------------------

MStatus LayerCommand::QueryActive() {
    setResult(m_node->GetActiveLayerIndex(m_camera));
    return MS::kSuccess;
}

MStatus LayerCommand::EditActive() {
    m_before.Remember(*m_node, {m_camera});
    if (m_before.GetCamera() == m_camera && m_before.GetIndex() == m_layerIndex) {
        return MS::kFailure;
    }
    if (!m_node->SetActiveLayer(m_camera, m_layerIndex, true)) {
        return MS::kFailure;
    }
    setResult(m_layerIndex);
    return MS::kSuccess;
}

MStatus LayerCommand::RestoreActive() {
    m_before.Restore(*m_node);
    return MS::kSuccess;
}

// --- adding and inserting ---------------------------------------------------------------------------------

// Without a state the layer is made, and the command fails all the same: the state is part of the request.
MStatus LayerCommand::InsertNewLayer(int destination) {
    m_before.Remember(*m_node, {m_camera});
    m_resultIndex = m_node->InsertLayer(m_camera, destination, m_layerName);
    if (m_resultIndex < 0 || m_layerState < 0) {
        return MS::kFailure;
    }
    m_node->SetLayerState(m_camera, m_resultIndex, ToLayerState(m_layerState));
    setResult(m_resultIndex);
    return MS::kSuccess;
}

MStatus LayerCommand::Add() {
    MStatus status = InsertNewLayer(-1);
    if (status) {
        m_node->SetActiveLayer(m_camera, m_resultIndex, true);
    }
    return status;
}

MStatus LayerCommand::Insert() {
    return InsertNewLayer(m_destination);
}

MStatus LayerCommand::InsertUndo() {
    if (!m_node->RemoveLayer(m_camera, m_resultIndex)) {
        return MS::kFailure;
    }
    return RestoreActive();
}

// --- deleting ---------------------------------------------------------------------------------------------

MStatus LayerCommand::Delete() {
    m_before.Remember(*m_node, {m_camera});
    std::unique_ptr<Layer> removed = m_node->RemoveLayer(m_camera, m_layerIndex);
    if (!removed) {
        return MS::kFailure;
    }
    m_removedLayers.push_back(std::move(removed));
    return MS::kSuccess;
}

MStatus LayerCommand::DeleteUndo() {
    return PutBack(m_layerIndex);
}

MStatus LayerCommand::DeleteAll() {
    m_before.Remember(*m_node, {m_camera});
    m_node->RemoveAllLayers(m_camera, m_removedLayers);
    return MS::kSuccess;
}

MStatus LayerCommand::DeleteAllUndo() {
    return PutBack(0);
}

/// The removed layers, the lowest at the index, and the layer that was active.
MStatus LayerCommand::PutBack(int index) {
    for (; !m_removedLayers.empty(); ++index) {
        std::unique_ptr<Layer> layer = std::move(m_removedLayers.front());
        m_removedLayers.erase(m_removedLayers.begin());
        if (m_node->InsertLayer(m_camera, index, std::move(layer)) < 0) {
            return MS::kFailure;
        }
    }
    return RestoreActive();
}

// --- moving -----------------------------------------------------------------------------------------------

MStatus LayerCommand::MoveWithin(int from, int to) {
    m_resultIndex = m_node->MoveLayer(m_camera, from, to);
    if (m_resultIndex < 0) {
        return MS::kFailure;
    }
    setResult(m_resultIndex);
    return MS::kSuccess;
}

MStatus LayerCommand::MoveAcross() {
    m_before.Remember(*m_node, {m_camera, m_newCamera});
    const bool wasActive = m_before.GetCamera() == m_camera && m_before.GetIndex() == m_layerIndex;
    m_resultIndex = m_node->MoveLayer(m_camera, m_layerIndex, m_newCamera, m_destination);
    if (m_resultIndex < 0) {
        return MS::kFailure;
    }
    if (wasActive) {
        m_node->SetActiveLayer(m_newCamera, m_resultIndex, true);
    }
    setResult(m_resultIndex);
    return MS::kSuccess;
}

MStatus LayerCommand::Move() {
    if (m_newCamera.isEmpty() || m_newCamera == m_camera) {
        m_newCamera.clear();
        return MoveWithin(m_layerIndex, m_destination);
    }
    return CameraArgument::Check(m_newCamera) ? MoveAcross() : MStatus(MS::kFailure);
}

MStatus LayerCommand::MoveUndo() {
    if (m_newCamera.isEmpty()) {
        return m_node->MoveLayer(m_camera, m_resultIndex, m_layerIndex) < 0 ? MS::kFailure : MS::kSuccess;
    }
    if (m_node->MoveLayer(m_newCamera, m_resultIndex, m_camera, m_layerIndex) < 0) {
        return MS::kFailure;
    }
    return RestoreActive();
}

MStatus LayerCommand::MoveAll() {
    if (!CameraArgument::Check(m_newCamera)) {
        return MS::kFailure;
    }
    if (m_newCamera == m_camera) {
        Logger::Error("Invalid command parameters");
        return MS::kInvalidParameter;
    }
    m_before.Remember(*m_node, {m_camera, m_newCamera});
    const bool wasActive = m_before.GetCamera() == m_camera;
    m_destination = m_node->LayerCount(m_newCamera);
    m_movedCount = m_node->LayerCount(m_camera);
    for (int i = m_movedCount - 1; i >= 0; --i) {
        m_node->MoveLayer(m_camera, i, m_newCamera, m_destination);
    }
    if (wasActive && m_before.GetIndex() >= 0) {
        m_node->SetActiveLayer(m_newCamera, m_before.GetIndex() + m_destination, true);
    }
    return MS::kSuccess;
}

MStatus LayerCommand::MoveAllUndo() {
    for (int i = m_destination + m_movedCount - 1; i >= m_destination; --i) {
        m_node->MoveLayer(m_newCamera, i, m_camera, 0);
    }
    return RestoreActive();
}

// --- what a layer is --------------------------------------------------------------------------------------

template <typename Value, typename Get, typename Set>
MStatus LayerCommand::Exchange(Value& value, Get get, Set set) {
    const auto old = (m_node->*get)(m_camera, m_layerIndex);
    (m_node->*set)(m_camera, m_layerIndex, static_cast<decltype(old)>(value));
    value = static_cast<Value>(old);
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeName() {
    return Exchange(m_layerName, &BaseNode::GetLayerName, &BaseNode::SetLayerName);
}

MStatus LayerCommand::QueryName() {
    setResult(MayaUtil::ToMString(m_node->GetLayerName(m_camera, m_layerIndex)));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeVisibility() {
    return Exchange(m_visible, &BaseNode::IsLayerVisible, &BaseNode::SetLayerVisible);
}

MStatus LayerCommand::QueryVisibility() {
    setResult(m_node->IsLayerVisible(m_camera, m_layerIndex));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeOpacity() {
    return Exchange(m_opacity, &BaseNode::GetLayerOpacity, &BaseNode::SetLayerOpacity);
}

MStatus LayerCommand::QueryOpacity() {
    setResult(static_cast<double>(m_node->GetLayerOpacity(m_camera, m_layerIndex)));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeState() {
    return Exchange(m_stateValue, &BaseNode::GetLayerState, &BaseNode::SetLayerState);
}

MStatus LayerCommand::QueryState() {
    setResult(static_cast<int>(m_node->GetLayerState(m_camera, m_layerIndex)));
    return MS::kSuccess;
}

// The companion tool's files are accepted and nothing is done with them.
MStatus LayerCommand::Import() {
    return MS::kSuccess;
}

} // namespace vellix
