#include "mel/Registration.h"

#include "mel/Interpreter.h"

namespace lightbox::mel {

void RegisterLanguageCommands(CommandRegistry& registry) {
    RegisterEvaluationCommands(registry);
    RegisterMathCommands(registry);
    RegisterRandomCommands(registry);
    RegisterStringCommands(registry);
    RegisterArrayCommands(registry);
    RegisterDiskFileCommands(registry);
    RegisterSystemCommands(registry);
    RegisterWorkspaceCommand(registry);
    RegisterSessionCommands(registry);
}

} // namespace lightbox::mel
