#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "paint/ToolType.h"
#include "plugin/commands/CommandFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QTimer>

namespace vellix {
namespace {

/// The commands answer and refuse as without a window, unless a test opens one. The settings are put back.
class UtilCommandTest : public CommandFixture {
protected:
    void SetUp() override {
        Settings::WriteUserConfig();
        CommandFixture::SetUp();
    }
    void TearDown() override {
        DialogManager::Shutdown();
        if (Settings::guiEnabled) {
            Settings::guiEnabled = false;
            MayaUtil::SourceScripts();
        }
        Settings::ReadUserConfig();
        CommandFixture::TearDown();
    }

    QString Ask(const QString& flags) { return QString::fromStdString(Mel("qmVellixUtil " + flags).Shown()); }

    /// As with a window: the menu notes what it is told.
    void OpenWindow() {
        Settings::guiEnabled = true;
        Mel("global string $gTestMenu = \"\";"
            "global proc qmVxUpdateMainMenu(int $tool, int $previous, int $next, int $display)"
            "{ global string $gTestMenu; $gTestMenu += $tool + \",\" + $previous + \",\" + $next + \",\" + "
            "$display + \";\"; }"
            "global proc qmVxCreateFloatingViewport(string $camera)"
            "{ global string $gTestMenu; $gTestMenu += \"floating \" + $camera + \";\"; }");
    }
    QString TakeMenuUpdates() {
        return QString::fromStdString(
            Mel("string $updates = $gTestMenu; $gTestMenu = \"\"; $updates = $updates;").AsString());
    }
};

QString ToolValues(ToolType tool) {
    return QString("%1 %2 %3 %4")
        .arg(Settings::GetToolSize(tool))
        .arg(Settings::GetToolOpacity(tool))
        .arg(Settings::GetToolHardness(tool))
        .arg(Settings::IsTabletPressureEnabled(tool));
}

TEST_F(UtilCommandTest, SetsAndAnswersWhatIsPersisted) {
    const struct {
        const char* set;
        const char* query;
        const char* answer;
    } rows[] = {
        {"-e -drawColor 255 0 7", "-q -dc", "255 0 7"},
        {"-dc 1 2 3 -edit", "-drawColor -query", "1 2 3"},
        {"-e -gcp 9 8 7", "-q -ghostColorPrevious", "9 8 7"},
        {"-e -ghostColorNext 0 0 255", "-q -gcn", "0 0 255"},
        {"-e -ghostPrevious 0", "-q -gp", "0"},
        {"-e -gp 5", "-q -ghostPrevious", "1"},
        {"-e -gp -1", "-q -ghostPrevious", "0"},
        {"-e -gp -1", "-q -ghostPrevious", "1"},
        {"-e -ghostNext -7", "-q -gn", "1"},
        {"-e -ghostNext 0", "-q -gn", "0"},
        {"-e -ghostPreviousCount 0", "-q -gpc", "1"},
        {"-e -gpc 12", "-q -ghostPreviousCount", "9"},
        {"-e -gpc 4000000000", "-q -ghostPreviousCount", "9"},
        {"-e -ghostNextCount 4", "-q -gnc", "4"},
        {"-e -ghostColorOverride 2", "-q -gco", "1"},
        {"-e -gco 0", "-q -ghostColorOverride", "0"},
        {"-e -timelineFrameDisplay 2", "-q -tfd", "2"},
        {"-e -tfd 0", "-q -tfd", "0"},
        {"-e -smoothCurves 3", "-q -smc", "1"},
        {"-e -smc 0", "-q -smoothCurves", "0"},
        {"-e -stabiliser 4000000000", "-q -stb", "100"},
        {"-e -stb 0", "-q -stabiliser", "0"},
        {"-e -pencilSizePressure 7 20 40 60", "-q -psp", "1 20 40 60"},
        {"-e -esp 1 4000000000 0 101", "-q -eraserSizePressure", "1 100 5 100"},
        {"-e -brushOpacityPressure 10 99 0", "-q -bop", "10 95 0"},
        {"-e -bop 0 50 50", "-q -bsp", "0 0 50 50"},
        {"-e -psp 0 0 50 50", "-q -pop", "0 50 50"},
        {"-e -esp 0 0 50 50", "-q -eop", "0 50 50"},
        {"-e -presetKeys 2", "-q -psk", "1"},
        {"-e -psk 0", "-q -presetKeys", "0"},
        {"-e -flipAllLayers 2", "-q -fal", "1"},
        {"-e -fal 0", "-q -flipAllLayers", "0"},
        {"-e -rollCount 0", "-q -rlc", "1"},
        {"-e -rlc 10", "-q -rollCount", "9"},
        {"-e -rollRate 4000000000", "-q -rlr", "30"},
        {"-e -rlr 0", "-q -rollRate", "1"},
        {"-e -ghostLayers 2", "-q -gly", "2"},
        {"-e -gly 0", "-q -ghostLayers", "0"},
        {"-e -pinnedColor 4 5 6", "-q -pnc", "4 5 6"},
        {"-e -otherLayersOpacity 200", "-q -olo", "100"},
        {"-e -olo 0", "-q -otherLayersOpacity", "0"},
        {"-e -flipPreviousKey \"Ctrl+Left\"", "-q -fpk", "Ctrl+Left"},
        {"-e -fpk none", "-q -flipPreviousKey", "none"},
        {"-e -flipNextKey \".\"", "-q -fnk", "."},
        {"-e -rollKey F7", "-q -rlk", "F7"},
        // Of two flags the one of the command's own order is done.
        {"-e -gnc 7 -gpc 2", "-q -gpc -gnc", "2"},
        {"-e -gpc 5", "-q -gnc", "4"},
    };
    for (const auto& row : rows) {
        Ask(row.set);
        EXPECT_EQ(Ask(row.query).toStdString(), row.answer) << row.set;
        EXPECT_EQ(Ask(row.query).toStdString(), row.answer) << "a question changed it: " << row.query;
    }
    EXPECT_EQ(Settings::activeColor, QColor(1, 2, 3, 255));
    EXPECT_EQ(Mel("int $c[] = `qmVellixUtil -q -drawColor`; size($c) * 100 + $c[1] + `qmVellixUtil -q -gnc`")
                  .AsInt(),
              306);
    EXPECT_EQ(Mel("`qmVellixUtil -q -ghostPrevious` + 0.5").AsFloat(), 1.5);
    const std::string name = Mel("undoInfo -q -undoName").AsString();
    EXPECT_EQ(name.find("qmVellixUtil"), std::string::npos) << "none of it is undone";
}

TEST_F(UtilCommandTest, KeepsTheToolInAPreset) {
    const std::vector<BrushPreset> before = Settings::brushPresets;
    const ToolType tool = Settings::activeTool;
    Settings::activeTool = ToolType::Eraser;
    Mel("qmVellixUtil -eraserOptions 33 44 55 1; qmVellixUtil -e -esp 1 5 60 70");
    Mel("qmVellixUtil -savePreset 10 \"  My\\nrubber \"");
    const BrushPreset& preset = Settings::brushPresets.back();
    EXPECT_EQ(preset.ToText(), "eraser 33 44 55 1 1 0 50 50 5 60 70 My rubber");
    EXPECT_EQ(Mel("string $names[] = `qmVellixUtil -q -presetName`; size($names) + $names[9]").AsString(),
              "10My rubber");
    Mel("qmVellixUtil -sps 10 \"\"; qmVellixUtil -e -psn 9 \"Chalk\"");
    EXPECT_EQ(preset.name, "My rubber");
    EXPECT_EQ(Settings::brushPresets[8].name, "Chalk");
    for (const char* line : {"-savePreset 0 \"x\"", "-savePreset 11 \"x\"", "-preset 11", "-preset 0",
                             "-e -presetName 11 \"x\""}) {
        EXPECT_EQ(Refused(QString("qmVellixUtil ") + line).size(), 1) << line;
    }
    // Without a window there is no draw tool, and then nothing is changed.
    EXPECT_EQ(Refused("qmVellixUtil -preset 1").size(), 1);
    EXPECT_EQ(Settings::activeTool, ToolType::Eraser);
    Settings::UseBrush(before.at(2));
    EXPECT_EQ(Settings::GetBrush().ToText(), before.at(2).ToText().section(' ', 0, 11) + ' ');
    Settings::brushPresets = before;
    Mel("qmVellixUtil -e -esp 0 0 50 50; qmVellixUtil -e -psp 0 0 50 50; qmVellixUtil -po 6 100 0;"
        "qmVellixUtil -eo 40 100 100 0");
    Settings::activeTool = tool;
}

TEST_F(UtilCommandTest, OptionsAreClamped) {
    Settings::pencilTabletEnabled = false;
    const struct {
        const char* line;
        ToolType tool;
        const char* values; // size, opacity, hardness, tablet
    } rows[] = {
        {"-pencilOptions 0 150 1", ToolType::Pencil, "1 100 100 1"},
        {"-po 33 0 0", ToolType::Pencil, "33 1 100 0"},
        {"-brushOptions 101 50 0 1", ToolType::Brush, "100 50 0 1"},
        {"-bo 4000000000 4000000000 4000000000 0", ToolType::Brush, "100 100 100 0"},
        {"-eraserOptions 40 30 120 7", ToolType::Eraser, "40 30 100 1"},
        {"-e -eo 41 31 0 0", ToolType::Eraser, "41 31 0 0"},
        {"-textOptions 150 60 \"DejaVu Serif\"", ToolType::Text, "100 60 100 0"},
        {"-lineOptions 51 20", ToolType::Line, "50 20 100 0"},
        {"-ao 0 101", ToolType::Arrow, "1 100 100 0"},
        {"-elo 50 1", ToolType::Ellipse, "50 1 100 0"},
        {"-rectangleOptions 12 34", ToolType::Rectangle, "12 34 100 0"},
    };
    for (const auto& row : rows) {
        Ask(row.line);
        EXPECT_EQ(ToolValues(row.tool).toStdString(), row.values) << row.line;
    }
    EXPECT_EQ(Settings::textFontFamily, "DejaVu Serif");
}

TEST_F(UtilCommandTest, RefusesWithOneMessageAndChangesNothing) {
    Ask("-e -drawColor 10 20 30");
    Ask("-e -timelineFrameDisplay 1");
    const char* const color = "Color values must be in the range of 0-255.";
    const char* const parameters = "Invalid command parameters";
    const struct {
        const char* flags;
        const char* message;
    } rows[] = {
        {"", parameters},
        {"-e", parameters},
        {"-q", parameters},
        {"-ghostPrevious 1", parameters},
        {"-e -ghostLayers 3",
         "Invalid choice of ghosted layers: 0 the active one, 1 the marked ones, 2 all visible."},
        {"-e -rollKey \"Ctrl+K, Ctrl+D\"", "\"Ctrl+K, Ctrl+D\" is no key. Name one with its modifiers, such "
                                           "as \"F7\" or \"Ctrl+Left\", or none."},
        {"-e -rollKey nonsense",
         "\"nonsense\" is no key. Name one with its modifiers, such as \"F7\" or \"Ctrl+Left\", or none."},
        {"-drawColor 1 2 3", parameters},
        {"-tfd 0", parameters},
        {"-q -pencilOptions", parameters},
        {"-q -textOptions", parameters},
        {"-e -drawColor 255 0 256", color},
        {"-e -dc 4000000000 0 0", color},
        {"-e -gcp 0 256 0", color},
        {"-e -gcn 300 0 0", color},
        {"-e -timelineFrameDisplay 3", "Invalid timeline frame display option."},
        {"-draw", "The draw tool needs a window."},
        {"-transform", "The transform tool needs a window."},
        {"-eraserTool", "The draw tool needs a window."},
        {"-floatingViewport", "The floating viewport needs a window."},
        {"-floatingViewportMove persp", "The floating viewport needs a window."},
        {"-floatingViewportMove nowhere", "The floating viewport needs a window."},
        {"-layerManager", "The layer manager needs a window."},
        {"-toolbox", "The toolbox needs a window."},
        {"-toolOptions", "The tool options panel needs a window."},
        {"-refreshToolbox", "The toolbox needs a window."},
        {"-colorPalette", "The color palette needs a window."},
        {"-retimingTool", "The retiming tool needs a window."},
        {"-newLayer", "The new layer dialog needs a window."},
        {"-layerProperties", "The layer properties dialog needs a window."},
        {"-ghostingSettings", "The ghosting dialog needs a window."},
        {"-resetUI", "The reset of the user interface needs a window."},
        {"-preferences", "The preferences dialog needs a window."},
        {"-about", "The about box needs a window."},
        // What does not fit the syntax is said by the host.
        {"-e -drawColor 1 2", ""},
        {"-e -ghostPreviousCount -1", ""},
        {"-e -ghostPrevious on", ""},
        {"-e -ghost 1", ""},
        {"-draw persp", ""},
    };
    const ToolType tool = Settings::activeTool;
    for (const auto& row : rows) {
        ExpectRefusal(QString("qmVellixUtil ") + row.flags, row.message);
    }
    EXPECT_EQ(Ask("-q -drawColor"), "10 20 30");
    EXPECT_EQ(Ask("-q -tfd"), "1");
    EXPECT_EQ(Settings::activeTool, tool);
    // These find nothing to do without a window.
    Ask("-refreshLayerManager");
    Ask("-refreshTimelineDisplay");
    Ask("-tavloImport");
}

TEST_F(UtilCommandTest, ChangesReachTheNodeAndTheMenuOnce) {
    OpenWindow();
    Mel("qmVellixLayer -add -ls 0 persp");
    const auto needsPicture = [] { return Node().ImageUpdateRequired("persp"); };
    for (const char* flags :
         {"-gp 1", "-gp -1", "-gn 1", "-gpc 2", "-gnc 2", "-gco 1", "-gcp 1 2 3", "-gcn 1 2 3"}) {
        Node().GetFinalImage("persp");
        ASSERT_FALSE(needsPicture());
        Ask(QString("-e ") + flags);
        EXPECT_TRUE(needsPicture()) << flags;
        EXPECT_EQ(TakeMenuUpdates().count(';'), 1) << flags;
    }
    Ask("-e -timelineFrameDisplay 2");
    EXPECT_EQ(TakeMenuUpdates(), QString("%1,0,1,2;").arg(int(Settings::activeTool)));
    Ask("-e -drawColor 1 2 3");
    Ask("-lineOptions 3 4");
    EXPECT_EQ(TakeMenuUpdates(), "");

    Mel("file -f -new");
    Ask("-e -ghostPrevious 1"); // without a node the setting alone changes
    EXPECT_EQ(TakeMenuUpdates(), QString("%1,1,1,2;").arg(int(Settings::activeTool)));
}

TEST_F(UtilCommandTest, ToolsMakeTheirContextOnceAndMakeItCurrent) {
    OpenWindow();
    const struct {
        const char* flag;
        const char* context;
        ToolType tool;
    } rows[] = {
        {"-draw", "qmVxDrawCtx1", ToolType::Brush},
        {"-pencilTool", "qmVxDrawCtx1", ToolType::Pencil},
        {"-eraserTool", "qmVxDrawCtx1", ToolType::Eraser},
        {"-lineTool", "qmVxDrawCtx1", ToolType::Line},
        {"-transform", "qmVxTransformCtx1", ToolType::Line},
        {"-arrowTool", "qmVxDrawCtx1", ToolType::Arrow},
        {"-ellipseTool", "qmVxDrawCtx1", ToolType::Ellipse},
        {"-t", "qmVxTransformCtx1", ToolType::Ellipse},
        {"-d", "qmVxDrawCtx1", ToolType::Ellipse},
        {"-rectangleTool", "qmVxDrawCtx1", ToolType::Rectangle},
        {"-textTool", "qmVxDrawCtx1", ToolType::Text},
        {"-brushTool", "qmVxDrawCtx1", ToolType::Brush},
    };
    Settings::activeTool = ToolType::Brush;
    for (const auto& row : rows) {
        const bool chooses = QString(row.flag).endsWith("Tool");
        Ask(row.flag);
        EXPECT_EQ(Mel("currentCtx").AsString(), row.context) << row.flag;
        EXPECT_EQ(Settings::activeTool, row.tool) << row.flag;
        EXPECT_EQ(TakeMenuUpdates(), chooses ? QString("%1,0,0,0;").arg(int(row.tool)) : QString())
            << row.flag;
    }
    for (const char* another : {"qmVxDrawCtx2", "qmVxTransformCtx2"}) {
        EXPECT_EQ(Mel(QString("contextInfo -exists ") + another).AsInt(), 0) << another;
    }
    Mel("setToolTo selectSuperContext");
}

/// Notes what it is told.
template <typename Interface>
class FakePanel : public QWidget, public Interface {
public:
    explicit FakePanel(QStringList& told)
        : told_(told) {}
    ~FakePanel() override { told_.append("gone"); }
    QSize sizeHint() const override { return QSize(120, 90); }

protected:
    void closeEvent(QCloseEvent*) override { told_.append("close"); }

    QStringList& told_;
};

class FakeToolbox : public FakePanel<ToolboxPanel> {
public:
    using FakePanel::FakePanel;
    void Refresh() override { told_.append("toolbox"); }
    void RefreshOptions() override { told_.append("toolbox options"); }
    QColor GetColor() const override { return QColor(11, 22, 33); }
};

class FakeToolOptions : public FakePanel<ToolOptionsPanel> {
public:
    using FakePanel::FakePanel;
    void Refresh() override { told_.append("options"); }
};

class FakeLayerManager : public FakePanel<LayerManagerPanel> {
public:
    using FakePanel::FakePanel;
    void Clear() override { told_.append("clear"); }
    void Fill(const QList<LayerManagerRow>& rows, const QString& camera, int index) override {
        told_.append(QString("%1 %2 %3").arg(rows.size()).arg(camera).arg(index));
    }
};

class UtilPanelTest : public UtilCommandTest {
protected:
    using Panel = DialogManager::Panel;

    void SetUp() override {
        UtilCommandTest::SetUp();
        OpenWindow();
    }

    template <typename Widget>
    void Register(Panel panel) {
        DialogManager::RegisterPanel(panel, [this](QWidget*) { return std::make_unique<Widget>(told_); });
    }
    QStringList TakeTold() { return std::exchange(told_, {}); }

    QStringList told_;
};

TEST_F(UtilPanelTest, WhatIsNotBuiltIsSaidInOneMessage) {
    Mel("qmVellixLayer -add -ls 0 persp");
    for (const char* flags :
         {"-toolbox", "-toolOptions", "-refreshToolbox", "-layerManager", "-cp", "-rtt", "-newLayer",
          "-layerProperties", "-ghostingSettings", "-preferences", "-about"}) {
        const QStringList messages = Refused(QString("qmVellixUtil ") + flags);
        ASSERT_EQ(messages.size(), 1) << flags;
        EXPECT_TRUE(messages[0].startsWith("The ") && messages[0].endsWith(" is not available."))
            << messages[0].toStdString();
    }
}

TEST_F(UtilPanelTest, PanelsAreMadeOnceAndToldOfEveryChange) {
    Register<FakeToolbox>(Panel::Toolbox);
    Register<FakeToolOptions>(Panel::ToolOptions);
    Ask("-e -drawColor 1 2 3");
    EXPECT_EQ(TakeTold(), QStringList()) << "not made yet";

    Ask("-toolbox");
    Ask("-to");
    QWidget* const toolbox = DialogManager::GetToolboxDialog();
    EXPECT_TRUE(toolbox->isVisible());
    toolbox->showMinimized();
    Ask("-toolbox");
    EXPECT_FALSE(toolbox->isMinimized());
    EXPECT_EQ(DialogManager::GetToolboxDialog(), toolbox);

    TakeTold();
    const struct {
        const char* flags;
        QStringList told;
    } rows[] = {
        {"-e -drawColor 4 5 6", {"toolbox"}},
        {"-e -gp 1", {"toolbox"}},
        {"-e -gnc 3", {"toolbox"}},
        {"-e -gcp 1 2 3", {"toolbox"}},
        {"-pencilTool", {"toolbox", "options", "toolbox options"}},
        {"-po 3 4 1", {"options", "toolbox options"}},
        {"-txo 3 4 \"Sans\"", {"options", "toolbox options"}},
        {"-refreshToolbox", {"toolbox"}},
        {"-q -gp", {}},
        {"-e -tfd 1", {}},
    };
    for (const auto& row : rows) {
        Ask(row.flags);
        EXPECT_EQ(TakeTold(), row.told) << row.flags;
    }
    EXPECT_EQ(Ask("-q -drawColor"), "11 22 33") << "the colour of the toolbox's control";
    DialogManager::Shutdown();
    EXPECT_EQ(TakeTold(), QStringList({"close", "gone", "close", "gone"}));
}

TEST_F(UtilPanelTest, TheLayerManagerIsFilledWhenItIsMadeAndOnDemand) {
    Register<FakeLayerManager>(Panel::LayerManager);
    Mel("qmVellixLayer -add -ls 0 persp");
    Ask("-refreshLayerManager");
    EXPECT_EQ(TakeTold(), QStringList());
    Ask("-layerManager");
    EXPECT_EQ(TakeTold().last(), "1 persp 0");
    Ask("-layerManager");
    EXPECT_EQ(TakeTold(), QStringList());
    Ask("-rlm");
    EXPECT_EQ(TakeTold().last(), "1 persp 0");
    Mel("qmVxDeleteAllNodes");
    EXPECT_EQ(TakeTold().last(), "clear");
}

TEST_F(UtilPanelTest, DialogsOpenForWhatIsActive) {
    QStringList opened;
    using Dialog = DialogManager::Dialog;
    const struct {
        const char* flag;
        Dialog dialog;
    } rows[] = {{"-nl", Dialog::NewLayer},
                {"-gs", Dialog::Ghosting},
                {"-pr", Dialog::Preferences},
                {"-ab", Dialog::About}};
    for (const auto& row : rows) {
        const char* const flag = row.flag;
        DialogManager::RegisterDialog(row.dialog, [&opened, flag](QWidget*) { opened.append(flag); });
    }
    for (const auto& row : rows) {
        Ask(row.flag);
    }
    DialogManager::RegisterLayerPropertiesDialog([&](const QString& camera, int index, QWidget*) {
        opened.append(QString("%1 %2").arg(camera).arg(index));
    });
    ExpectRefusal("qmVellixUtil -layerProperties", "An active layer does not exist.");
    Mel("qmVellixLayer -add -ls 0 top; qmVellixLayer -add -ls 0 top;");
    Ask("-lp");
    EXPECT_EQ(opened, QStringList({"-nl", "-gs", "-pr", "-ab", "top 1"}));
    Mel("file -f -new");
    ExpectRefusal("qmVellixUtil -layerProperties", "Node not found");
}

/// Answers the next dialog that runs.
template <typename Dialog, typename Reply>
void WhenAsked(Reply reply) {
    QTimer::singleShot(0, [reply] {
        auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        reply(*dialog);
    });
}

TEST_F(UtilPanelTest, ResettingAsksFirst) {
    Register<FakeToolbox>(Panel::Toolbox);
    Ask("-toolbox");
    QWidget* const toolbox = DialogManager::GetToolboxDialog();
    for (const bool yes : {false, true}) {
        toolbox->resize(400, 300);
        Settings::toolboxGeometry = Settings::retimingGeometry = "somewhere";
        WhenAsked<QMessageBox>([yes](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), "Reset UI");
            EXPECT_EQ(box.text(), "Reset user interface elements?");
            box.button(yes ? QMessageBox::Yes : QMessageBox::No)->click();
        });
        Ask("-resetUI");
        EXPECT_EQ(toolbox->size(), yes ? QSize(120, 90) : QSize(400, 300));
        EXPECT_EQ(Settings::retimingGeometry.isEmpty(), yes);
        EXPECT_EQ(Settings::toolboxGeometry.isEmpty(), yes);
    }
}

TEST_F(UtilPanelTest, FloatingViewportsAskForAnUnknownCamera) {
    Mel("qmVellixLayer -add -ls 0 side");
    Ask("-fv");
    EXPECT_EQ(TakeMenuUpdates(), "floating ;");
    Ask("-fvm top");
    EXPECT_EQ(TakeMenuUpdates(), "floating top;");
    for (const char* chosen : {"front", ""}) {
        WhenAsked<QInputDialog>([chosen](QInputDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Move Layers to View");
            EXPECT_TRUE(dialog.labelText().startsWith("Select camera to move layers from:   "));
            EXPECT_EQ(dialog.textValue(), "side") << "the active camera";
            EXPECT_FALSE(dialog.isComboBoxEditable());
            if (*chosen) {
                dialog.setTextValue(chosen);
                dialog.accept();
            } else {
                dialog.reject();
            }
        });
        Ask("-fvm \"\"");
        EXPECT_EQ(TakeMenuUpdates(), *chosen ? "floating front;" : "");
    }
    // The command is not undoable itself; what it does to the drawing is.
    Mel("global proc qmVxCreateFloatingViewport(string $camera) { qmVellixLayer -mva top $camera; }");
    ExpectUndoable("qmVellixUtil -fvm side");
}

} // namespace
} // namespace vellix
