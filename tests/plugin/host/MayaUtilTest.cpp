#include "host/MayaUtil.h"

#include "core/LayerState.h"
#include "host/Settings.h"
#include "paint/ToolType.h"
#include "plugin/PluginTest.h"
#include "plugin/host/ExecutedLines.h"

#include <maya/MArgList.h>
#include <maya/MDoubleArray.h>
#include <maya/MSelectionList.h>
#include <maya/MTime.h>

#include <QFile>
#include <QRegularExpression>
#include <QResource>
#include <QStringList>

#include <functional>
#include <gmock/gmock.h>

namespace vellix {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using MayaUtilTest = PluginTest;

TEST_F(MayaUtilTest, EveryOperationExecutesItsLine) {
    const QString camera = QStringLiteral("persp");
    const QColor color(1, 20, 255);
    struct Case {
        std::function<bool()> operation;
        const char* line;
    };
    Settings::activeTool = ToolType::Eraser;
    Settings::ghostPrev = true;
    Settings::ghostNext = false;
    Settings::timelineFrameDisplay = 2;
    Settings::showMainMenuInAnimationSet = true;
    using M = MayaUtil;
    const QString none;
    const Case cases[] = {
        {[] { return M::CreateMainMenu(); }, "qmVxCreateMainMenu(1)"},
        {[] { return M::UpdateMainMenu(); }, "qmVxUpdateMainMenu(2, 1, 0, 2)"},
        {[] { return M::DeleteMainMenu(); }, "qmVxDeleteMainMenu"},
        {[] { return M::DeleteActiveLayer(); }, "qmVxDeleteActiveLayer()"},
        {[] { return M::DeleteActiveCameraLayers(); }, "qmVxDeleteActiveCameraLayers()"},
        {[] { return M::DeleteAllNodes(); }, "qmVxDeleteAllNodes()"},
        {[&] { return M::CreateFloatingViewport(none); }, "qmVxCreateFloatingViewport(\"\")"},
        {[&] { return M::CreateFloatingViewport(camera); }, "qmVxCreateFloatingViewport(\"persp\")"},
        {[&] { return M::CreateNode(false, false, none, none, -1); }, "qmVellixNode"},
        {[&] { return M::CreateNode(true, true, camera, QStringLiteral("A b"), 2); },
         "qmVellixNode -l -c persp -ln \"A b\" -ls 2 -f"},
        {[] { return M::RefreshNode(); }, "qmVellixNode -r"},
        {[&] { return M::AddLayer(camera, none, -1); }, "qmVellixLayer -add persp"},
        {[&] { return M::AddLayer(camera, QStringLiteral("%1 %2"), 0); },
         "qmVellixLayer -add -n \"%1 %2\" -ls 0 persp"},
        {[&] { return M::InsertLayer(camera, -1); }, "qmVellixLayer -insert -1 persp"},
        {[&] { return M::RemoveLayer(camera, 3); }, "qmVellixLayer -delete 3 persp"},
        {[&] { return M::MoveLayer(camera, 3, 1); }, "qmVellixLayer -move 3 1 persp"},
        {[&] { return M::MoveLayer(camera, 3, QStringLiteral("top"), -1); },
         "qmVellixLayer -newCamera top -move 3 -1 persp"},
        {[&] { return M::MoveAllLayers(camera, QStringLiteral("top")); }, "qmVellixLayer -moveAll top persp"},
        {[&] { return M::SetActiveLayer(camera, 2); }, "qmVellixLayer -e -active 2 persp"},
        {[&] { return M::SetLayerName(camera, 2, QStringLiteral("Sky")); },
         "qmVellixLayer -en \"Sky\" 2 persp"},
        {[&] { return M::SetLayerVisible(camera, 2, true); }, "qmVellixLayer -ev 1 2 persp"},
        {[&] { return M::SetLayerMarked(camera, 2, false); }, "qmVellixLayer -em 0 2 persp"},
        {[&] { return M::SetLayerOpacity(camera, 2, 0.7f); }, "qmVellixLayer -eo 0.7 2 persp"},
        {[&] { return M::SetLayerState(camera, 2, LayerState::Locked); }, "qmVellixLayer -es 2 2 persp"},
        {[] { return M::RefreshLayerManagerDialog(); }, "evalDeferred(\"qmVellixUtil -rlm\")"},
        {[&] { return M::PushStroke(camera, -1, false); }, "qmVellixStroke persp"},
        {[&] { return M::PushStroke(camera, 0, true); }, "qmVellixStroke -la 0 -fa persp"},
        {[] { return M::Draw(); }, "evalDeferred(\"qmVellixUtil -draw\")"},
        {[] { return M::ActivateTransformTool(); }, "evalDeferred(\"qmVellixUtil -transform\")"},
        {[] { return M::SetPencilTool(); }, "qmVellixUtil -pencilTool"},
        {[] { return M::SetBrushTool(); }, "qmVellixUtil -brushTool"},
        {[] { return M::SetEraserTool(); }, "qmVellixUtil -eraserTool"},
        {[] { return M::SetTextTool(); }, "qmVellixUtil -textTool"},
        {[] { return M::SetLineTool(); }, "qmVellixUtil -lineTool"},
        {[] { return M::SetArrowTool(); }, "qmVellixUtil -arrowTool"},
        {[] { return M::SetEllipseTool(); }, "qmVellixUtil -ellipseTool"},
        {[] { return M::SetRectangleTool(); }, "qmVellixUtil -rectangleTool"},
        {[] { return M::SetPencilOptions(5, 60, true); }, "qmVellixUtil -pencilOptions 5 60 1"},
        {[] { return M::SetBrushOptions(5, 60, 70, false); }, "qmVellixUtil -brushOptions 5 60 70 0"},
        {[] { return M::SetEraserOptions(5, 60, 70, true); }, "qmVellixUtil -eraserOptions 5 60 70 1"},
        {[] { return M::SetTextOptions(5, 60, QStringLiteral("DejaVu Sans")); },
         "qmVellixUtil -textOptions 5 60 \"DejaVu Sans\""},
        {[] { return M::SetLineOptions(5, 60); }, "qmVellixUtil -lineOptions 5 60"},
        {[] { return M::SetArrowOptions(5, 60); }, "qmVellixUtil -arrowOptions 5 60"},
        {[] { return M::SetEllipseOptions(5, 60); }, "qmVellixUtil -ellipseOptions 5 60"},
        {[] { return M::SetRectangleOptions(5, 60); }, "qmVellixUtil -rectangleOptions 5 60"},
        {[&] { return M::SetActiveColor(color); }, "qmVellixUtil -e -drawColor 1 20 255"},
        {[] { return M::ToggleGhostPrevious(); }, "qmVellixUtil -e -ghostPrevious 0"},
        {[] { return M::ToggleGhostNext(); }, "qmVellixUtil -e -ghostNext 1"},
        {[] { return M::SetGhostPreviousCount(4); }, "qmVellixUtil -e -ghostPreviousCount 4"},
        {[] { return M::SetGhostNextCount(4); }, "qmVellixUtil -e -ghostNextCount 4"},
        {[] { return M::SetGhostColorOverrideEnabled(true); }, "qmVellixUtil -e -ghostColorOverride 1"},
        {[&] { return M::SetGhostColorOverridePrev(color); }, "qmVellixUtil -e -ghostColorPrevious 1 20 255"},
        {[&] { return M::SetGhostColorOverrideNext(color); }, "qmVellixUtil -e -ghostColorNext 1 20 255"},
        {[] { return M::SetDrawingPinned(true); }, "qmVellixUtil -e -pinDrawing 1"},
        {[] { return M::UnpinAllDrawings(); }, "qmVellixUtil -unpinAll"},
        {[] { return M::SetActiveLayerMarked(false); }, "qmVellixUtil -e -markLayer 0"},
        {[] { return M::InsertFrame(); }, "qmVellixFrame -insert"},
        {[] { return M::DuplicateFrame(); }, "qmVellixFrame -duplicate"},
        {[] { return M::DeleteFrame(); }, "qmVellixFrame -delete"},
        {[] { return M::CutFrame(); }, "qmVellixFrame -cut"},
        {[] { return M::CopyFrame(); }, "qmVellixFrame -copy"},
        {[] { return M::PasteFrame(); }, "qmVellixFrame -paste"},
        {[] { return M::ClearFrame(); }, "qmVellixFrame -clear"},
        {[] { return M::StepForward(); }, "qmVellixFrame -stepForward"},
        {[] { return M::StepBack(); }, "qmVellixFrame -stepBack"},
        {[] { return M::RetimeFrames(2, false, false); }, "qmVellixFrame -retime 2"},
        {[] { return M::RetimeFrames(2, true, true); }, "qmVellixFrame -relative -moveToNext -retime 2"},
        {[] { return M::MoveFrames(-3, 1, 8); }, "qmVellixFrame -move -3 1 8"},
        {[] { return M::SetTimelineFrameDisplay(TimelineFrameDisplay::SelectionOrContext); },
         "qmVellixUtil -e -timelineFrameDisplay 1"},
        {[] { return M::RefreshTimelineOverlay(); }, "qmVellixUtil -refreshTimelineDisplay"},
        {[] { return M::ShowNewLayerDialog(); }, "qmVellixUtil -newLayer"},
        {[] { return M::ShowLayerPropertiesDialog(); }, "qmVellixUtil -layerProperties"},
        {[] { return M::ShowToolboxDialog(); }, "qmVellixUtil -toolbox"},
        {[] { return M::ShowToolOptionsDialog(); }, "qmVellixUtil -toolOptions"},
        {[] { return M::ShowLayerManagerDialog(); }, "qmVellixUtil -layerManager"},
        {[] { return M::ShowColorPaletteDialog(); }, "qmVellixUtil -colorPalette"},
        {[] { return M::ShowRetimingTool(); }, "qmVellixUtil -retimingTool"},
        {[] { return M::ShowGhostingDialog(); }, "qmVellixUtil -ghostingSettings"},
        {[] { return M::SetContext("ctx"); }, "setToolTo ctx"},
        {[] { return M::ContextExists("ctx"); }, "contextInfo -exists ctx"},
        {[] { return M::SetColorSliderGrpColor(QStringLiteral("s"), QColor(0, 255, 51)); },
         "colorSliderGrp -e -rgbValue 0 1 0.2 s"},
        {[] { return M::SetColorSliderGrpChangeCommand(QStringLiteral("s"), QStringLiteral("print \"a\"")); },
         "colorSliderGrp -e -changeCommand \"print \\\"a\\\"\" s"},
        {[] { return M::CreateColorSliderGrp(QStringLiteral("s"), 40, 20) != nullptr; },
         "colorSliderGrp -columnWidth3 0 40 0 s"},
    };
    for (const Case& test : cases) {
        ExecutedLines executed;
        test.operation();
        EXPECT_THAT(executed.Lines(), ElementsAre(test.line));
        EXPECT_TRUE(executed.ArePlain()) << test.line;
    }
    Settings::activeTool = ToolType::Brush;
    Settings::ghostPrev = false;
    Settings::timelineFrameDisplay = 0;
    Settings::showMainMenuInAnimationSet = false;
}

TEST_F(MayaUtilTest, NamesAreEscapedOnlyWhereTheyMustBe) {
    struct Case {
        const char* name;
        const char* line;
    };
    const Case cases[] = {
        {"Sky's {1} $x `y` \t; %1", "qmVellixLayer -en \"Sky's {1} $x `y` \t; %1\" 0 cam"},
        {"say \"hi\"", "qmVellixLayer -en \"say \\\"hi\\\"\" 0 cam"},
        {"C:\\n", "qmVellixLayer -en \"C:\\\\n\" 0 cam"},
        {"two\r\nlines", "qmVellixLayer -en \"two\\r\\nlines\" 0 cam"},
        {"\xE7\xAD\x86 \xF0\x9F\x96\x8C", "qmVellixLayer -en \"\xE7\xAD\x86 \xF0\x9F\x96\x8C\" 0 cam"},
    };
    for (const Case& test : cases) {
        ExecutedLines executed;
        MayaUtil::SetLayerName(QStringLiteral("cam"), 0, QString::fromUtf8(test.name));
        EXPECT_THAT(executed.Lines(), ElementsAre(test.line));
    }
    ExecutedLines executed;
    // A drawing may name a camera as it likes: none of it is a command.
    MayaUtil::SetActiveLayer(QStringLiteral("a; sysFile -delete b"), 0);
    MayaUtil::SetActiveLayer(QStringLiteral("`quit`"), 0);
    EXPECT_THAT(executed.Take(), ElementsAre("qmVellixLayer -e -active 0 \"a; sysFile -delete b\"",
                                             "qmVellixLayer -e -active 0 \"`quit`\""));
    MayaUtil::PushStroke(QStringLiteral("|group1|cam:A_1"), -1, false);
    MayaUtil::PushStroke(QStringLiteral("a\"b"), -1, false);
    MayaUtil::AddLayer(QStringLiteral("cam"), QString(QLatin1String("ab\0c", 4)), -1);
    EXPECT_THAT(executed.Lines(), ElementsAre("qmVellixStroke |group1|cam:A_1", "qmVellixStroke \"a\\\"b\"",
                                              "qmVellixLayer -add -n \"ab\" cam"));
}

TEST_F(MayaUtilTest, EscapedNamesReachTheCommandUnchanged) {
    const QString name = QString::fromUtf8("a\"b\\c\nd\r \\\" \xC3\xA9");
    std::string received;
    Host().interpreter().Commands().RegisterRaw("takeName", 1, 1, [&](lightbox::mel::CommandCall& call) {
        received = call.Object(0).AsString();
        return lightbox::mel::Value();
    });
    MayaUtil::ExecuteMel(QStringLiteral("takeName \"%1\"").arg(MayaUtil::EscapeString(name)), false, false);
    EXPECT_EQ(received, name.toStdString());
}

TEST_F(MayaUtilTest, NodeIsCreatedWhenTheHostIsIdle) {
    ASSERT_TRUE(MayaUtil::CreateNode(true, false, QStringLiteral("persp"), QStringLiteral("In k"), 1));
    EXPECT_EQ(Ask("qmVellixNode -exists"), "0");
    Host().idle().Drain();
    EXPECT_EQ(Ask("qmVellixNode -exists"), "1");
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MayaUtilTest, AResultOfAnotherTypeIsAFailure) {
    int number = 7;
    double real = 7.5;
    QString text = QStringLiteral("kept");
    MDoubleArray array(1, 7.0);
    EXPECT_FALSE(MayaUtil::ExecuteMelIntResult(QStringLiteral("$t = \"5\""), number, false, false));
    EXPECT_FALSE(MayaUtil::ExecuteMelIntResult(QStringLiteral("$r = 5.0"), number, false, false));
    EXPECT_FALSE(MayaUtil::ExecuteMelDoubleResult(QStringLiteral("$i = 5"), real, false, false));
    EXPECT_FALSE(MayaUtil::ExecuteMelStringResult(QStringLiteral("$i = 5"), text, false, false));
    EXPECT_FALSE(MayaUtil::ExecuteMelDoubleArrayResult(QStringLiteral("$r = 5.0"), array, false, false));
    EXPECT_FALSE(MayaUtil::ExecuteMelIntResult(QStringLiteral("noSuchCommand"), number, false, false));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(real, 7.5);
    EXPECT_EQ(text, QStringLiteral("kept"));
    EXPECT_EQ(array.length(), 1u);
    EXPECT_TRUE(MayaUtil::ExecuteMelIntResult(QStringLiteral("$i = 5"), number, false, false));
    EXPECT_TRUE(
        MayaUtil::ExecuteMelDoubleArrayResult(QStringLiteral("$a = {1.5, 2.5}"), array, false, false));
    EXPECT_EQ(number, 5);
    EXPECT_EQ(array.length(), 2u);
}

TEST_F(MayaUtilTest, AsksTheHost) {
    EXPECT_TRUE(MayaUtil::IsBatchMode());
    EXPECT_EQ(MayaUtil::GetMayaPrefsDirectory().toStdString(), Ask("internalVar -userPrefDir"));
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    cameras.sort();
    EXPECT_EQ(cameras.join(QLatin1Char(' ')), QStringLiteral("front persp side top"));
    EXPECT_TRUE(MayaUtil::CameraExists(QStringLiteral("top")));
    EXPECT_FALSE(MayaUtil::CameraExists(QStringLiteral("topShape")));
    MayaUtil::SetPlaybackTime(MTime(4.9, MTime::uiUnit()));
    EXPECT_EQ(MayaUtil::GetPlaybackTimeValue(), 4);
    MayaUtil::SetPlaybackTime(-3);
    EXPECT_EQ(MayaUtil::GetPlaybackTimeValue(), -3);
    Run("timeControl -e -rangeArray 3 9 $gPlayBackSlider");
    MDoubleArray range;
    ASSERT_TRUE(MayaUtil::GetTimeSliderRange(range));
    ASSERT_EQ(range.length(), 2u);
    EXPECT_EQ(range[0], 3.0);
    EXPECT_EQ(range[1], 9.0);
}

TEST_F(MayaUtilTest, RefreshingTheTimeControlKeepsTheSelection) {
    Run("createNode transform -n \"a\"; createNode transform -n \"b\"");
    MSelectionList top;
    top.add("top");
    MObject node;
    top.getDependNode(0, node);
    for (const char* selection : {"a b", ""}) {
        Run(std::string("select -clear; ") + (*selection != 0 ? std::string("select ") + selection : ""));
        const std::string before = Ask("stringArrayToString(`ls -sl`, \" \")");
        MayaUtil::RefreshTimeControl(node);
        EXPECT_EQ(Ask("stringArrayToString(`ls -sl`, \" \")"), before);
        EXPECT_EQ(before, selection);
    }
}

TEST_F(MayaUtilTest, PlaceholdersAreReplacedEverywhere) {
    Settings::mainMenuName = QStringLiteral("My {NODE_CMD}");
    EXPECT_EQ(MayaUtil::ParseScript(QStringLiteral("no {PLACE} {node_cmd} {} holders")),
              QStringLiteral("no {PLACE} {node_cmd} {} holders"));
    EXPECT_EQ(
        MayaUtil::ParseScript(QStringLiteral("{NODE_TYPE_NAME}{NODE_TYPE_NAME} {MAIN_MENU_NAME} "
                                             "{FUNC_DELETE_ALL_NODES}({UTIL_CMD},{LAYER_CMD},{FRAME_CMD})")),
        QStringLiteral("qmVellixqmVellix My qmVellixNode "
                       "qmVxDeleteAllNodes(qmVellixUtil,qmVellixLayer,qmVellixFrame)"));
    Settings::mainMenuName = Settings::DEFAULT_MAIN_MENU_NAME;
}

TEST_F(MayaUtilTest, EmbeddedScriptIsCompressedAndDefinesItsProcedures) {
    const QResource resource(QStringLiteral(":/scripts/Vellix.mel"));
    ASSERT_TRUE(resource.isValid());
    EXPECT_EQ(resource.compressionAlgorithm(), QResource::ZlibCompression);
    QFile file(resource.absoluteFilePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_EQ(text.count('\n'), text.count("\r\n"));
    const QString parsed = MayaUtil::ParseScript(QString::fromUtf8(text));
    EXPECT_FALSE(parsed.contains(QRegularExpression(QStringLiteral("\\{[A-Z_]+\\}"))));

    ASSERT_TRUE(MayaUtil::SourceScripts());
    for (const char* procedure :
         {"qmVxCreateMainMenu", "qmVxDeleteMainMenu", "qmVxUpdateMainMenu", "qmVxCreateFloatingViewport",
          "qmVxDeleteActiveLayer", "qmVxDeleteActiveCameraLayers", "qmVxDeleteAllNodes"}) {
        EXPECT_TRUE(Host().interpreter().HasProcedure(procedure)) << procedure;
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MayaUtilTest, CleanUpProceduresDeleteLayers) {
    EXPECT_TRUE(MayaUtil::DeleteActiveLayer()); // no node, nothing to do
    EXPECT_TRUE(MayaUtil::DeleteActiveCameraLayers());
    Run("qmVellixNode -l -c persp; qmVellixLayer -add -ls 0 persp; qmVellixLayer -add -ls 0 persp");
    ASSERT_EQ(Ask("qmVellixLayer -count persp"), "3");
    EXPECT_TRUE(MayaUtil::DeleteActiveLayer());
    EXPECT_EQ(Ask("qmVellixLayer -count persp"), "2");
    EXPECT_TRUE(MayaUtil::DeleteActiveCameraLayers());
    EXPECT_EQ(Ask("qmVellixLayer -count persp"), "0");
    EXPECT_TRUE(MayaUtil::DeleteActiveLayer()); // no layer
    EXPECT_THAT(Messages(), IsEmpty());
    Run("undo; undo");
    EXPECT_EQ(Ask("qmVellixLayer -count persp"), "3");
}

} // namespace vellix
