#include "host/PanelRegistration.h"

#include "ui/AboutDialog.h"
#include "ui/ColorPaletteDialog.h"
#include "ui/DialogManager.h"
#include "ui/GhostingDialog.h"
#include "ui/PreferencesDialog.h"
#include "ui/ToolOptionsDialog.h"
#include "ui/ToolboxDialog.h"

namespace vellix {

namespace {

using Panel = DialogManager::Panel;
using Dialog = DialogManager::Dialog;

template <typename Window>
void AddPanel(Panel panel) {
    DialogManager::RegisterPanel(
        panel, [](QWidget* parent) -> std::unique_ptr<QWidget> { return std::make_unique<Window>(parent); });
}

template <typename Window>
void AddDialog(Dialog dialog) {
    DialogManager::RegisterDialog(dialog, [](QWidget* parent) { Window(parent).exec(); });
}

} // namespace

/// Every panel and dialog. A new one joins here.
void RegisterPanels(const QString& pluginFolder) {
    AddPanel<ToolboxDialog>(Panel::Toolbox);
    AddPanel<ToolOptionsDialog>(Panel::ToolOptions);
    AddPanel<ColorPaletteDialog>(Panel::ColorPalette);
    AddDialog<GhostingDialog>(Dialog::Ghosting);
    AddDialog<PreferencesDialog>(Dialog::Preferences);
    DialogManager::RegisterDialog(
        Dialog::About, [pluginFolder](QWidget* parent) { AboutDialog(pluginFolder, parent).exec(); });
}

} // namespace vellix
