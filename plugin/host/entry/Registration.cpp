#include "host/entry/Registration.h"

#include "commands/ExportCommand.h"
#include "commands/FrameCommand.h"
#include "commands/LayerCommand.h"
#include "commands/NodeCommand.h"
#include "commands/ReplayCommand.h"
#include "commands/StrokeCommand.h"
#include "commands/UtilCommand.h"
#include "host/entry/GuardedCommand.h"
#include "node/BaseNode.h"
#include "node/BaseNodeDrawOverride.h"
#include "node/BaseNodeLayerData.h"
#include "tools/DrawContextCommand.h"
#include "tools/TransformContextCommand.h"

#include <maya/MApiNamespace.h>
#include <maya/MDrawRegistry.h>
// This header defines the version string, which only the file with the entry points may contain.
#define MNoVersionString
#define MNoPluginEntry
#include <maya/MFnPlugin.h>
#include <maya/MGlobal.h>

#include <vector>

namespace vellix {

namespace {

struct CommandEntry {
    MString name;
    MCreatorFunction creator;
    MCreateSyntaxFunction syntax;
};

template <typename Command>
CommandEntry Describe() {
    return {Command::GetCommandName(), GuardedCommand<Command>::Creator,
            GuardedCommand<Command>::CommandSyntax};
}

/// Every command, in the order of registration. Add new commands here.
std::vector<CommandEntry> GetCommands() {
    return {
        Describe<NodeCommand>(),   Describe<LayerCommand>(), Describe<FrameCommand>(),
        Describe<StrokeCommand>(), Describe<UtilCommand>(),  Describe<ReplayCommand>(),
        Describe<ExportCommand>(),
    };
}

struct ContextCommandEntry {
    MString name;
    MCreatorFunction creator;
};

/// Every tool context command, in the order of registration.
std::vector<ContextCommandEntry> GetContextCommands() {
    return {
        {DrawContextCommand::GetCommandName(), DrawContextCommand::Creator},
        {TransformContextCommand::GetCommandName(), TransformContextCommand::Creator},
    };
}

void ShowFailure(const char* what, const MString& name, const char* kind, const MStatus& status) {
    MGlobal::displayError(MString("Failed to ") + what + " '" + name + "' " + kind + ": " +
                          status.errorString());
}

} // namespace

void RegisterCommands(MFnPlugin& plugin, MStatus& status) {
    status = MS::kSuccess;
    for (const CommandEntry& command : GetCommands()) {
        status = plugin.registerCommand(command.name, command.creator, command.syntax);
        if (!status) {
            ShowFailure("register", command.name, "command", status);
            return;
        }
    }
}

void DeregisterCommands(MFnPlugin& plugin, MStatus& status) {
    status = MS::kSuccess;
    const std::vector<CommandEntry> commands = GetCommands();
    for (auto command = commands.rbegin(); command != commands.rend(); ++command) {
        status = plugin.deregisterCommand(command->name);
        if (!status) {
            ShowFailure("deregister", command->name, "command", status);
            return;
        }
    }
}

void RegisterContextCommands(MFnPlugin& plugin, MStatus& status) {
    status = MS::kSuccess;
    for (const ContextCommandEntry& command : GetContextCommands()) {
        status = plugin.registerContextCommand(command.name, command.creator);
        if (!status) {
            ShowFailure("register", command.name, "contextCommand", status);
            return;
        }
    }
}

void DeregisterContextCommands(MFnPlugin& plugin, MStatus& status) {
    status = MS::kSuccess;
    const std::vector<ContextCommandEntry> commands = GetContextCommands();
    for (auto command = commands.rbegin(); command != commands.rend(); ++command) {
        status = plugin.deregisterContextCommand(command->name);
        if (!status) {
            ShowFailure("deregister", command->name, "contextCommand", status);
            return;
        }
    }
}

void RegisterDataTypes(MFnPlugin& plugin, MStatus& status) {
    status = plugin.registerData(BaseNodeLayerData::GetTypeName(), BaseNodeLayerData::GetTypeID(),
                                 BaseNodeLayerData::Creator);
    if (!status) {
        MGlobal::displayError(MString("Could not register '") + BaseNodeLayerData::GetTypeName());
    }
}

void DeregisterDataTypes(MFnPlugin& plugin, MStatus& status) {
    status = plugin.deregisterData(BaseNodeLayerData::GetTypeID());
    if (!status) {
        MGlobal::displayError(MString("Could not deregister ") + BaseNodeLayerData::GetTypeName());
    }
}

void RegisterNodes(MFnPlugin& plugin, MStatus& status) {
    const MString classification = BaseNode::GetDrawDbClassification();
    status = plugin.registerNode(BaseNode::GetTypeName(), BaseNode::GetTypeID(), BaseNode::Creator,
                                 BaseNode::Initialize, MPxNode::kLocatorNode, &classification);
    if (!status) {
        MGlobal::displayError("Failed to register base node");
        return;
    }
    status = MHWRender::MDrawRegistry::registerDrawOverrideCreator(
        classification, BaseNode::GetDrawRegistrationId(), BaseNodeDrawOverride::Creator);
    if (!status) {
        MGlobal::displayError("Failed to register draw node override");
    }
}

void DeregisterNodes(MFnPlugin& plugin, MStatus& status) {
    status = MHWRender::MDrawRegistry::deregisterDrawOverrideCreator(BaseNode::GetDrawDbClassification(),
                                                                     BaseNode::GetDrawRegistrationId());
    if (!status) {
        MGlobal::displayError("Failed to deregister base node draw override");
        return;
    }
    status = plugin.deregisterNode(BaseNode::GetTypeID());
    if (!status) {
        MGlobal::displayError("Failed to deregister base node");
        return;
    }
    status = BaseNode::Cleanup();
}

} // namespace vellix
