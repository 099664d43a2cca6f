#pragma once

#include "mel/CommandRegistry.h"

namespace lightbox::mel {

/// Adds the commands that work on the scene, its files and its plug-ins. Called once when the host starts.
void RegisterSceneCommands(CommandRegistry& registry);

// The groups of commands, one per file. RegisterSceneCommands() calls them all.
void RegisterNodeCommands(CommandRegistry& registry);
void RegisterDagCommands(CommandRegistry& registry);
void RegisterSelectionCommands(CommandRegistry& registry);
void RegisterListCommand(CommandRegistry& registry);
void RegisterGetAttrCommand(CommandRegistry& registry);
void RegisterSetAttrCommand(CommandRegistry& registry);
void RegisterAddAttrCommands(CommandRegistry& registry);
void RegisterAttributeQueryCommands(CommandRegistry& registry);
void RegisterConnectionCommands(CommandRegistry& registry);
void RegisterTransformCommands(CommandRegistry& registry);
void RegisterXformCommand(CommandRegistry& registry);
void RegisterCameraCommand(CommandRegistry& registry);
void RegisterLocatorCommand(CommandRegistry& registry);
void RegisterTimeCommands(CommandRegistry& registry);
void RegisterSetKeyframeCommand(CommandRegistry& registry);
void RegisterKeyframeCommands(CommandRegistry& registry);
void RegisterKeyTangentCommand(CommandRegistry& registry);
void RegisterKeyClipboardCommands(CommandRegistry& registry);
void RegisterUndoCommands(CommandRegistry& registry);
void RegisterFileCommand(CommandRegistry& registry);
void RegisterAutoSaveCommand(CommandRegistry& registry);
void RegisterSceneHeaderCommands(CommandRegistry& registry);
void RegisterReferenceQueryCommand(CommandRegistry& registry);
void RegisterPolygonCommands(CommandRegistry& registry);
void RegisterMaterialCommands(CommandRegistry& registry);
void RegisterViewCommands(CommandRegistry& registry);
void RegisterNamespaceCommands(CommandRegistry& registry);
void RegisterPluginCommands(CommandRegistry& registry);
void RegisterToolCommands(CommandRegistry& registry);

} // namespace lightbox::mel
