#include "commands/LayerCommand.h"

#include "commands/CameraArgument.h"
#include "commands/FlagArgument.h"
#include "core/Layer.h"
#include "core/LayerState.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>

#include <memory>

namespace vellix {

// The first operation of the table whose flag is given is the one that is done.
const LayerCommand::Operation LayerCommand::OPERATIONS[] = {
    {"-cnt", &LayerCommand::ReadNothing, &LayerCommand::Count, nullptr},
    {"-add", &LayerCommand::ReadNewLayer, &LayerCommand::Add, &LayerCommand::InsertUndo},
    {"-ins", &LayerCommand::ReadInsert, &LayerCommand::Insert, &LayerCommand::InsertUndo},
    {"-del", &LayerCommand::ReadIndex, &LayerCommand::Delete, &LayerCommand::DeleteUndo},
    {"-da", &LayerCommand::ReadNothing, &LayerCommand::DeleteAll, &LayerCommand::DeleteAllUndo},
    {"-mv", &LayerCommand::ReadMove, &LayerCommand::Move, &LayerCommand::MoveUndo},
    {"-mva", &LayerCommand::ReadMoveAll, &LayerCommand::MoveAll, &LayerCommand::MoveAllUndo},
    {"-en", &LayerCommand::ReadName, &LayerCommand::ExchangeName, &LayerCommand::ExchangeName},
    {"-qn", &LayerCommand::ReadIndex, &LayerCommand::QueryName, nullptr},
    {"-ev", &LayerCommand::ReadVisibility, &LayerCommand::ExchangeVisibility,
     &LayerCommand::ExchangeVisibility},
    {"-qv", &LayerCommand::ReadIndex, &LayerCommand::QueryVisibility, nullptr},
    {"-eo", &LayerCommand::ReadOpacity, &LayerCommand::ExchangeOpacity, &LayerCommand::ExchangeOpacity},
    {"-qo", &LayerCommand::ReadIndex, &LayerCommand::QueryOpacity, nullptr},
    {"-es", &LayerCommand::ReadState, &LayerCommand::ExchangeState, &LayerCommand::ExchangeState},
    {"-qs", &LayerCommand::ReadIndex, &LayerCommand::QueryState, nullptr},
    {"-itv", &LayerCommand::ReadNothing, &LayerCommand::Import, nullptr},
};
const LayerCommand::Operation LayerCommand::EDIT_ACTIVE = {
    "-act", &LayerCommand::ReadIndex, &LayerCommand::EditActive, &LayerCommand::RestoreActive};
const LayerCommand::Operation LayerCommand::QUERY_ACTIVE = {"-act", &LayerCommand::ReadNothing,
                                                            &LayerCommand::QueryActive, nullptr};

LayerCommand::~LayerCommand() {
    qDeleteAll(m_removedLayers);
}

void* LayerCommand::Creator() {
    return new LayerCommand();
}

MString LayerCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::LAYER_COMMAND_NAME);
}

MSyntax LayerCommand::CommandSyntax() {
    MSyntax syntax;
    syntax.enableQuery(true);
    syntax.enableEdit(true);
    // The camera is needed; that it is missing is said in the plug-in's own words.
    syntax.setObjectType(MSyntax::kStringObjects);
    syntax.addFlag("-cnt", "-count");
    syntax.addFlag("-act", "-active", MSyntax::kUnsigned);
    syntax.addFlag("-add", "-addLayer");
    syntax.addFlag("-ins", "-insert", MSyntax::kLong);
    syntax.addFlag("-del", "-delete", MSyntax::kUnsigned);
    syntax.addFlag("-da", "-deleteAll");
    syntax.addFlag("-mv", "-move", MSyntax::kUnsigned, MSyntax::kLong);
    syntax.addFlag("-mva", "-moveAll", MSyntax::kString);
    syntax.addFlag("-n", "-name", MSyntax::kString);
    syntax.addFlag("-nc", "-newCamera", MSyntax::kString);
    syntax.addFlag("-en", "editName", MSyntax::kString, MSyntax::kUnsigned);
    syntax.addFlag("-qn", "queryName", MSyntax::kUnsigned);
    syntax.addFlag("-ev", "editVis", MSyntax::kBoolean, MSyntax::kUnsigned);
    syntax.addFlag("-qv", "queryVis", MSyntax::kUnsigned);
    syntax.addFlag("-eo", "editOpacity", MSyntax::kDouble, MSyntax::kUnsigned);
    syntax.addFlag("-qo", "queryOpacity", MSyntax::kUnsigned);
    syntax.addFlag("-es", "editState", MSyntax::kUnsigned, MSyntax::kUnsigned);
    syntax.addFlag("-qs", "queryState", MSyntax::kUnsigned);
    syntax.addFlag("-ls", "layerState", MSyntax::kUnsigned);
    syntax.addFlag("-itv", "importTavlo", MSyntax::kString, MSyntax::kString);
    return syntax;
}

// --- reading the arguments --------------------------------------------------------------------------------

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
    const bool active = arguments.isFlagSet("-act");
    if (arguments.isEdit() || arguments.isQuery()) {
        m_refusal = arguments.isEdit() ? "Invalid edit parameter" : "Invalid query parameter";
        if (active) {
            m_operation = arguments.isEdit() ? &EDIT_ACTIVE : &QUERY_ACTIVE;
        }
    } else if (!active) {
        for (const Operation& operation : OPERATIONS) {
            if (arguments.isFlagSet(operation.flag)) {
                m_operation = &operation;
                break;
            }
        }
    }
    if (m_operation) {
        (this->*m_operation->read)(arguments);
    }
    return MS::kSuccess;
}

void LayerCommand::ReadNothing(const MArgDatabase&) {}

void LayerCommand::ReadIndex(const MArgDatabase& arguments) {
    m_layerIndex = FlagArgument::Int(arguments, m_operation->flag, 0, -1);
}

void LayerCommand::ReadNewLayer(const MArgDatabase& arguments) {
    m_layerName = FlagArgument::String(arguments, "-n");
    if (arguments.isFlagSet("-ls")) {
        const int state = FlagArgument::Int(arguments, "-ls", 0, 0);
        m_layerState = IsLayerState(state) ? state : 0;
    }
}

void LayerCommand::ReadInsert(const MArgDatabase& arguments) {
    m_destination = FlagArgument::Int(arguments, "-ins", 0, -1);
    ReadNewLayer(arguments);
}

void LayerCommand::ReadMove(const MArgDatabase& arguments) {
    m_layerIndex = FlagArgument::Int(arguments, "-mv", 0, -1);
    m_destination = FlagArgument::Int(arguments, "-mv", 1, -1);
    m_newCamera = FlagArgument::String(arguments, "-nc");
}

void LayerCommand::ReadMoveAll(const MArgDatabase& arguments) {
    m_newCamera = FlagArgument::String(arguments, "-mva");
}

void LayerCommand::ReadName(const MArgDatabase& arguments) {
    m_layerName = FlagArgument::String(arguments, "-en");
    m_layerIndex = FlagArgument::Int(arguments, "-en", 1, -1);
}

void LayerCommand::ReadVisibility(const MArgDatabase& arguments) {
    m_visible = arguments.flagArgumentBool("-ev", 0);
    m_layerIndex = FlagArgument::Int(arguments, "-ev", 1, -1);
}

void LayerCommand::ReadOpacity(const MArgDatabase& arguments) {
    m_opacity = arguments.flagArgumentDouble("-eo", 0);
    m_layerIndex = FlagArgument::Int(arguments, "-eo", 1, -1);
}

void LayerCommand::ReadState(const MArgDatabase& arguments) {
    m_stateValue = FlagArgument::Int(arguments, "-es", 0, -1);
    m_layerIndex = FlagArgument::Int(arguments, "-es", 1, -1);
}

// --- doing ------------------------------------------------------------------------------------------------

MStatus LayerCommand::doIt(const MArgList& args) {
    const MStatus status = Parse(args);
    return status ? redoIt() : status;
}

MStatus LayerCommand::redoIt() {
    m_node = BaseNode::GetMaster();
    const bool makesLayer = m_operation && (m_operation->redo == &LayerCommand::Add ||
                                            m_operation->redo == &LayerCommand::Insert);
    if (!m_node && !makesLayer) {
        Logger::Error("Node not found");
        return MS::kFailure;
    }
    if (!m_operation) {
        Logger::Error(m_refusal);
        return MS::kInvalidParameter;
    }
    m_undoable = m_operation->undo != nullptr;
    return Run(m_operation->redo);
}

MStatus LayerCommand::undoIt() {
    m_node = BaseNode::GetMaster();
    if (!m_node || !m_operation->undo) {
        return MS::kFailure;
    }
    return Run(m_operation->undo);
}

MStatus LayerCommand::Run(Step step) {
    return (this->*step)();
}

bool LayerCommand::CheckLayer() const {
    if (m_node->LayerExists(m_camera, m_layerIndex)) {
        return true;
    }
    Logger::Error(
        QString("Layer does not exist for camera (index): %1 (%2)").arg(m_camera).arg(m_layerIndex));
    return false;
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
    m_node->SetLayerState(m_camera, m_resultIndex, static_cast<LayerState>(m_layerState));
    setResult(m_resultIndex);
    return MS::kSuccess;
}

MStatus LayerCommand::Add() {
    if (!m_node) {
        Logger::Error("Failed to add layer. Node does not exist.");
        return MS::kFailure;
    }
    MStatus status = InsertNewLayer(-1);
    if (status) {
        m_node->SetActiveLayer(m_camera, m_resultIndex, true);
    }
    return status;
}

MStatus LayerCommand::Insert() {
    if (!m_node) {
        Logger::Error("Failed to insert layer. Node does not exist.");
        return MS::kFailure;
    }
    return InsertNewLayer(m_destination);
}

MStatus LayerCommand::InsertUndo() {
    const std::unique_ptr<Layer> removed(m_node->RemoveLayer(m_camera, m_resultIndex));
    if (!removed) {
        return MS::kFailure;
    }
    return RestoreActive();
}

// --- deleting ---------------------------------------------------------------------------------------------

MStatus LayerCommand::Delete() {
    m_before.Remember(*m_node, {m_camera});
    Layer* const removed = m_node->RemoveLayer(m_camera, m_layerIndex);
    if (!removed) {
        return MS::kFailure;
    }
    m_removedLayers.append(removed);
    return MS::kSuccess;
}

MStatus LayerCommand::DeleteUndo() {
    if (m_removedLayers.isEmpty()) {
        return MS::kFailure;
    }
    if (m_node->InsertLayer(m_camera, m_layerIndex, m_removedLayers.takeFirst()) < 0) {
        return MS::kFailure;
    }
    return RestoreActive();
}

MStatus LayerCommand::DeleteAll() {
    m_before.Remember(*m_node, {m_camera});
    m_node->RemoveAllLayers(m_camera, m_removedLayers);
    return MS::kSuccess;
}

MStatus LayerCommand::DeleteAllUndo() {
    for (int i = 0; !m_removedLayers.isEmpty(); ++i) {
        if (m_node->InsertLayer(m_camera, i, m_removedLayers.takeFirst()) < 0) {
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

MStatus LayerCommand::ExchangeName() {
    if (!CheckLayer()) {
        return MS::kFailure;
    }
    const QString old = m_node->GetLayerName(m_camera, m_layerIndex);
    m_node->SetLayerName(m_camera, m_layerIndex, m_layerName);
    m_layerName = old;
    return MS::kSuccess;
}

MStatus LayerCommand::QueryName() {
    if (!CheckLayer()) {
        return MS::kFailure;
    }
    setResult(MayaUtil::ToMString(m_node->GetLayerName(m_camera, m_layerIndex)));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeVisibility() {
    if (!CheckLayer()) {
        return MS::kFailure;
    }
    const bool old = m_node->IsLayerVisible(m_camera, m_layerIndex);
    m_node->SetLayerVisible(m_camera, m_layerIndex, m_visible);
    m_visible = old;
    return MS::kSuccess;
}

MStatus LayerCommand::QueryVisibility() {
    if (!CheckLayer()) {
        return MS::kFailure;
    }
    setResult(m_node->IsLayerVisible(m_camera, m_layerIndex));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeOpacity() {
    if (!CheckLayer()) {
        return MS::kFailure;
    }
    const float old = m_node->GetLayerOpacity(m_camera, m_layerIndex);
    m_node->SetLayerOpacity(m_camera, m_layerIndex, static_cast<float>(m_opacity));
    m_opacity = old;
    return MS::kSuccess;
}

MStatus LayerCommand::QueryOpacity() {
    if (!CheckLayer()) {
        return MS::kFailure;
    }
    setResult(static_cast<double>(m_node->GetLayerOpacity(m_camera, m_layerIndex)));
    return MS::kSuccess;
}

MStatus LayerCommand::ExchangeState() {
    if (!IsLayerState(m_stateValue)) {
        Logger::Error(QString("Invalid state value: %1").arg(m_stateValue));
        return MS::kFailure;
    }
    if (!CheckLayer()) {
        return MS::kFailure;
    }
    const int old = static_cast<int>(m_node->GetLayerState(m_camera, m_layerIndex));
    m_node->SetLayerState(m_camera, m_layerIndex, static_cast<LayerState>(m_stateValue));
    m_stateValue = old;
    return MS::kSuccess;
}

MStatus LayerCommand::QueryState() {
    if (!CheckLayer()) {
        return MS::kFailure;
    }
    setResult(static_cast<int>(m_node->GetLayerState(m_camera, m_layerIndex)));
    return MS::kSuccess;
}

// The companion tool's files are accepted and nothing is done with them.
MStatus LayerCommand::Import() {
    return MS::kSuccess;
}

} // namespace vellix
