#include "mel/CommandRegistry.h"

#include "mel/ArgumentTokens.h"

namespace lightbox::mel {

CommandRegistry::Overlay::Overlay(CommandRegistry& registry, const std::map<std::string, Function>& functions)
    : registry_(registry)
    , outer_(registry.overlay_) {
    for (const auto& [name, function] : functions) {
        auto command = std::make_shared<Command>(*registry.commands_.at(name));
        command->function = [covered = std::move(command->function), function = function](CommandCall& call) {
            return function(call, covered);
        };
        command->takesNotFinite = true;
        commands_[name] = std::move(command);
    }
    registry_.overlay_ = this;
    ++registry_.version_;
}

CommandRegistry::Overlay::~Overlay() {
    registry_.overlay_ = outer_;
    ++registry_.version_;
}

void CommandRegistry::Register(const std::string& name, const MSyntax& syntax, Function function) {
    auto command = std::make_shared<Command>();
    command->name = name;
    command->syntax = syntax;
    command->function = std::move(function);
    commands_[name] = std::move(command);
    ++version_;
}

void CommandRegistry::RegisterRaw(const std::string& name, unsigned minimum, unsigned maximum,
                                  Function function) {
    auto command = std::make_shared<Command>();
    command->name = name;
    command->raw = true;
    command->minimumArguments = minimum;
    command->maximumArguments = maximum;
    command->function = std::move(function);
    commands_[name] = std::move(command);
    ++version_;
}

bool CommandRegistry::RegisterPlugin(const std::string& name, const std::string& plugin,
                                     const MSyntax& syntax, UnparsedFunction function) {
    if (name.empty() || commands_.count(name) != 0) {
        return false;
    }
    auto command = std::make_shared<Command>();
    command->name = name;
    command->syntax = syntax;
    command->unparsed = std::move(function);
    command->plugin = plugin;
    commands_[name] = std::move(command);
    ++version_;
    return true;
}

bool CommandRegistry::DeregisterPlugin(const std::string& name) {
    const auto found = commands_.find(name);
    if (found == commands_.end() || !found->second->IsPlugin()) {
        return false;
    }
    commands_.erase(found);
    ++version_;
    return true;
}

std::shared_ptr<const CommandRegistry::Command> CommandRegistry::Find(std::string_view name) const {
    if (overlay_) {
        const auto covering = overlay_->commands_.find(name);
        if (covering != overlay_->commands_.end()) {
            return covering->second;
        }
    }
    const auto found = commands_.find(name);
    return found == commands_.end() ? nullptr : found->second;
}

std::vector<std::string> CommandRegistry::Names() const {
    std::vector<std::string> names;
    names.reserve(commands_.size());
    for (const auto& command : commands_) {
        names.push_back(command.first);
    }
    return names;
}

} // namespace lightbox::mel
