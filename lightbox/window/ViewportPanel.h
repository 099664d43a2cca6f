#pragma once

#include <QWidget>

#include <memory>
#include <string>

class QMenu;
class QMenuBar;
class QToolBar;

namespace lightbox {

class DagNode;
class Host;
class ViewportWidget;

/// A model panel: a viewport with its menu bar (View, Shading, Show, Renderer, Panels) and its row of buttons.
/// Its objectName is the panel's name.
class ViewportPanel : public QWidget {
    Q_OBJECT
public:
    ViewportPanel(Host& host, const std::string& name, QWidget* parent = nullptr);
    ~ViewportPanel() override;

    std::string Name() const;
    /// "Persp View": what `modelPanel -label` shows and sets.
    const QString& Label() const { return label_; }
    void SetLabel(const QString& label) { label_ = label; }
    ViewportWidget& View() { return *view_; }
    const ViewportWidget& View() const { return *view_; }
    void SetMenuBarVisible(bool visible);
    bool IsMenuBarVisible() const;
    /// Looks through a camera by the name of its transform or its shape; false when there is none.
    bool LookThrough(const std::string& cameraName);
    /// Whether it is the panel that keys and menus mean: it has a frame then.
    void SetActive(bool active);

signals:
    void Activated();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void MakeMenus();
    void FillViewMenu(QMenu& menu);
    void FillShadingMenu(QMenu& menu);
    void FillShowMenu(QMenu& menu);
    void FillRendererMenu(QMenu& menu);
    void FillPanelsMenu(QMenu& menu);
    void MakeButtons();

    Host& host_;
    QString label_;
    QMenuBar* menuBar_ = nullptr;
    QToolBar* buttons_ = nullptr;
    ViewportWidget* view_ = nullptr;
    bool isActive_ = false;
};

} // namespace lightbox
