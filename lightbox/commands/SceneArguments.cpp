#include "commands/SceneArguments.h"

#include "formats/PlugSettingApplier.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/UndoQueue.h"

namespace lightbox::mel {
namespace {

CommandRegistry::Function Whole(CommandRegistry::Function function) {
    return [function = std::move(function)](CommandCall& call) {
        UndoQueue::Transaction transaction(call.GetHost().undo());
        Value result = function(call);
        transaction.Commit();
        return result;
    };
}

} // namespace

void AddSceneCommand(CommandRegistry& registry, const std::string& name, const MSyntax& syntax,
                     CommandRegistry::Function function) {
    registry.Register(name, syntax, Whole(std::move(function)));
}

void AddRawSceneCommand(CommandRegistry& registry, const std::string& name,
                        CommandRegistry::Function function) {
    registry.RegisterRaw(name, 0, ~0u, Whole(std::move(function)));
}

std::shared_ptr<Node> NodeNamed(const CommandCall& call, const std::string& name) {
    const NodeList nodes = call.GetHost().scene().FindAll(name);
    if (nodes.size() != 1) {
        call.Fail((nodes.empty() ? "No object matches name: " : "More than one object matches name: ") +
                  name);
    }
    return nodes.front();
}

std::shared_ptr<DagNode> DagNodeNamed(const CommandCall& call, const std::string& name) {
    auto dag = std::dynamic_pointer_cast<DagNode>(NodeNamed(call, name));
    if (!dag) {
        call.Fail("The object '" + name + "' is not in the DAG.");
    }
    return dag;
}

NodeList NodesNamed(const CommandCall& call, const std::vector<std::string>& names) {
    NodeList nodes;
    for (const std::string& name : names) {
        const NodeList matching = call.GetHost().scene().Matching(name);
        if (matching.empty()) {
            call.Fail("No object matches name: " + name);
        }
        nodes.insert(nodes.end(), matching.begin(), matching.end());
    }
    return nodes;
}

NodeList ObjectsOrSelection(const CommandCall& call) {
    const std::vector<std::string> names = call.ObjectNames();
    if (!names.empty()) {
        return NodesNamed(call, names);
    }
    NodeList selected = call.GetHost().scene().selection().Get();
    if (selected.empty()) {
        call.Fail("No object was specified.");
    }
    return selected;
}

std::shared_ptr<Node> NodeOfPlug(const CommandCall& call, const std::string& text) {
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos || dot + 1 == text.size()) {
        call.Fail("No attribute was specified: " + text);
    }
    if (dot > 0) {
        const std::string name = text.substr(0, dot);
        if (call.GetHost().scene().FindAll(name).empty()) {
            call.Fail("No object matches name: " + text);
        }
        return NodeNamed(call, name);
    }
    const NodeList& selected = call.GetHost().scene().selection().Get();
    if (selected.empty()) {
        call.Fail("No object matches name: " + text);
    }
    return selected.front();
}

Plug PlugNamed(const CommandCall& call, const std::string& text) {
    const std::shared_ptr<Node> node = NodeOfPlug(call, text);
    return PlugSettingApplier::Resolve(node, text.substr(text.find('.') + 1), 1).front();
}

std::string EnumFieldsText(const Attribute& attribute) {
    std::string text;
    for (const auto& field : attribute.enumFields) {
        text += (text.empty() ? "" : ":") + field.first;
    }
    return text;
}

std::string ShownName(const Node& node, bool wholePath) {
    const auto* dag = dynamic_cast<const DagNode*>(&node);
    return dag && wholePath ? dag->FullPath() : Scene::ShownName(node);
}

Value ShownNames(const NodeList& nodes, bool wholePath) {
    Value::StringArray names;
    for (const std::shared_ptr<Node>& node : nodes) {
        names.push_back(ShownName(*node, wholePath));
    }
    return Value(std::move(names));
}

} // namespace lightbox::mel
