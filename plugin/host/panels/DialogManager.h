#pragma once

#include <maya/MDoubleArray.h>

#include <QColor>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

class QDialog;
class QWidget;

namespace vellix {

enum class LayerState : qint32;

/// One layer as the layer manager panel lists it; a camera's rows come in stack order, bottom layer first.
struct LayerManagerRow {
    QString camera;
    QString name;
    bool visible;
    LayerState state;
};

/// What the document tells the layer manager panel.
class LayerManagerPanel {
public:
    virtual ~LayerManagerPanel() = default;

    virtual void Clear() = 0;

    /// Replaces everything shown. `activeIndex` is the active layer of the active camera, -1 for none.
    virtual void Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera, int activeIndex) = 0;
};

/// What the toolbox is told and asked.
class ToolboxPanel {
public:
    virtual ~ToolboxPanel() = default;

    /// Shows the active tool, the active colour, the ghost switches and the options.
    virtual void Refresh() = 0;
    /// Shows the active tool's size and opacity.
    virtual void RefreshOptions() = 0;
    /// The colour of its colour control; invalid when that cannot be asked.
    virtual QColor GetColor() const = 0;
};

/// What the tool options panel is told.
class ToolOptionsPanel {
public:
    virtual ~ToolOptionsPanel() = default;

    /// Shows the options of the active tool as they are now.
    virtual void Refresh() = 0;
};

/// A dialog that shows something of the scene, which may change while it is open.
class SceneFollower {
public:
    virtual ~SceneFollower() = default;
    /// A drawing node or a camera has come or gone.
    virtual void FollowScene() = 0;
};

/// What the drawing node tells the frame marks over the host's time slider.
class TimelineOverlay {
public:
    virtual ~TimelineOverlay() = default;

    virtual void SetFrameTimes(const QList<int>& times) = 0;
    virtual void ClearFrameTimes() = 0;
    virtual bool IsShown() const = 0;
    virtual void SetShown(bool shown) = 0;
    virtual void SetDrawContextActive(bool active) = 0;

    /// Follows a range that is being dragged along the slider; the offset is in frames.
    virtual void UpdateMoveOffset() = 0;
    virtual bool HasMoveOffset() const = 0;
    virtual int GetMoveOffset() const = 0;
    virtual MDoubleArray GetRangeForMoveOffset() const = 0;
};

/// The door to the panels and dialogs for everything below them. What makes each is registered at load when
/// the host has a user interface; while a panel or dialog is missing, what is told to it does nothing.
class DialogManager {
public:
    /// Panels are floating windows, one of each, made when they are first asked for and kept.
    enum class Panel { Toolbox, ToolOptions, LayerManager, Retiming, ColorPalette };
    /// Dialogs are made each time, shown and go.
    enum class Dialog { NewLayer, Ghosting, Preferences, About };

    /// Makes the panel, a window over the given one. A layer manager also is a LayerManagerPanel, a toolbox a
    /// ToolboxPanel, the tool options a ToolOptionsPanel. Panels keep their place in their member of
    /// Settings.
    using PanelFactory = std::function<std::unique_ptr<QWidget>(QWidget* parent)>;
    using DialogRunner = std::function<void(QWidget* parent)>;
    using LayerPropertiesRunner = std::function<void(const QString& camera, int index, QWidget* parent)>;
    using TimelineOverlayFactory = std::function<std::unique_ptr<TimelineOverlay>(QWidget* timeSlider)>;

    static void RegisterPanel(Panel panel, PanelFactory create);
    static void RegisterDialog(Dialog dialog, DialogRunner run);
    static void RegisterLayerPropertiesDialog(LayerPropertiesRunner run);
    static void RegisterTimelineOverlay(TimelineOverlayFactory create);

    // The panels' windows, made at the first call. The registry owns them; null when nothing makes them.
    static QWidget* GetToolboxDialog();
    static QWidget* GetToolOptionsDialog();
    static QWidget* GetLayerMangerDialog();
    static QWidget* GetRetimingDialog();
    static QWidget* GetColorPaletteDialog();

    /// Shows the panel in front of the others; a minimised one comes back.
    static void BringUp(QWidget& panel);
    /// Forgets where every panel was, and puts those that were made back in the middle of the host's window
    /// in the size that they ask for.
    static void ResetPanels();

    /// Keeps in the host's option variables which panels are open. Panels say when they open and close.
    static void NoteOpenPanels();
    /// Opens those that were open when the plug-in was shut down last, once the host has come to rest,
    /// without taking the keys from its window.
    static void ReopenPanels();

    /// Shows the dialog, which keeps its user from everything else until it closes and goes then; returns at
    /// once. What it executes on closing so stands by itself, undone by itself, and is not part of the
    /// command that opened the dialog.
    static void OpenModal(std::unique_ptr<QDialog> dialog);

    // Each shows its dialog over the host's main window; false when nothing shows it.
    static bool ShowNewLayerDialog();
    static bool ShowGhostingDialog();
    static bool ShowPreferencesDialog();
    static bool ShowAboutDialog();
    /// Over the given window; the host's main window for null.
    static bool ShowLayerPropertiesDialog(const QString& camera, int index, QWidget* parent);

    // What panels are told. One that was not made yet asks for itself when it is.
    static void ClearLayerManagerDialog();
    /// A drawing node or a camera has come or gone; told to the open dialogs that are SceneFollowers.
    static void FollowScene();
    /// Whether the panel was made.
    static bool HasLayerManagerDialog();
    static void FillLayerManagerDialog(const QList<LayerManagerRow>& rows, const QString& activeCamera,
                                       int activeIndex);
    static void RefreshToolbox();
    static void RefreshToolboxOptions();
    /// Those in the toolbox too.
    static void RefreshToolOptions();
    /// The colour of the toolbox's control; invalid while there is no toolbox.
    static QColor GetToolboxColor();

    /// The marks over the given time slider, hidden; null when nothing makes them.
    static std::unique_ptr<TimelineOverlay> CreateTimelineOverlay(QWidget* timeSlider);

    /// Closes every panel, which then notes where it was, drops open dialogs, and forgets all that was
    /// registered.
    static void Shutdown();
};

} // namespace vellix
