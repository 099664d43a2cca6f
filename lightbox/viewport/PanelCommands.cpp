// modelPanel, modelEditor, getPanel, panel, lookThru, lookThroughModelPanel, setNamedPanelLayout.

#include "viewport/PanelCommands.h"

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"
#include "mel/SyntaxBuilder.h"
#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/UserInterface.h"
#include "scene/View.h"
#include "viewport/PanelLayout.h"
#include "viewport/ViewportPanel.h"
#include "viewport/ViewportPanels.h"
#include "viewport/ViewportWidget.h"

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;
using Renderer = ViewOptions::Renderer;
using Shading = DisplayOptions::Shading;

ViewportPanels& Existing(const CommandCall& call, ViewportPanels* panels) {
    if (!panels) {
        call.Fail("This window has no viewports.");
    }
    return *panels;
}

std::string CameraName(const ViewportPanel& panel) {
    const std::shared_ptr<DagNode> shape = panel.View().Camera();
    return shape && shape->Parent() ? Scene::ShownName(*shape->Parent()) : std::string();
}

void LookThrough(ViewportPanel& panel, const std::string& camera) {
    if (!panel.LookThrough(camera)) {
        throw mel::Error("There is no camera \"" + camera + "\".");
    }
}

ControlFlag CameraFlag() {
    return ValueFlag<ViewportPanel, std::string>("-cam", "-camera", LookThrough, CameraName);
}

/// A flag that shows or hides one type of object in the viewport.
ControlFlag ShowFlag(const char* shortName, const char* longName, bool& (*member)(ViewOptions&)) {
    return ValueFlag<ViewportPanel, bool>(
        shortName, longName,
        [member](ViewportPanel& panel, bool on) {
            ViewOptions options = panel.View().Options();
            member(options) = on;
            panel.View().SetOptions(options);
        },
        [member](const ViewportPanel& panel) {
            ViewOptions options = panel.View().Options();
            return member(options);
        });
}

ControlFlag AppearanceFlag() {
    return ValueFlag<ViewportPanel, std::string>(
        "-da", "-displayAppearance",
        [](ViewportPanel& panel, const std::string& name) {
            const bool isShaded = name == "smoothShaded" || name == "flatShaded";
            if (!isShaded && name != "wireframe" && name != "points" && name != "boundingBox") {
                throw mel::Error("Unknown appearance: " + name);
            }
            ViewOptions options = panel.View().Options();
            options.display.shading = isShaded ? Shading::Smooth : Shading::Wireframe;
            panel.View().SetOptions(options);
        },
        [](const ViewportPanel& panel) {
            return panel.View().Options().display.shading == Shading::Smooth ? "smoothShaded" : "wireframe";
        });
}

constexpr const char* VIEWPORT2 = "vp2Renderer";
constexpr const char* LEGACY = "base_OpenGL_Renderer";

ControlFlag RendererFlag() {
    return ValueFlag<ViewportPanel, std::string>(
        "-rnm", "-rendererName",
        [](ViewportPanel& panel, const std::string& name) {
            if (name != VIEWPORT2 && name != LEGACY) {
                throw mel::Error("Unknown renderer: " + name);
            }
            ViewOptions options = panel.View().Options();
            options.renderer = name == VIEWPORT2 ? Renderer::Viewport2 : Renderer::Legacy;
            panel.View().SetOptions(options);
        },
        [](const ViewportPanel& panel) { return panel.View().IsViewport2() ? VIEWPORT2 : LEGACY; });
}

ControlFlag AllObjectsFlag() {
    return {"-alo",
            "-allObjects",
            {ON},
            [](Control& control, const CommandCall& call) {
                ViewportWidget& view = control.As<ViewportPanel>()->View();
                ViewOptions options = view.Options();
                const bool on = call.Bool("-allObjects");
                for (bool* const shown :
                     {&options.display.grid, &options.display.meshes, &options.display.cameras,
                      &options.display.locators, &options.pluginShapes}) {
                    *shown = on;
                }
                view.SetOptions(options);
            },
            nullptr};
}

ControlFlags EditorFlags(ViewportPanels* panels) {
    return {
        CameraFlag(),
        AllObjectsFlag(),
        AppearanceFlag(),
        RendererFlag(),
        QueryFlag("-rls", "-rendererList",
                  [](Control&) {
                      return Value(Value::StringArray{VIEWPORT2, LEGACY});
                  }),
        QueryFlag("-rlu", "-rendererListUI",
                  [](Control&) {
                      return Value(Value::StringArray{"Viewport 2.0", "Legacy Viewport"});
                  }),
        ShowFlag("-gr", "-grid", [](ViewOptions& options) -> bool& { return options.display.grid; }),
        ShowFlag("-wos", "-wireframeOnShaded",
                 [](ViewOptions& options) -> bool& { return options.display.wireframeOnShaded; }),
        ShowFlag("-udm", "-useDefaultMaterial",
                 [](ViewOptions& options) -> bool& { return options.display.defaultMaterial; }),
        ShowFlag("-pm", "-polymeshes", [](ViewOptions& options) -> bool& { return options.display.meshes; }),
        ShowFlag("-ca", "-cameras", [](ViewOptions& options) -> bool& { return options.display.cameras; }),
        ShowFlag("-lc", "-locators", [](ViewOptions& options) -> bool& { return options.display.locators; }),
        ShowFlag("-psh", "-pluginShapes", [](ViewOptions& options) -> bool& { return options.pluginShapes; }),
        ShowFlag("-hud", "-headsUpDisplay", [](ViewOptions& options) -> bool& { return options.cameraName; }),
        ShowFlag("-sel", "-selectionHiliteDisplay",
                 [](ViewOptions& options) -> bool& { return options.display.selectionHighlighting; }),
        ValueFlag<ViewportPanel, bool>(
            "-av", "-activeView",
            [panels](ViewportPanel& panel, bool on) {
                if (on) {
                    panels->SetActive(panel);
                }
            },
            [panels](const ViewportPanel& panel) { return panels->Active() == &panel; }),
        // Object types that Lightbox does not have. The flags only keep their values for queries.
        NoteFlag("-nc", "-nurbsCurves", ON),
        NoteFlag("-ns", "-nurbsSurfaces", ON),
        NoteFlag("-j", "-joints", ON),
        NoteFlag("-lt", "-lights", ON),
        NoteFlag("-ikh", "-ikHandles", ON),
        NoteFlag("-df", "-deformers", ON),
        NoteFlag("-imp", "-imagePlane", ON),
        NoteFlag("-m", "-manipulators", ON),
        NoteFlag("-ha", "-handles", ON),
        NoteFlag("-dim", "-dimensions", ON),
        NoteFlag("-dtx", "-displayTextures", ON),
        NoteFlag("-dl", "-displayLights", TEXT),
        NoteFlag("-xr", "-xray", ON),
        NoteFlag("-fg", "-fogging", ON),
        NoteFlag("-sdw", "-shadows", ON),
    };
}

ControlFlags PanelFlags() {
    return {
        CameraFlag(),
        ValueFlag<ViewportPanel, QString>("-l", "-label", &ViewportPanel::SetLabel, &ViewportPanel::Label),
        ValueFlag<ViewportPanel, bool>("-mbv", "-menuBarVisible", &ViewportPanel::SetMenuBarVisible,
                                       &ViewportPanel::IsMenuBarVisible),
        QueryFlag("-me", "-modelEditor", [](Control& control) { return Value(control.Name()); }),
        QueryFlag("-ctl", "-control", [](Control& control) { return Value(control.Path()); }),
        NoteFlag("-tb", "-toolbar", ON),
        CreateFlag("-ini", "-init", {}),
        CreateFlag("-up", "-unParent", {}),
    };
}

std::unique_ptr<Control> CreatePanel(const ControlCreation& creation, ViewportPanels* panels) {
    ViewportPanel& panel = Existing(creation.call, panels).Create(creation.name, creation.parent->Widget());
    panel.SetMenuBarVisible(creation.type.name == "modelPanel");
    return std::make_unique<Control>(creation, &panel);
}

ControlType PanelType(const char* name, const ControlFlags& flags, ViewportPanels* panels) {
    return {name,
            ControlType::Family::Panel,
            flags + CommonFlags(),
            [panels](const ControlCreation& creation) { return CreatePanel(creation, panels); },
            {"modelPanel"}};
}

/// The panel of that name, or the active one for an empty name.
ViewportPanel& PanelNamed(const CommandCall& call, const ViewportPanels& panels, const std::string& name) {
    ViewportPanel* const panel = name.empty() ? panels.Active() : panels.Find(name);
    if (!panel) {
        call.Fail("There is no model panel \"" + name + "\".");
    }
    return *panel;
}

Value LookThroughPanel(const CommandCall& call, const ControlRegistry&, ViewportPanels& panels) {
    LookThrough(PanelNamed(call, panels, call.Object(1).AsString()), call.Object(0).AsString());
    return Value();
}

Value LookThru(const CommandCall& call, const ControlRegistry&, ViewportPanels& panels) {
    const std::vector<std::string> names = call.ObjectNames();
    if (call.IsQuery()) {
        return CameraName(PanelNamed(call, panels, names.empty() ? std::string() : names.front()));
    }
    if (names.empty()) {
        call.Fail("The name of a camera is missing.");
    }
    LookThrough(PanelNamed(call, panels, names.size() > 1 ? names.front() : std::string()), names.back());
    return Value();
}

Value Names(const std::vector<ViewportPanel*>& panels, bool (*isWanted)(const ViewportPanel&)) {
    Value::StringArray names;
    for (const ViewportPanel* const panel : panels) {
        if (isWanted(*panel)) {
            names.push_back(panel->Name());
        }
    }
    return names;
}

Value GetPanel(const CommandCall& call, const ControlRegistry& registry, ViewportPanels& panels) {
    const auto name = [](const ViewportPanel* panel) { return panel ? panel->Name() : std::string(); };
    if (call.Has("-withFocus")) {
        return name(panels.Active());
    }
    if (call.Has("-underPointer")) {
        return name(panels.UnderPointer());
    }
    if (call.Has("-visiblePanels")) {
        return Names(panels.All(), [](const ViewportPanel& panel) { return panel.isVisible(); });
    }
    if (call.Has("-invisiblePanels")) {
        return Names(panels.All(), [](const ViewportPanel& panel) { return !panel.isVisible(); });
    }
    if (call.Has("-typeOf")) {
        return panels.Find(call.String("-typeOf")) ? Value("modelPanel") : Value("");
    }
    if (call.Has("-containing")) {
        const QWidget* widget = registry.FindWidget(call.String("-containing"));
        while (widget && !qobject_cast<const ViewportPanel*>(widget)) {
            widget = widget->parentWidget();
        }
        return name(qobject_cast<const ViewportPanel*>(widget));
    }
    if (call.Has("-withLabel")) {
        for (const ViewportPanel* const panel : panels.All()) {
            if (panel->Label() == ToQt(call.String("-withLabel"))) {
                return panel->Name();
            }
        }
        return "";
    }
    if (call.Has("-type") && call.String("-type") != "modelPanel") {
        return Value::StringArray();
    }
    return Names(panels.All(), [](const ViewportPanel&) { return true; });
}

Value SetNamedLayout(const CommandCall& call, const ControlRegistry&, ViewportPanels& panels) {
    using Arrangement = PanelLayout::Arrangement;
    const std::string name = call.Object(0).AsString();
    const std::pair<const char*, Arrangement> rows[] = {
        {"Single Perspective View", Arrangement::Single},
        {"Single View", Arrangement::Single},
        {"Two Panes Side by Side", Arrangement::TwoSideBySide},
        {"Two Panes Stacked", Arrangement::TwoStacked},
        {"Four View", Arrangement::Four}};
    for (const auto& [label, arrangement] : rows) {
        if (name == label) {
            if (name == "Single Perspective View") {
                ViewportPanel& persp = PanelNamed(call, panels, "modelPanel4");
                panels.SetActive(persp);
                persp.LookThrough("persp");
            }
            panels.Layout()->Arrange(arrangement);
            return Value();
        }
    }
    call.Fail("There is no panel layout \"" + name + "\".");
}

Value Refresh(CommandCall& call, ControlRegistry& registry) {
    if (UserInterface* const ui = registry.host().ui()) {
        View* const active = ui->ActiveView();
        if (call.Has("-currentView") && active) {
            active->Refresh(true);
        } else {
            ui->RefreshViews(call.Has("-force"));
        }
    }
    return Value();
}

} // namespace

void RegisterPanelCommands(WindowCommandTable& table, ViewportPanels* panels) {
    table.Add(PanelType("modelPanel", PanelFlags(), panels));
    table.Add(PanelType("modelEditor", EditorFlags(panels), panels));
    ControlType panel = PanelType("panel", PanelFlags(), panels);
    panel.create = nullptr;
    table.Add(std::move(panel));
    const auto add = [&](const char* name, const MSyntax& syntax, auto function) {
        table.Add(name, syntax, [panels, function](const CommandCall& call, const ControlRegistry& registry) {
            return function(call, registry, Existing(call, panels));
        });
    };
    add("lookThroughModelPanel", SyntaxBuilder().Objects(2, 2), LookThroughPanel);
    add("lookThru", SyntaxBuilder().Query().Objects(0, 2), LookThru);
    add("setNamedPanelLayout", SyntaxBuilder().Objects(1, 1), SetNamedLayout);
    add("getPanel",
        SyntaxBuilder()
            .Flag("-all", "-allPanels")
            .Flag("-typ", "-type", TEXT)
            .Flag("-to", "-typeOf", TEXT)
            .Flag("-wf", "-withFocus")
            .Flag("-up", "-underPointer")
            .Flag("-vis", "-visiblePanels")
            .Flag("-inv", "-invisiblePanels")
            .Flag("-c", "-containing", TEXT)
            .Flag("-wl", "-withLabel", TEXT),
        GetPanel);
    table.Add("refresh", SyntaxBuilder().Flag("-f", "-force").Flag("-cv", "-currentView"), Refresh);
}

} // namespace lightbox
