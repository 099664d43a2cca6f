#include "host/PanelRegistration.h"

#include "ui/DialogManager.h"
#include "ui/LayerManagerDialog.h"
#include "ui/LayerPropertiesDialog.h"
#include "ui/NewLayerDialog.h"
#include "ui/RetimingDialog.h"

namespace vellix {

namespace {

using Panel = DialogManager::Panel;
using Dialog = DialogManager::Dialog;

template <typename Window>
void AddPanel(Panel panel) {
    DialogManager::RegisterPanel(
        panel, [](QWidget* parent) -> std::unique_ptr<QWidget> { return std::make_unique<Window>(parent); });
}

} // namespace

/// Every panel and dialog. A new one joins here.
void RegisterPanels(const QString& /*pluginFolder*/) {
    AddPanel<LayerManagerDialog>(Panel::LayerManager);
    AddPanel<RetimingDialog>(Panel::Retiming);
    DialogManager::RegisterDialog(Dialog::NewLayer, NewLayerDialog::Open);
    DialogManager::RegisterLayerPropertiesDialog(LayerPropertiesDialog::Open);
}

} // namespace vellix
