#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/Interpreter.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/PluginLoader.h"
#include "scene/UserInterface.h"

namespace lightbox::mel {
namespace {

Value LoadPlugin(CommandCall& call) {
    PluginLoader& plugins = call.GetHost().plugins();
    Value::StringArray names;
    for (const std::string& name : call.ObjectNames()) {
        if (plugins.Find(name) && !call.Has("-quiet")) {
            call.Warn("Plug-in, \"" + name + "\", is already loaded. Skipping load.");
        }
        names.push_back(plugins.Load(name).name);
    }
    return names;
}

Value UnloadPlugin(CommandCall& call) {
    Value::StringArray names;
    for (const std::string& name : call.ObjectNames()) {
        call.GetHost().plugins().Unload(name, call.Has("-force"));
        names.push_back(name);
    }
    return names;
}

Value QueryPlugin(const CommandCall& call) {
    const PluginLoader& plugins = call.GetHost().plugins();
    if (call.Has("-listPlugins")) {
        Value::StringArray names;
        for (const Plugin* plugin : plugins.Loaded()) {
            names.push_back(plugin->name);
        }
        return names;
    }
    if (call.Objects().empty()) {
        call.Fail("No plug-in was specified.");
    }
    const std::string name = call.Object(0).AsString();
    const Plugin* plugin = plugins.Find(name);
    if (call.Has("-loaded") || call.Has("-registered")) {
        return plugin != nullptr;
    }
    if (!plugin) {
        call.Fail("Plug-in, \"" + name + "\", is not loaded.");
    }
    return call.Answer({{"-name", plugin->name},
                        {"-path", plugin->path},
                        {"-vendor", plugin->vendor},
                        {"-version", plugin->version},
                        {"-apiVersion", plugin->apiVersion},
                        {"-command", plugin->commands},
                        {"-tool", plugin->contextCommands},
                        {"-data", plugin->dataTypes},
                        {"-dependNode", plugin->nodeTypes},
                        {"-autoload", plugin->autoload}});
}

Value PluginInfo(CommandCall& call) {
    if (!call.IsQuery()) {
        call.Fail("Plug-ins can only be queried (-q).");
    }
    return QueryPlugin(call);
}

Value Quit(CommandCall& call) {
    UserInterface* const ui = call.GetHost().ui();
    if (ui && !call.Has("-force") && !ui->SettleUnsavedChanges()) {
        return {};
    }
    call.GetHost().RequestQuit(call.IntOr("-exitCode", 0));
    // The rest of the running script must not run.
    call.GetInterpreter().Interrupt();
    return {};
}

} // namespace

void RegisterPluginCommands(CommandRegistry& registry) {
    registry.Register("loadPlugin", SyntaxBuilder().Flag("-qt", "-quiet").Objects(1), LoadPlugin);
    registry.Register("unloadPlugin", SyntaxBuilder().Flag("-f", "-force").Objects(1), UnloadPlugin);
    SyntaxBuilder info;
    for (const auto& [shortName, longName] :
         std::initializer_list<std::pair<const char*, const char*>>{{"-l", "-loaded"},
                                                                    {"-r", "-registered"},
                                                                    {"-n", "-name"},
                                                                    {"-p", "-path"},
                                                                    {"-vd", "-vendor"},
                                                                    {"-v", "-version"},
                                                                    {"-av", "-apiVersion"},
                                                                    {"-c", "-command"},
                                                                    {"-t", "-tool"},
                                                                    {"-d", "-data"},
                                                                    {"-dn", "-dependNode"},
                                                                    {"-a", "-autoload"},
                                                                    {"-ls", "-listPlugins"}}) {
        info.Flag(shortName, longName);
    }
    registry.Register("pluginInfo", info.Query().Objects(0, 1), PluginInfo);
    registry.Register("quit", SyntaxBuilder().Flag("-f", "-force").Flag("-ec", "-exitCode", MSyntax::kLong),
                      Quit);
}

} // namespace lightbox::mel
