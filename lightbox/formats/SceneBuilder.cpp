#include "formats/SceneBuilder.h"

#include "formats/MeshPlugSettings.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PreservedContent.h"
#include "formats/SceneFiles.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/PluginLoader.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "scene/UndoQueue.h"
#include "text/Quoted.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace lightbox {
namespace {

constexpr int SCENE_CONFIGURATION = 6;
/// Limit of faults shown for one file; a damaged file may have very many.
constexpr int MAX_SHOWN_FAULTS = 50;
/// Limit of plug-ins and of node types that the summary names.
constexpr std::size_t MAX_NAMED = 5;

/// "a, b and c", or "a, b and 7 more".
std::string Listed(const std::vector<std::string>& names, std::size_t most) {
    std::string text;
    const bool isCut = names.size() > most;
    const std::size_t shown = isCut ? most : names.size();
    for (std::size_t i = 0; i < shown; ++i) {
        const bool isLast = i > 0 && i + 1 == shown && !isCut;
        text += (i == 0 ? "" : isLast ? " and " : ", ") + names[i];
    }
    return isCut ? text + " and " + std::to_string(names.size() - most) + " more" : text;
}

} // namespace

SceneBuilder::SceneBuilder(Host& host, Source source)
    : host_(host)
    , source_(std::move(source)) {}

void SceneBuilder::ApplySceneScript() {
    if (!sceneScript_) {
        return;
    }
    const Plug script(sceneScript_, sceneScript_->FindAttribute("before"));
    const Plug kind(sceneScript_, sceneScript_->FindAttribute("scriptType"));
    if (static_cast<int>(kind.Number()) != SCENE_CONFIGURATION) {
        return;
    }
    const std::string rest = RunConfiguration(script.Text());
    const PreservedContent::NodeContent* const kept = host_.files().preserved().Find(*sceneScript_);
    const auto& keptConnections = host_.files().preserved().connections;
    const bool isConnected =
        !host_.scene().connections().Of(*sceneScript_).empty() ||
        std::any_of(keptConnections.begin(), keptConnections.end(), [this](const auto& connection) {
            return connection.source.lock() == sceneScript_ || connection.destination.lock() == sceneScript_;
        });
    const bool isPlain =
        rest.empty() && !hasScriptUuid_ && !kept && !isConnected && sceneScript_->DynamicAttributes().empty();
    if (source_.mode == Mode::Open && !isPlain) {
        // Saving writes the ranges in front of what is left.
        script.Store(rest);
        return;
    }
    host_.scene().Detach(*sceneScript_);
    newNodes_.erase(std::remove(newNodes_.begin(), newNodes_.end(), sceneScript_), newNodes_.end());
    sceneScript_.reset();
}

std::string SceneBuilder::Place() const {
    std::string place = "file: " + source_.path;
    if (hasLines_ && !statement_.empty()) {
        place += " line " + std::to_string(statementLine_);
    }
    return place + ": ";
}

void SceneBuilder::ReportFault(const std::string& message) {
    ShowFault(Place() + message);
}

void SceneBuilder::ShowFault(const std::string& text) {
    if (shownFaults_ < MAX_SHOWN_FAULTS) {
        ++shownFaults_;
        host_.output().Error(text);
        return;
    }
    if (hiddenFaults_ == 0) {
        host_.output().Error("file: " + source_.path + ": there are more errors, which are not shown.");
    }
    ++hiddenFaults_;
}

void SceneBuilder::WarnOnce(const std::string& kind, const std::string& message) {
    if (warned_.insert(kind).second) {
        host_.output().Warning(Place() + message);
    }
}

void SceneBuilder::NoteKept(const std::string& kind, const std::string& message) {
    if (!kind.empty() && warned_.insert(kind).second) {
        kept_.push_back(kind);
        host_.output().Log(Output::Kind::Warning, Place() + message);
    }
}

void SceneBuilder::ShowSummary() const {
    if (kept_.empty()) {
        return;
    }
    const auto named = [this](const std::string& prefix, const std::string& one, const std::string& many) {
        std::vector<std::string> names;
        for (const std::string& kind : kept_) {
            if (kind.compare(0, prefix.size(), prefix) == 0) {
                names.push_back(kind.substr(prefix.size()));
            }
        }
        const std::size_t count = names.size();
        return std::make_pair(count, (count == 1 ? one : many) + " " + Listed(names, MAX_NAMED));
    };
    const auto [pluginCount, plugins] = named("plug-in ", "the plug-in", "the plug-ins");
    const auto [typeCount, types] = named("node type ", "the node type", "the node types");
    const std::size_t others = kept_.size() - pluginCount - typeCount;
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : "; ") + part; };
    if (pluginCount > 0) {
        add(plugins);
    }
    if (typeCount > 0) {
        add(types);
    }
    if (others > 0) {
        add(std::to_string(others) + (others == 1 ? " kind" : " kinds") +
            " of attributes, statements and the like");
    }
    host_.output().Warning("file: " + source_.path + ": Not known here: " + text +
                           (source_.mode == Mode::Open     ? ". All of it is kept and written back."
                            : source_.mode == Mode::Import ? ". What is about the file's nodes is kept."
                                                           : ".") +
                           " The log names each.");
}

void SceneBuilder::KeepForCurrent(const std::string& statement, const std::string& kind,
                                  const std::string& warning) {
    if (PreservedContent::NodeContent* content = ContentOfCurrent()) {
        NoteKept(kind, warning);
        content->units = units_;
        content->statements.push_back(statement);
    }
}

void SceneBuilder::KeepForCurrent(PreservedContent::BinaryValue value, const std::string& kind,
                                  const std::string& warning) {
    if (PreservedContent::NodeContent* content = ContentOfCurrent()) {
        NoteKept(kind, warning);
        content->values.push_back(std::move(value));
    }
}

/// Returns where to keep what belongs to the current or the missing node; null when that is ignored.
PreservedContent::NodeContent* SceneBuilder::ContentOfCurrent() {
    if (current_) {
        return IsForeign(*current_) ? nullptr : &host_.files().preserved().Of(*current_);
    }
    if (missingDefault_.empty()) {
        ReportFault("There is no node that this belongs to; it was not read.");
        return nullptr;
    }
    // Those of another file would come again from it, each time that the scene is opened.
    return source_.mode == Mode::Open ? &host_.files().preserved().BlockOf(missingDefault_).content : nullptr;
}

void SceneBuilder::KeepForNode(const Node& node, const std::string& statement) {
    if (!IsForeign(node)) {
        PreservedContent::NodeContent& content = host_.files().preserved().Of(node);
        content.units = units_;
        content.statements.push_back(statement);
    }
}

void SceneBuilder::KeepLockFlags(const Node& node, const std::string& flags) {
    PreservedContent& preserved = host_.files().preserved();
    if (!flags.empty() || preserved.Find(node)) {
        preserved.Of(node).lockFlags = flags;
    }
}

void SceneBuilder::NoteKeptAttribute(const std::string& longName, const std::string& shortName) {
    keptAttributes_.insert(longName);
    if (!shortName.empty()) {
        keptAttributes_.insert(shortName);
    }
}

void SceneBuilder::NoteSlice(const std::string& plug, const std::string& type) {
    if (!plug.empty() && plug.back() == ']') {
        sliceTypes_[plug.substr(0, plug.rfind('['))] = type;
    }
}

std::string SceneBuilder::TypeOfSlice(const std::string& plug) const {
    if (sliceTypes_.empty() || plug.empty() || plug.back() != ']') {
        return {};
    }
    const auto found = sliceTypes_.find(plug.substr(0, plug.rfind('[')));
    return found == sliceTypes_.end() ? std::string() : found->second;
}

void SceneBuilder::KeepForHead(const std::string& statement) {
    if (source_.mode == Mode::Open) {
        host_.files().preserved().headStatements.push_back(statement);
    }
}

void SceneBuilder::KeepForFile(const std::string& statement, const std::string& kind,
                               const std::string& warning) {
    NoteKept(kind, warning);
    if (source_.mode == Mode::Open) {
        host_.files().preserved().statements.push_back(statement);
    }
}

void SceneBuilder::Apply(const std::shared_ptr<Node>& node, const PlugSetting& setting) {
    if (IsForeign(*node)) {
        return;
    }
    // A scene file stores the current time in this attribute.
    if (node->Type().Name() == "time" && (setting.path == "o" || setting.path == "outTime")) {
        if (!setting.numbers.empty()) {
            host_.time().SetCurrentTime(setting.numbers.front());
        }
        return;
    }
    PlugSetting scaled = setting;
    units_.ToScene(node, scaled);
    PlugSettingApplier(host_, PlugSettingApplier::ApplyMode::Read).Apply(node, scaled);
}

void SceneBuilder::Require(const std::string& plugin, const std::string& version,
                           const std::string& statement) {
    if (plugin == "maya") {
        return;
    }
    const bool isFurther = !required_.insert(plugin).second;
    const bool isLoaded = LoadPlugin(plugin);
    if (isLoaded && (!isFurther || source_.mode != Mode::Open)) {
        return;
    }
    if (!isLoaded) {
        NoteKept("plug-in " + plugin, "The plug-in \"" + plugin + "\", version " + version +
                                          ", is not loaded; its nodes and data are kept and written back.");
    }
    auto& requirements = host_.files().preserved().requirements;
    const bool isListed = std::any_of(requirements.begin(), requirements.end(),
                                      [&](const auto& other) { return other.statement == statement; });
    if (!isListed) {
        requirements.push_back({plugin, statement, isFurther});
    }
}

bool SceneBuilder::LoadPlugin(const std::string& plugin) {
    // A file must not name the library that is run: a plug-in comes from the plug-in path alone.
    if (plugin.find_first_of("/\\:") != std::string::npos || plugin.compare(0, 1, ".") == 0) {
        return false;
    }
    PluginLoader& plugins = host_.plugins();
    if (plugins.Find(plugin)) {
        return true;
    }
    if (!plugins.LoadsOnDemand() || plugins.FindFile(plugin).empty()) {
        return false;
    }
    try {
        plugins.Load(plugin);
        return true;
    } catch (const PluginError& error) {
        ReportFault(error.what());
        return false;
    }
}

void SceneBuilder::SetUnits(const std::string& linear, const std::string& angular, const std::string& time) {
    if (!linear.empty() && !SceneUnits::LengthOf(linear)) {
        ReportFault("Unknown unit of length '" + linear + "'.");
    } else if (!linear.empty()) {
        units_.linear = linear;
    }
    if (!angular.empty()) {
        units_.angular = angular;
    }
    if (!hasHeadUnits_ && source_.mode == Mode::Open) {
        host_.files().SetUnits(units_);
    }
    hasHeadUnits_ = true;
    if (time.empty()) {
        return;
    }
    const MTime::Unit unit = UnitFromName(time);
    const bool isRate = time.size() > 3 && time.compare(time.size() - 3, 3, "fps") == 0 &&
                        time.find_first_not_of("0123456789.") == time.size() - 3;
    if (unit == MTime::kInvalid && isRate) {
        WarnOnce("rate", "There is no time unit '" + time + "' here. The frames stay as they are, at " +
                             UnitName(host_.time().Unit()) + ".");
    } else if (unit == MTime::kInvalid) {
        ReportFault("Unknown time unit '" + time + "'.");
    } else if (source_.mode == Mode::Open) {
        host_.time().SetUnit(unit);
    } else if (unit != host_.time().Unit() && !host_.files().Running(FileOperation::Open)) {
        // While a scene opens, its own time unit is not known yet: it comes after the references.
        WarnOnce("time unit", "The file's time unit is " + time + ", the scene's " +
                                  UnitName(host_.time().Unit()) + "; its keys keep their frame numbers.");
    }
}

void SceneBuilder::SetFileInfo(const std::string& key, const std::string& value) {
    if (source_.mode == Mode::Open) {
        host_.files().SetFileInfo(key, value);
    }
}

void SceneBuilder::Connect(const std::string& source, const std::string& destination,
                           const std::string& flags) {
    const auto split = [this](const std::string& text) {
        const std::size_t dot = text.find('.');
        return std::make_pair(dot == 0 ? current_ : Find(text.substr(0, dot)),
                              dot == std::string::npos ? std::string() : text.substr(dot + 1));
    };
    const auto [sourceNode, sourceAttribute] = split(source);
    const auto [destinationNode, destinationAttribute] = split(destination);
    if (!sourceNode || !destinationNode) {
        const std::string& plug = sourceNode ? destination : source;
        const std::string missing = plug.substr(0, plug.find('.'));
        KeepForFile("connectAttr " + Quoted(source) + " " + Quoted(destination) + flags, "node " + missing,
                    "No object matches name: " + missing + "; its connections are kept and written back.");
        return;
    }
    if (IsForeign(*sourceNode) && IsForeign(*destinationNode)) {
        return;
    }
    try {
        const Plug from = PlugSettingApplier::Resolve(sourceNode, sourceAttribute, 1).front();
        Plug to = PlugSettingApplier::Resolve(destinationNode, destinationAttribute, 1).front();
        const bool isNext = flags == " -na" && to.IsArray() && !to.attribute->indexMatters;
        if (isNext) {
            to = to.NextElement();
        } else if (!flags.empty() || to.IsArray()) {
            throw UnknownAttributeError(to.Name());
        }
        Connections& connections = host_.scene().connections();
        const Plug before = connections.SourceOf(to);
        if (before && before.node->isDefault && to.node->isDefault && before != from) {
            connections.Remove(before, to); // a new scene has it; the file has another one
        }
        if (!connections.Add(from, to) && connections.SourceOf(to) != from) {
            ReportFault("The attribute '" + to.Name() + "' is connected already.");
        }
    } catch (const SceneError&) {
        if (source_.mode != Mode::Reference) {
            host_.files().preserved().connections.push_back(
                {sourceNode, sourceAttribute, destinationNode, destinationAttribute, flags});
        }
    }
}

} // namespace lightbox
