#include "commands/Registration.h"

namespace lightbox::mel {

void RegisterSceneCommands(CommandRegistry& registry) {
    RegisterNodeCommands(registry);
    RegisterDagCommands(registry);
    RegisterSelectionCommands(registry);
    RegisterListCommand(registry);
    RegisterGetAttrCommand(registry);
    RegisterSetAttrCommand(registry);
    RegisterAddAttrCommands(registry);
    RegisterAttributeQueryCommands(registry);
    RegisterConnectionCommands(registry);
    RegisterTransformCommands(registry);
    RegisterXformCommand(registry);
    RegisterCameraCommand(registry);
    RegisterLocatorCommand(registry);
    RegisterTimeCommands(registry);
    RegisterSetKeyframeCommand(registry);
    RegisterKeyframeCommands(registry);
    RegisterKeyTangentCommand(registry);
    RegisterKeyClipboardCommands(registry);
    RegisterUndoCommands(registry);
    RegisterFileCommand(registry);
    RegisterAutoSaveCommand(registry);
    RegisterSceneHeaderCommands(registry);
    RegisterReferenceQueryCommand(registry);
    RegisterPolygonCommands(registry);
    RegisterMaterialCommands(registry);
    RegisterViewCommands(registry);
    RegisterNamespaceCommands(registry);
    RegisterPluginCommands(registry);
    RegisterToolCommands(registry);
}

} // namespace lightbox::mel
