#include "window/ViewportPanels.h"

#include "scene/EventBus.h"
#include "scene/Host.h"
#include "window/ViewportPanel.h"
#include "window/ViewportWidget.h"

#include <QApplication>
#include <QCursor>

#include <algorithm>

namespace lightbox {

ViewportPanels::ViewportPanels(Host& host, QObject* parent)
    : QObject(parent)
    , host_(host) {}

ViewportPanel& ViewportPanels::Create(const std::string& name, QWidget* parent) {
    std::string freeName = name;
    for (int number = 1; freeName.empty() || Find(freeName); ++number) {
        freeName = "modelPanel" + std::to_string(number);
    }
    auto* const panel = new ViewportPanel(host_, freeName, parent);
    panels_.erase(std::remove(panels_.begin(), panels_.end(), nullptr), panels_.end());
    panels_.emplace_back(panel);
    connect(panel, &ViewportPanel::Activated, this, [this, panel] { SetActive(*panel); });
    connect(panel, &QObject::destroyed, this, [this] {
        if (!active_ && !All().empty()) {
            SetActive(*All().front());
        }
    });
    return *panel;
}

ViewportPanel* ViewportPanels::Find(const std::string& name) const {
    const std::vector<ViewportPanel*> panels = All();
    const auto found = std::find_if(panels.begin(), panels.end(),
                                    [&](const ViewportPanel* panel) { return panel->Name() == name; });
    return found == panels.end() ? nullptr : *found;
}

std::vector<ViewportPanel*> ViewportPanels::All() const {
    std::vector<ViewportPanel*> panels;
    for (const QPointer<ViewportPanel>& panel : panels_) {
        if (panel) {
            panels.push_back(panel);
        }
    }
    return panels;
}

ViewportPanel* ViewportPanels::Active() const {
    return active_;
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
    Q_EMIT ActiveChanged(&panel);
}

ViewportPanel* ViewportPanels::UnderPointer() const {
    for (QWidget* widget = QApplication::widgetAt(QCursor::pos()); widget; widget = widget->parentWidget()) {
        if (auto* const panel = qobject_cast<ViewportPanel*>(widget)) {
            return panel;
        }
    }
    return nullptr;
}

void ViewportPanels::Refresh(bool now) {
    for (ViewportPanel* const panel : All()) {
        panel->View().Refresh(now);
    }
}

bool ViewportPanels::IsAwaitingDrag() const {
    const std::vector<ViewportPanel*> panels = All();
    return std::any_of(panels.begin(), panels.end(),
                       [](ViewportPanel* panel) { return panel->View().IsAwaitingDrag(); });
}

} // namespace lightbox
