#include "host/entry/Registration.h"

#include "commands/ExportCommand.h"
#include "commands/FrameCommand.h"
#include "commands/ImportCommand.h"
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

#include <cstddef>
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
        Describe<NodeCommand>(),   Describe<LayerCommand>(),  Describe<FrameCommand>(),
        Describe<StrokeCommand>(), Describe<UtilCommand>(),   Describe<ReplayCommand>(),
        Describe<ExportCommand>(), Describe<ImportCommand>(),
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

/// What the host knows of the plug-in. A loading that fails half way takes back so much, and an unloading
/// that failed goes on from there.
struct Registered {
    std::size_t commands = 0;
    std::size_t contextCommands = 0;
    bool dataType = false;
    bool node = false;
    bool drawOverride = false;
};

Registered g_registered;

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
        ++g_registered.commands;
    }
}

void DeregisterCommands(MFnPlugin& plugin, MStatus& status) {
    status = MS::kSuccess;
    const std::vector<CommandEntry> commands = GetCommands();
    for (std::size_t& left = g_registered.commands; left > 0; --left) {
        const MString& name = commands[left - 1].name;
        status = plugin.deregisterCommand(name);
        if (!status) {
            ShowFailure("deregister", name, "command", status);
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
        ++g_registered.contextCommands;
    }
}

void DeregisterContextCommands(MFnPlugin& plugin, MStatus& status) {
    status = MS::kSuccess;
    const std::vector<ContextCommandEntry> commands = GetContextCommands();
    for (std::size_t& left = g_registered.contextCommands; left > 0; --left) {
        const MString& name = commands[left - 1].name;
        status = plugin.deregisterContextCommand(name);
        if (!status) {
            ShowFailure("deregister", name, "contextCommand", status);
            return;
        }
    }
}

void RegisterDataTypes(MFnPlugin& plugin, MStatus& status) {
    status = plugin.registerData(BaseNodeLayerData::GetTypeName(), BaseNodeLayerData::GetTypeID(),
                                 BaseNodeLayerData::Creator);
    g_registered.dataType = bool(status);
    if (!status) {
        MGlobal::displayError(MString("Could not register '") + BaseNodeLayerData::GetTypeName());
    }
}

void DeregisterDataTypes(MFnPlugin& plugin, MStatus& status) {
    status = MS::kSuccess;
    if (g_registered.dataType) {
        status = plugin.deregisterData(BaseNodeLayerData::GetTypeID());
        g_registered.dataType = !status;
    }
    if (!status) {
        MGlobal::displayError(MString("Could not deregister ") + BaseNodeLayerData::GetTypeName());
    }
}

void RegisterNodes(MFnPlugin& plugin, MStatus& status) {
    const MString classification = BaseNode::GetDrawDbClassification();
    status = plugin.registerNode(BaseNode::GetTypeName(), BaseNode::GetTypeID(), BaseNode::Creator,
                                 BaseNode::Initialize, MPxNode::kLocatorNode, &classification);
    g_registered.node = bool(status);
    if (!status) {
        MGlobal::displayError("Failed to register base node");
        return;
    }
    status = MHWRender::MDrawRegistry::registerDrawOverrideCreator(
        classification, BaseNode::GetDrawRegistrationId(), BaseNodeDrawOverride::Creator);
    g_registered.drawOverride = bool(status);
    if (!status) {
        MGlobal::displayError("Failed to register draw node override");
    }
}

void DeregisterNodes(MFnPlugin& plugin, MStatus& status) {
    if (g_registered.drawOverride) {
        status = MHWRender::MDrawRegistry::deregisterDrawOverrideCreator(BaseNode::GetDrawDbClassification(),
                                                                         BaseNode::GetDrawRegistrationId());
        if (!status) {
            MGlobal::displayError("Failed to deregister base node draw override");
            return;
        }
        g_registered.drawOverride = false;
    }
    if (g_registered.node) {
        status = plugin.deregisterNode(BaseNode::GetTypeID());
        if (!status) {
            MGlobal::displayError("Failed to deregister base node");
            return;
        }
        g_registered.node = false;
    }
    status = BaseNode::Cleanup();
}

} // namespace vellix
