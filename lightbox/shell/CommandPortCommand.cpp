// commandPort.

#include "controls/ControlRegistry.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"
#include "mel/SyntaxBuilder.h"
#include "shell/CommandPort.h"
#include "shell/Registration.h"

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;

using Ports = std::map<std::string, std::unique_ptr<CommandPort>>;

std::string NameOf(const CommandCall& call) {
    std::string name = call.StringOr("-name", "");
    if (name.empty() && !call.Objects().empty()) {
        name = call.Object(0).AsString();
    }
    if (name.empty()) {
        call.Fail("The name of the port is missing: -name with a path or \":PORT\".");
    }
    return name;
}

CommandPort::Options OptionsOf(const CommandCall& call) {
    CommandPort::Options options;
    constexpr int least = 256;
    constexpr int most = 1 << 30;
    options.bufferSize = std::clamp(call.IntOr("-bufferSize", options.bufferSize), least, most);
    options.answers = !call.Has("-noreturn");
    options.answersCount = call.Has("-returnNumCommands");
    options.echoesOutput = call.Has("-echoOutput");
    options.prefix = call.StringOr("-prefix", "");
    if (call.StringOr("-sourceType", "mel") != "mel") {
        call.Fail("A command port takes MEL only.");
    }
    return options;
}

Value Run(const CommandCall& call, ControlRegistry& registry, Ports& ports) {
    if (call.Has("-listPorts")) {
        Value::StringArray names;
        for (const auto& [name, port] : ports) {
            names.push_back(name);
        }
        return names;
    }
    const std::string name = NameOf(call);
    if (call.IsQuery()) {
        return Value(ports.count(name) != 0);
    }
    const auto found = ports.find(name);
    if (call.Has("-close")) {
        if (found == ports.end()) {
            call.Fail("There is no command port \"" + name + "\".");
        }
        // This call may have come through the port itself. Close() deletes the port only after the answer.
        found->second.release()->Close();
        ports.erase(found);
        return Value();
    }
    if (found != ports.end()) {
        call.Fail("The command port \"" + name + "\" is open.");
    }
    auto port = std::make_unique<CommandPort>(registry.host(), name, OptionsOf(call));
    ports[name] = std::move(port);
    return Value();
}

} // namespace

void RegisterCommandPortCommand(WindowCommandTable& table) {
    constexpr auto text = MSyntax::kString;
    table.Add("commandPort",
              SyntaxBuilder()
                  .Flag("-n", "-name", text)
                  .QueryWithArguments()
                  .Flag("-cl", "-close")
                  .Flag("-bs", "-bufferSize", MSyntax::kLong)
                  .Flag("-eo", "-echoOutput")
                  .Flag("-nr", "-noreturn")
                  .Flag("-rnc", "-returnNumCommands")
                  .Flag("-pre", "-prefix", text)
                  .Flag("-stp", "-sourceType", text)
                  .Flag("-sw", "-securityWarning")
                  .Flag("-lp", "-listPorts")
                  .Query()
                  .Objects(0, 1),
              [ports = std::make_shared<Ports>()](CommandCall& call, ControlRegistry& registry) {
                  return Run(call, registry, *ports);
              });
}

} // namespace lightbox
