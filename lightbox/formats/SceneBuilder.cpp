#include "formats/SceneBuilder.h"

#include "formats/MeshPlugSettings.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PreservedContent.h"
#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
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

namespace lightbox {
namespace {

constexpr int SCENE_CONFIGURATION = 6;
/// Limit of faults shown for one file; a damaged file may have very many.
constexpr int MAX_SHOWN_FAULTS = 50;

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
    if (static_cast<int>(kind.Number()) == SCENE_CONFIGURATION) {
        RunConfiguration(script.Text());
    }
    // The timeline holds the ranges now; saving writes a new script node.
    host_.scene().Detach(*sceneScript_);
    newNodes_.erase(std::remove(newNodes_.begin(), newNodes_.end(), sceneScript_), newNodes_.end());
    sceneScript_.reset();
}

void SceneBuilder::RunConfiguration(const std::string& script) {
    if (source_.mode != Mode::Open) {
        return;
    }
    try {
        host_.interpreter().Execute(script);
    } catch (const mel::Error& error) {
        ReportFault(std::string("The scene's configuration script failed: ") + error.what());
    }
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

void SceneBuilder::KeepForCurrent(const std::string& statement, const std::string& kind,
                                  const std::string& warning) {
    if (PreservedContent::NodeContent* content = ContentOfCurrent()) {
        WarnOnce(kind, warning);
        content->statements.push_back(statement);
    }
}

void SceneBuilder::KeepForCurrent(PreservedContent::BinaryValue value, const std::string& kind,
                                  const std::string& warning) {
    if (PreservedContent::NodeContent* content = ContentOfCurrent()) {
        WarnOnce(kind, warning);
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
    return &host_.files().preserved().BlockOf(missingDefault_).content;
}

void SceneBuilder::KeepForNode(const Node& node, const std::string& statement) {
    if (!IsForeign(node)) {
        host_.files().preserved().Of(node).statements.push_back(statement);
    }
}

void SceneBuilder::KeepForFile(const std::string& statement, const std::string& kind,
                               const std::string& warning) {
    WarnOnce(kind, warning);
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
    if (MeshPlugSettings::Handles(*node, setting.path)) {
        if (MeshPlugSettings::IsLength(setting.path)) {
            for (double& number : scaled.numbers) {
                number *= scale_.linear;
            }
        }
    } else if (scale_.linear != 1.0 || scale_.angular != 1.0) {
        Scale(PlugSettingApplier::Resolve(node, setting.path, setting.numbers.size()).front(), scaled);
    }
    PlugSettingApplier(host_, PlugSettingApplier::ApplyMode::Read).Apply(node, scaled);
}

void SceneBuilder::Scale(const Plug& plug, PlugSetting& setting) const {
    // The numbers of one element are consecutive, for example the time and the value of a key.
    std::vector<double> factors;
    const std::function<void(const Attribute&)> addFactors = [&](const Attribute& attribute) {
        for (const std::shared_ptr<Attribute>& child : attribute.Children()) {
            addFactors(*child);
        }
        if (attribute.Children().empty()) {
            factors.push_back(attribute.Kind() == AttributeKind::Distance ? scale_.linear
                              : attribute.Kind() == AttributeKind::Angle  ? scale_.angular
                                                                          : 1.0);
        }
    };
    addFactors(*plug.attribute);
    for (std::size_t i = 0; i < setting.numbers.size(); ++i) {
        setting.numbers[i] *= factors[i % factors.size()];
    }
}

void SceneBuilder::Require(const std::string& plugin, const std::string& version,
                           const std::string& statement) {
    if (plugin == "maya" || LoadPlugin(plugin)) {
        return;
    }
    WarnOnce("plug-in " + plugin, "The plug-in \"" + plugin + "\", version " + version +
                                      ", is not loaded; its nodes and data are kept and written back.");
    auto& requirements = host_.files().preserved().requirements;
    const bool isListed = std::any_of(requirements.begin(), requirements.end(),
                                      [&](const auto& other) { return other.plugin == plugin; });
    if (!isListed) {
        requirements.push_back({plugin, statement});
    }
}

bool SceneBuilder::LoadPlugin(const std::string& plugin) {
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
    static const std::map<std::string, double> lengths{
        {"mm", 0.1},   {"millimeter", 0.1}, {"cm", 1.0},      {"centimeter", 1.0},
        {"m", 100.0},  {"meter", 100.0},    {"km", 1e5},      {"kilometer", 1e5},
        {"in", 2.54},  {"inch", 2.54},      {"ft", 30.48},    {"foot", 30.48},
        {"yd", 91.44}, {"yard", 91.44},     {"mi", 160934.4}, {"mile", 160934.4},
        {"", 1.0}};
    const auto length = lengths.find(linear);
    if (length == lengths.end()) {
        ReportFault("Unknown unit of length '" + linear + "'.");
    } else if (!linear.empty()) {
        scale_.linear = length->second;
    }
    if (!angular.empty()) {
        scale_.angular = angular == "rad" || angular == "radian" ? 57.295779513082320877 : 1.0;
    }
    if (time.empty()) {
        return;
    }
    const MTime::Unit unit = UnitFromName(time);
    if (unit == MTime::kInvalid) {
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
        if (!host_.scene().connections().Add(from, to) && host_.scene().connections().SourceOf(to) != from) {
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
