#pragma once

#include "host/PanelTable.h"

#include <maya/MApiNamespace.h>

#include <QColor>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

class QDialog;
class QWidget;

namespace vellix {

enum class LayerState : qint32;

/// One row of the layer manager panel: a layer. Within a camera, rows are in stack order, bottom layer first.
struct LayerManagerRow {
    QString camera;
    QString name;
    bool visible;
    LayerState state;
    bool cameraExists = true; ///< false: the camera was deleted, its layers were kept
    quint64 id = 0;           ///< the layer's identity (see LayerId); 0 if it is not known
    bool marked = false;      ///< its ghosts are shown with those of the marked layers
};

/// The layer manager panel as the drawing sees it.
class LayerManagerPanel {
public:
    virtual ~LayerManagerPanel() = default;

    virtual void Clear() = 0;

    /// Replaces all rows. `activeIndex` is the active layer of the active camera, -1 for none.
    virtual void Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera, int activeIndex) = 0;
};

/// The toolbox as the commands see it.
class ToolboxPanel {
public:
    virtual ~ToolboxPanel() = default;

    /// Updates the active tool, the active colour, the ghost switches and the options from Settings.
    virtual void Refresh() = 0;
    /// Updates the active tool's size and opacity from Settings.
    virtual void RefreshOptions() = 0;
    /// The colour of the toolbox's colour control; invalid if the host cannot report it.
    virtual QColor GetColor() const = 0;
};

/// The tool options panel as the commands see it.
class ToolOptionsPanel {
public:
    virtual ~ToolOptionsPanel() = default;

    /// Updates the options of the active tool from Settings.
    virtual void Refresh() = 0;
};

/// A dialog that displays data of the scene, which may change while the dialog is open.
class SceneFollower {
public:
    virtual ~SceneFollower() = default;
    /// Called after a drawing node or camera was added or removed.
    virtual void FollowScene() = 0;
};

/// The frame marks over the host's time slider, as the drawing node sees them.
class TimelineOverlay {
public:
    virtual ~TimelineOverlay() = default;

    virtual void SetFrameTimes(const QList<int>& times) = 0;
    virtual void ClearFrameTimes() = 0;
    virtual bool IsShown() const = 0;
    virtual void SetShown(bool shown) = 0;
    virtual void SetDrawContextActive(bool active) = 0;

    /// Updates the offset, in frames, of a range that is being dragged along the slider.
    virtual void UpdateMoveOffset() = 0;
    virtual bool HasMoveOffset() const = 0;
    virtual int GetMoveOffset() const = 0;
    virtual MDoubleArray GetRangeForMoveOffset() const = 0;
};

/// Gives the lower layers of the plug-in access to panels and dialogs. Factories for them are registered at
/// load if the host has a user interface. Calls to a panel or dialog that does not exist do nothing.
class DialogManager {
public:
    /// PanelTable has a row for each. They are created at the first request and kept.
    using Panel = vellix::Panel;
    /// Dialogs are created each time and deleted when they close.
    enum class Dialog { NewLayer, Ghosting, Preferences, About };

    /// Creates the panel, a window with the given parent. A layer manager also implements LayerManagerPanel,
    /// a toolbox ToolboxPanel, and the tool options ToolOptionsPanel.
    using PanelFactory = std::function<std::unique_ptr<QWidget>(QWidget* parent)>;
    using DialogRunner = std::function<void(QWidget* parent)>;
    using LayerPropertiesRunner = std::function<void(const QString& camera, int index, QWidget* parent)>;
    using TimelineOverlayFactory = std::function<std::unique_ptr<TimelineOverlay>(QWidget* timeSlider)>;

    static void RegisterPanel(Panel panel, PanelFactory create);
    static void RegisterDialog(Dialog dialog, DialogRunner run);
    static void RegisterLayerPropertiesDialog(LayerPropertiesRunner run);
    static void RegisterTimelineOverlay(TimelineOverlayFactory create);

    /// The panel's window, created at the first call and owned by the registry; null if no factory is
    /// registered.
    static QWidget* GetPanel(Panel panel);
    static QWidget* GetToolboxDialog();
    static QWidget* GetToolOptionsDialog();
    static QWidget* GetLayerMangerDialog();

    /// Shows the panel in front of all others, restored if minimised, and activates it.
    static void BringUp(QWidget& panel);
    /// Clears every panel's stored geometry. The open panels are placed and sized as at their first use.
    static void ResetPanels();

    /// Stores in the host's option variables which panels are open. Panels call it when they open and close.
    static void NoteOpenPanels();
    /// Opens the panels that were open at the last shutdown, once the host is idle, without taking the
    /// keyboard focus.
    static void ReopenPanels();

    /// Shows the dialog as modal and returns at once. The dialog deletes itself when it closes. Commands that
    /// it runs on closing are separate undo steps, not part of the command that opened it.
    static void OpenModal(std::unique_ptr<QDialog> dialog);

    // Each shows its dialog over the host's main window. Returns false if the dialog is not registered.
    static bool ShowNewLayerDialog();
    static bool ShowGhostingDialog();
    static bool ShowPreferencesDialog();
    static bool ShowAboutDialog();
    /// Shows it over the given window, or the host's main window if null.
    static bool ShowLayerPropertiesDialog(const QString& camera, int index, QWidget* parent);

    // Updates of panels. They skip a panel that does not exist yet; it reads its data itself when it is
    // created.
    static void ClearLayerManagerDialog();
    /// Call after a drawing node or camera was added or removed. Notifies the open dialogs that are
    /// SceneFollowers.
    static void FollowScene();
    /// Whether the panel exists.
    static bool HasLayerManagerDialog();
    static void FillLayerManagerDialog(const QList<LayerManagerRow>& rows, const QString& activeCamera,
                                       int activeIndex);
    static void RefreshToolbox();
    static void RefreshToolboxOptions();
    /// Refreshes the options in the toolbox too.
    static void RefreshToolOptions();
    /// The colour of the toolbox's colour control; invalid if there is no toolbox.
    static QColor GetToolboxColor();

    /// Creates the frame marks over the given time slider, hidden; null if no factory is registered.
    static std::unique_ptr<TimelineOverlay> CreateTimelineOverlay(QWidget* timeSlider);

    /// Closes every panel, which stores its geometry, deletes open dialogs, and clears the registry.
    static void Shutdown();
};

} // namespace vellix
