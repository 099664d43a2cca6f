#include "commands/StrokeCommand.h"

#include "commands/CameraArgument.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>

namespace vellix {

namespace {

const char* const LAYER_ADDED_FLAG = "-la";
const char* const FRAME_ADDED_FLAG = "-fa";

} // namespace

void* StrokeCommand::Creator() {
    return new StrokeCommand;
}

MSyntax StrokeCommand::CommandSyntax() {
    MSyntax syntax;
    syntax.addFlag(LAYER_ADDED_FLAG, "-layerAdded", MSyntax::kLong);
    syntax.addFlag(FRAME_ADDED_FLAG, "-frameAdded", MSyntax::kNoArg);
    // The camera is needed; that it is missing is said in the plug-in's own words.
    syntax.setObjectType(MSyntax::kStringObjects);
    syntax.enableQuery(false);
    syntax.enableEdit(false);
    return syntax;
}

MString StrokeCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::STROKE_COMMAND_NAME);
}

MStatus StrokeCommand::doIt(const MArgList& args) {
    MStatus status = ParseArguments(args);
    if (!status) {
        return status;
    }
    BaseNode* node = BaseNode::GetMaster();
    return node != nullptr && m_commit->Commit(*node) ? MS::kSuccess : MS::kFailure;
}

MStatus StrokeCommand::redoIt() {
    return Exchange(&StrokeCommit::Redo);
}

MStatus StrokeCommand::undoIt() {
    return Exchange(&StrokeCommit::Undo);
}

MStatus StrokeCommand::Exchange(bool (StrokeCommit::*step)(BaseNode& node)) {
    BaseNode* node = BaseNode::GetMaster();
    return node != nullptr && (m_commit.get()->*step)(*node) ? MS::kSuccess : MS::kFailure;
}

bool StrokeCommand::isUndoable() const {
    return true;
}

MStatus StrokeCommand::ParseArguments(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return status;
    }
    const QString camera = CameraArgument::Require(arguments);
    if (camera.isEmpty()) {
        return MS::kFailure;
    }
    int layerAdded = -1;
    if (arguments.isFlagSet(LAYER_ADDED_FLAG)) {
        arguments.getFlagArgument(LAYER_ADDED_FLAG, 0, layerAdded);
    }
    m_commit = std::make_unique<StrokeCommit>(camera, layerAdded, arguments.isFlagSet(FRAME_ADDED_FLAG));
    return MS::kSuccess;
}

} // namespace vellix
