#include "formats/SceneStatements.h"

#include "formats/AttributeFactory.h"
#include "formats/MeshPlugSettings.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PlugSettingArguments.h"
#include "formats/ReferenceList.h"
#include "formats/SceneBuilder.h"
#include "formats/SceneFiles.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "text/NumberText.h"
#include "text/Quoted.h"

#include <QFileInfo>

#include <algorithm>

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

std::shared_ptr<Node> CurrentNode(const SceneBuilder& builder, const CommandCall& call) {
    if (!builder.Current()) {
        call.Fail("No object was specified.");
    }
    return builder.Current();
}

/// Replaces the file's node name in "node", "node.attribute" or ".attribute" by the node's name in the scene.
std::string NameInScene(const SceneBuilder& builder, const CommandCall& call, const std::string& text) {
    const std::size_t dot = std::min(text.find('.'), text.size());
    const bool isOfCurrent = dot == 0 && builder.Current();
    const std::string name = dot == 0 ? text : text.substr(0, dot);
    const auto node = isOfCurrent ? builder.Current() : NodeNamed(builder, call, name);
    return Scene::ShownName(*node) + text.substr(dot);
}

bool IsNumeric(const Value& value) {
    double number = 0.0;
    return value.IsNumber() || (value.IsString() && IsNumber(value.Text(), number));
}

/// Runs the command itself with the scene's names of the nodes. Without a name it runs on the current node.
/// Numbers among the objects, such as those of `move` or of a matrix, stay as they are.
Value WithNamesInScene(SceneBuilder& builder, CommandCall& call, const Command& command) {
    std::vector<Value> objects = call.Objects();
    bool hasName = false;
    for (Value& object : objects) {
        if (!IsNumeric(object)) {
            object = NameInScene(builder, call, object.AsString());
            hasName = true;
        }
    }
    if (!hasName) {
        objects.emplace_back(Scene::ShownName(*CurrentNode(builder, call)));
    }
    CommandCall inScene = call.With(objects);
    return command(inScene);
}

Value Requires(SceneBuilder& builder, CommandCall& call, const Command&) {
    const std::string version = call.Objects().size() > 1 ? call.Object(1).AsString() : "";
    builder.Require(call.Object(0).AsString(), version, builder.Statement());
    return {};
}

Value CurrentUnit(SceneBuilder& builder, CommandCall& call, const Command& command) {
    if (call.IsQuery()) {
        return command(call);
    }
    builder.SetUnits(call.StringOr("-linear", ""), call.StringOr("-angle", ""), call.StringOr("-time", ""));
    return {};
}

Value FileInfo(SceneBuilder& builder, CommandCall& call, const Command& command) {
    const std::vector<std::string> words = call.ObjectNames();
    if (call.IsQuery() || call.Has("-remove") || words.size() != 2) {
        return command(call);
    }
    builder.SetFileInfo(words[0], words[1]);
    return {};
}

/// `file -r` reads the reference; `file -rdi` only announces it.
Value File(SceneBuilder& builder, CommandCall& call, const Command& command) {
    if (call.IsQuery()) {
        return command(call);
    }
    if (!call.Has("-reference") && !call.Has("-referenceDepthInfo")) {
        call.Fail("A scene file can only reference other files (file -r and file -rdi).");
    }
    const std::string path = call.Objects().empty() ? "" : call.Object(0).AsString();
    if (path.empty()) {
        call.Fail("No file name specified.");
    }
    const std::string referenceNode = call.StringOr("-referenceNode", "");
    const bool isDeferred = call.Has("-deferReference") && call.Bool("-deferReference");
    if (!call.Has("-reference")) {
        builder.AnnounceReference(referenceNode, isDeferred);
        return path;
    }
    if (call.Has("-renamingPrefix")) {
        call.Warn("A reference's nodes go into a namespace; they do not get the prefix \"" +
                  call.String("-renamingPrefix") + "\".");
    }
    const QFileInfo info(QString::fromStdString(path));
    const QFileInfo reading(QString::fromStdString(builder.source().path));
    std::string file = info.isAbsolute() ? path : reading.absolutePath().toStdString() + "/" + path;
    // Maya numbers a file that is referenced again: "a.ma{1}".
    if (const std::size_t brace = file.rfind('{'); brace != std::string::npos && file.back() == '}') {
        file.resize(brace);
    }
    ReferenceList& references = call.GetHost().files().references();
    const std::string name = references
                                 .Add(SceneFiles::FindFile(file),
                                      call.StringOr("-namespace", info.completeBaseName().toStdString()),
                                      referenceNode, builder.IsDeferred(referenceNode, isDeferred))
                                 .name;
    references.NoteStatement(name, path, call.StringOr("-options", ""));
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

Value LockNode(SceneBuilder& builder, CommandCall& call, const Command& command) {
    if (call.IsQuery()) {
        return WithNamesInScene(builder, call, command);
    }
    std::vector<std::shared_ptr<Node>> nodes;
    for (const std::string& name : call.ObjectNames()) {
        nodes.push_back(NodeNamed(builder, call, name));
    }
    if (nodes.empty()) {
        nodes.push_back(CurrentNode(builder, call));
    }
    const bool isLocked = !call.Has("-lock") || call.Bool("-lock");
    for (const std::shared_ptr<Node>& node : nodes) {
        node->locked = builder.IsForeign(*node) ? node->locked : isLocked;
    }
    return {};
}

Value Parent(SceneBuilder& builder, CommandCall& call, const Command& command) {
    if (call.Has("-addObject")) {
        builder.KeepForFile(builder.Statement(), "instance",
                            "Instances are not supported; the statements that make them are kept.");
        return {};
    }
    return WithNamesInScene(builder, call, command);
}

/// In a file, `select` only sets the current node. The user's selection stays.
Value Select(SceneBuilder& builder, CommandCall& call, const Command&) {
    builder.Select(call.Objects().empty() ? std::string() : call.Object(0).AsString());
    return {};
}

Value AddAttr(SceneBuilder& builder, CommandCall& call, const Command& command) {
    if (call.IsQuery()) {
        return WithNamesInScene(builder, call, command);
    }
    const auto node = call.Objects().empty() ? builder.Current() : builder.Find(call.Object(0).AsString());
    const std::string type = call.StringOr("-attributeType", call.StringOr("-dataType", "double"));
    const bool isKnown = AttributeFactory::Make(call.GetHost().scene(), type, "x", "x") != nullptr;
    // A compound has to get all of its children.
    const std::string parent = call.StringOr("-parent", "");
    const bool isOfCompound = node && !parent.empty() && !node->FindAttribute(parent);
    if (!node || (!isKnown && !isOfCompound)) {
        builder.KeepForCurrent(builder.Statement(), "attribute type " + type,
                               "Unknown attribute type '" + type + "'; it is kept and written back.");
        return {};
    }
    if (builder.IsForeign(*node)) {
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

Value SetAttr(SceneBuilder& builder, CommandCall& call, const Command&) {
    PlugSettingArguments arguments(call);
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
            builder.Apply(node, arguments.SettingFor(node));
        } catch (const UnknownAttributeError& error) {
            KeepUnknown(builder, *node, arguments, error.what());
        }
        // The part of a value that could be read is stored; the rest is still a fault.
        arguments.CheckIsWhole();
    }
    return {};
}

} // namespace

std::map<std::string, mel::CommandRegistry::Overlay::Function> SceneStatements(SceneBuilder& builder) {
    using Statement = Value (*)(SceneBuilder&, CommandCall&, const Command&);
    static constexpr std::pair<const char*, Statement> table[] = {{"addAttr", AddAttr},
                                                                  {"connectAttr", ConnectAttr},
                                                                  {"createNode", CreateNode},
                                                                  {"currentUnit", CurrentUnit},
                                                                  {"cutKey", WithNamesInScene},
                                                                  {"delete", WithNamesInScene},
                                                                  {"deleteAttr", WithNamesInScene},
                                                                  {"disconnectAttr", WithNamesInScene},
                                                                  {"file", File},
                                                                  {"fileInfo", FileInfo},
                                                                  {"getAttr", WithNamesInScene},
                                                                  {"keyframe", WithNamesInScene},
                                                                  {"keyTangent", WithNamesInScene},
                                                                  {"lockNode", LockNode},
                                                                  {"move", WithNamesInScene},
                                                                  {"parent", Parent},
                                                                  {"rename", Rename},
                                                                  {"requires", Requires},
                                                                  {"rotate", WithNamesInScene},
                                                                  {"scale", WithNamesInScene},
                                                                  {"select", Select},
                                                                  {"setAttr", SetAttr},
                                                                  {"setInfinity", WithNamesInScene},
                                                                  {"setKeyframe", WithNamesInScene},
                                                                  {"sets", WithNamesInScene},
                                                                  {"xform", WithNamesInScene}};
    std::map<std::string, mel::CommandRegistry::Overlay::Function> statements;
    for (const auto& [name, statement] : table) {
        statements[name] = [&builder, statement = statement](CommandCall& call, const Command& command) {
            return statement(builder, call, command);
        };
    }
    return statements;
}

} // namespace lightbox
