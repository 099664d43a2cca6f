#include "ui/DialogManager.h"

#include "ui/LayerManagerPanel.h"
#include "ui/TimelineOverlay.h"

#include <utility>

namespace vellix {

namespace {

struct Registry {
    LayerManagerPanel* layerManager = nullptr;
    std::function<void()> showNewLayer;
    DialogManager::TimelineOverlayFactory createTimelineOverlay;
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
    const TimelineOverlayFactory& create = GetRegistry().createTimelineOverlay;
    return create ? create(timeSlider) : nullptr;
}

void DialogManager::SetLayerManagerPanel(LayerManagerPanel* panel) {
    GetRegistry().layerManager = panel;
}

void DialogManager::SetNewLayerDialog(std::function<void()> show) {
    GetRegistry().showNewLayer = std::move(show);
}

void DialogManager::SetTimelineOverlayFactory(TimelineOverlayFactory create) {
    GetRegistry().createTimelineOverlay = std::move(create);
}

void DialogManager::Shutdown() {
    GetRegistry() = Registry();
}

} // namespace vellix
