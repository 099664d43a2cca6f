#pragma once

#include "ui/LayerManagerRow.h"

#include <QList>

#include <functional>
#include <memory>

class QWidget;

namespace vellix {

class LayerManagerPanel;
class TimelineOverlay;

/// The door to the panels for everything below them. Panels register when they come to life; while one is
/// missing, what is asked of it does nothing.
class DialogManager {
public:
    static void ClearLayerManagerDialog();
    static bool HasLayerManagerDialog();
    static void FillLayerManagerDialog(const QList<LayerManagerRow>& rows, const QString& activeCamera,
                                       int activeIndex);
    static void ShowNewLayerDialog();

    /// The marks over the given time slider, hidden.
    static std::unique_ptr<TimelineOverlay> CreateTimelineOverlay(QWidget* timeSlider);

    /// The registry borrows the panel; null takes it out again.
    static void SetLayerManagerPanel(LayerManagerPanel* panel);
    static void SetNewLayerDialog(std::function<void()> show);

    /// Lets go of every panel.
    static void Shutdown();
};

} // namespace vellix
