#include "host/Settings.h"

#include "host/GhostLayers.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/PanelTable.h"
#include "host/Setting.h"
#include "host/SettingsFile.h"
#include "host/ToolOptions.h"
#include "paint/ToolTable.h"

#include <QFileInfo>
#include <QFont>

#include <functional>
#include <map>
#include <vector>

namespace vellix {

namespace {

ToolOptions DefaultOptions(const ToolRow& tool) {
    return {tool.defaultSize, 100, 100, tool.Has(ToolRow::PRESSURE_ON), QString()};
}

std::map<ToolType, ToolOptions> DefaultOptions() {
    std::map<ToolType, ToolOptions> options;
    for (const ToolRow& tool : AllTools()) {
        options[tool.type] = DefaultOptions(tool);
    }
    return options;
}

std::map<ToolType, ToolOptions> g_toolOptions = DefaultOptions();

ToolOptions& OptionsOf(ToolType tool) {
    return g_toolOptions.at(tool);
}

std::map<Panel, QByteArray> g_panelGeometries;

std::map<ToolType, PenPressure> DefaultPressures() {
    std::map<ToolType, PenPressure> pressures;
    for (const ToolRow& tool : AllTools()) {
        if (tool.Has(ToolRow::PRESSURE)) {
            pressures[tool.type] = PenPressure();
        }
    }
    return pressures;
}

std::map<ToolType, PenPressure> g_pressures = DefaultPressures();

} // namespace

// Created at run time and not with QStringLiteral: Qt keeps some of these strings in caches after this
// library is unloaded, when the bytes of a literal would be gone.
const QString Settings::CONFIG_FILE_NAME = QString::fromLatin1("vellix2.ini");
const int Settings::CONFIG_FILE_VERSION;
const QString Settings::VERSION_STRING = QString::fromLatin1("2.5.4");
const QString Settings::APPLICATION_NAME = QString::fromLatin1("Vellix2");
const QString Settings::APPLICATION_TITLE = QString::fromLatin1("Vellix 2");
const QString Settings::AUTHOR = QString::fromLatin1("Vellix");

const char* const Settings::NODE_TYPE_NAME = "qmVellix";
const QString Settings::NODE_COMMAND_NAME = QString::fromLatin1("qmVellixNode");
const QString Settings::LAYER_COMMAND_NAME = QString::fromLatin1("qmVellixLayer");
const QString Settings::FRAME_COMMAND_NAME = QString::fromLatin1("qmVellixFrame");
const QString Settings::STROKE_COMMAND_NAME = QString::fromLatin1("qmVellixStroke");
const QString Settings::UTIL_COMMAND_NAME = QString::fromLatin1("qmVellixUtil");
const QString Settings::REPLAY_COMMAND_NAME = QString::fromLatin1("qmVellixReplay");
const QString Settings::EXPORT_COMMAND_NAME = QString::fromLatin1("qmVellixExport");
const QString Settings::IMPORT_COMMAND_NAME = QString::fromLatin1("qmVellixImport");
const QString Settings::DRAW_CONTEXT_COMMAND_NAME = QString::fromLatin1("qmVxDrawCtx");
const QString Settings::TRANSFORM_CONTEXT_COMMAND_NAME = QString::fromLatin1("qmVxTransformCtx");

const QString Settings::DEFAULT_MAIN_MENU_NAME = QString::fromLatin1("VX2");
const QString Settings::DEFAULT_LAYER_NAME = QString::fromLatin1("Layer");
const QColor Settings::DEFAULT_DRAW_COLOR = QColor(Qt::cyan);
const QColor Settings::DEFAULT_TIMELINE_FRAME_COLOR = QColor(143, 193, 207, 255);

const QString Settings::CREATE_MAIN_MENU_FUNC_NAME = QString::fromLatin1("qmVxCreateMainMenu");
const QString Settings::DELETE_MAIN_MENU_FUNC_NAME = QString::fromLatin1("qmVxDeleteMainMenu");
const QString Settings::UPDATE_MAIN_MENU_FUNC_NAME = QString::fromLatin1("qmVxUpdateMainMenu");
const QString Settings::CREATE_FLOATING_VIEWPORT_FUNC_NAME =
    QString::fromLatin1("qmVxCreateFloatingViewport");
const QString Settings::VIEWPORT_LOOK_THROUGH_FUNC_NAME = QString::fromLatin1("qmVxViewportLookThrough");
const QString Settings::VIEWPORT_CREATE_CAMERA_FUNC = QString::fromLatin1("qmVxViewportCreateCamera");
const QString Settings::DELETE_ACTIVE_LAYER_FUNC = QString::fromLatin1("qmVxDeleteActiveLayer");
const QString Settings::DELETE_ACTIVE_CAMERA_LAYERS_FUNC =
    QString::fromLatin1("qmVxDeleteActiveCameraLayers");
const QString Settings::DELETE_ALL_NODES_FUNC = QString::fromLatin1("qmVxDeleteAllNodes");

const int Settings::MAX_PENCIL_SIZE = FindTool(ToolType::Pencil)->maximumSize;
const int Settings::MAX_BRUSH_SIZE = FindTool(ToolType::Brush)->maximumSize;
const int Settings::MAX_ERASER_SIZE = FindTool(ToolType::Eraser)->maximumSize;
const int Settings::MAX_TEXT_SIZE = FindTool(ToolType::Text)->maximumSize;
const int Settings::MAX_LINE_SIZE = FindTool(ToolType::Line)->maximumSize;
const int Settings::MAX_ARROW_SIZE = FindTool(ToolType::Arrow)->maximumSize;
const int Settings::MAX_ELLIPSE_SIZE = FindTool(ToolType::Ellipse)->maximumSize;
const int Settings::MAX_RECTANGLE_SIZE = FindTool(ToolType::Rectangle)->maximumSize;
const int Settings::MIN_GHOSTED_FRAMES;
const int Settings::MAX_GHOSTED_FRAMES;
const int Settings::DEFAULT_GHOSTED_FRAME_COUNT;
const int Settings::MAX_ROLLED_DRAWINGS;
const int Settings::MAX_ROLL_RATE;
const int Settings::DEFAULT_STATIC_FRAME_TIME;
const int Settings::FINAL_IMAGE_WIDTH;

QString Settings::mainMenuName = Settings::DEFAULT_MAIN_MENU_NAME;
QByteArray& Settings::toolboxGeometry = g_panelGeometries[Panel::Toolbox];
QByteArray& Settings::toolOptionsGeometry = g_panelGeometries[Panel::ToolOptions];
QByteArray& Settings::layerManagerGeometry = g_panelGeometries[Panel::LayerManager];
QByteArray& Settings::colorPaletteGeometry = g_panelGeometries[Panel::ColorPalette];
QByteArray& Settings::retimingGeometry = g_panelGeometries[Panel::Retiming];

ToolType Settings::activeTool = ToolType::Brush;
QColor Settings::activeColor = Settings::DEFAULT_DRAW_COLOR;
int& Settings::pencilSize = OptionsOf(ToolType::Pencil).size;
int& Settings::pencilOpacity = OptionsOf(ToolType::Pencil).opacity;
bool& Settings::pencilTabletEnabled = OptionsOf(ToolType::Pencil).tabletEnabled;
int& Settings::brushSize = OptionsOf(ToolType::Brush).size;
int& Settings::brushOpacity = OptionsOf(ToolType::Brush).opacity;
bool& Settings::brushTabletEnabled = OptionsOf(ToolType::Brush).tabletEnabled;
int& Settings::eraserSize = OptionsOf(ToolType::Eraser).size;
QString& Settings::textFontFamily = OptionsOf(ToolType::Text).fontFamily;
int& Settings::textSize = OptionsOf(ToolType::Text).size;
int& Settings::textOpacity = OptionsOf(ToolType::Text).opacity;
int& Settings::lineSize = OptionsOf(ToolType::Line).size;
int& Settings::lineOpacity = OptionsOf(ToolType::Line).opacity;
int& Settings::arrowSize = OptionsOf(ToolType::Arrow).size;
int& Settings::arrowOpacity = OptionsOf(ToolType::Arrow).opacity;
int& Settings::ellipseSize = OptionsOf(ToolType::Ellipse).size;
int& Settings::ellipseOpacity = OptionsOf(ToolType::Ellipse).opacity;
int& Settings::rectangleSize = OptionsOf(ToolType::Rectangle).size;
int& Settings::rectangleOpacity = OptionsOf(ToolType::Rectangle).opacity;
bool Settings::ghostPrev = false;
bool Settings::ghostNext = false;
int Settings::ghostPrevCount = Settings::DEFAULT_GHOSTED_FRAME_COUNT;
int Settings::ghostNextCount = Settings::DEFAULT_GHOSTED_FRAME_COUNT;
bool Settings::ghostColorOverride = false;
QColor Settings::ghostColorOverridePrev = QColor(Qt::darkGreen);
QColor Settings::ghostColorOverrideNext = QColor(Qt::darkRed);
bool Settings::retimeMoveToNextFrame = false;

bool Settings::drawToolContextMenu = true;
bool Settings::transformToolContextMenu = true;
bool Settings::timelineContextMenu = true;
bool Settings::toolboxDrawToolContextMenu = true;
bool Settings::toolboxGhostingContextMenu = true;
bool Settings::showMainMenuInAnimationSet = false;
bool Settings::disableGhostingDuringPlayback = true;
bool Settings::timeControlRangeMoveEnabled = true;
bool Settings::ignore2dPanZoom = false;
int Settings::defaultLayerState = 0;
bool Settings::automaticallyAddFirstLayer = true;
bool Settings::alwaysDisplayNewLayerDialog = false;
bool Settings::insertDefaultStaticFrame = true;
int Settings::defaultStaticFrameTime = Settings::DEFAULT_STATIC_FRAME_TIME;
int Settings::timelineFrameDisplay = 0;
QColor Settings::timelineFrameColor = Settings::DEFAULT_TIMELINE_FRAME_COLOR;
LineStyle Settings::lineStyle;
std::vector<BrushPreset> Settings::brushPresets = BrushPreset::Defaults();
bool Settings::presetKeys = false;

int Settings::ghostLayers = static_cast<int>(GhostLayers::Active);
QColor Settings::pinnedColor = QColor(Qt::darkBlue);
int Settings::otherLayersOpacity = 100;
bool Settings::flipAllLayers = false;
int Settings::rollCount = 2;
int Settings::rollRate = 8;
QString Settings::flipPreviousKey;
QString Settings::flipNextKey;
QString Settings::rollKey;

int& Settings::eraserOpacity = OptionsOf(ToolType::Eraser).opacity;
int& Settings::brushHardness = OptionsOf(ToolType::Brush).hardness;
int& Settings::eraserHardness = OptionsOf(ToolType::Eraser).hardness;
bool& Settings::eraserTabletEnabled = OptionsOf(ToolType::Eraser).tabletEnabled;
bool Settings::excludeAsLocator = false;
std::atomic<float> Settings::tabletPressure(1.0f);
bool Settings::tabletEraserEnabled = false;
bool Settings::guiEnabled = false;

namespace {

constexpr const char* TOOLS = "tools";

void AddTool(std::vector<Setting>& settings, const ToolRow& tool) {
    constexpr const char* group = TOOLS;
    const ToolType type = tool.type;
    const QString word = QLatin1String(tool.word);
    ToolOptions& options = OptionsOf(type);
    if (tool.kind == ToolKind::Text) {
        settings.push_back(Setting::Of(group, word + QLatin1String("FontFamily"), options.fontFamily));
    }
    Setting size = Setting::Of(group, word + QLatin1String("Size"), options.size);
    size.set = [type](const QVariant& value) { Settings::SetToolSize(type, value.toInt()); };
    settings.push_back(size);
    if (tool.Has(ToolRow::SESSION_OPTIONS)) {
        return;
    }
    Setting opacity = Setting::Of(group, word + QLatin1String("Opacity"), options.opacity);
    opacity.set = [type](const QVariant& value) { Settings::SetToolOpacity(type, value.toInt()); };
    settings.push_back(opacity);
    if (tool.Has(ToolRow::PRESSURE)) {
        settings.push_back(Setting::Of(group, word + QLatin1String("TabletEnabled"), options.tabletEnabled));
    }
}

Setting Version() {
    return {"main", QLatin1String("version"), [] { return QVariant(Settings::CONFIG_FILE_VERSION); }, nullptr,
            QVariant()};
}

Setting ActiveTool() {
    const auto set = [](const QVariant& value) {
        const auto tool = static_cast<ToolType>(value.toInt());
        if (FindTool(tool) || tool == ToolType::Transform) {
            Settings::activeTool = tool;
        }
    };
    return {TOOLS, QLatin1String("activeTool"),
            [] { return QVariant(static_cast<int>(Settings::activeTool)); }, set, QVariant()};
}

using Missing = Setting::Missing;

// One row per setting: its key, its member, what a missing key does and which values are accepted, in the
// order of the file. The rows are created while the members hold their initial values, which become the
// defaults.

std::vector<Setting> MainSettings() {
    constexpr const char* group = "main";
    std::vector<Setting> settings = {
        Version(), Setting::Of(group, "mainMenuName", Settings::mainMenuName, Missing::Resets)};
    for (const PanelRow& panel : PANELS) {
        settings.push_back(Setting::Of(group, QLatin1String(panel.Name()) + QLatin1String("Geometry"),
                                       g_panelGeometries[panel.panel], Missing::Resets));
    }
    return settings;
}

std::vector<Setting> ToolSettings() {
    std::vector<Setting> settings = {
        ActiveTool(), Setting::Of(TOOLS, "activeColor", Settings::activeColor, Missing::Resets)};
    for (const ToolRow& tool : AllTools()) {
        AddTool(settings, tool);
    }
    return settings;
}

std::vector<Setting> GhostSettings() {
    constexpr const char* group = TOOLS;
    const int least = Settings::MIN_GHOSTED_FRAMES;
    const int most = Settings::MAX_GHOSTED_FRAMES;
    return {
        Setting::Of(group, "ghostPrev", Settings::ghostPrev, Missing::Resets),
        Setting::Of(group, "ghostNext", Settings::ghostNext, Missing::Resets),
        Setting::Count(group, "ghostPrevCount", Settings::ghostPrevCount, least, most),
        Setting::Count(group, "ghostNextCount", Settings::ghostNextCount, least, most),
        Setting::Of(group, "ghostColorOverride", Settings::ghostColorOverride),
        Setting::Of(group, "ghostColorOverridePrev", Settings::ghostColorOverridePrev),
        Setting::Of(group, "ghostColorOverrideNext", Settings::ghostColorOverrideNext),
        Setting::Of(group, "retimeMoveToNextFrame", Settings::retimeMoveToNextFrame),
    };
}

std::vector<Setting> PreferenceSettings() {
    constexpr const char* group = "preferences";
    return {
        Setting::Of(group, "drawToolContextMenu", Settings::drawToolContextMenu),
        Setting::Of(group, "transformToolContextMenu", Settings::transformToolContextMenu),
        Setting::Of(group, "timelineContextMenu", Settings::timelineContextMenu),
        Setting::Of(group, "toolboxDrawToolContextMenu", Settings::toolboxDrawToolContextMenu),
        Setting::Of(group, "toolboxGhostingContextMenu", Settings::toolboxGhostingContextMenu),
        Setting::Of(group, "showMainMenuInAnimationSet", Settings::showMainMenuInAnimationSet),
        Setting::Of(group, "disableGhostingDuringPlayback", Settings::disableGhostingDuringPlayback),
        Setting::Of(group, "timeControlRangeMoveEnabled", Settings::timeControlRangeMoveEnabled),
        Setting::Of(group, "ignore2dPanZoom", Settings::ignore2dPanZoom),
        Setting::Choice(group, "defaultLayerState", Settings::defaultLayerState, 2, Missing::Resets),
        Setting::Of(group, "automaticallyAddFirstLayer", Settings::automaticallyAddFirstLayer,
                    Missing::Resets),
        Setting::Of(group, "alwaysDisplayNewLayerDialog", Settings::alwaysDisplayNewLayerDialog,
                    Missing::Resets),
        Setting::Of(group, "insertDefaultStaticFrame", Settings::insertDefaultStaticFrame, Missing::Resets),
        Setting::Of(group, "defaultStaticFrameTime", Settings::defaultStaticFrameTime, Missing::Resets),
        Setting::Choice(group, "timelineFrameDisplay", Settings::timelineFrameDisplay, 2),
        Setting::Of(group, "timelineFrameColor", Settings::timelineFrameColor),
    };
}

constexpr const char* LINE = "line";

/// A setting that is kept as text. What does not read, or is missing, is the value at the start.
template <typename Value>
Setting AsText(const QString& key, const std::function<Value&()>& member) {
    const QString first = member().ToText();
    const auto set = [member, first](const QVariant& value) {
        if (!Value::FromText(value.toString(), member())) {
            Value::FromText(first, member());
        }
    };
    return {LINE, key, [member] { return QVariant(member().ToText()); }, set, QVariant(first)};
}

std::vector<Setting> LineSettings() {
    LineStyle& style = Settings::lineStyle;
    std::vector<Setting> settings = {
        Setting::Of(LINE, "smoothCurves", style.smoothCurves),
        Setting::Count(LINE, "stabiliser", style.stabiliser, 0, LineStyle::MAX_STABILISER),
    };
    for (const ToolRow& tool : AllTools()) {
        if (tool.Has(ToolRow::PRESSURE)) {
            PenPressure& pressure = g_pressures.at(tool.type);
            settings.push_back(AsText<PenPressure>(QLatin1String(tool.word) + QLatin1String("Pressure"),
                                                   [&pressure]() -> PenPressure& { return pressure; }));
        }
    }
    settings.push_back(Setting::Of(LINE, "presetKeys", Settings::presetKeys, Missing::Resets));
    for (std::size_t i = 0; i < Settings::brushPresets.size(); ++i) {
        settings.push_back(AsText<BrushPreset>(QStringLiteral("preset%1").arg(i + 1),
                                               [i]() -> BrushPreset& { return Settings::brushPresets[i]; }));
    }
    return settings;
}

std::vector<Setting> LightTableSettings() {
    constexpr const char* group = "lightTable";
    const int drawings = Settings::MAX_ROLLED_DRAWINGS;
    const int rate = Settings::MAX_ROLL_RATE;
    return {
        Setting::Choice(group, "ghostLayers", Settings::ghostLayers, static_cast<int>(GhostLayers::Visible)),
        Setting::Of(group, "pinnedColor", Settings::pinnedColor),
        Setting::Count(group, "otherLayersOpacity", Settings::otherLayersOpacity, 0, 100),
        Setting::Of(group, "flipAllLayers", Settings::flipAllLayers),
        Setting::Count(group, "rollCount", Settings::rollCount, 1, drawings),
        Setting::Count(group, "rollRate", Settings::rollRate, 1, rate),
        Setting::Of(group, "flipPreviousKey", Settings::flipPreviousKey),
        Setting::Of(group, "flipNextKey", Settings::flipNextKey),
        Setting::Of(group, "rollKey", Settings::rollKey),
    };
}

std::vector<Setting> AllSettings() {
    std::vector<Setting> all;
    for (const auto& group : {MainSettings(), ToolSettings(), GhostSettings(), PreferenceSettings(),
                              LineSettings(), LightTableSettings()}) {
        all.insert(all.end(), group.begin(), group.end());
    }
    return all;
}

const std::vector<Setting> SETTINGS = AllSettings();

/// Resets the options that the file does not store. A plug-in that is loaded again may be the same library in
/// memory, with the old values.
void ResetSessionOptions() {
    for (const ToolRow& tool : AllTools()) {
        const ToolOptions first = DefaultOptions(tool);
        ToolOptions& options = OptionsOf(tool.type);
        options.hardness = first.hardness;
        if (tool.Has(ToolRow::SESSION_OPTIONS)) {
            options.opacity = first.opacity;
            options.tabletEnabled = first.tabletEnabled;
        }
    }
}

/// Returns the options of a tool. Logs an error and returns null for an unknown tool.
ToolOptions* FindOptions(ToolType tool) {
    const auto found = g_toolOptions.find(tool);
    if (found != g_toolOptions.end()) {
        return &found->second;
    }
    Logger::Error(QStringLiteral("Unknown tool type: %1").arg(static_cast<int>(tool)));
    return nullptr;
}

bool HasTrait(ToolType type, ToolRow::Trait trait) {
    const ToolRow* const tool = FindTool(type);
    return tool != nullptr && tool->Has(trait);
}

} // namespace

QString Settings::GetUserConfigPath() {
    const QString folder = MayaUtil::GetMayaPrefsDirectory();
    if (folder.isEmpty()) {
        Logger::Error("Failed to retrieve Maya prefs directory");
        return QString();
    }
    return QFileInfo(folder + QLatin1Char('/') + CONFIG_FILE_NAME).absoluteFilePath();
}

QByteArray& Settings::GetPanelGeometry(Panel panel) {
    return g_panelGeometries[panel];
}

void Settings::ReadUserConfig() {
    ResetSessionOptions();
    if (textFontFamily.isEmpty()) {
        textFontFamily = QFont().family();
    }

    const QString path = GetUserConfigPath();
    if (path.isEmpty()) {
        return;
    }
    const SettingsFile file(path);
    for (const Setting& setting : SETTINGS) {
        if (setting.set) {
            setting.set(file.Value(QLatin1String(setting.group), setting.key, setting.GetDefault()));
        }
    }
}

void Settings::WriteUserConfig() {
    const QString path = GetUserConfigPath();
    if (path.isEmpty()) {
        return;
    }
    SettingsFile file(path); // what others have written there stays
    for (const Setting& setting : SETTINGS) {
        file.Set(QLatin1String(setting.group), setting.key, setting.get());
    }
    const QString fault = file.Write();
    if (!fault.isEmpty()) {
        Logger::Warning('"' + path + "\" cannot be written: " + fault + '.');
    }
}

const ToolOptions& Settings::GetToolOptions(ToolType tool) {
    const ToolOptions* const options = FindOptions(tool);
    return options ? *options : OptionsOf(ToolType::Pencil);
}

void Settings::SetToolOptions(ToolType tool, const ToolOptions& options) {
    if (ToolOptions* const stored = FindOptions(tool)) {
        SetToolSize(tool, options.size);
        SetToolOpacity(tool, options.opacity);
        SetToolHardness(tool, options.hardness);
        stored->tabletEnabled = options.tabletEnabled;
        stored->fontFamily = options.fontFamily;
    }
}

int Settings::GetToolSize(ToolType tool) {
    return GetToolOptions(tool).size;
}

void Settings::SetToolSize(ToolType tool, int size) {
    if (ToolOptions* const options = FindOptions(tool)) {
        options->size = qBound(1, size, FindTool(tool)->maximumSize);
    }
}

int Settings::GetToolOpacity(ToolType tool) {
    return GetToolOptions(tool).opacity;
}

void Settings::SetToolOpacity(ToolType tool, int opacity) {
    if (ToolOptions* const options = FindOptions(tool)) {
        options->opacity = qBound(1, opacity, 100);
    }
}

int Settings::GetToolHardness(ToolType tool) {
    return HasTrait(tool, ToolRow::HARDNESS) ? OptionsOf(tool).hardness : 100;
}

void Settings::SetToolHardness(ToolType tool, int hardness) {
    if (HasTrait(tool, ToolRow::HARDNESS)) {
        // A negative value asks for a soft brush that keeps a hard core. Zero itself is allowed.
        const int softest = tool == ToolType::Brush && hardness < 0 ? 10 : 0;
        OptionsOf(tool).hardness = qBound(softest, hardness, 100);
    }
}

bool Settings::IsTabletPressureEnabled(ToolType tool) {
    return HasTrait(tool, ToolRow::PRESSURE) && OptionsOf(tool).tabletEnabled;
}

const PenPressure& Settings::GetPenPressure(ToolType tool) {
    static const PenPressure none;
    return HasTrait(tool, ToolRow::PRESSURE) ? g_pressures.at(tool) : none;
}

void Settings::SetPenPressure(ToolType tool, const PenPressure& pressure) {
    if (HasTrait(tool, ToolRow::PRESSURE)) {
        g_pressures.at(tool) = pressure;
    }
}

BrushPreset Settings::GetBrush() {
    BrushPreset brush;
    brush.tool = FindTool(activeTool) ? activeTool : ToolType::Pencil;
    const ToolOptions& options = GetToolOptions(brush.tool);
    brush.size = options.size;
    brush.opacity = options.opacity;
    brush.hardness = GetToolHardness(brush.tool);
    brush.pressureSetsOpacity = IsTabletPressureEnabled(brush.tool);
    brush.pressure = GetPenPressure(brush.tool);
    return brush;
}

void Settings::UseBrush(const BrushPreset& preset) {
    ToolOptions options = GetToolOptions(preset.tool);
    options.size = preset.size;
    options.opacity = preset.opacity;
    options.hardness = preset.hardness;
    options.tabletEnabled = preset.pressureSetsOpacity;
    SetToolOptions(preset.tool, options);
    SetPenPressure(preset.tool, preset.pressure);
    activeTool = preset.tool;
}

} // namespace vellix
