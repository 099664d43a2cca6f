#include "commands/SceneArguments.h"

#include "formats/FileError.h"
#include "formats/FileReader.h"
#include "formats/PlugSettingApplier.h"
#include "formats/SceneFiles.h"
#include "mel/Error.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/PluginLoader.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/UndoQueue.h"

#include <optional>

namespace lightbox::mel {
namespace {

CommandRegistry::Function Whole(CommandRegistry::Function function) {
    return [function = std::move(function)](CommandCall& call) {
        std::optional<UndoQueue::Transaction> transaction;
        if (!ReaderOf(call)) {
            transaction.emplace(call.GetHost().undo());
        }
        Value result = function(call);
        if (transaction) {
            transaction->Commit();
        }
        return result;
    };
}

CommandRegistry::Function Guarded(CommandRegistry::Function function) {
    return [function = std::move(function)](CommandCall& call) {
        try {
            return function(call);
        } catch (const SceneError& error) {
            throw Error(error.what());
        } catch (const FileError& error) {
            throw Error(error.what());
        } catch (const PluginError& error) {
            throw Error(error.what());
        }
    };
}

} // namespace

void AddSceneCommand(CommandRegistry& registry, const std::string& name, const MSyntax& syntax,
                     CommandRegistry::Function function) {
    registry.Register(name, syntax, Guarded(Whole(std::move(function))));
}

void AddHostCommand(CommandRegistry& registry, const std::string& name, const MSyntax& syntax,
                    CommandRegistry::Function function) {
    registry.Register(name, syntax, Guarded(std::move(function)));
}

void AddRawSceneCommand(CommandRegistry& registry, const std::string& name,
                        CommandRegistry::Function function) {
    registry.RegisterRaw(name, 0, ~0u, Guarded(Whole(std::move(function))));
}

FileReader* ReaderOf(const CommandCall& call) {
    return call.GetHost().files().reader();
}

std::shared_ptr<Node> NodeNamed(const CommandCall& call, const std::string& name) {
    if (const FileReader* reader = ReaderOf(call)) {
        if (std::shared_ptr<Node> node = reader->Find(name)) {
            return node;
        }
        call.Fail("No object matches name: " + name);
    }
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
        if (ReaderOf(call)) {
            nodes.push_back(NodeNamed(call, name));
            continue;
        }
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
    const FileReader* reader = ReaderOf(call);
    NodeList selected = reader ? NodeList{reader->Current()} : call.GetHost().scene().selection().Get();
    if (selected.empty() || !selected.front()) {
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
        const FileReader* reader = ReaderOf(call);
        const NodeList nodes = reader ? NodeList{} : call.GetHost().scene().FindAll(name);
        if (!reader && nodes.empty()) {
            call.Fail("No object matches name: " + text);
        }
        return NodeNamed(call, name);
    }
    const FileReader* reader = ReaderOf(call);
    const NodeList& selected = call.GetHost().scene().selection().Get();
    std::shared_ptr<Node> node = reader ? reader->Current() : selected.empty() ? nullptr : selected.front();
    if (!node) {
        call.Fail("No object matches name: " + text);
    }
    return node;
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
