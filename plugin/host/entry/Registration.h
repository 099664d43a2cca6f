#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>

namespace vellix {

// What the plug-in brings to the host. Each function sets the status: success, or the first failure, which it
// has shown as an error and at which it stopped.

void RegisterCommands(MFnPlugin& plugin, MStatus& status);
/// In the reverse order of registration.
void DeregisterCommands(MFnPlugin& plugin, MStatus& status);

void RegisterContextCommands(MFnPlugin& plugin, MStatus& status);
void DeregisterContextCommands(MFnPlugin& plugin, MStatus& status);

void RegisterDataTypes(MFnPlugin& plugin, MStatus& status);
void DeregisterDataTypes(MFnPlugin& plugin, MStatus& status);

void RegisterNodes(MFnPlugin& plugin, MStatus& status);
/// Also cleans up after the node type: see BaseNode::Cleanup.
void DeregisterNodes(MFnPlugin& plugin, MStatus& status);

} // namespace vellix
