#include "mel/SceneCommands.h"

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
    RegisterTimeCommands(registry);
    RegisterUndoCommands(registry);
    RegisterFileCommand(registry);
    RegisterSceneFileCommands(registry);
    RegisterNamespaceCommands(registry);
    RegisterPluginCommands(registry);
}

} // namespace lightbox::mel
