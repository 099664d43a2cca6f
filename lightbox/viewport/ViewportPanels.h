#pragma once

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
    /// In the order in which they were made; a list of its own, as drawing one may bring or close another.
    std::vector<ViewportPanel*> All() const { return panels_; }
    /// The panel that was used last; null when there is none at all.
    ViewportPanel* Active() const { return active_; }
    void SetActive(ViewportPanel& panel);
    ViewportPanel* UnderPointer() const;
    /// Where the four of the main window lie; null until it is made.
    PanelLayout* Layout() const { return layout_; }
    void SetLayout(PanelLayout* layout) { layout_ = layout; }
    /// Draws all of them: at once, or once when the event loop comes to it.
    void Refresh(bool now);
    /// A view waits for what else comes with a tool's drag before it draws.
    bool IsAwaitingDrag() const;

private:
    void Forget(const ViewportPanel* panel);

    Host& host_;
    std::vector<ViewportPanel*> panels_;
    ViewportPanel* active_ = nullptr;
    PanelLayout* layout_ = nullptr;
};

} // namespace lightbox
