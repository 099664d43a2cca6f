#pragma once

#include "host/TimelineFrameDisplay.h"

#include <maya/MApiNamespace.h>
#include <maya/MString.h>

#include <QString>

class QColor;
class QStringList;
class QWidget;

namespace vellix {

enum class LayerState : qint32;
enum class ToolType : qint32;
struct HeldKey;
struct PenPressure;
struct ToolOptions;

/// The plug-in's access to the host. Builds and executes every MEL line of the plug-in, holds the menu
/// script, and answers simple queries about the host. Main thread only. Operations that execute a line return
/// whether it succeeded, and log nothing. Quotes, backslashes and line breaks in names are escaped as in a
/// MEL string.
class MayaUtil {
public:
    // Execution. The forms with a result also fail when the result has another type; on failure `out` keeps
    // its value.
    static bool ExecuteMel(const MString& command, bool displayEnabled, bool undoEnabled);
    static bool ExecuteMel(const QString& command, bool displayEnabled, bool undoEnabled);
    static bool ExecuteMelIntResult(const MString& command, int& out, bool displayEnabled, bool undoEnabled);
    static bool ExecuteMelIntResult(const QString& command, int& out, bool displayEnabled, bool undoEnabled);
    static bool ExecuteMelDoubleArrayResult(const MString& command, MDoubleArray& out, bool displayEnabled,
                                            bool undoEnabled);
    static bool ExecuteMelDoubleArrayResult(const QString& command, MDoubleArray& out, bool displayEnabled,
                                            bool undoEnabled);
    static bool ExecuteMelStringResult(const MString& command, MString& out, bool displayEnabled,
                                       bool undoEnabled);
    static bool ExecuteMelStringResult(const QString& command, QString& out, bool displayEnabled,
                                       bool undoEnabled);

    static QString ToQString(const MString& text);
    static MString ToMString(const QString& text);

    /// Escapes the text for use between the quotes of a MEL string. The text is cut at a NUL, where a MEL
    /// string ends.
    static QString EscapeString(const QString& text);

    // The menu script.
    static bool SourceScripts();
    static QString ParseScript(const QString& text);
    static bool CreateMainMenu();
    static bool UpdateMainMenu();
    static bool DeleteMainMenu();
    static bool DeleteActiveLayer();
    static bool DeleteActiveCameraLayers();
    static bool DeleteAllNodes();
    static bool CreateFloatingViewport(const QString& camera);

    /// Makes the scene count as changed since it was saved, for a change that leaves no undo step.
    static bool MarkSceneModified();

    // The node. Executed when the host is idle, so it may be called inside callbacks and other commands.
    static bool CreateNode(bool addLayer, bool addFrames, const QString& camera, const QString& layerName,
                           int layerState);
    /// Creates the node without a layer, unless the scene has one by then.
    static bool CreateMissingNode();
    /// Creates the node at once, without a layer, as an undo step.
    static bool CreateNodeNow();

    // Layers. Indexes count from the bottom of the camera's stack.
    static bool AddLayer(const QString& camera, const QString& name, int state);
    static bool RemoveLayer(const QString& camera, int index);
    static bool MoveLayer(const QString& camera, int from, int to);
    static bool MoveLayer(const QString& sourceCamera, int index, const QString& targetCamera,
                          int targetIndex);
    static bool MoveAllLayers(const QString& sourceCamera, const QString& targetCamera);
    /// Brings the layers of another drawing node into the drawing that is edited, and takes that node away.
    static bool TakeLayers(const QString& node);
    static bool SetActiveLayer(const QString& camera, int index);
    static bool SetLayerName(const QString& camera, int index, const QString& name);
    static bool SetLayerVisible(const QString& camera, int index, bool visible);
    static bool SetLayerMarked(const QString& camera, int index, bool marked);
    static bool SetLayerState(const QString& camera, int index, LayerState state);
    static bool RefreshLayerManagerDialog();

    /// Commits the stroke in progress. `layer` is the index of a layer that was added for the stroke, or
    /// negative. `frameAdded` says whether a frame was added for it.
    static bool PushStroke(const QString& camera, int layer, bool frameAdded);

    // Tools.
    static bool Draw();
    static bool ActivateTransformTool();
    static bool SetTool(const QString& flag);
    /// Activates a drawing tool. Returns false for any other tool.
    static bool SetTool(ToolType tool);
    /// Sets all options of a drawing tool. Returns false for any other tool.
    static bool SetToolOptions(ToolType tool, const ToolOptions& options);
    /// How the line of the freehand tools follows the pen; see LineStyle.
    static bool SetSmoothCurves(bool on);
    static bool SetStabiliser(int length);
    /// What a pen's pressure does to the tool's size and opacity. Returns false for a tool without pressure.
    static bool SetSizePressure(ToolType tool, const PenPressure& pressure);
    static bool SetOpacityPressure(ToolType tool, const PenPressure& pressure);
    /// Presets are numbered from 1.
    static bool ChoosePreset(int number);
    static bool SavePreset(int number, const QString& name);
    static bool SetPresetKeys(bool on);
    static bool SetPencilTool();
    static bool SetBrushTool();
    static bool SetEraserTool();
    static bool SetTextTool();
    static bool SetLineTool();
    static bool SetArrowTool();
    static bool SetEllipseTool();
    static bool SetRectangleTool();
    static bool SetPencilOptions(int size, int opacity, bool tablet);
    static bool SetBrushOptions(int size, int opacity, int hardness, bool tablet);
    static bool SetEraserOptions(int size, int opacity, int hardness, bool tablet);
    static bool SetTextOptions(int size, int opacity, const QString& fontFamily);
    static bool SetLineOptions(int size, int opacity);
    static bool SetArrowOptions(int size, int opacity);
    static bool SetEllipseOptions(int size, int opacity);
    static bool SetRectangleOptions(int size, int opacity);
    static bool SetActiveColor(const QColor& color);

    // Ghosting.
    static bool ToggleGhostPrevious();
    static bool ToggleGhostNext();
    static bool SetGhostPreviousCount(int count);
    static bool SetGhostNextCount(int count);
    static bool SetGhostColorOverrideEnabled(bool enabled);
    static bool SetGhostColorOverridePrev(const QColor& color);
    static bool SetGhostColorOverrideNext(const QColor& color);

    // The light table.
    static bool SetGhostLayers(int layers);
    /// The drawing that the active layer shows.
    static bool SetDrawingPinned(bool pinned);
    static bool UnpinAllDrawings();
    static bool SetActiveLayerMarked(bool marked);
    static bool SetPinnedColor(const QColor& color);
    static bool SetOtherLayersOpacity(int percent);
    static bool SetFlipAllLayers(bool all);
    static bool SetRollCount(int drawings);
    static bool SetRollRate(int drawingsPerSecond);
    static bool SetHeldKey(const HeldKey& action, const QString& keys);

    // Frames of the active layer.
    static bool InsertFrame();
    static bool DuplicateFrame();
    static bool DeleteFrame();
    static bool CutFrame();
    static bool CopyFrame();
    static bool PasteFrame();
    static bool ClearFrame();
    static bool StepForward();
    static bool StepBack();
    static bool RetimeFrames(int frames, bool relative, bool moveToNext);
    static bool MoveFrames(int offset, int first, int last);
    static bool SetTimelineFrameDisplay(TimelineFrameDisplay display);
    static bool RefreshTimelineOverlay();

    // Panels.
    static bool ShowNewLayerDialog();
    static bool ShowLayerPropertiesDialog();
    static bool ShowToolboxDialog();
    static bool ShowToolOptionsDialog();
    static bool ShowLayerManagerDialog();
    static bool ShowColorPaletteDialog();
    static bool ShowRetimingTool();
    static bool ShowGhostingDialog();

    // Tool contexts of the host.
    static bool SetContext(const MString& context);
    /// Returns whether the query ran, not its answer.
    static bool ContextExists(const MString& context);
    static bool CreateContext(const MString& command, MString& name);

    // The host's state.
    static bool IsBatchMode();
    /// The user's preferences folder as the host names it; empty if the query fails.
    static QString GetMayaPrefsDirectory();
    static bool IsTimeSliderRangeVisible();
    /// Start and end (exclusive) of the time slider's highlighted range, in frames.
    static bool GetTimeSliderRange(MDoubleArray& range);
    /// The host's time slider, or null. The host owns it.
    static QWidget* GetTimeControlWidget();

    // Colour sliders made by the host.
    static bool SetColorSliderGrpColor(const QString& name, const QColor& color);
    /// Returns an invalid colour if the query fails.
    static QColor GetColorSliderGrpColor(const QString& name);
    static bool SetColorSliderGrpChangeCommand(const QString& name, const QString& command);
    /// Creates a swatch without its slider, sizes in pixels. The host owns it; null if it could not be
    /// created.
    static QWidget* CreateColorSliderGrp(const QString& name, int width, int height);

    /// Whether the host opens, imports or references a scene: nodes may then be incomplete.
    static bool IsReadingScene();

    // Time and cameras, without MEL. Cameras are named by their transform.
    static bool IsPlaying();
    static MTime GetPlaybackTime();
    /// The current time in whole frames, truncated toward zero.
    static int GetPlaybackTimeValue();
    static void SetPlaybackTime(const MTime& time);
    static MTime GetPlaybackRangeStart();
    static MTime GetPlaybackRangeEnd();
    static void GetCameras(QStringList& names);
    static bool CameraExists(const QString& name);
    static QString GetCameraName(const MDagPath& camera);
    static QString GetCameraName(M3dView& view);
    static QString GetActive3dViewCameraName();

    /// Makes the host redraw its time slider's ticks, by changing the selection and restoring it. `node` is
    /// selected for a moment if the selection is empty.
    static void RefreshTimeControl(const MObject& node);
    /// Returns whether RefreshTimeControl is changing the selection. Selection callbacks then have nothing to
    /// do.
    static bool IsRefreshingTimeControl();

    // Part of the interface for scripts and other tools; not called here.
    static bool ExecuteMelDoubleResult(const MString& command, double& out, bool displayEnabled,
                                       bool undoEnabled);
    static bool ExecuteMelDoubleResult(const QString& command, double& out, bool displayEnabled,
                                       bool undoEnabled);
    static bool RefreshNode();
    static bool InsertLayer(const QString& camera, int index);
    static bool SetLayerOpacity(const QString& camera, int index, float opacity);
    static bool CurrentContext(MString& name);
    static void SetPlaybackTime(int frame);
    static bool CachedPlaybackEnabled();
};

} // namespace vellix
