#pragma once

namespace lightbox::mel {

class CommandRegistry;

// Register the commands that need no scene, by topic. RegisterLanguageCommands() calls them all.
void RegisterEvaluationCommands(CommandRegistry& registry);
void RegisterMathCommands(CommandRegistry& registry);
void RegisterRandomCommands(CommandRegistry& registry);
void RegisterStringCommands(CommandRegistry& registry);
void RegisterArrayCommands(CommandRegistry& registry);
void RegisterDiskFileCommands(CommandRegistry& registry);
void RegisterSystemCommands(CommandRegistry& registry);
void RegisterWorkspaceCommand(CommandRegistry& registry);
void RegisterSessionCommands(CommandRegistry& registry);

} // namespace lightbox::mel
