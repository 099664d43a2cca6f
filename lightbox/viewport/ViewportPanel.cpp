#include "viewport/ViewportPanel.h"

#include "controls/Theme.h"
#include "mel/Interpreter.h"
#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/Plug.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "text/NumberText.h"
#include "text/Quoted.h"
#include "viewport/PanelIcon.h"
#include "viewport/PanelLayout.h"
#include "viewport/ViewportPanels.h"
#include "viewport/ViewportWidget.h"

#include <QHBoxLayout>
#include <QMenuBar>
#include <QPainter>
#include <QToolBar>
#include <QToolButton>

namespace lightbox {

namespace {

constexpr int FRAME = 1;
constexpr int ICON_SIZE = 18;

Plug CameraPlug(const std::shared_ptr<DagNode>& shape, const char* attribute) {
    return Plug::Of(*shape, attribute);
}

std::string TransformName(const std::shared_ptr<DagNode>& shape) {
    return Scene::ShownName(*shape->Parent());
}

/// The camera flags that make room around a gate. As in the host, showing a gate sets an overscan, and hiding
/// it resets the overscan. An overscan that the user set stays.
std::string RoomForGate(const std::shared_ptr<DagNode>& shape, const std::string& attribute, bool isShown) {
    constexpr double room = 1.3;
    const std::string other = attribute == "displayFilmGate"     ? "displayResolution"
                              : attribute == "displayResolution" ? "displayFilmGate"
                                                                 : "";
    if (other.empty() || CameraPlug(shape, other.c_str()).Number() != 0.0 ||
        CameraPlug(shape, "overscan").Number() != (isShown ? 1.0 : room)) {
        return {};
    }
    return isShown ? " -overscan " + DecimalText(room) : " -overscan 1";
}

} // namespace

ViewportPanel::ViewportPanel(Host& host, ViewportPanels& panels, const std::string& name, QWidget* parent)
    : QWidget(parent)
    , host_(host)
    , panels_(panels) {
    setObjectName(QString::fromStdString(name));
    view_ = new ViewportWidget(host, panels.Refresh(), name);
    setFocusProxy(view_);
    menuBar_ = new QMenuBar;
    menuBar_->setNativeMenuBar(false);
    menuBar_->setMinimumWidth(1); // menus without room are behind its arrow, as buttons are
    buttons_ = new QToolBar;
    buttons_->setIconSize(QSize(ICON_SIZE, ICON_SIZE));
    MakeMenus();
    MakeButtons();
    auto* const head = new QHBoxLayout;
    head->setContentsMargins(0, 0, 0, 0);
    head->setSpacing(0);
    head->addWidget(menuBar_, 1, Qt::AlignVCenter);
    head->addWidget(buttons_);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(FRAME, FRAME, FRAME, FRAME);
    column->setSpacing(0);
    column->addLayout(head);
    column->addWidget(view_, 1);
    connect(view_, &ViewportWidget::Activated, this, &ViewportPanel::Activated);
    for (const auto signal : {&ViewportWidget::CameraChanged, &ViewportWidget::OptionsChanged}) {
        connect(view_, signal, this, &ViewportPanel::UpdateActions);
    }
    connect(view_, &ViewportWidget::Drawn, this, &ViewportPanel::UpdateActions);
    UpdateActions();
}

ViewportPanel::~ViewportPanel() = default;

std::string ViewportPanel::Name() const {
    return objectName().toStdString();
}

void ViewportPanel::SetMenuBarVisible(bool visible) {
    menuBar_->setVisible(visible);
    buttons_->setVisible(visible);
}

bool ViewportPanel::IsMenuBarVisible() const {
    return !menuBar_->isHidden();
}

bool ViewportPanel::LookThrough(const std::string& cameraName) {
    const std::shared_ptr<DagNode> camera = ViewportWidget::FindCamera(host_.scene(), cameraName);
    view_->SetCamera(camera);
    return camera != nullptr;
}

void ViewportPanel::SetActive(bool active) {
    isActive_ = active;
    update();
}

void ViewportPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), isActive_ ? Theme::Accent() : Theme::Line());
    painter.fillRect(rect().adjusted(1, 1, -1, -1), Theme::Window());
}

QAction* ViewportPanel::OptionAction(const QString& text, OptionReader read, OptionWriter write) {
    auto* const action = new QAction(text, this);
    action->setCheckable(true);
    optionActions_.push_back({action, std::move(read)});
    connect(action, &QAction::triggered, this, [this, write = std::move(write)](bool checked) {
        ViewOptions options = view_->Options();
        write(options, checked);
        view_->SetOptions(options);
        UpdateActions();
    });
    return action;
}

QAction* ViewportPanel::ToggleAction(const QString& text, bool& (*member)(ViewOptions&)) {
    return OptionAction(
        text, [member](ViewOptions options) { return member(options); },
        [member](ViewOptions& options, bool on) { member(options) = on; });
}

QAction* ViewportPanel::CameraAction(const QString& text, const char* attribute) {
    auto* const action = new QAction(text, this);
    action->setCheckable(true);
    cameraActions_.push_back({action, attribute});
    connect(action, &QAction::triggered, this, [this, attribute](bool checked) {
        // Use the command, so that the change is echoed and can be undone.
        RunLine("camera -e -" + std::string(attribute) + (checked ? " 1" : " 0") +
                RoomForGate(view_->Camera(), attribute, checked) + " " +
                Quoted(TransformName(view_->Camera())));
        UpdateActions();
    });
    return action;
}

void ViewportPanel::UpdateActions() {
    const auto set = [](QAction* action, bool checked) {
        if (action->isChecked() != checked) {
            action->setChecked(checked);
        }
    };
    for (const OptionEntry& entry : optionActions_) {
        set(entry.action, entry.read(view_->Options()));
    }
    const std::shared_ptr<DagNode> camera = view_->Camera();
    for (const CameraEntry& entry : cameraActions_) {
        set(entry.action, CameraPlug(camera, entry.attribute).Number() != 0.0);
    }
}

void ViewportPanel::RunLine(const std::string& line) {
    try {
        host_.interpreter().Execute(line);
    } catch (const mel::Error& error) {
        host_.output().Error(error.what());
    }
}

void ViewportPanel::MakeButtons() {
    // The style's own icon is black on a dark background.
    if (auto* const more = buttons_->findChild<QToolButton*>("qt_toolbar_ext_button")) {
        more->setIcon(PanelIcon::Make(PanelIcon::Symbol::More));
        more->setToolTip("More buttons");
    }
    if (auto* const more = menuBar_->findChild<QToolButton*>("qt_menubar_ext_button")) {
        more->setIcon(PanelIcon::Make(PanelIcon::Symbol::More));
        more->setToolTip("More menus");
    }
    const auto add = [this](QAction* action, PanelIcon::Symbol icon, const QString& tip) {
        action->setIcon(PanelIcon::Make(icon));
        action->setToolTip(tip);
        buttons_->addAction(action);
    };
    auto* const cameras = new QToolButton;
    cameras->setIcon(PanelIcon::Make(PanelIcon::Symbol::Camera));
    cameras->setToolTip("Camera to look through");
    cameras->setPopupMode(QToolButton::InstantPopup);
    cameras->setObjectName("cameraButton");
    auto* const menu = new QMenu(cameras);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        AddCameras(*menu);
    });
    cameras->setMenu(menu);
    buttons_->addWidget(cameras);
    add(CameraAction("2D Pan/Zoom", "panZoomEnabled"), PanelIcon::Symbol::PanZoom,
        "2D pan and zoom (hold \\ and drag with the middle or the right button)");
    buttons_->addSeparator();
    add(CameraAction("Film Gate", "displayFilmGate"), PanelIcon::Symbol::FilmGate, "Film gate");
    add(CameraAction("Resolution Gate", "displayResolution"), PanelIcon::Symbol::ResolutionGate,
        "Resolution gate");
    add(CameraAction("Gate Mask", "displayGateMask"), PanelIcon::Symbol::GateMask, "Gate mask");
    buttons_->addSeparator();
    add(ToggleAction("Grid", [](ViewOptions& options) -> bool& { return options.display.grid; }),
        PanelIcon::Symbol::Grid, "Grid");
    using Shading = DisplayOptions::Shading;
    add(OptionAction(
            "Wireframe",
            [](const ViewOptions& options) { return options.display.shading == Shading::Wireframe; },
            [](ViewOptions& options, bool) { options.display.shading = Shading::Wireframe; }),
        PanelIcon::Symbol::Wireframe, "Wireframe (4)");
    add(OptionAction(
            "Smooth Shade",
            [](const ViewOptions& options) { return options.display.shading == Shading::Smooth; },
            [](ViewOptions& options, bool) { options.display.shading = Shading::Smooth; }),
        PanelIcon::Symbol::Shaded, "Smooth shade (5)");
    add(ToggleAction("Wireframe on Shaded",
                     [](ViewOptions& options) -> bool& { return options.display.wireframeOnShaded; }),
        PanelIcon::Symbol::WireOnShaded, "Wireframe on shaded");
}

void ViewportPanel::MakeMenus() {
    QMenu* const view = menuBar_->addMenu("View");
    connect(view, &QMenu::aboutToShow, this, [this, view] { FillViewMenu(*view); });
    MakeShadingMenu();
    MakeShowMenu();
    MakeRendererMenu();
    QMenu* const panels = menuBar_->addMenu("Panels");
    connect(panels, &QMenu::aboutToShow, this, [this, panels] { FillPanelsMenu(*panels); });
}

void ViewportPanel::MakeShadingMenu() {
    using Shading = DisplayOptions::Shading;
    QMenu& menu = *menuBar_->addMenu("Shading");
    for (const auto& [text, shading] :
         {std::pair("Wireframe", Shading::Wireframe), std::pair("Smooth Shade All", Shading::Smooth)}) {
        menu.addAction(OptionAction(
            text,
            [shading = shading](const ViewOptions& options) { return options.display.shading == shading; },
            [shading = shading](ViewOptions& options, bool) { options.display.shading = shading; }));
    }
    menu.addSeparator();
    menu.addAction(ToggleAction("Wireframe on Shaded", [](ViewOptions& options) -> bool& {
        return options.display.wireframeOnShaded;
    }));
    menu.addAction(ToggleAction("Use Default Material", [](ViewOptions& options) -> bool& {
        return options.display.defaultMaterial;
    }));
}

void ViewportPanel::MakeShowMenu() {
    struct Row {
        const char* text;
        bool& (*shown)(ViewOptions&);
    };
    constexpr Row rows[] = {
        {"Grid", [](ViewOptions& options) -> bool& { return options.display.grid; }},
        {"Polygons", [](ViewOptions& options) -> bool& { return options.display.meshes; }},
        {"Cameras", [](ViewOptions& options) -> bool& { return options.display.cameras; }},
        {"Locators", [](ViewOptions& options) -> bool& { return options.display.locators; }},
        {"Selection Highlighting",
         [](ViewOptions& options) -> bool& { return options.display.selectionHighlighting; }},
        {"View Axis", [](ViewOptions& options) -> bool& { return options.display.axisIcon; }},
        {"Plugin Shapes", [](ViewOptions& options) -> bool& { return options.pluginShapes; }},
        {"Camera Names", [](ViewOptions& options) -> bool& { return options.cameraName; }}};
    QMenu& menu = *menuBar_->addMenu("Show");
    for (const Row& row : rows) {
        menu.addAction(ToggleAction(row.text, row.shown));
    }
}

void ViewportPanel::MakeRendererMenu() {
    using Renderer = ViewOptions::Renderer;
    QMenu& menu = *menuBar_->addMenu("Renderer");
    for (const auto& [text, renderer] :
         {std::pair("Viewport 2.0", Renderer::Viewport2), std::pair("Legacy Viewport", Renderer::Legacy)}) {
        menu.addAction(OptionAction(
            text, [renderer = renderer](const ViewOptions& options) { return options.renderer == renderer; },
            [renderer = renderer](ViewOptions& options, bool) { options.renderer = renderer; }));
    }
}

void ViewportPanel::FillViewMenu(QMenu& menu) {
    struct Row {
        const char* text;
        const char* attribute;
    };
    constexpr Row rows[] = {{"Film Gate", "displayFilmGate"},     {"Resolution Gate", "displayResolution"},
                            {"Gate Mask", "displayGateMask"},     {"Field Chart", "displayFieldChart"},
                            {"Safe Action", "displaySafeAction"}, {"Safe Title", "displaySafeTitle"}};
    if (menu.isEmpty()) {
        const auto frame = [&](const char* text, const char* flag) {
            menu.addAction(text, this, [this, flag = std::string(flag)] {
                RunLine("viewFit " + flag + Quoted(TransformName(view_->Camera())));
            });
        };
        frame("Frame All\tA", "-all ");
        frame("Frame Selection\tF", "");
        menu.addSeparator();
        menu.addAction("Select Camera", this,
                       [this] { RunLine("select -r " + Quoted(TransformName(view_->Camera()))); });
        menu.addSeparator();
        QMenu& gates = *menu.addMenu("Camera Settings");
        for (const Row& row : rows) {
            gates.addAction(CameraAction(row.text, row.attribute));
        }
        menu.addSeparator();
        menu.addAction(CameraAction("2D Pan/Zoom", "panZoomEnabled"));
        menu.addAction("Reset 2D Pan/Zoom", this, [this] {
            RunLine("camera -e -horizontalPan 0 -verticalPan 0 -zoom 1 " +
                    Quoted(TransformName(view_->Camera())));
        });
    }
    UpdateActions();
}

void ViewportPanel::FillPanelsMenu(QMenu& menu) {
    menu.clear();
    AddCameras(*menu.addMenu("Look Through"));
    menu.addSeparator();
    AddArrangements(menu);
}

/// Adds the scene's cameras to the menu, perspective ones first, where animators look for them.
void ViewportPanel::AddCameras(QMenu& menu) {
    std::vector<std::shared_ptr<DagNode>> orthographic;
    const std::shared_ptr<DagNode> current = view_->Camera();
    const auto add = [&](const std::shared_ptr<DagNode>& shape) {
        QAction* const action = menu.addAction(QString::fromStdString(TransformName(shape)));
        action->setCheckable(true);
        action->setChecked(shape == current);
        connect(action, &QAction::triggered, this, [this, shape] { view_->SetCamera(shape); });
    };
    for (const std::shared_ptr<Node>& node : host_.scene().Nodes()) {
        const auto shape = std::dynamic_pointer_cast<DagNode>(node);
        if (!shape || !shape->Type().IsA("camera") || !shape->Parent() || shape->Parent()->IsWorld()) {
            continue;
        }
        if (CameraPlug(shape, "orthographic").Number() != 0.0) {
            orthographic.push_back(shape);
        } else {
            add(shape);
        }
    }
    menu.addSeparator();
    for (const std::shared_ptr<DagNode>& shape : orthographic) {
        add(shape);
    }
}

void ViewportPanel::AddArrangements(QMenu& menu) {
    PanelLayout* const layout = panels_.Layout();
    if (!layout) {
        return;
    }
    using Arrangement = PanelLayout::Arrangement;
    for (const auto& [text, arrangement] : {std::pair("Single Pane", Arrangement::Single),
                                            std::pair("Two Panes Side by Side", Arrangement::TwoSideBySide),
                                            std::pair("Two Panes Stacked", Arrangement::TwoStacked),
                                            std::pair("Four Panes", Arrangement::Four)}) {
        QAction* const action = menu.addAction(text);
        action->setCheckable(true);
        action->setChecked(layout->Current() == arrangement);
        connect(action, &QAction::triggered, this, [this, layout, arrangement = arrangement] {
            Q_EMIT Activated();
            layout->Arrange(arrangement);
        });
    }
}

} // namespace lightbox
