#include "viewport/ViewportPanels.h"

#include "scene/EventBus.h"
#include "scene/Host.h"
#include "viewport/ViewportPanel.h"
#include "viewport/ViewportWidget.h"

#include <QApplication>
#include <QCursor>

#include <algorithm>

namespace lightbox {

ViewportPanels::ViewportPanels(Host& host, QObject* parent)
    : QObject(parent)
    , host_(host)
    , refresh_(host) {}

ViewportPanel& ViewportPanels::Create(const std::string& name, QWidget* parent) {
    std::string freeName = name;
    for (int number = 1; freeName.empty() || Find(freeName); ++number) {
        freeName = "modelPanel" + std::to_string(number);
    }
    auto* const panel = new ViewportPanel(host_, *this, freeName, parent);
    panels_.push_back(panel);
    connect(panel, &ViewportPanel::Activated, this, [this, panel] { SetActive(*panel); });
    connect(panel, &QObject::destroyed, this, [this, panel] { Forget(panel); });
    return *panel;
}

/// The panel itself has gone already.
void ViewportPanels::Forget(const ViewportPanel* panel) {
    panels_.erase(std::remove(panels_.begin(), panels_.end(), panel), panels_.end());
    if (active_ == panel) {
        active_ = nullptr;
        const auto seen = std::find_if(panels_.begin(), panels_.end(),
                                       [](const ViewportPanel* other) { return other->isVisible(); });
        if (!panels_.empty()) {
            SetActive(seen != panels_.end() ? **seen : *panels_.front());
        }
    }
}

ViewportPanel* ViewportPanels::Find(const std::string& name) const {
    const auto found = std::find_if(panels_.begin(), panels_.end(),
                                    [&](const ViewportPanel* panel) { return panel->Name() == name; });
    return found == panels_.end() ? nullptr : *found;
}

void ViewportPanels::SetActive(ViewportPanel& panel) {
    if (active_ == &panel) {
        return;
    }
    if (active_) {
        active_->SetActive(false);
    }
    active_ = &panel;
    panel.SetActive(true);
}

ViewportPanel* ViewportPanels::UnderPointer() const {
    for (QWidget* widget = QApplication::widgetAt(QCursor::pos()); widget; widget = widget->parentWidget()) {
        if (auto* const panel = qobject_cast<ViewportPanel*>(widget)) {
            return panel;
        }
    }
    return nullptr;
}

} // namespace lightbox
