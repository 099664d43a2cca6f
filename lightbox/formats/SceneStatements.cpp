#include "formats/SceneStatements.h"

#include "formats/AttributeFactory.h"
#include "formats/MeshPlugSettings.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PlugSettingArguments.h"
#include "formats/ReferenceList.h"
#include "formats/ReferencePath.h"
#include "formats/SceneBuilder.h"
#include "formats/SceneFiles.h"
#include "mel/Error.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "text/Quoted.h"

#include <QFileInfo>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace lightbox {
namespace {

using Command = mel::CommandRegistry::Function;
using mel::CommandCall;
using mel::Value;

std::shared_ptr<Node> NodeNamed(const SceneBuilder& builder, const CommandCall& call,
                                const std::string& name) {
    std::shared_ptr<Node> node = builder.Find(name);
    if (!node) {
        call.Fail("No object matches name: " + name);
    }
    return node;
}

/// Replaces the file's node name in "node", "node.attribute" or ".attribute" by the node's name in the scene.
std::string NameInScene(const SceneBuilder& builder, const CommandCall& call, const std::string& text) {
    const std::size_t dot = std::min(text.find('.'), text.size());
    const bool isOfCurrent = dot == 0 && builder.Current();
    const std::string name = dot == 0 ? text : text.substr(0, dot);
    const auto node = isOfCurrent ? builder.Current() : NodeNamed(builder, call, name);
    return Scene::ShownName(*node) + text.substr(dot);
}

/// Runs the command itself with the scene's names of the nodes. A statement about a missing node is kept: the
/// file that it comes from may be missing.
Value WithNamesInScene(SceneBuilder& builder, CommandCall& call, const Command& command) {
    std::vector<Value> objects = call.Objects();
    for (Value& object : objects) {
        const std::string text = object.AsString();
        const std::string name = text.substr(0, text.find('.'));
        if (!name.empty() && !builder.Find(name)) {
            builder.KeepForFile(builder.Statement(), "node " + name,
                                "No object matches name: " + name + "; the statement is kept.");
            return {};
        }
        object = NameInScene(builder, call, text);
    }
    CommandCall inScene = call.With(objects);
    return command(inScene);
}

/// The same; a statement that the command refuses is kept.
Value WithNamesInSceneOrKept(SceneBuilder& builder, CommandCall& call, const Command& command) {
    const auto keep = [&](const std::exception& error) {
        builder.KeepForFile(builder.Statement(), call.Name(), std::string(error.what()) + " It is kept.");
    };
    try {
        return WithNamesInScene(builder, call, command);
    } catch (const mel::Error& error) {
        keep(error);
    } catch (const SceneError& error) {
        keep(error);
    }
    return {};
}

Value Requires(SceneBuilder& builder, CommandCall& call, const Command&) {
    const std::string version = call.Objects().size() > 1 ? call.Object(1).AsString() : "";
    builder.Require(call.Object(0).AsString(), version, builder.Statement());
    return {};
}

Value CurrentUnit(SceneBuilder& builder, CommandCall& call, const Command&) {
    builder.SetUnits(call.StringOr("-linear", ""), call.StringOr("-angle", ""), call.StringOr("-time", ""));
    return {};
}

Value FileInfo(SceneBuilder& builder, CommandCall& call, const Command&) {
    const std::vector<std::string> words = call.ObjectNames();
    if (words.size() != 2) {
        builder.RefuseStatement();
        return {};
    }
    builder.SetFileInfo(words[0], words[1]);
    return {};
}

/// `file -r` reads the reference; `file -rdi` only announces it.
Value File(SceneBuilder& builder, CommandCall& call, const Command&) {
    if (!call.Has("-reference") && !call.Has("-referenceDepthInfo")) {
        builder.RefuseStatement(); // a scene names other files, and does nothing else with them
        return {};
    }
    const std::string path = call.Objects().empty() ? "" : call.Object(0).AsString();
    if (path.empty()) {
        call.Fail("No file name specified.");
    }
    const std::string referenceNode = call.StringOr("-referenceNode", "");
    const bool isDeferred = call.Has("-deferReference") && call.Bool("-deferReference");
    if (!call.Has("-reference")) {
        // A file inside a referenced one is read as that one says. Maya notes here whether it is loaded.
        if (call.Int("-referenceDepthInfo") > 1) {
            builder.KeepForHead(builder.Statement());
        } else {
            builder.AnnounceReference(referenceNode, isDeferred);
        }
        return path;
    }
    if (call.Has("-renamingPrefix")) {
        builder.NoteKept("prefix", "A reference's nodes go into a namespace; they do not get the prefix \"" +
                                       call.String("-renamingPrefix") + "\".");
    }
    const QString folder = QFileInfo(QString::fromStdString(builder.source().path)).absolutePath();
    const std::string file = ReferencePath::Resolve(path, folder.toStdString());
    const std::string base = QFileInfo(QString::fromStdString(file)).completeBaseName().toStdString();
    ReferenceList& references = call.GetHost().files().references();
    const std::string name = references
                                 .Add(file, call.StringOr("-namespace", base), referenceNode,
                                      builder.IsDeferred(referenceNode, isDeferred))
                                 .name;
    FileReference given;
    given.givenPath = path;
    given.options = call.StringOr("-options", "");
    given.type = call.StringOr("-type", "");
    given.prefix = call.Has("-namespace") ? "" : call.StringOr("-renamingPrefix", "");
    for (unsigned use = 0; use < call.UseCount("-sharedNodes"); ++use) {
        given.further += " -shd " + Quoted(call.String("-sharedNodes", 0, use));
    }
    references.NoteStatement(name, given);
    return name;
}

Value CreateNode(SceneBuilder& builder, CommandCall& call, const Command&) {
    const std::string type = call.Object(0).AsString();
    const auto node = builder.CreateNode(type, call.StringOr("-name", ""), call.StringOr("-parent", ""),
                                         call.Has("-shared"));
    return Scene::ShownName(*node);
}

Value Rename(SceneBuilder& builder, CommandCall& call, const Command& command) {
    std::vector<Value> names = call.Objects();
    const std::string first = names.front().AsString();
    const bool isNamed = names.size() > 1;
    if (call.Has("-uuid")) {
        if (const auto node = isNamed ? NodeNamed(builder, call, first) : builder.Current()) {
            builder.SetUuid(*node, names.back().AsString());
        }
        return names.back().AsString();
    }
    if (isNamed) {
        names.front() = NameInScene(builder, call, first);
    }
    CommandCall inScene = call.With(names);
    return command(inScene);
}

Value LockNode(SceneBuilder& builder, CommandCall& call, const Command&) {
    std::string further;
    for (const auto& [flag, text] : {std::pair("-lockName", " -ln "), std::pair("-lockUnpublished", " -lu "),
                                     std::pair("-ignoreComponents", " -ic")}) {
        if (call.Has(flag)) {
            further += text;
            further += std::string_view(flag) == "-ignoreComponents" ? "" : call.Bool(flag) ? "1" : "0";
        }
    }
    std::vector<std::shared_ptr<Node>> nodes;
    for (const std::string& name : call.ObjectNames()) {
        if (const auto node = builder.Find(name)) {
            nodes.push_back(node);
        } else {
            builder.KeepForFile(builder.Statement(), "node " + name,
                                "No object matches name: " + name + "; the statement is kept.");
        }
    }
    if (call.Objects().empty() && builder.Current()) {
        nodes.push_back(builder.Current());
    } else if (call.Objects().empty()) {
        builder.KeepForCurrent(builder.Statement(), "", "");
    }
    const bool isLocked = call.Has("-lock") ? call.Bool("-lock") : further.empty();
    for (const std::shared_ptr<Node>& node : nodes) {
        if (!builder.IsForeign(*node)) {
            node->locked = isLocked;
            builder.KeepLockFlags(*node, further);
        }
    }
    return {};
}

Value Parent(SceneBuilder& builder, CommandCall& call, const Command& command) {
    if (call.Has("-addObject")) {
        builder.KeepForFile(builder.Statement(), "instance",
                            "Instances are not supported; the statements that make them are kept.");
        return {};
    }
    return WithNamesInSceneOrKept(builder, call, command);
}

/// A connection that was never made, because it is kept, cannot be broken.
Value DisconnectAttr(SceneBuilder& builder, CommandCall& call, const Command& command) {
    return WithNamesInSceneOrKept(builder, call, command);
}

/// A file adds namespaces, and no more.
Value Namespace(SceneBuilder& builder, CommandCall& call, const Command& command) {
    const bool isAddition = call.Has("-add") && !call.Has("-setNamespace") && !call.Has("-removeNamespace");
    if (isAddition && builder.source().mode == SceneBuilder::Mode::Open) {
        const std::string parent = call.StringOr("-parent", "");
        const std::string name = (parent.empty() || parent == ":" ? "" : parent + ":") + call.String("-add");
        if (call.GetHost().scene().Namespaces().count(name) == 0) {
            return command(call);
        }
    } else if (!isAddition) {
        builder.RefuseStatement();
    }
    return {};
}

/// In a file, `select` only sets the current node. The user's selection stays.
Value Select(SceneBuilder& builder, CommandCall& call, const Command&) {
    builder.Select(call.Objects().empty() ? std::string() : call.Object(0).AsString());
    return {};
}

Value AddAttr(SceneBuilder& builder, CommandCall& call, const Command& command) {
    const auto node = call.Objects().empty() ? builder.Current() : builder.Find(call.Object(0).AsString());
    if (node && builder.IsForeign(*node)) {
        return {};
    }
    const std::string type = call.StringOr("-attributeType", call.StringOr("-dataType", "double"));
    const std::string shortName = call.StringOr("-shortName", "");
    const std::string longName = call.StringOr("-longName", shortName);
    const std::string parent = call.StringOr("-parent", "");
    const bool isKnown = AttributeFactory::Make(call.GetHost().scene(), type, "x", "x") != nullptr;
    // A compound has to get all of its children.
    const bool isOfCompound =
        node && !parent.empty() && !node->FindAttribute(parent) && !builder.IsKeptAttribute(parent);
    const bool isPresent =
        node && (node->FindAttribute(longName) || (!shortName.empty() && node->FindAttribute(shortName)));
    const bool isKept = !node || isPresent || builder.IsKeptAttribute(parent) ||
                        call.UseCount("-dataType") > 1 || (!isKnown && !isOfCompound);
    if (isKept) {
        builder.NoteKeptAttribute(longName, shortName);
        builder.KeepForCurrent(builder.Statement(), isPresent ? "" : "attribute type " + type,
                               "Unknown attribute type '" + type + "'; it is kept and written back.");
        return {};
    }
    const std::vector<Value> name{Scene::ShownName(*node)};
    CommandCall inScene = call.With(name);
    return command(inScene);
}

Value ConnectAttr(SceneBuilder& builder, CommandCall& call, const Command&) {
    std::string flags = call.Has("-nextAvailable") ? " -na" : "";
    if (call.Has("-lock")) {
        flags += call.Bool("-lock") ? " -l on" : " -l off";
    }
    builder.Connect(call.Object(0).AsString(), call.Object(1).AsString(), flags);
    return {};
}

void KeepSetting(SceneBuilder& builder, const PlugSettingArguments& arguments, const std::string& kind,
                 const std::string& reason) {
    const std::string warning = reason + "; it is kept and written back.";
    if (arguments.PlugName()[0] == '.') {
        builder.KeepForCurrent(builder.Statement(), kind, warning);
    } else {
        builder.KeepForFile(builder.Statement(), kind, warning);
    }
}

/// Applies the edits that Maya stores on a reference node (dataReferenceEdits). Only setAttr edits have a
/// meaning here: the number 2, a node, an attribute and the arguments of setAttr. The data itself is
/// preserved.
void ApplyReferenceEdits(SceneBuilder& builder, const std::vector<Value>& notes) {
    const auto isText = [&](std::size_t i) { return i < notes.size() && notes[i].IsString(); };
    for (std::size_t i = 0; i + 3 < notes.size(); ++i) {
        const bool isSetting = notes[i].IsNumber() && notes[i].AsFloat() == 2.0 && isText(i + 1) &&
                               isText(i + 2) && isText(i + 3);
        if (isSetting && builder.Find(notes[i + 1].Text())) {
            builder.RunStatement("setAttr " + Quoted(notes[i + 1].Text() + "." + notes[i + 2].Text()) +
                                 notes[i + 3].Text());
        }
    }
}

/// Preserves a setting that the node does not know. Warns unless such settings are expected on the node.
void KeepUnknown(SceneBuilder& builder, const Node& node, const PlugSettingArguments& arguments,
                 const std::string& reason) {
    const std::string& path = arguments.Path();
    const NodeType& type = node.Type();
    const bool isReference = type.IsA("reference");
    if (isReference || type.IsA("unknown") || type.IsA("unknownDag") || type.IsA("unknownTransform") ||
        MeshPlugSettings::IsCarriedAlong(node, path)) {
        builder.KeepForNode(node, builder.Statement());
    } else {
        const std::string attribute = path.substr(0, path.find_first_of("[."));
        KeepSetting(builder, arguments, type.Name() + "." + attribute + arguments.Type(), reason);
    }
    if (isReference && arguments.Type() == "dataReferenceEdits") {
        ApplyReferenceEdits(builder, arguments.Values());
    }
}

/// Builds the setting. Of an attribute that the node does not have, any value is right.
const PlugSetting& SettingFor(PlugSettingArguments& arguments, const std::shared_ptr<Node>& node) {
    try {
        return arguments.SettingFor(node);
    } catch (const mel::Error&) {
        arguments.CheckIsKnown(node);
        throw;
    }
}

Value SetAttr(SceneBuilder& builder, CommandCall& call, const Command&) {
    PlugSettingArguments arguments(call);
    arguments.MendNumbers();
    if (arguments.Type().empty()) {
        arguments.UseType(builder.TypeOfSlice(arguments.PlugName()));
    } else {
        builder.NoteSlice(arguments.PlugName(), arguments.Type());
    }
    if (builder.IsStatementCut() && !arguments.IsDataType()) {
        call.Fail("The value of '" + arguments.PlugName() + "' is damaged or cut off; it was not read.");
    }
    const std::string& plug = arguments.PlugName();
    const std::string name = plug.substr(0, plug.find('.'));
    const std::shared_ptr<Node> node = name.empty() ? builder.Current() : builder.Find(name);
    if (!node) {
        const std::string& missing = name.empty() ? builder.MissingDefault() : name;
        KeepSetting(builder, arguments, "node " + missing, "No object matches name: " + missing);
    } else if (!builder.IsForeign(*node)) {
        try {
            builder.Apply(node, SettingFor(arguments, node));
            if (arguments.MendedCount() > 0) {
                builder.WarnOnce("mended",
                                 "A number of '" + arguments.PlugName() +
                                     "' is infinite or not a number. It is read as 0, like any other "
                                     "one in this file.");
            }
        } catch (const UnknownAttributeError& error) {
            KeepUnknown(builder, *node, arguments, error.what());
        }
        // The part of a value that could be read is stored; the rest is still a fault.
        arguments.CheckIsWhole();
    }
    return {};
}

using Statement = Value (*)(SceneBuilder&, CommandCall&, const Command&);

/// The published statements of a scene file, as far as they mean something here.
constexpr std::pair<std::string_view, Statement> STATEMENTS[] = {{"addAttr", AddAttr},
                                                                 {"connectAttr", ConnectAttr},
                                                                 {"createNode", CreateNode},
                                                                 {"currentUnit", CurrentUnit},
                                                                 {"disconnectAttr", DisconnectAttr},
                                                                 {"file", File},
                                                                 {"fileInfo", FileInfo},
                                                                 {"lockNode", LockNode},
                                                                 {"namespace", Namespace},
                                                                 {"parent", Parent},
                                                                 {"rename", Rename},
                                                                 {"requires", Requires},
                                                                 {"select", Select},
                                                                 {"setAttr", SetAttr}};

} // namespace

std::vector<std::string_view> SceneStatementNames() {
    std::vector<std::string_view> names;
    for (const auto& [name, statement] : STATEMENTS) {
        names.push_back(name);
    }
    return names;
}

bool IsSceneStatement(std::string_view name) {
    return std::any_of(std::begin(STATEMENTS), std::end(STATEMENTS),
                       [name](const auto& row) { return row.first == name; });
}

std::map<std::string, mel::CommandRegistry::Overlay::Function> SceneStatements(SceneBuilder& builder) {
    std::map<std::string, mel::CommandRegistry::Overlay::Function> statements;
    for (const auto& [name, statement] : STATEMENTS) {
        statements[std::string(name)] = [&builder, statement = statement](CommandCall& call,
                                                                          const Command& command) {
            return statement(builder, call, command);
        };
    }
    return statements;
}

} // namespace lightbox
