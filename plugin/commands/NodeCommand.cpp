#include "commands/NodeCommand.h"

#include "commands/FlagArgument.h"
#include "core/FrameRange.h"
#include "core/LayerState.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>

namespace vellix {

namespace {

const char* const EXISTS_FLAG = "-ex";
const char* const REFRESH_FLAG = "-r";
const char* const REFRESH_GHOSTING_FLAG = "-rg";
const char* const LAYER_FLAG = "-l";
const char* const CAMERA_FLAG = "-c";
const char* const LAYER_NAME_FLAG = "-ln";
const char* const LAYER_STATE_FLAG = "-ls";
const char* const FRAME_FLAG = "-f";

} // namespace

void* NodeCommand::Creator() {
    return new NodeCommand;
}

MSyntax NodeCommand::CommandSyntax() {
    MSyntax syntax;
    syntax.addFlag(EXISTS_FLAG, "-exists", MSyntax::kNoArg);
    syntax.addFlag(REFRESH_FLAG, "-refresh", MSyntax::kNoArg);
    syntax.addFlag(REFRESH_GHOSTING_FLAG, "-refreshGhosting", MSyntax::kNoArg);
    syntax.addFlag(LAYER_FLAG, "-layer", MSyntax::kNoArg);
    syntax.addFlag(CAMERA_FLAG, "-camera", MSyntax::kString);
    syntax.addFlag(LAYER_NAME_FLAG, "-layerName", MSyntax::kString);
    syntax.addFlag(LAYER_STATE_FLAG, "-layerState", MSyntax::kUnsigned);
    syntax.addFlag(FRAME_FLAG, "-frame", MSyntax::kNoArg);
    syntax.enableQuery(true);
    syntax.enableEdit(true);
    return syntax;
}

MString NodeCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::NODE_COMMAND_NAME);
}

MStatus NodeCommand::doIt(const MArgList& args) {
    MStatus status = ParseArguments(args);
    if (!status) {
        return status;
    }
    status = redoIt();
    if (status) {
        m_hasRun = true;
    }
    return status;
}

MStatus NodeCommand::redoIt() {
    if (m_edit) {
        Logger::Error("Invalid edit parameter");
        return MS::kInvalidParameter;
    }
    if (m_query) {
        return Query();
    }
    BaseNode* node = BaseNode::GetMaster();
    if (m_exists) {
        setResult(node != nullptr);
        return MS::kSuccess;
    }
    if (m_refresh || m_refreshGhosting) {
        if (node == nullptr) {
            return MS::kFailure;
        }
        if (m_refresh) {
            node->RefreshActiveCamera();
        } else {
            node->UpdateGhosting();
        }
        return MS::kSuccess;
    }
    m_undoable = true;
    return CreateNode();
}

MStatus NodeCommand::undoIt() {
    m_creation.Undo();
    BaseNode::UpdatePlaybackTime();
    BaseNode::UpdateTimeControlOverlay();
    BaseNode::ClearLayerManagerDialog();
    return MS::kSuccess;
}

bool NodeCommand::isUndoable() const {
    return m_undoable;
}

MStatus NodeCommand::ParseArguments(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return status;
    }
    m_edit = arguments.isEdit();
    m_query = arguments.isQuery();
    if (m_query) {
        m_queryCamera = arguments.isFlagSet(CAMERA_FLAG);
        return MS::kSuccess;
    }
    if (arguments.isFlagSet(EXISTS_FLAG)) {
        m_exists = true;
    } else if (arguments.isFlagSet(REFRESH_FLAG)) {
        m_refresh = true;
    } else if (arguments.isFlagSet(REFRESH_GHOSTING_FLAG)) {
        m_refreshGhosting = true;
    }
    m_layer = arguments.isFlagSet(LAYER_FLAG);
    if (m_layer) {
        m_camera = FlagArgument::String(arguments, CAMERA_FLAG);
        m_layerName = FlagArgument::String(arguments, LAYER_NAME_FLAG);
        if (arguments.isFlagSet(LAYER_STATE_FLAG)) {
            unsigned int state = 0;
            arguments.getFlagArgument(LAYER_STATE_FLAG, 0, state);
            m_layerState = IsLayerState(state) ? static_cast<int>(state) : 0;
        }
    }
    m_frame = arguments.isFlagSet(FRAME_FLAG);
    return MS::kSuccess;
}

MStatus NodeCommand::Query() {
    if (!m_queryCamera) {
        Logger::Error("Invalid query parameter");
        return MS::kInvalidParameter;
    }
    const BaseNode* node = BaseNode::GetMaster();
    if (node == nullptr) {
        return MS::kFailure;
    }
    setResult(MayaUtil::ToMString(node->GetActiveCamera()));
    return MS::kSuccess;
}

MStatus NodeCommand::CreateNode() {
    if (BaseNode::GetMaster() != nullptr) {
        Logger::Error("Node already exists");
        return MS::kFailure;
    }
    if (m_layer && m_frame && !FrameRange::FromTimeSlider().CanBeFilled()) {
        Logger::Error(QString("Cannot insert more than %1 frames").arg(int(FrameRange::MOST_FRAMES)));
        return MS::kFailure;
    }
    MStatus created = m_creation.Do();
    if (!created) {
        return created;
    }
    BaseNode* node = BaseNode::GetMaster();
    if (m_layer && node != nullptr) {
        if (!m_hasRun) {
            AddFirstLayer(*node);
        }
        RefreshPanels(*node);
    }
    return MS::kSuccess;
}

void NodeCommand::AddFirstLayer(BaseNode& node) {
    const QString camera = m_camera.isEmpty() ? MayaUtil::GetActive3dViewCameraName() : m_camera;
    if (camera.isEmpty() || node.LayerCount(camera) > 0) {
        return;
    }
    const int index = node.InsertLayer(camera, -1, m_layerName);
    if (index < 0) {
        return;
    }
    if (m_layerState >= 0) {
        node.SetLayerState(camera, index, static_cast<LayerState>(m_layerState));
    }
    if (m_frame) {
        AddFrames(node, camera);
    }
}

void NodeCommand::AddFrames(BaseNode& node, const QString& camera) {
    const FrameRange range = FrameRange::FromTimeSlider();
    for (int time = range.start; time < range.end; ++time) {
        node.AddFrame(camera, FromWholeFrames(time));
    }
}

void NodeCommand::RefreshPanels(const BaseNode& node) {
    // The panel is refreshed by a deferred command; without a panel there is nothing to wait for.
    if (DialogManager::HasLayerManagerDialog()) {
        MayaUtil::RefreshLayerManagerDialog();
    }
    BaseNode::UpdateTimeControlOverlay();
    MayaUtil::RefreshTimeControl(node.thisMObject());
}

} // namespace vellix
