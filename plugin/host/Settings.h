#pragma once

#include "paint/BrushPreset.h"
#include "paint/ImageSize.h"
#include "paint/LineStyle.h"
#include "paint/PenPressure.h"

#include <QByteArray>
#include <QColor>
#include <QString>

#include <atomic>
#include <vector>

namespace vellix {

enum class Panel;
enum class ToolType : qint32;
struct ToolOptions;

/// The user's preferences, and the names and limits that the whole plug-in shares. Has static members only:
/// all code reads and writes them directly on the host's main thread. ReadUserConfig and WriteUserConfig
/// transfer the persisted ones from and to the INI file.
class Settings {
public:
    static const QString CONFIG_FILE_NAME;
    static const int CONFIG_FILE_VERSION = 1;
    static const QString VERSION_STRING;
    static const QString APPLICATION_NAME;
    static const QString APPLICATION_TITLE;
    static const QString AUTHOR;

    static const char* const NODE_TYPE_NAME;
    static const QString NODE_COMMAND_NAME;
    static const QString LAYER_COMMAND_NAME;
    static const QString FRAME_COMMAND_NAME;
    static const QString STROKE_COMMAND_NAME;
    static const QString UTIL_COMMAND_NAME;
    static const QString REPLAY_COMMAND_NAME;
    static const QString EXPORT_COMMAND_NAME;
    static const QString IMPORT_COMMAND_NAME;
    static const QString DRAW_CONTEXT_COMMAND_NAME;
    static const QString TRANSFORM_CONTEXT_COMMAND_NAME;

    static const QString DEFAULT_MAIN_MENU_NAME;
    static const QString DEFAULT_LAYER_NAME;
    static const QColor DEFAULT_DRAW_COLOR;
    static const QColor DEFAULT_TIMELINE_FRAME_COLOR;

    static const QString CREATE_MAIN_MENU_FUNC_NAME;
    static const QString DELETE_MAIN_MENU_FUNC_NAME;
    static const QString UPDATE_MAIN_MENU_FUNC_NAME;
    static const QString CREATE_FLOATING_VIEWPORT_FUNC_NAME;
    static const QString VIEWPORT_LOOK_THROUGH_FUNC_NAME;
    static const QString VIEWPORT_CREATE_CAMERA_FUNC;
    static const QString DELETE_ACTIVE_LAYER_FUNC;
    static const QString DELETE_ACTIVE_CAMERA_LAYERS_FUNC;
    static const QString DELETE_ALL_NODES_FUNC;

    static const int MAX_PENCIL_SIZE;
    static const int MAX_BRUSH_SIZE;
    static const int MAX_ERASER_SIZE;
    static const int MAX_TEXT_SIZE;
    static const int MAX_LINE_SIZE;
    static const int MAX_ARROW_SIZE;
    static const int MAX_ELLIPSE_SIZE;
    static const int MAX_RECTANGLE_SIZE;
    static const int MIN_GHOSTED_FRAMES = 1;
    static const int MAX_GHOSTED_FRAMES = 9;
    static const int DEFAULT_GHOSTED_FRAME_COUNT = 3;
    static const int MAX_ROLLED_DRAWINGS = 9;
    static const int MAX_ROLL_RATE = 30;
    static const int DEFAULT_STATIC_FRAME_TIME = -999;
    static const int FINAL_IMAGE_WIDTH = IMAGE_WIDTH; ///< width and height of every layer image, pixels

    // Group "main".
    static QString mainMenuName;
    // Places of single panels, for direct access; GetPanelGeometry gives that of any panel.
    static QByteArray& toolboxGeometry;
    static QByteArray& toolOptionsGeometry;
    static QByteArray& layerManagerGeometry;
    static QByteArray& colorPaletteGeometry;
    static QByteArray& retimingGeometry;

    // Group "tools". Sizes in image pixels (text: points), opacity and hardness in percent.
    static ToolType activeTool;
    static QColor activeColor;
    // Options of single tools, for direct access; GetToolOptions gives those of any tool.
    static int& pencilSize;
    static int& pencilOpacity;
    static bool& pencilTabletEnabled;
    static int& brushSize;
    static int& brushOpacity;
    static bool& brushTabletEnabled;
    static int& eraserSize;
    static QString& textFontFamily; ///< empty until ReadUserConfig: fonts need a running application
    static int& textSize;
    static int& textOpacity;
    static int& lineSize;
    static int& lineOpacity;
    static int& arrowSize;
    static int& arrowOpacity;
    static int& ellipseSize;
    static int& ellipseOpacity;
    static int& rectangleSize;
    static int& rectangleOpacity;
    static bool ghostPrev;
    static bool ghostNext;
    static int ghostPrevCount;
    static int ghostNextCount;
    static bool ghostColorOverride;
    static QColor ghostColorOverridePrev;
    static QColor ghostColorOverrideNext;
    static bool retimeMoveToNextFrame;

    // Group "preferences".
    static bool drawToolContextMenu;
    static bool transformToolContextMenu;
    static bool timelineContextMenu;
    static bool toolboxDrawToolContextMenu;
    static bool toolboxGhostingContextMenu;
    static bool showMainMenuInAnimationSet;
    static bool disableGhostingDuringPlayback;
    static bool timeControlRangeMoveEnabled;
    static bool ignore2dPanZoom;
    static int defaultLayerState; ///< a LayerState
    static bool automaticallyAddFirstLayer;
    static bool alwaysDisplayNewLayerDialog;
    static bool insertDefaultStaticFrame;
    static int defaultStaticFrameTime; ///< frames
    static int timelineFrameDisplay;   ///< a TimelineFrameDisplay
    static QColor timelineFrameColor;

    // Group "line".
    static LineStyle lineStyle;                   ///< of the pencil, brush and eraser
    static std::vector<BrushPreset> brushPresets; ///< always BrushPreset::COUNT
    static bool presetKeys;                       ///< the number keys choose presets in views, too

    // Group "lightTable".
    static int ghostLayers; ///< a GhostLayers
    static QColor pinnedColor;
    static int otherLayersOpacity; ///< 0..100; 100: as drawn
    static bool flipAllLayers;
    static int rollCount; ///< drawings on each side of the current one
    static int rollRate;  ///< drawings a second
    // Keys that are held, as QKeySequence::PortableText; empty for none.
    static QString flipPreviousKey;
    static QString flipNextKey;
    static QString rollKey;

    // Never persisted.
    static int& eraserOpacity;
    static int& brushHardness;
    static int& eraserHardness;
    static bool& eraserTabletEnabled;
    static bool excludeAsLocator; ///< the node stays visible when locators are hidden in a view
    /// The pressure of the last sample, 0..1. The main thread writes it, the input thread reads it.
    static std::atomic<float> tabletPressure;
    static bool tabletEraserEnabled; ///< true while the pen's eraser end is in use
    static bool guiEnabled;          ///< the host runs with a user interface

    /// The absolute path of the settings file. If the host names no preferences folder, logs an error and
    /// returns an empty string.
    static QString GetUserConfigPath();
    static void ReadUserConfig();
    static void WriteUserConfig();

    /// The panel's place and size as QWidget::saveGeometry gives it; empty if none is stored.
    static QByteArray& GetPanelGeometry(Panel panel);

    /// For an unknown tool these log an error; getters return the pencil's value, setters store nothing.
    static const ToolOptions& GetToolOptions(ToolType tool);
    static void SetToolOptions(ToolType tool, const ToolOptions& options);
    static int GetToolSize(ToolType tool);
    static void SetToolSize(ToolType tool, int size);
    static int GetToolOpacity(ToolType tool);
    static void SetToolOpacity(ToolType tool, int opacity);

    /// For a tool without hardness the getter returns 100 and the setter does nothing.
    static int GetToolHardness(ToolType tool);
    static void SetToolHardness(ToolType tool, int hardness);
    static bool IsTabletPressureEnabled(ToolType tool);
    /// What a pen's pressure does besides; without effect for a tool without pressure.
    static const PenPressure& GetPenPressure(ToolType tool);
    static void SetPenPressure(ToolType tool, const PenPressure& pressure);

    /// The active drawing tool with its options; that of the pencil if no drawing tool is active.
    static BrushPreset GetBrush();
    /// Makes the preset's tool the active one, with the preset's options. A stroke in progress keeps its own.
    static void UseBrush(const BrushPreset& preset);
};

} // namespace vellix
