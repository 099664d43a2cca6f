#include "host/Settings.h"

#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/SettingsFile.h"
#include "paint/ToolType.h"

#include <QFileInfo>
#include <QFont>
#include <QSettings>
#include <QStringList>

namespace vellix {

// These texts are made at run time and not QStringLiteral: the settings are among what Qt keeps in its own
// caches beyond the unloading of this library, where a literal's bytes would be gone.
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

const int Settings::MAX_PENCIL_SIZE;
const int Settings::MAX_BRUSH_SIZE;
const int Settings::MAX_ERASER_SIZE;
const int Settings::MAX_TEXT_SIZE;
const int Settings::MAX_LINE_SIZE;
const int Settings::MAX_ARROW_SIZE;
const int Settings::MAX_ELLIPSE_SIZE;
const int Settings::MAX_RECTANGLE_SIZE;
const int Settings::MIN_GHOSTED_FRAMES;
const int Settings::MAX_GHOSTED_FRAMES;
const int Settings::DEFAULT_GHOSTED_FRAME_COUNT;
const int Settings::DEFAULT_STATIC_FRAME_TIME;
const int Settings::FINAL_IMAGE_WIDTH;

QString Settings::mainMenuName = Settings::DEFAULT_MAIN_MENU_NAME;
QByteArray Settings::toolboxGeometry;
QByteArray Settings::toolOptionsGeometry;
QByteArray Settings::layerManagerGeometry;
QByteArray Settings::colorPaletteGeometry;
QByteArray Settings::retimingGeometry;

ToolType Settings::activeTool = ToolType::Brush;
QColor Settings::activeColor = Settings::DEFAULT_DRAW_COLOR;
int Settings::pencilSize = 6;
int Settings::pencilOpacity = 100;
bool Settings::pencilTabletEnabled = false;
int Settings::brushSize = 6;
int Settings::brushOpacity = 100;
bool Settings::brushTabletEnabled = true;
int Settings::eraserSize = 40;
QString Settings::textFontFamily;
int Settings::textSize = 20;
int Settings::textOpacity = 100;
int Settings::lineSize = 6;
int Settings::lineOpacity = 100;
int Settings::arrowSize = 6;
int Settings::arrowOpacity = 100;
int Settings::ellipseSize = 6;
int Settings::ellipseOpacity = 100;
int Settings::rectangleSize = 6;
int Settings::rectangleOpacity = 100;
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

int Settings::eraserOpacity = 100;
int Settings::brushHardness = 100;
int Settings::eraserHardness = 100;
bool Settings::eraserTabletEnabled = false;
bool Settings::excludeAsLocator = false;
std::atomic<float> Settings::tabletPressure(1.0f);
bool Settings::tabletEraserEnabled = false;
bool Settings::guiEnabled = false;

namespace {

/// The members of a tool; null where the tool has none.
struct ToolMembers {
    int* size;
    int maximumSize;
    int* opacity;
};

ToolMembers FindTool(ToolType tool) {
    switch (tool) {
    case ToolType::Pencil:
        return {&Settings::pencilSize, Settings::MAX_PENCIL_SIZE, &Settings::pencilOpacity};
    case ToolType::Brush:
        return {&Settings::brushSize, Settings::MAX_BRUSH_SIZE, &Settings::brushOpacity};
    case ToolType::Eraser:
        return {&Settings::eraserSize, Settings::MAX_ERASER_SIZE, &Settings::eraserOpacity};
    case ToolType::Text:
        return {&Settings::textSize, Settings::MAX_TEXT_SIZE, &Settings::textOpacity};
    case ToolType::Line:
        return {&Settings::lineSize, Settings::MAX_LINE_SIZE, &Settings::lineOpacity};
    case ToolType::Arrow:
        return {&Settings::arrowSize, Settings::MAX_ARROW_SIZE, &Settings::arrowOpacity};
    case ToolType::Ellipse:
        return {&Settings::ellipseSize, Settings::MAX_ELLIPSE_SIZE, &Settings::ellipseOpacity};
    case ToolType::Rectangle:
        return {&Settings::rectangleSize, Settings::MAX_RECTANGLE_SIZE, &Settings::rectangleOpacity};
    case ToolType::Transform:
        break;
    }
    Logger::Error(QStringLiteral("Unknown tool type: %1").arg(static_cast<int>(tool)));
    return {nullptr, 0, nullptr};
}

/// One group of the file. A missing key gives what the reader names, else the member's own value.
class Group {
public:
    Group(QSettings& file, const char* name)
        : m_file(file) {
        m_file.beginGroup(QLatin1String(name));
    }
    Group(const Group&) = delete;
    Group& operator=(const Group&) = delete;
    ~Group() { m_file.endGroup(); }

    void Read(const char* key, bool& member) const { ReadWithDefault(key, member, member); }
    void ReadWithDefault(const char* key, bool& member, bool missing) const {
        member = Value(key, missing).toBool();
    }
    void Read(const char* key, QString& member) const { member = Value(key, member).toString(); }
    void Read(const char* key, QColor& member) const { ReadWithDefault(key, member, member); }
    void ReadWithDefault(const char* key, QColor& member, const QColor& missing) const {
        member = Value(key, missing).value<QColor>();
    }
    void ReadGeometry(const char* key, QByteArray& member) const {
        member = Value(key, QByteArray()).toByteArray();
    }
    int ReadInt(const char* key, int missing) const { return Value(key, missing).toInt(); }
    /// Keeps the member unless the value lies in 0..maximum.
    void ReadChoice(const char* key, int& member, int maximum, int missing) const {
        const int value = ReadInt(key, missing);
        if (value >= 0 && value <= maximum) {
            member = value;
        }
    }
    void ReadGhostCount(const char* key, int& member) const {
        const int value = ReadInt(key, Settings::DEFAULT_GHOSTED_FRAME_COUNT);
        const bool valid = value >= Settings::MIN_GHOSTED_FRAMES && value <= Settings::MAX_GHOSTED_FRAMES;
        member = valid ? value : Settings::DEFAULT_GHOSTED_FRAME_COUNT;
    }
    void ReadSize(const char* key, ToolType tool) const {
        Settings::SetToolSize(tool, ReadInt(key, Settings::GetToolSize(tool)));
    }
    void ReadOpacity(const char* key, ToolType tool) const {
        Settings::SetToolOpacity(tool, ReadInt(key, Settings::GetToolOpacity(tool)));
    }

    void Write(const char* key, const QVariant& value) {
        m_file.setValue(QLatin1String(key), value);
        m_written.append(m_file.group() + QLatin1Char('/') + QLatin1String(key));
    }
    /// The keys that were written, in their order.
    const QStringList& Written() const { return m_written; }

private:
    QVariant Value(const char* key, const QVariant& missing) const {
        return m_file.value(QLatin1String(key), missing);
    }

    QSettings& m_file;
    QStringList m_written;
};

void ReadMainGroup(QSettings& file) {
    const Group group(file, "main");
    Settings::mainMenuName = Settings::DEFAULT_MAIN_MENU_NAME;
    group.Read("mainMenuName", Settings::mainMenuName);
    group.ReadGeometry("toolboxGeometry", Settings::toolboxGeometry);
    group.ReadGeometry("toolOptionsGeometry", Settings::toolOptionsGeometry);
    group.ReadGeometry("layerManagerGeometry", Settings::layerManagerGeometry);
    group.ReadGeometry("colorPaletteGeometry", Settings::colorPaletteGeometry);
    group.ReadGeometry("retimingToolGeometry", Settings::retimingGeometry);
}

void ReadToolsGroup(QSettings& file) {
    const Group group(file, "tools");
    int tool = static_cast<int>(Settings::activeTool);
    group.ReadChoice("activeTool", tool, static_cast<int>(ToolType::Transform), tool);
    Settings::activeTool = static_cast<ToolType>(tool);
    group.ReadWithDefault("activeColor", Settings::activeColor, Settings::DEFAULT_DRAW_COLOR);
    group.ReadSize("pencilSize", ToolType::Pencil);
    group.ReadOpacity("pencilOpacity", ToolType::Pencil);
    group.Read("pencilTabletEnabled", Settings::pencilTabletEnabled);
    group.ReadSize("brushSize", ToolType::Brush);
    group.ReadOpacity("brushOpacity", ToolType::Brush);
    group.Read("brushTabletEnabled", Settings::brushTabletEnabled);
    group.ReadSize("eraserSize", ToolType::Eraser);
    group.Read("textFontFamily", Settings::textFontFamily);
    group.ReadSize("textSize", ToolType::Text);
    group.ReadOpacity("textOpacity", ToolType::Text);
    group.ReadSize("lineSize", ToolType::Line);
    group.ReadOpacity("lineOpacity", ToolType::Line);
    group.ReadSize("arrowSize", ToolType::Arrow);
    group.ReadOpacity("arrowOpacity", ToolType::Arrow);
    group.ReadSize("ellipseSize", ToolType::Ellipse);
    group.ReadOpacity("ellipseOpacity", ToolType::Ellipse);
    group.ReadSize("rectangleSize", ToolType::Rectangle);
    group.ReadOpacity("rectangleOpacity", ToolType::Rectangle);
    group.ReadWithDefault("ghostPrev", Settings::ghostPrev, false);
    group.ReadWithDefault("ghostNext", Settings::ghostNext, false);
    group.ReadGhostCount("ghostPrevCount", Settings::ghostPrevCount);
    group.ReadGhostCount("ghostNextCount", Settings::ghostNextCount);
    group.Read("ghostColorOverride", Settings::ghostColorOverride);
    group.Read("ghostColorOverridePrev", Settings::ghostColorOverridePrev);
    group.Read("ghostColorOverrideNext", Settings::ghostColorOverrideNext);
    group.Read("retimeMoveToNextFrame", Settings::retimeMoveToNextFrame);
}

void ReadPreferencesGroup(QSettings& file) {
    const Group group(file, "preferences");
    group.Read("drawToolContextMenu", Settings::drawToolContextMenu);
    group.Read("transformToolContextMenu", Settings::transformToolContextMenu);
    group.Read("timelineContextMenu", Settings::timelineContextMenu);
    group.Read("toolboxDrawToolContextMenu", Settings::toolboxDrawToolContextMenu);
    group.Read("toolboxGhostingContextMenu", Settings::toolboxGhostingContextMenu);
    group.Read("showMainMenuInAnimationSet", Settings::showMainMenuInAnimationSet);
    group.Read("disableGhostingDuringPlayback", Settings::disableGhostingDuringPlayback);
    group.Read("timeControlRangeMoveEnabled", Settings::timeControlRangeMoveEnabled);
    group.Read("ignore2dPanZoom", Settings::ignore2dPanZoom);
    group.ReadChoice("defaultLayerState", Settings::defaultLayerState, 2, 0);
    group.ReadWithDefault("automaticallyAddFirstLayer", Settings::automaticallyAddFirstLayer, true);
    group.ReadWithDefault("alwaysDisplayNewLayerDialog", Settings::alwaysDisplayNewLayerDialog, false);
    group.ReadWithDefault("insertDefaultStaticFrame", Settings::insertDefaultStaticFrame, true);
    Settings::defaultStaticFrameTime =
        group.ReadInt("defaultStaticFrameTime", Settings::DEFAULT_STATIC_FRAME_TIME);
    group.ReadChoice("timelineFrameDisplay", Settings::timelineFrameDisplay, 2,
                     Settings::timelineFrameDisplay);
    group.Read("timelineFrameColor", Settings::timelineFrameColor);
}

QStringList WriteMainGroup(QSettings& file) {
    Group group(file, "main");
    group.Write("version", Settings::CONFIG_FILE_VERSION);
    group.Write("mainMenuName", Settings::mainMenuName);
    group.Write("toolboxGeometry", Settings::toolboxGeometry);
    group.Write("toolOptionsGeometry", Settings::toolOptionsGeometry);
    group.Write("layerManagerGeometry", Settings::layerManagerGeometry);
    group.Write("colorPaletteGeometry", Settings::colorPaletteGeometry);
    group.Write("retimingToolGeometry", Settings::retimingGeometry);
    return group.Written();
}

QStringList WriteToolsGroup(QSettings& file) {
    Group group(file, "tools");
    group.Write("activeTool", static_cast<int>(Settings::activeTool));
    group.Write("activeColor", Settings::activeColor);
    group.Write("pencilSize", Settings::pencilSize);
    group.Write("pencilOpacity", Settings::pencilOpacity);
    group.Write("pencilTabletEnabled", Settings::pencilTabletEnabled);
    group.Write("brushSize", Settings::brushSize);
    group.Write("brushOpacity", Settings::brushOpacity);
    group.Write("brushTabletEnabled", Settings::brushTabletEnabled);
    group.Write("eraserSize", Settings::eraserSize);
    group.Write("textFontFamily", Settings::textFontFamily);
    group.Write("textSize", Settings::textSize);
    group.Write("textOpacity", Settings::textOpacity);
    group.Write("lineSize", Settings::lineSize);
    group.Write("lineOpacity", Settings::lineOpacity);
    group.Write("arrowSize", Settings::arrowSize);
    group.Write("arrowOpacity", Settings::arrowOpacity);
    group.Write("ellipseSize", Settings::ellipseSize);
    group.Write("ellipseOpacity", Settings::ellipseOpacity);
    group.Write("rectangleSize", Settings::rectangleSize);
    group.Write("rectangleOpacity", Settings::rectangleOpacity);
    group.Write("ghostPrev", Settings::ghostPrev);
    group.Write("ghostNext", Settings::ghostNext);
    group.Write("ghostPrevCount", Settings::ghostPrevCount);
    group.Write("ghostNextCount", Settings::ghostNextCount);
    group.Write("ghostColorOverride", Settings::ghostColorOverride);
    group.Write("ghostColorOverridePrev", Settings::ghostColorOverridePrev);
    group.Write("ghostColorOverrideNext", Settings::ghostColorOverrideNext);
    group.Write("retimeMoveToNextFrame", Settings::retimeMoveToNextFrame);
    return group.Written();
}

QStringList WritePreferencesGroup(QSettings& file) {
    Group group(file, "preferences");
    group.Write("drawToolContextMenu", Settings::drawToolContextMenu);
    group.Write("transformToolContextMenu", Settings::transformToolContextMenu);
    group.Write("timelineContextMenu", Settings::timelineContextMenu);
    group.Write("toolboxDrawToolContextMenu", Settings::toolboxDrawToolContextMenu);
    group.Write("toolboxGhostingContextMenu", Settings::toolboxGhostingContextMenu);
    group.Write("showMainMenuInAnimationSet", Settings::showMainMenuInAnimationSet);
    group.Write("disableGhostingDuringPlayback", Settings::disableGhostingDuringPlayback);
    group.Write("timeControlRangeMoveEnabled", Settings::timeControlRangeMoveEnabled);
    group.Write("ignore2dPanZoom", Settings::ignore2dPanZoom);
    group.Write("defaultLayerState", Settings::defaultLayerState);
    group.Write("automaticallyAddFirstLayer", Settings::automaticallyAddFirstLayer);
    group.Write("alwaysDisplayNewLayerDialog", Settings::alwaysDisplayNewLayerDialog);
    group.Write("insertDefaultStaticFrame", Settings::insertDefaultStaticFrame);
    group.Write("defaultStaticFrameTime", Settings::defaultStaticFrameTime);
    group.Write("timelineFrameDisplay", Settings::timelineFrameDisplay);
    group.Write("timelineFrameColor", Settings::timelineFrameColor);
    return group.Written();
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

void Settings::ReadUserConfig() {
    // A plug-in that is loaded again may be the same library: what no file holds starts afresh all the same.
    eraserOpacity = 100;
    brushHardness = 100;
    eraserHardness = 100;
    eraserTabletEnabled = false;
    if (textFontFamily.isEmpty()) {
        textFontFamily = QFont().family();
    }

    const QString path = GetUserConfigPath();
    if (path.isEmpty()) {
        return;
    }
    SettingsFile::Disarm(path);
    QSettings file(path, QSettings::IniFormat);
    ReadMainGroup(file);
    ReadToolsGroup(file);
    ReadPreferencesGroup(file);
}

void Settings::WriteUserConfig() {
    const QString path = GetUserConfigPath();
    if (path.isEmpty()) {
        return;
    }
    SettingsFile::Disarm(path); // writing reads what is there already
    QSettings file(path, QSettings::IniFormat);
    const QStringList keys = WriteMainGroup(file) + WriteToolsGroup(file) + WritePreferencesGroup(file);
    file.sync();
    if (file.status() == QSettings::NoError) {
        SettingsFile::Sort(path, keys);
    }
}

int Settings::GetToolSize(ToolType tool) {
    const int* size = FindTool(tool).size;
    return size != nullptr ? *size : pencilSize;
}

void Settings::SetToolSize(ToolType tool, int size) {
    const ToolMembers values = FindTool(tool);
    if (values.size != nullptr) {
        *values.size = qBound(1, size, values.maximumSize);
    }
}

int Settings::GetToolOpacity(ToolType tool) {
    const int* opacity = FindTool(tool).opacity;
    return opacity != nullptr ? *opacity : pencilOpacity;
}

void Settings::SetToolOpacity(ToolType tool, int opacity) {
    const ToolMembers values = FindTool(tool);
    if (values.opacity != nullptr) {
        *values.opacity = qBound(1, opacity, 100);
    }
}

int Settings::GetToolHardness(ToolType tool) {
    switch (tool) {
    case ToolType::Brush:
        return brushHardness;
    case ToolType::Eraser:
        return eraserHardness;
    default:
        return 100;
    }
}

void Settings::SetToolHardness(ToolType tool, int hardness) {
    if (tool == ToolType::Brush) {
        // Below zero a soft brush is meant, not one without any core; zero itself can be asked for.
        brushHardness = hardness < 0 ? 10 : qMin(hardness, 100);
    } else if (tool == ToolType::Eraser) {
        eraserHardness = qBound(0, hardness, 100);
    }
}

bool Settings::IsTabletPressureEnabled(ToolType tool) {
    switch (tool) {
    case ToolType::Pencil:
        return pencilTabletEnabled;
    case ToolType::Brush:
        return brushTabletEnabled;
    case ToolType::Eraser:
        return eraserTabletEnabled;
    default:
        return false;
    }
}

} // namespace vellix
