#include "mel/Interpreter.h"
#include "openmaya/ApiBridge.h"
#include "openmaya/ContextState.h"
#include "openmaya/NodeTypeSetup.h"
#include "openmaya/PluginCommand.h"
#include "openmaya/PluginHandle.h"
#include "scene/DataType.h"
#include "scene/Host.h"
#include "scene/Plugin.h"
#include "scene/Scene.h"
#include "scene/ScopeExit.h"
#include "scene/ToolContexts.h"
#include "scene/UndoQueue.h"

#include <maya/MFnPlugin.h>
#include <maya/MPxContextCommand.h>
#include <maya/MSyntax.h>

#include <algorithm>
#include <string>
#include <vector>

using lightbox::ApiBridge;
using lightbox::DataType;
using lightbox::Host;
using lightbox::Node;
using lightbox::NodeType;
using lightbox::Plugin;
using lightbox::ScopeExit;

namespace {

Plugin* PluginOf(const MObject& object) {
    const auto handle = std::dynamic_pointer_cast<lightbox::PluginHandle>(ApiBridge::Get(object));
    return handle ? &handle->Get() : nullptr;
}

MStatus NoPlugin() {
    return ApiBridge::Fail(MS::kFailure, "The function set has no plug-in");
}

/// Removes a name from a list of a plug-in's registrations; returns false when it is not in the list.
bool RemoveName(std::vector<std::string>& names, const std::string& name) {
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
        return false;
    }
    names.erase(found);
    return true;
}

bool Holds(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

MString Say(const MObject& object, std::string Plugin::*text, MStatus* status) {
    const Plugin* plugin = PluginOf(object);
    ApiBridge::Report(status, plugin ? MStatus(MS::kSuccess) : NoPlugin());
    return plugin ? ApiBridge::Wrap(plugin->*text) : MString();
}

/// Registers something of a plug-in by `add`, which answers false when it is refused. Its name is listed
/// first: what is registered but not listed, for lack of memory, would outlive the plug-in's code.
template <typename Add>
bool AddListed(std::vector<std::string>& names, const std::string& name, Add add) {
    names.push_back(name);
    bool isAdded = false;
    const ScopeExit forget([&] {
        if (!isAdded) {
            names.pop_back();
        }
    });
    isAdded = add();
    return isAdded;
}

} // namespace

MFnPlugin::MFnPlugin() = default;

MFnPlugin::MFnPlugin(MObject& object, const char* vendor, const char* version, const char* requiredApiVersion,
                     MStatus* ReturnStatus) {
    const MStatus status = MFnBase::setObject(object);
    if (status) {
        Plugin& plugin = *PluginOf(object);
        plugin.vendor = vendor ? vendor : "";
        plugin.version = version ? version : "";
        plugin.apiVersion = requiredApiVersion ? requiredApiVersion : "";
    }
    ApiBridge::Report(ReturnStatus, status);
}

MFn::Type MFnPlugin::type() const {
    return MFn::kPlugin;
}

MString MFnPlugin::vendor(MStatus* ReturnStatus) const {
    return Say(object_, &Plugin::vendor, ReturnStatus);
}
MString MFnPlugin::version(MStatus* ReturnStatus) const {
    return Say(object_, &Plugin::version, ReturnStatus);
}
MString MFnPlugin::apiVersion(MStatus* ReturnStatus) const {
    return Say(object_, &Plugin::apiVersion, ReturnStatus);
}
MString MFnPlugin::name(MStatus* ReturnStatus) const {
    return Say(object_, &Plugin::name, ReturnStatus);
}
MString MFnPlugin::loadPath(MStatus* ReturnStatus) const {
    return Say(object_, &Plugin::path, ReturnStatus);
}

MStatus MFnPlugin::registerCommand(const MString& commandName, MCreatorFunction creatorFunction,
                                   MCreateSyntaxFunction createSyntaxFunction) {
    Plugin* plugin = PluginOf(object_);
    if (!plugin) {
        return NoPlugin();
    }
    const std::string& name = ApiBridge::Text(commandName);
    if (name.empty() || !creatorFunction) {
        return MS::kInvalidParameter;
    }
    lightbox::PluginCommand command{name, creatorFunction, std::nullopt};
    if (createSyntaxFunction) {
        command.syntax = createSyntaxFunction();
    }
    const auto add = [&] { return lightbox::RegisterPluginCommand(command, plugin->name); };
    return AddListed(plugin->commands, name, add)
               ? MStatus(MS::kSuccess)
               : ApiBridge::Fail(MS::kFailure, "The name '" + name + "' is taken");
}

MStatus MFnPlugin::deregisterCommand(const MString& commandName) {
    Plugin* plugin = PluginOf(object_);
    if (!plugin) {
        return NoPlugin();
    }
    const std::string& name = ApiBridge::Text(commandName);
    if (!Holds(plugin->commands, name)) {
        return ApiBridge::Fail(MS::kInvalidParameter,
                               "The plug-in has not registered the command '" + name + "'");
    }
    // Instances on the undo queue use the plug-in's code.
    Host::Get().undo().Flush();
    Host::Get().interpreter().Commands().DeregisterPlugin(name);
    RemoveName(plugin->commands, name);
    return MS::kSuccess;
}

MStatus MFnPlugin::registerContextCommand(const MString& commandName, MCreatorFunction creatorFunction) {
    Plugin* plugin = PluginOf(object_);
    if (!plugin) {
        return NoPlugin();
    }
    const std::string& name = ApiBridge::Text(commandName);
    if (name.empty() || !creatorFunction) {
        return MS::kInvalidParameter;
    }
    const std::unique_ptr<MPxContextCommand> sample(static_cast<MPxContextCommand*>(creatorFunction()));
    if (!sample || sample->appendSyntax().error()) {
        return ApiBridge::Fail(MS::kFailure, "The command '" + name + "' cannot be created");
    }
    const auto add = [&] {
        return lightbox::RegisterPluginCommand(
            {name, creatorFunction, ApiBridge::ContextStateOf(*sample).syntax}, plugin->name);
    };
    return AddListed(plugin->contextCommands, name, add)
               ? MStatus(MS::kSuccess)
               : ApiBridge::Fail(MS::kInvalidParameter, "The name '" + name + "' is taken");
}

MStatus MFnPlugin::deregisterContextCommand(const MString& commandName) {
    Plugin* plugin = PluginOf(object_);
    if (!plugin) {
        return NoPlugin();
    }
    const std::string& name = ApiBridge::Text(commandName);
    if (!RemoveName(plugin->contextCommands, name)) {
        return ApiBridge::Fail(MS::kInvalidParameter,
                               "The plug-in has not registered the command '" + name + "'");
    }
    Host::Get().tools().RemoveMadeBy(name);
    Host::Get().interpreter().Commands().DeregisterPlugin(name);
    return MS::kSuccess;
}

MStatus MFnPlugin::registerData(const MString& typeName, const MTypeId& typeId,
                                MCreatorFunction creatorFunction, MPxData::Type type) {
    Plugin* plugin = PluginOf(object_);
    if (!plugin) {
        return NoPlugin();
    }
    if (typeName.length() == 0 || typeId.id() == 0 || !creatorFunction || type != MPxData::kData) {
        return MS::kInvalidParameter;
    }
    auto dataType = std::make_shared<DataType>();
    dataType->name = ApiBridge::Text(typeName);
    dataType->id = typeId.id();
    dataType->creator = creatorFunction;
    dataType->plugin = plugin->name;
    const auto add = [&] { return Host::Get().scene().types().AddDataType(dataType); };
    return AddListed(plugin->dataTypes, dataType->name, add)
               ? MStatus(MS::kSuccess)
               : ApiBridge::Fail(MS::kFailure, "The data type's name or id is taken");
}

MStatus MFnPlugin::deregisterData(const MTypeId& typeId) {
    Plugin* plugin = PluginOf(object_);
    if (!plugin) {
        return NoPlugin();
    }
    lightbox::TypeRegistry& types = Host::Get().scene().types();
    const auto type = types.FindDataType(typeId.id());
    if (!type || !Holds(plugin->dataTypes, type->name)) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The plug-in has not registered that data type");
    }
    if (type->liveValues > 0) {
        Host::Get().undo().Flush();
    }
    if (type->liveValues > 0) {
        return ApiBridge::Fail(MS::kFailure, "Values of the data type '" + type->name + "' exist");
    }
    types.RemoveDataType(type->name);
    RemoveName(plugin->dataTypes, type->name);
    return MS::kSuccess;
}

MStatus MFnPlugin::registerNode(const MString& typeName, const MTypeId& typeId,
                                MCreatorFunction creatorFunction, MInitializeFunction initializeFunction,
                                MPxNode::Type type, const MString* classification) {
    Plugin* plugin = PluginOf(object_);
    if (!plugin) {
        return NoPlugin();
    }
    const bool isLocator = type == MPxNode::kLocatorNode;
    if (typeName.length() == 0 || typeId.id() == 0 || !creatorFunction ||
        (type != MPxNode::kDependNode && !isLocator)) {
        return MS::kInvalidParameter;
    }
    lightbox::TypeRegistry& types = Host::Get().scene().types();
    const std::string& name = ApiBridge::Text(typeName);
    if (types.FindNodeType(name) || types.FindNodeType(typeId.id())) {
        return ApiBridge::Fail(MS::kFailure, "The node type's name or id is taken");
    }
    auto nodeType = std::make_shared<NodeType>(name, types.FindNodeType(isLocator ? "locator" : "node"),
                                               isLocator ? MFn::kPluginLocatorNode : MFn::kPluginDependNode);
    nodeType->id = typeId.id();
    nodeType->creator = [creatorFunction](Node& node) {
        std::unique_ptr<MPxNode> userNode(static_cast<MPxNode*>(creatorFunction()));
        if (userNode) {
            ApiBridge::Bind(*userNode, &node);
        }
        return userNode;
    };
    nodeType->plugin = plugin->name;
    nodeType->classification = classification ? ApiBridge::Text(*classification) : std::string();
    if (initializeFunction) {
        lightbox::NodeTypeSetup setup(*nodeType);
        MStatus status = initializeFunction();
        if (status.error()) {
            return status;
        }
    }
    AddListed(plugin->nodeTypes, name, [&] { return types.AddNodeType(nodeType); }); // checked above
    return MS::kSuccess;
}

MStatus MFnPlugin::deregisterNode(const MTypeId& typeId) {
    Plugin* plugin = PluginOf(object_);
    if (!plugin) {
        return NoPlugin();
    }
    lightbox::Scene& scene = Host::Get().scene();
    const auto type = scene.types().FindNodeType(typeId.id());
    if (!type || !Holds(plugin->nodeTypes, type->Name())) {
        return ApiBridge::Fail(MS::kInvalidParameter, "The plug-in has not registered that node type");
    }
    const auto nodes = scene.Nodes();
    const bool isUsed = std::any_of(nodes.begin(), nodes.end(),
                                    [&](const auto& node) { return &node->Type() == type.get(); });
    if (!isUsed && type->liveNodes > 0) {
        // The undo queue keeps deleted nodes alive.
        Host::Get().undo().Flush();
    }
    if (isUsed || type->liveNodes > 0) {
        return ApiBridge::Fail(MS::kFailure, "Nodes of the type '" + type->Name() + "' exist");
    }
    scene.types().RemoveNodeType(type->Name());
    RemoveName(plugin->nodeTypes, type->Name());
    return MS::kSuccess;
}
