#include "host/panels/DialogManager.h"

#include "host/Guarded.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"

#include <maya/MGlobal.h>
#include <maya/MQtUtil.h>

#include <QDialog>
#include <QPointer>
#include <QRect>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <map>
#include <utility>

namespace vellix {

namespace {

struct PanelEntry {
    DialogManager::PanelFactory create;
    // The host may delete its main window, and the panels with it, before the plug-in is unloaded.
    QPointer<QWidget> window;
};

struct Registry {
    std::map<DialogManager::Panel, PanelEntry> panels;
    std::map<DialogManager::Dialog, DialogManager::DialogRunner> dialogs;
    DialogManager::LayerPropertiesRunner showLayerProperties;
    DialogManager::TimelineOverlayFactory createTimelineOverlay;
    QList<QPointer<QDialog>> openDialogs;
    // Context of the timer that reopens panels; deleting it cancels the timer.
    std::unique_ptr<QObject> reopening;
    bool isShuttingDown = false;
};

const char* const OPEN_PANELS_VARIABLE = "qmVxOpenPanels";

Registry& GetRegistry() {
    static Registry registry;
    return registry;
}

/// Returns the interface of an existing panel; null if the panel was not created yet.
template <typename Interface>
Interface* FindPanel(DialogManager::Panel panel) {
    return dynamic_cast<Interface*>(GetRegistry().panels[panel].window.data());
}

LayerManagerPanel* FindLayerManager() {
    return FindPanel<LayerManagerPanel>(DialogManager::Panel::LayerManager);
}

ToolboxPanel* FindToolbox() {
    return FindPanel<ToolboxPanel>(DialogManager::Panel::Toolbox);
}

bool RunDialog(DialogManager::Dialog dialog) {
    // Copied, because unloading the plug-in while the dialog is open clears the registry.
    const DialogManager::DialogRunner run = GetRegistry().dialogs[dialog];
    if (run) {
        run(MQtUtil::mainWindow());
    }
    return static_cast<bool>(run);
}

void OpenNotedPanels() {
    const QStringList open =
        MayaUtil::ToQString(MGlobal::optionVarStringValue(OPEN_PANELS_VARIABLE)).split(QLatin1Char(' '));
    for (const PanelRow& row : PANELS) {
        QWidget* const panel =
            open.contains(QLatin1String(row.Name())) ? DialogManager::GetPanel(row.panel) : nullptr;
        if (panel && !panel->isVisible()) {
            panel->setAttribute(Qt::WA_ShowWithoutActivating);
            panel->show();
            panel->setAttribute(Qt::WA_ShowWithoutActivating, false);
        }
    }
}

void DestroyWindows() {
    GetRegistry().isShuttingDown = true;
    for (const QPointer<QDialog>& dialog : GetRegistry().openDialogs) {
        delete dialog.data();
    }
    for (auto& panel : GetRegistry().panels) {
        if (QWidget* window = panel.second.window) {
            window->close();
            delete window;
        }
    }
}

} // namespace

void DialogManager::RegisterPanel(Panel panel, PanelFactory create) {
    GetRegistry().panels[panel].create = std::move(create);
}

void DialogManager::RegisterDialog(Dialog dialog, DialogRunner run) {
    GetRegistry().dialogs[dialog] = std::move(run);
}

void DialogManager::RegisterLayerPropertiesDialog(LayerPropertiesRunner run) {
    GetRegistry().showLayerProperties = std::move(run);
}

void DialogManager::RegisterTimelineOverlay(TimelineOverlayFactory create) {
    GetRegistry().createTimelineOverlay = std::move(create);
}

QWidget* DialogManager::GetPanel(Panel panel) {
    PanelEntry& entry = GetRegistry().panels[panel];
    if (!entry.window && entry.create) {
        entry.window = entry.create(MQtUtil::mainWindow()).release();
    }
    return entry.window;
}

QWidget* DialogManager::GetToolboxDialog() {
    return GetPanel(Panel::Toolbox);
}

QWidget* DialogManager::GetToolOptionsDialog() {
    return GetPanel(Panel::ToolOptions);
}

QWidget* DialogManager::GetLayerMangerDialog() {
    return GetPanel(Panel::LayerManager);
}

void DialogManager::BringUp(QWidget& panel) {
    panel.setWindowState(panel.windowState() & ~Qt::WindowMinimized);
    panel.show();
    panel.raise();
    panel.activateWindow();
}

void DialogManager::ResetPanels() {
    for (const PanelRow& row : PANELS) {
        Settings::GetPanelGeometry(row.panel).clear();
    }
    QList<QWidget*> open;
    for (auto& panel : GetRegistry().panels) {
        QWidget* const window = panel.second.window;
        if (window && window->isVisible()) {
            open.append(window);
            window->hide();
        }
    }
    // Without a stored place a panel finds one as it is shown, beside those that are shown already.
    for (QWidget* const window : open) {
        window->setWindowState(Qt::WindowNoState);
        window->resize(window->sizeHint().expandedTo(window->minimumSize()));
        window->show();
    }
}

void DialogManager::NoteOpenPanels() {
    if (GetRegistry().isShuttingDown) {
        return;
    }
    QStringList open;
    for (const PanelRow& row : PANELS) {
        const QWidget* const panel = GetRegistry().panels[row.panel].window;
        if (panel && panel->isVisible()) {
            open.append(QLatin1String(row.Name()));
        }
    }
    MGlobal::setOptionVarValue(OPEN_PANELS_VARIABLE, MayaUtil::ToMString(open.join(QLatin1Char(' '))));
}

void DialogManager::ReopenPanels() {
    GetRegistry().reopening = std::make_unique<QObject>();
    QTimer::singleShot(0, GetRegistry().reopening.get(),
                       [] { RunGuarded("Opening the panels", OpenNotedPanels); });
}

void DialogManager::OpenModal(std::unique_ptr<QDialog> dialog) {
    GetRegistry().openDialogs.removeAll(nullptr);
    GetRegistry().openDialogs.append(dialog.get());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setModal(true);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    dialog.release(); // NOLINT(bugprone-unused-return-value): deletes itself on closing
}

bool DialogManager::ShowNewLayerDialog() {
    return RunDialog(Dialog::NewLayer);
}

bool DialogManager::ShowGhostingDialog() {
    return RunDialog(Dialog::Ghosting);
}

bool DialogManager::ShowPreferencesDialog() {
    return RunDialog(Dialog::Preferences);
}

bool DialogManager::ShowAboutDialog() {
    return RunDialog(Dialog::About);
}

bool DialogManager::ShowLayerPropertiesDialog(const QString& camera, int index, QWidget* parent) {
    const LayerPropertiesRunner run = GetRegistry().showLayerProperties;
    if (run) {
        run(camera, index, parent ? parent : MQtUtil::mainWindow());
    }
    return static_cast<bool>(run);
}

void DialogManager::ClearLayerManagerDialog() {
    if (LayerManagerPanel* panel = FindLayerManager()) {
        panel->Clear();
    }
}

void DialogManager::FollowScene() {
    for (const QPointer<QDialog>& dialog : GetRegistry().openDialogs) {
        if (auto* const follower = dynamic_cast<SceneFollower*>(dialog.data())) {
            follower->FollowScene();
        }
    }
}

bool DialogManager::HasLayerManagerDialog() {
    return FindLayerManager() != nullptr;
}

void DialogManager::FillLayerManagerDialog(const QList<LayerManagerRow>& rows, const QString& activeCamera,
                                           int activeIndex) {
    if (LayerManagerPanel* panel = FindLayerManager()) {
        panel->Fill(rows, activeCamera, activeIndex);
    }
}

void DialogManager::RefreshToolbox() {
    if (ToolboxPanel* panel = FindToolbox()) {
        panel->Refresh();
    }
}

void DialogManager::RefreshToolboxOptions() {
    if (ToolboxPanel* panel = FindToolbox()) {
        panel->RefreshOptions();
    }
}

void DialogManager::RefreshToolOptions() {
    if (ToolOptionsPanel* panel = FindPanel<ToolOptionsPanel>(Panel::ToolOptions)) {
        panel->Refresh();
    }
    RefreshToolboxOptions();
}

QColor DialogManager::GetToolboxColor() {
    const ToolboxPanel* panel = FindToolbox();
    return panel ? panel->GetColor() : QColor();
}

std::unique_ptr<TimelineOverlay> DialogManager::CreateTimelineOverlay(QWidget* timeSlider) {
    const TimelineOverlayFactory& create = GetRegistry().createTimelineOverlay;
    return create ? create(timeSlider) : nullptr;
}

void DialogManager::Shutdown() {
    DestroyWindows();
    GetRegistry() = Registry();
}

} // namespace vellix
