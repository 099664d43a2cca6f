#pragma once

#include "mel/CommandCall.h"

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

/// The commands by name: Lightbox's own and those of plug-ins.
class CommandRegistry {
public:
    using Function = std::function<Value(CommandCall&)>;
    using PluginCreator = void* (*)();

    struct Command {
        std::string name;
        /// How the arguments are read; a raw command takes them as they come.
        MSyntax syntax;
        bool raw = false;
        unsigned minimumArguments = 0;
        unsigned maximumArguments = ~0u;
        Function function;
        /// For a command of a plug-in.
        PluginCreator creator = nullptr;
        bool hasSyntax = false;
        std::string plugin;
        bool IsPlugin() const { return creator != nullptr; }
    };

    /// A command of Lightbox's own whose flags and objects are checked before `function` runs.
    void Register(const std::string& name, const MSyntax& syntax, Function function);
    /// One without flags: `function` gets every argument as an object, arrays whole and by reference.
    /// A number of arguments outside the bounds is an error.
    void RegisterRaw(const std::string& name, unsigned minimum, unsigned maximum, Function function);
    /// A command of a plug-in. `syntax` may be null: then doIt gets the plain argument list.
    /// False when the name is taken.
    bool RegisterPlugin(const std::string& name, PluginCreator creator, MSyntax (*syntax)(),
                        const std::string& plugin);
    /// The same with a syntax at hand.
    bool RegisterPlugin(const std::string& name, PluginCreator creator, const MSyntax& syntax,
                        const std::string& plugin);
    /// False when there is no plug-in command of that name.
    bool DeregisterPlugin(const std::string& name);

    /// Null when there is none. The command stays valid while it runs even if it is deregistered meanwhile.
    std::shared_ptr<const Command> Find(std::string_view name) const;
    std::vector<std::string> Names() const;
    /// Rises whenever a command comes or goes.
    unsigned Version() const { return version_; }

private:
    bool AddPlugin(const std::string& name, PluginCreator creator, const std::optional<MSyntax>& syntax,
                   const std::string& plugin);

    std::map<std::string, std::shared_ptr<const Command>, std::less<>> commands_;
    unsigned version_ = 1;
};

} // namespace lightbox::mel
