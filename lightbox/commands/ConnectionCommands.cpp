#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/PlugSettingApplier.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

namespace lightbox::mel {
namespace {

Value ConnectAttr(CommandCall& call) {
    Host& host = call.GetHost();
    const Plug from = PlugNamed(call, call.Object(0).AsString());
    Plug to = PlugNamed(call, call.Object(1).AsString());
    if (to.IsArray() && call.Has("-nextAvailable")) {
        to = to.NextElement();
    }
    edit::Connect(host, from, to, call.Has("-force"));
    if (call.Has("-lock")) {
        edit::SetPlugFlag(host, to, edit::PlugFlag::Locked, call.Bool("-lock"));
    }
    return "Connected " + from.Name() + " to " + to.Name() + ".";
}

/// The first element of an array that the source drives; the array itself when there is none.
Plug ElementDrivenBy(const Scene& scene, const Plug& source, const Plug& array) {
    for (const Plug& element : array.Elements()) {
        if (scene.connections().SourceOf(element) == source) {
            return element;
        }
    }
    return array;
}

Value DisconnectAttr(CommandCall& call) {
    Host& host = call.GetHost();
    const Plug from = PlugNamed(call, call.Object(0).AsString());
    Plug to = PlugNamed(call, call.Object(1).AsString());
    if (to.IsArray() && call.Has("-nextAvailable")) {
        to = ElementDrivenBy(host.scene(), from, to);
    }
    if (host.scene().connections().SourceOf(to) != from) {
        call.Fail("There is no connection from '" + from.Name() + "' to '" + to.Name() + "' to disconnect.");
    }
    edit::Disconnect(host, from, to);
    return "Disconnect " + from.Name() + " from " + to.Name() + ".";
}

Value IsConnected(CommandCall& call) {
    const Plug from = PlugNamed(call, call.Object(0).AsString());
    const Plug to = PlugNamed(call, call.Object(1).AsString());
    return call.GetHost().scene().connections().SourceOf(to) == from;
}

/// Whether a plug is the one asked about or lies below it.
bool IsWithin(const Plug& plug, const Plug& wanted) {
    for (Plug part = plug; part; part = part.Parent()) {
        const bool isSameElement = wanted.element < 0 || part.element == wanted.element;
        if (part.node == wanted.node && part.attribute == wanted.attribute && isSameElement) {
            return true;
        }
    }
    return false;
}

struct Question {
    std::shared_ptr<Node> node;
    Plug plug; ///< null: the whole node
};

Question Asked(const CommandCall& call, const std::string& text) {
    if (text.find('.') == std::string::npos) {
        return {NodeNamed(call, text), {}};
    }
    const Plug plug = PlugNamed(call, text);
    return {plug.node, plug};
}

/// What `listConnections` answers for one connection as seen from one of its ends.
void AddAnswer(const CommandCall& call, const Plug& near, const Plug& far, Value::StringArray& answers) {
    if (call.Has("-type")) {
        const std::string& type = call.String("-type");
        const bool isExact = call.Has("-exactType") && call.Bool("-exactType");
        if (isExact ? far.node->Type().Name() != type : !far.node->Type().IsA(type)) {
            return;
        }
    }
    const bool withPlugs = call.Has("-plugs") && call.Bool("-plugs");
    std::shared_ptr<Node> node = far.node;
    // Unless the shape itself is asked for, its transform stands for it.
    const bool isShape = node->Type().IsShape() && !(call.Has("-shapes") && call.Bool("-shapes"));
    if (isShape && !withPlugs) {
        node = static_cast<DagNode&>(*node).Parent()->Shared();
    }
    if (call.Has("-connections") && call.Bool("-connections")) {
        answers.push_back(near.Name());
    }
    answers.push_back(withPlugs ? far.Name() : Scene::ShownName(*node));
}

Value ListConnections(CommandCall& call) {
    const auto isOn = [&](const char* flag) { return !call.Has(flag) || call.Bool(flag); };
    const bool wantsSources = isOn("-source");
    const bool wantsDestinations = isOn("-destination");
    std::vector<Question> questions;
    for (const std::string& text : call.ObjectNames()) {
        questions.push_back(Asked(call, text));
    }
    if (questions.empty()) {
        for (const std::shared_ptr<Node>& node : ObjectsOrSelection(call)) {
            questions.push_back({node, {}});
        }
    }
    Value::StringArray answers;
    for (const Question& question : questions) {
        for (const Connection& connection : call.GetHost().scene().connections().Of(*question.node)) {
            const auto concerns = [&](const Plug& plug) {
                return question.plug ? IsWithin(plug, question.plug) : plug.node == question.node;
            };
            if (wantsSources && concerns(connection.destination)) {
                AddAnswer(call, connection.destination, connection.source, answers);
            }
            if (wantsDestinations && concerns(connection.source)) {
                AddAnswer(call, connection.source, connection.destination, answers);
            }
        }
    }
    return answers;
}

Value ConnectionInfo(CommandCall& call) {
    const Plug plug = PlugNamed(call, call.Object(0).AsString());
    const Connections& connections = call.GetHost().scene().connections();
    const Plug source = connections.SourceOf(plug);
    if (call.Has("-isDestination")) {
        return static_cast<bool>(source);
    }
    if (call.Has("-isSource")) {
        return !connections.DestinationsOf(plug).empty();
    }
    if (call.Has("-sourceFromDestination")) {
        return source ? Value(source.Name()) : Value("");
    }
    if (call.Has("-destinationFromSource")) {
        Value::StringArray names;
        for (const Plug& destination : connections.DestinationsOf(plug)) {
            names.push_back(destination.Name());
        }
        return names;
    }
    if (call.Has("-isLocked")) {
        return plug.IsLocked();
    }
    call.Fail("One of -id, -is, -sfd, -dfs and -il has to be given.");
}

} // namespace

void RegisterConnectionCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "connectAttr",
                    SyntaxBuilder()
                        .Flag("-f", "-force")
                        .Flag("-na", "-nextAvailable")
                        .Flag("-l", "-lock", MSyntax::kBoolean)
                        .Flag("-rd", "-referenceDest", MSyntax::kString)
                        .Objects(2, 2),
                    ConnectAttr);
    AddSceneCommand(registry, "disconnectAttr", SyntaxBuilder().Flag("-na", "-nextAvailable").Objects(2, 2),
                    DisconnectAttr);
    AddSceneCommand(registry, "isConnected",
                    SyntaxBuilder().Flag("-iuc", "-ignoreUnitConversion").Objects(2, 2), IsConnected);
    AddSceneCommand(registry, "listConnections",
                    SyntaxBuilder()
                        .Flag("-s", "-source", MSyntax::kBoolean)
                        .Flag("-d", "-destination", MSyntax::kBoolean)
                        .Flag("-p", "-plugs", MSyntax::kBoolean)
                        .Flag("-c", "-connections", MSyntax::kBoolean)
                        .Flag("-sh", "-shapes", MSyntax::kBoolean)
                        .Flag("-t", "-type", MSyntax::kString)
                        .Flag("-et", "-exactType", MSyntax::kBoolean)
                        .Flag("-scn", "-skipConversionNodes", MSyntax::kBoolean)
                        .Objects(),
                    ListConnections);
    AddSceneCommand(registry, "connectionInfo",
                    SyntaxBuilder()
                        .Flag("-id", "-isDestination")
                        .Flag("-is", "-isSource")
                        .Flag("-il", "-isLocked")
                        .Flag("-sfd", "-sourceFromDestination")
                        .Flag("-dfs", "-destinationFromSource")
                        .Objects(1, 1),
                    ConnectionInfo);
}

} // namespace lightbox::mel
