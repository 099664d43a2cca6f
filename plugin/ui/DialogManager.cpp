#include "ui/DialogManager.h"

#include "ui/LayerManagerPanel.h"
#include "ui/TimeControlOverlay.h"

#include <utility>

namespace vellix {

namespace {

struct Registry {
    LayerManagerPanel* layerManager = nullptr;
    std::function<void()> showNewLayer;
};

Registry& GetRegistry() {
    static Registry registry;
    return registry;
}

} // namespace

void DialogManager::ClearLayerManagerDialog() {
    if (LayerManagerPanel* panel = GetRegistry().layerManager) {
        panel->Clear();
    }
}

bool DialogManager::HasLayerManagerDialog() {
    return GetRegistry().layerManager != nullptr;
}

void DialogManager::FillLayerManagerDialog(const QList<LayerManagerRow>& rows, const QString& activeCamera,
                                           int activeIndex) {
    if (LayerManagerPanel* panel = GetRegistry().layerManager) {
        panel->Fill(rows, activeCamera, activeIndex);
    }
}

void DialogManager::ShowNewLayerDialog() {
    if (GetRegistry().showNewLayer) {
        GetRegistry().showNewLayer();
    }
}

std::unique_ptr<TimelineOverlay> DialogManager::CreateTimelineOverlay(QWidget* timeSlider) {
    auto overlay = std::make_unique<TimeControlOverlay>(timeSlider);
    overlay->hide();
    return overlay;
}

void DialogManager::SetLayerManagerPanel(LayerManagerPanel* panel) {
    GetRegistry().layerManager = panel;
}

void DialogManager::SetNewLayerDialog(std::function<void()> show) {
    GetRegistry().showNewLayer = std::move(show);
}

void DialogManager::Shutdown() {
    GetRegistry() = Registry();
}

} // namespace vellix
