#pragma once

#include "host/TimelineFrameDisplay.h"

#include <maya/MApiNamespace.h>
#include <maya/MDoubleArray.h>
#include <maya/MString.h>
#include <maya/MTime.h>

#include <QColor>
#include <QString>
#include <QStringList>

class QWidget;

namespace vellix {

enum class LayerState : qint32;

/// The way to the host: builds and executes every MEL line of the plug-in, carries the menu script, and
/// answers small questions about the host. Main thread only. Operations that execute a line return whether it
/// succeeded; they log nothing. Names that contain quotes, backslashes or line breaks are escaped as in a MEL
/// string.
class MayaUtil {
public:
    // Execution. The result forms also fail, leaving `out` untouched, when the result has another type.
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

    /// The text as it stands between the quotes of a MEL string. A MEL string ends at a NUL, so the text does
    /// too.
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

    // The node. Executed when the host is idle, so these may be called inside callbacks and other commands.
    static bool CreateNode(bool addLayer, bool addFrames, const QString& camera, const QString& layerName,
                           int layerState);

    // Layers. Indexes count from the bottom of the camera's stack.
    static bool AddLayer(const QString& camera, const QString& name, int state);
    static bool RemoveLayer(const QString& camera, int index);
    static bool MoveLayer(const QString& camera, int from, int to);
    static bool MoveLayer(const QString& sourceCamera, int index, const QString& targetCamera,
                          int targetIndex);
    static bool MoveAllLayers(const QString& sourceCamera, const QString& targetCamera);
    static bool SetActiveLayer(const QString& camera, int index);
    static bool SetLayerName(const QString& camera, int index, const QString& name);
    static bool SetLayerVisible(const QString& camera, int index, bool visible);
    static bool SetLayerState(const QString& camera, int index, LayerState state);
    static bool RefreshLayerManagerDialog();

    /// Commits the stroke in progress. `layer` is the index of a layer that the stroke added, else negative.
    static bool PushStroke(const QString& camera, int layer, bool frameAdded);

    // Tools.
    static bool Draw();
    static bool ActivateTransformTool();
    static bool SetTool(const QString& flag);
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
    /// Whether the question could be asked, whatever its answer.
    static bool ContextExists(const MString& context);
    static bool CreateContext(const MString& command, MString& name);

    // The host's state.
    static bool IsBatchMode();
    /// The user's preferences folder as the host names it; empty when it cannot be asked.
    static QString GetMayaPrefsDirectory();
    static bool IsTimeSliderRangeVisible();
    /// Start and end of the highlighted range of the time slider, frames, the end exclusive.
    static bool GetTimeSliderRange(MDoubleArray& range);
    /// The host's time slider, or null. The host owns it.
    static QWidget* GetTimeControlWidget();

    // Colour sliders made by the host.
    static bool SetColorSliderGrpColor(const QString& name, const QColor& color);
    /// An invalid colour when the control cannot be asked.
    static QColor GetColorSliderGrpColor(const QString& name);
    static bool SetColorSliderGrpChangeCommand(const QString& name, const QString& command);
    /// A swatch without its slider, of that size in pixels. The host owns it; null when it could not be made.
    static QWidget* CreateColorSliderGrp(const QString& name, int width, int height);

    // Time and cameras, without MEL. Cameras are named by their transform.
    static bool IsPlaying();
    static MTime GetPlaybackTime();
    /// Whole frames, truncated toward zero.
    static int GetPlaybackTimeValue();
    static void SetPlaybackTime(const MTime& time);
    static MTime GetPlaybackRangeStart();
    static MTime GetPlaybackRangeEnd();
    static void GetCameras(QStringList& names);
    static bool CameraExists(const QString& name);
    static QString GetCameraName(const MDagPath& camera);
    static QString GetCameraName(M3dView& view);
    static QString GetActive3dViewCameraName();

    /// Makes the host redraw the ticks of its time slider, by changing the selection and restoring it.
    static void RefreshTimeControl(const MObject& node);
    /// Does the selection change only for that? Then what follows the selection has nothing to do.
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
