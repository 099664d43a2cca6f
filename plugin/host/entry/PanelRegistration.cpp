#include "host/entry/PanelRegistration.h"

#include "host/panels/DialogManager.h"
#include "ui/AboutDialog.h"
#include "ui/ColorPaletteDialog.h"
#include "ui/GhostingDialog.h"
#include "ui/LayerManagerDialog.h"
#include "ui/LayerPropertiesDialog.h"
#include "ui/NewLayerDialog.h"
#include "ui/PreferencesDialog.h"
#include "ui/RetimingDialog.h"
#include "ui/TimeControlOverlay.h"
#include "ui/ToolOptionsDialog.h"
#include "ui/ToolboxDialog.h"

#include <QPointer>

#include <utility>

namespace vellix {

namespace {

using Dialog = DialogManager::Dialog;

template <typename Window>
void AddPanel(Panel panel) {
    DialogManager::RegisterPanel(
        panel, [](QWidget* parent) -> std::unique_ptr<QWidget> { return std::make_unique<Window>(parent); });
}

/// Registers a dialog. If it is already open, it comes to the front instead of opening twice.
template <typename Create>
void AddDialog(Dialog dialog, Create create) {
    const auto open = std::make_shared<QPointer<QDialog>>();
    DialogManager::RegisterDialog(dialog, [open, create](QWidget* parent) {
        if (*open && (*open)->isVisible()) {
            DialogManager::BringUp(**open);
            return;
        }
        std::unique_ptr<QDialog> made = create(parent);
        *open = made.get();
        DialogManager::OpenModal(std::move(made));
    });
}

} // namespace

/// Add new panels and dialogs here.
void RegisterPanels(const QString& pluginFolder) {
    AddPanel<ToolboxDialog>(Panel::Toolbox);
    AddPanel<ToolOptionsDialog>(Panel::ToolOptions);
    AddPanel<LayerManagerDialog>(Panel::LayerManager);
    AddPanel<RetimingDialog>(Panel::Retiming);
    AddPanel<ColorPaletteDialog>(Panel::ColorPalette);
    AddDialog(Dialog::NewLayer, NewLayerDialog::Create);
    AddDialog(Dialog::Ghosting, [](QWidget* parent) { return std::make_unique<GhostingDialog>(parent); });
    AddDialog(Dialog::Preferences,
              [](QWidget* parent) { return std::make_unique<PreferencesDialog>(parent); });
    AddDialog(Dialog::About, [pluginFolder](QWidget* parent) {
        return std::make_unique<AboutDialog>(pluginFolder, parent);
    });
    DialogManager::RegisterLayerPropertiesDialog(LayerPropertiesDialog::Open);
    DialogManager::RegisterTimelineOverlay([](QWidget* timeSlider) -> std::unique_ptr<TimelineOverlay> {
        auto overlay = std::make_unique<TimeControlOverlay>(timeSlider);
        overlay->hide();
        return overlay;
    });
}

} // namespace vellix
