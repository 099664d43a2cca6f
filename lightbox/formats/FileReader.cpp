#include "formats/FileReader.h"

#include "formats/AsciiStatements.h"
#include "formats/BinaryReader.h"
#include "formats/ChunkFile.h"
#include "formats/FileError.h"
#include "formats/MemoryStream.h"
#include "formats/MeshPlugSettings.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PreservedContent.h"
#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
#include "scene/DataType.h"
#include "scene/DataValue.h"
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
#include <limits>
#include <sstream>

namespace lightbox {
namespace {

constexpr char ASCII_SIGNATURE[] = "//Maya ASCII";
constexpr int SCENE_CONFIGURATION = 6;
/// Faults of one file that are shown one by one; a damaged file may have any number.
constexpr int SHOWN_FAULTS = 50;
constexpr char BYTE_ORDER_MARK[] = "\xef\xbb\xbf";

} // namespace

FileReader::FileReader(Host& host, Source source)
    : host_(host)
    , source_(std::move(source)) {}

void FileReader::CheckIsScene(const std::string& bytes, const std::string& path) {
    std::size_t begin = bytes.compare(0, 3, BYTE_ORDER_MARK) == 0 ? 3 : 0;
    begin = bytes.find_first_not_of(" \t\r\n", begin);
    const bool isAscii =
        begin != std::string::npos && bytes.compare(begin, sizeof ASCII_SIGNATURE - 1, ASCII_SIGNATURE) == 0;
    if (!isAscii && !ChunkFile::HasSignature(bytes)) {
        throw FileError("\"" + path + "\" is not a scene that can be read (Maya ASCII or Lightbox binary).");
    }
}

void FileReader::Read(std::string bytes) {
    CheckIsScene(bytes, source_.path);
    const UndoQueue::Pause pause(host_.undo());
    Scene& scene = host_.scene();
    const std::string nameSpaceBefore = std::exchange(scene.currentNamespace, std::string());
    if (ChunkFile::HasSignature(bytes)) {
        BinaryReader(host_, *this).Read(bytes);
    } else {
        ReadAscii(std::move(bytes));
    }
    ApplySceneScript();
    scene.currentNamespace = nameSpaceBefore;
}

void FileReader::ReadAscii(std::string text) {
    if (text.compare(0, 3, BYTE_ORDER_MARK) == 0) {
        text.erase(0, 3);
    }
    WarnIfCutOff(text);
    isAscii_ = true;
    Run(std::move(text));
}

void FileReader::RunStatement(const std::string& text) {
    Run(text + ";");
}

void FileReader::Run(std::string text) {
    mel::RunOptions options;
    options.streamed = true;
    options.beforeStatement = [this](std::string_view statement, std::string_view before) {
        return BeforeStatement(statement, before);
    };
    options.onError = [this](const mel::Error& error) { return OnError(error); };
    try {
        host_.interpreter().Execute(std::move(text), source_.path, options);
    } catch (const mel::Error& error) {
        // What stopped the reading: a syntax error, or the user.
        ++faults_;
        host_.output().Error(error.Described());
    }
    statement_ = {};
}

bool FileReader::BeforeStatement(std::string_view statement, std::string_view before) {
    textBefore_ = before;
    statement_ = statement.substr(0, statement.find_last_not_of(" \t\r\n") + 1);
    if (!statement_.empty() && statement_.back() == ';') {
        statement_.remove_suffix(1);
    }
    const std::size_t end = statement.find_first_of(" \t\r\n;(\"-=$");
    const std::string word(statement.substr(0, end));
    const bool isWord =
        !word.empty() && (std::isalpha(static_cast<unsigned char>(word[0])) || word[0] == '_');
    mel::Interpreter& interpreter = host_.interpreter();
    static const std::set<std::string> keywords{"global", "proc", "if",    "for",    "while",  "do",
                                                "switch", "int",  "float", "string", "vector", "matrix"};
    if (!isWord || keywords.count(word) || interpreter.Commands().Find(word) ||
        interpreter.HasProcedure(word)) {
        return true;
    }
    KeepForFile("command " + word,
                "Unknown command '" + word + "'; its statements are kept and written back.");
    return false;
}

bool FileReader::OnError(const mel::Error& error) {
    if (error.IsSyntaxError()) {
        return false;
    }
    if (++faults_ <= SHOWN_FAULTS) {
        host_.output().Error(error.Described());
    } else if (faults_ == SHOWN_FAULTS + 1) {
        host_.output().Error("file: " + source_.path + ": there are more errors, which are not shown.");
    }
    return true;
}

void FileReader::WarnIfCutOff(std::string_view text) {
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    const std::size_t lineBegin = text.rfind('\n', end) + 1;
    if (end != std::string_view::npos && text.substr(lineBegin, 6) != "// End") {
        WarnOnce("cut off", "The file does not have its last line; it may have been cut off.");
    }
}

void FileReader::ApplySceneScript() {
    if (!sceneScript_) {
        return;
    }
    const Plug script(sceneScript_, sceneScript_->FindAttribute("before"));
    const Plug kind(sceneScript_, sceneScript_->FindAttribute("scriptType"));
    if (static_cast<int>(kind.Number()) == SCENE_CONFIGURATION) {
        RunConfiguration(script.Text());
    }
    // The ranges live in the timeline; saving writes the script node anew.
    host_.scene().Detach(*sceneScript_);
    newNodes_.erase(std::remove(newNodes_.begin(), newNodes_.end(), sceneScript_), newNodes_.end());
    sceneScript_.reset();
}

void FileReader::RunConfiguration(const std::string& script) {
    if (source_.mode != Mode::Open) {
        return;
    }
    try {
        host_.interpreter().Execute(script);
    } catch (const mel::Error& error) {
        ReportFault(std::string("The scene's configuration script failed: ") + error.what());
    }
}

std::string FileReader::Place() const {
    std::string place = "file: " + source_.path;
    if (isAscii_ && !statement_.empty()) {
        place += " line " + std::to_string(1 + std::count(textBefore_.begin(), textBefore_.end(), '\n'));
    }
    return place + ": ";
}

void FileReader::ReportFault(const std::string& message) {
    ++faults_;
    host_.output().Error(Place() + message);
}

void FileReader::WarnOnce(const std::string& kind, const std::string& message) {
    if (!message.empty() && warned_.insert(kind).second) {
        host_.output().Warning(Place() + message);
    }
}

void FileReader::KeepForCurrent(const std::string& kind, const std::string& warning) {
    if (current_) {
        KeepForNode(*current_, kind, warning);
    } else {
        WarnOnce(kind, warning);
        host_.files().preserved().BlockOf(missingDefault_).statements.push_back(StatementText());
    }
}

void FileReader::KeepForNode(const Node& node, const std::string& kind, const std::string& warning) {
    WarnOnce(kind, warning);
    if (!IsForeign(node)) {
        host_.files().preserved().Of(node).statements.push_back(StatementText());
    }
}

void FileReader::KeepForFile(const std::string& kind, const std::string& warning) {
    WarnOnce(kind, warning);
    if (source_.mode == Mode::Open) {
        host_.files().preserved().statements.push_back(StatementText());
    }
}

void FileReader::Apply(const std::shared_ptr<Node>& node, const PlugSetting& setting) {
    if (IsForeign(*node)) {
        return;
    }
    // Where a scene's current time is kept.
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

void FileReader::ApplyOrKeep(const std::shared_ptr<Node>& node, const PlugSetting& setting) {
    try {
        if (node) {
            Apply(node, setting);
            return;
        }
    } catch (const UnknownAttributeError&) {
        // Kept below.
    } catch (const SceneError& error) {
        ReportFault(error.what());
        return;
    }
    std::string text = ascii::SettingText(setting);
    text.resize(text.rfind(';'));
    statement_ = text;
    KeepForCurrent("attribute " + setting.path,
                   "Unknown attribute '" + setting.path + "'; it is kept and written back.");
    statement_ = {};
}

void FileReader::KeepAttribute(const Attribute& attribute) {
    std::ostringstream statements;
    ascii::WriteAddAttr(statements, attribute, "");
    const std::string text = statements.str();
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find(";\n", begin);
        statement_ = std::string_view(text).substr(begin, end - begin);
        KeepForCurrent("attribute " + attribute.LongName(),
                       "Unknown attribute '" + attribute.LongName() + "'; it is kept and written back.");
        begin = end + 2;
    }
    statement_ = {};
}

void FileReader::ApplyBinary(const std::shared_ptr<Node>& node, const PlugSetting& setting,
                             std::string_view bytes) {
    if (IsForeign(*node)) {
        return;
    }
    const auto type = host_.scene().types().FindDataType(setting.type);
    if (!type || !node->FindAttribute(setting.path.substr(0, setting.path.find('[')))) {
        WarnOnce("data type " + setting.type,
                 "Unknown data type '" + setting.type + "'; its values are kept and written back.");
        host_.files().preserved().Of(*node).values.push_back(
            {setting.path, setting.type, std::string(bytes)});
        return;
    }
    PlugSetting filled = setting;
    filled.data = TypeRegistry::MakeData(type);
    if (!filled.data || bytes.size() > std::numeric_limits<unsigned>::max()) {
        ReportFault("The value of \"" + setting.path + "\", of type \"" + setting.type +
                    "\", cannot be read.");
        return;
    }
    MemoryStream stream(bytes);
    const bool isRead = filled.data->Data().readBinary(stream, static_cast<unsigned>(bytes.size()));
    // What a damaged value still yields is worth having.
    try {
        Apply(node, filled);
    } catch (const SceneError& error) {
        ReportFault(error.what());
    }
    if (!isRead) {
        ReportFault("The value of \"" + setting.path + "\", of type \"" + setting.type +
                    "\", could not be read whole.");
    }
}

void FileReader::Scale(const Plug& plug, PlugSetting& setting) const {
    // The numbers of an element follow one another: the time and the value of a key, say.
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

void FileReader::Require(const std::string& plugin, const std::string& version,
                         const std::string& statement) {
    if (plugin == "maya" || LoadPlugin(plugin)) {
        return;
    }
    WarnOnce("plug-in " + plugin, "The plug-in \"" + plugin + "\", version " + version +
                                      ", is not loaded; what it brought is kept and written back.");
    auto& requirements = host_.files().preserved().requirements;
    const bool isListed = std::any_of(requirements.begin(), requirements.end(),
                                      [&](const auto& other) { return other.plugin == plugin; });
    if (!isListed) {
        requirements.push_back({plugin, statement});
    }
}

bool FileReader::LoadPlugin(const std::string& plugin) {
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

void FileReader::SetUnits(const std::string& linear, const std::string& angular, const std::string& time) {
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
        // A scene that is being opened says its unit behind its references.
        WarnOnce("time unit", "The file's time unit is " + time + ", the scene's " +
                                  UnitName(host_.time().Unit()) + "; its frames keep their numbers.");
    }
}

void FileReader::SetFileInfo(const std::string& key, const std::string& value) {
    if (source_.mode == Mode::Open) {
        host_.files().SetFileInfo(key, value);
    }
}

void FileReader::Connect(const std::string& source, const std::string& destination,
                         const std::string& flags) {
    const auto split = [this](const std::string& text) {
        const std::size_t dot = text.find('.');
        return std::make_pair(dot == 0 ? current_ : Find(text.substr(0, dot)),
                              dot == std::string::npos ? std::string() : text.substr(dot + 1));
    };
    const auto [sourceNode, sourceAttribute] = split(source);
    const auto [destinationNode, destinationAttribute] = split(destination);
    if (!sourceNode || !destinationNode) {
        const std::string text = "connectAttr " + Quoted(source) + " " + Quoted(destination) + flags;
        statement_ = text;
        const std::string& plug = sourceNode ? destination : source;
        const std::string missing = plug.substr(0, plug.find('.'));
        KeepForFile("node " + missing,
                    "No object matches name: " + missing + "; its connections are kept and written back.");
        statement_ = {};
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
