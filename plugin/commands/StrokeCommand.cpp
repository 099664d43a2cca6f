#include "commands/StrokeCommand.h"

#include "commands/CameraArgument.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>

namespace vellix {

const FlagTable<StrokeCommand>& StrokeCommand::Flags() {
    using Flag = FlagRow<StrokeCommand>;
    static const FlagTable<StrokeCommand> flags({
        Flag("-la", "-layerAdded", {&StrokeCommand::addedLayer_}),
        Flag("-fa", "-frameAdded").Sets(&StrokeCommand::frameAdded_),
    });
    return flags;
}

void* StrokeCommand::Creator() {
    return new StrokeCommand;
}

MSyntax StrokeCommand::CommandSyntax() {
    MSyntax syntax = Flags().GetSyntax();
    // Optional in the syntax only, so that the plug-in's own message reports a missing camera.
    syntax.setObjectType(MSyntax::kStringObjects);
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
    return node != nullptr && commit_->Commit(*node) ? MS::kSuccess : MS::kFailure;
}

MStatus StrokeCommand::redoIt() {
    return Exchange(&StrokeCommit::Redo);
}

MStatus StrokeCommand::undoIt() {
    return Exchange(&StrokeCommit::Undo);
}

MStatus StrokeCommand::Exchange(bool (StrokeCommit::*step)(BaseNode& node)) {
    BaseNode* node = BaseNode::GetMaster();
    return node != nullptr && (commit_.get()->*step)(*node) ? MS::kSuccess : MS::kFailure;
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
    Flags().Read(*this, arguments);
    commit_ = std::make_unique<StrokeCommit>(camera, addedLayer_ >= 0, frameAdded_);
    return MS::kSuccess;
}

} // namespace vellix
