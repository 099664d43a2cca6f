#pragma once

#include "viewport/ViewRefresh.h"

#include <QObject>

#include <string>
#include <vector>

class QWidget;

namespace lightbox {

class Host;
class PanelLayout;
class ViewportPanel;
class ViewportWidget;

/// The list of all model panels: the four of the main window and those of floating windows. The panels belong
/// to their parent widgets; the list drops a panel when it is deleted.
class ViewportPanels : public QObject {
    Q_OBJECT
public:
    explicit ViewportPanels(Host& host, QObject* parent = nullptr);

    /// Makes a panel in a parent widget, looking through persp. An empty name, or one that is taken, gets a
    /// free "modelPanelN".
    ViewportPanel& Create(const std::string& name, QWidget* parent);
    /// Null when no panel has that name.
    ViewportPanel* Find(const std::string& name) const;
    /// All panels in the order of creation. Returns a copy, since a caller's work on one panel may open or
    /// close another.
    std::vector<ViewportPanel*> All() const { return panels_; }
    /// The panel that was used last; null when there are no panels.
    ViewportPanel* Active() const { return active_; }
    void SetActive(ViewportPanel& panel);
    ViewportPanel* UnderPointer() const;
    /// The layout of the main window's four panels; null until it is made.
    PanelLayout* Layout() const { return layout_; }
    void SetLayout(PanelLayout* layout) { layout_ = layout; }
    /// Schedules the redraws of the panels' views.
    ViewRefresh& Refresh() { return refresh_; }

private:
    void Forget(const ViewportPanel* panel);

    Host& host_;
    ViewRefresh refresh_;
    std::vector<ViewportPanel*> panels_;
    ViewportPanel* active_ = nullptr;
    PanelLayout* layout_ = nullptr;
};

} // namespace lightbox
