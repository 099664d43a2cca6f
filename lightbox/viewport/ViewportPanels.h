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

/// The model panels that there are, by name: the four of the main window and those of floating windows.
/// Widgets own the panels; this list follows them.
class ViewportPanels : public QObject {
    Q_OBJECT
public:
    explicit ViewportPanels(Host& host, QObject* parent = nullptr);

    /// A new panel below a widget, looking through persp. An empty name, or one that is taken, gets a free
    /// "modelPanelN".
    ViewportPanel& Create(const std::string& name, QWidget* parent);
    /// Null when there is none of that name.
    ViewportPanel* Find(const std::string& name) const;
    /// In the order in which they were made; a list of its own, as what is done with one may bring or close
    /// another.
    std::vector<ViewportPanel*> All() const { return panels_; }
    /// The panel that was used last; null when there is none at all.
    ViewportPanel* Active() const { return active_; }
    void SetActive(ViewportPanel& panel);
    ViewportPanel* UnderPointer() const;
    /// Where the four of the main window lie; null until it is made.
    PanelLayout* Layout() const { return layout_; }
    void SetLayout(PanelLayout* layout) { layout_ = layout; }
    /// When their views are drawn.
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
