#pragma once

#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;

namespace lightbox {

class DagNode;
class Host;
class ViewportPanels;
class ViewportWidget;
struct ViewOptions;

/// A model panel: a viewport with its menu bar (View, Shading, Show, Renderer, Panels) and its row of
/// buttons. Its objectName is the panel's name.
class ViewportPanel : public QWidget {
    Q_OBJECT
public:
    /// Makes one of `panels`, which has to outlive it.
    ViewportPanel(Host& host, ViewportPanels& panels, const std::string& name, QWidget* parent = nullptr);
    ~ViewportPanel() override;

    std::string Name() const;
    /// "Persp View": what `modelPanel -label` shows and sets.
    const QString& Label() const { return label_; }
    void SetLabel(const QString& label) { label_ = label; }
    ViewportWidget& View() { return *view_; }
    const ViewportWidget& View() const { return *view_; }
    /// Shows or hides the menu bar together with the row of buttons.
    void SetMenuBarVisible(bool visible);
    bool IsMenuBarVisible() const;
    /// Looks through the camera with that transform or shape name; false when there is none.
    bool LookThrough(const std::string& cameraName);
    /// Marks the panel as the one that keys and menus act on; an active panel has a frame.
    void SetActive(bool active);
    bool IsActive() const { return isActive_; }
    /// Runs a line of MEL like a typed line and shows its error.
    void RunLine(const std::string& line);

Q_SIGNALS:
    void Activated();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    using OptionReader = std::function<bool(const ViewOptions&)>;
    using OptionWriter = std::function<void(ViewOptions&, bool)>;

    void MakeMenus();
    void MakeShadingMenu();
    void MakeShowMenu();
    void MakeRendererMenu();
    void FillViewMenu(QMenu& menu);
    void FillPanelsMenu(QMenu& menu);
    void AddCameras(QMenu& menu);
    void AddArrangements(QMenu& menu);
    void MakeButtons();
    /// An action that shows and sets one of the view's options.
    QAction* OptionAction(const QString& text, OptionReader read, OptionWriter write);
    QAction* ToggleAction(const QString& text, bool& (*member)(ViewOptions&));
    /// An action that shows and sets a switch of the camera.
    QAction* CameraAction(const QString& text, const char* attribute);
    /// Updates the check marks of all actions from the view and its camera.
    void UpdateActions();
    Host& host_;
    ViewportPanels& panels_;
    QString label_;
    QMenuBar* menuBar_ = nullptr;
    QToolBar* buttons_ = nullptr;
    ViewportWidget* view_ = nullptr;
    bool isActive_ = false;
    struct OptionEntry {
        QAction* action;
        OptionReader read;
    };
    std::vector<OptionEntry> optionActions_;
    struct CameraEntry {
        QAction* action;
        const char* attribute;
    };
    std::vector<CameraEntry> cameraActions_;
};

} // namespace lightbox
