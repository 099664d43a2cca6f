#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>

namespace vellix {

// Registers the plug-in's commands, contexts, data types and nodes with the host. Each function stops at the
// first failure, displays it as an error and sets `status` to it. What is not registered is not deregistered,
// so that the second half can follow any end of the first.

void RegisterCommands(MFnPlugin& plugin, MStatus& status);
/// In the reverse order of registration.
void DeregisterCommands(MFnPlugin& plugin, MStatus& status);

void RegisterContextCommands(MFnPlugin& plugin, MStatus& status);
void DeregisterContextCommands(MFnPlugin& plugin, MStatus& status);

void RegisterDataTypes(MFnPlugin& plugin, MStatus& status);
void DeregisterDataTypes(MFnPlugin& plugin, MStatus& status);

void RegisterNodes(MFnPlugin& plugin, MStatus& status);
/// Also releases the node type's static data: see BaseNode::Cleanup.
void DeregisterNodes(MFnPlugin& plugin, MStatus& status);

} // namespace vellix
