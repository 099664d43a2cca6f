#pragma once

#include "mel/CommandCall.h"
#include "scene/NonCopyable.h"

#include <maya/MSyntax.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class MPxCommand;

namespace lightbox::mel {

class ArgumentTokens;

/// The commands by name: Lightbox's own and those of plug-ins.
class CommandRegistry {
public:
    using Function = std::function<Value(CommandCall&)>;
    using UnparsedFunction = std::function<Value(ArgumentTokens)>;

    struct Command {
        std::string name;
        /// How to parse the arguments; not used for a raw command.
        MSyntax syntax;
        bool raw = false;
        /// Whether a flag's number may be infinite or none, "inf" or "nan", as a scene file may have it.
        bool takesNotFinite = false;
        unsigned minimumArguments = 0;
        unsigned maximumArguments = ~0u;
        Function function;
        /// Used instead of `function` by a command that parses its arguments itself.
        UnparsedFunction unparsed;
        /// The plug-in that registered it; empty for Lightbox's own commands.
        std::string plugin;
        bool IsPlugin() const { return !plugin.empty(); }
    };

    /// Puts other functions, for the statements of a file, into the place of commands for as long as it
    /// exists. Each keeps the syntax of its command, takes numbers that are not finite as well, and is handed
    /// the command's own function. Overlays nest; only the innermost counts.
    class Overlay : NonCopyable {
    public:
        using Function = std::function<Value(CommandCall&, const CommandRegistry::Function& command)>;

        /// Every name has to be a command's.
        Overlay(CommandRegistry& registry, const std::map<std::string, Function>& functions);
        ~Overlay();

    private:
        friend class CommandRegistry;

        CommandRegistry& registry_;
        const Overlay* outer_;
        std::map<std::string, std::shared_ptr<const Command>, std::less<>> commands_;
    };

    /// Registers a command of Lightbox's own. Flags and objects are checked before `function` runs.
    void Register(const std::string& name, const MSyntax& syntax, Function function);
    /// Registers a command without flags. `function` gets every argument as an object, arrays whole and by
    /// reference. A number of arguments outside the bounds is an error.
    void RegisterRaw(const std::string& name, unsigned minimum, unsigned maximum, Function function);
    /// Registers a plug-in's command, which parses its arguments itself; `syntax` describes them to callers.
    /// Returns false when the name is taken.
    bool RegisterPlugin(const std::string& name, const std::string& plugin, const MSyntax& syntax,
                        UnparsedFunction function);
    /// Returns false when there is no plug-in command of that name.
    bool DeregisterPlugin(const std::string& name);

    /// Returns null when there is none. An overlay's command is found before the one that it covers. A
    /// running command stays valid after it is deregistered.
    std::shared_ptr<const Command> Find(std::string_view name) const;
    std::vector<std::string> Names() const;
    /// Increases whenever a command is added or removed.
    unsigned Version() const { return version_; }

private:
    std::map<std::string, std::shared_ptr<const Command>, std::less<>> commands_;
    const Overlay* overlay_ = nullptr; ///< the innermost
    unsigned version_ = 1;
};

} // namespace lightbox::mel
