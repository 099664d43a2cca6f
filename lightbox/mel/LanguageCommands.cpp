#include "mel/LanguageCommands.h"

#include "mel/Interpreter.h"

namespace lightbox::mel {

void RegisterLanguageCommands(CommandRegistry& registry) {
    RegisterEvaluationCommands(registry);
    RegisterMathCommands(registry);
    RegisterStringCommands(registry);
    RegisterArrayCommands(registry);
    RegisterFileCommands(registry);
    RegisterSystemCommands(registry);
    RegisterSessionCommands(registry);
}

} // namespace lightbox::mel
