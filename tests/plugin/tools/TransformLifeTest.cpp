#include "core/LayerManager.h"
#include "paint/Stroke.h"
#include "plugin/FailingAllocation.h"
#include "plugin/tools/TransformFixture.h"
#include "scene/ToolContexts.h"

#include <QStringList>

#include <gmock/gmock.h>

namespace vellix {
namespace {

/// What happens to the tool in the middle of things.
class TransformLifeTest : public TransformFixture {
protected:
    void BeginTransform() {
        Select(QUARTERS);
        Key(Qt::Key_Return);
        Drag({100, 300}, {180, 310});
        ASSERT_EQ(Tool().GetStage(), TransformContext::TRANSFORM_STAGE);
    }
    void ExpectFreshStart() {
        EXPECT_FALSE(Node().HasActiveStroke());
        EXPECT_FALSE(Node().DrawTransformOutline("persp"));
        EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE);
        EXPECT_EQ(Current(), Picture());
    }
};

TEST_F(TransformLifeTest, BackspaceRevertsAndEscapeGoesToTheDrawTool) {
    Begin();
    BeginTransform();
    Key(Qt::Key_Backspace);
    ExpectFreshStart();
    BeginTransform();
    Key(Qt::Key_Escape);
    EXPECT_EQ(Run("currentCtx").AsString().rfind("qmVxDrawCtx", 0), 0U);
    EXPECT_FALSE(Node().HasActiveStroke());
    EXPECT_EQ(Current(), Picture());
    Activate();
    ExpectFreshStart();
}

// Leaving the scene asks first.
TEST_F(TransformLifeTest, ATransformThatIsNotAppliedYetIsUnsaved) {
    Begin();
    Run("file -modified 0");
    BeginTransform();
    EXPECT_EQ(Run("file -q -modified").AsString(), "1");
    Run("file -rename \"" + prefs_.filePath("pending.ma").toStdString() + "\"; file -save");
    EXPECT_EQ(Run("file -q -modified").AsString(), "1") << "the file does not have it";
    Key(Qt::Key_Backspace);
    Run("file -save");
    EXPECT_EQ(Run("file -q -modified").AsString(), "0");
}

TEST_F(TransformLifeTest, PressedAfterTheFrameOrTheLayerChangedItReverts) {
    Begin();
    for (const char* change : {"currentTime 2", "qmVellixLayer -add -ls 0 persp"}) {
        for (const bool enters : {false, true}) {
            SCOPED_TRACE(change);
            BeginTransform();
            Run(change);
            if (enters) {
                Key(Qt::Key_Return);
            } else {
                Drag({500, 500}, {600, 600});
                Rest();
            }
            Run("undo");
            ExpectFreshStart();
        }
    }
}

TEST_F(TransformLifeTest, WhatEndsItInTheMiddleIsSaid) {
    Begin();
    const struct {
        const char* line;
        bool enters;
        const char* message;
    } rows[] = {
        {"currentTime 2", true,
         "Error: [Vellix2] The transform was dropped: the view, the time or the active"},
        {"currentTime 2", false,
         "Error: [Vellix2] The transform was dropped: the view, the time or the active"},
        {"qmVellixLayer -add -ls 0 persp", true,
         "Error: [Vellix2] The transform was dropped: the view, the time"},
        {"qmVellixLayer -es 2 0 persp", true,
         "Error: [Vellix2] The stroke was dropped: the layer \"Layer\" is lock"},
        {"qmVellixLayer -ev 0 0 persp", true,
         "Error: [Vellix2] The stroke was dropped: the layer \"Layer\" is not"},
        {"qmVellixFrame -delete", true,
         "Error: [Vellix2] The stroke was dropped: the drawing it began on is gone."},
        {"setToolTo moveSuperContext", false, "Warning: [Vellix2] The transform was dropped: another tool"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        BeginTransform();
        messages_.clear();
        Run(row.line);
        Grab();
        if (row.enters) {
            Key(Qt::Key_Return);
        } else {
            Drag({500, 500}, {600, 600});
            Rest();
        }
        std::vector<std::string> said;
        for (const std::string& line : messages_) {
            if (line.find("[Vellix2]") != std::string::npos) {
                said.push_back(line);
            }
        }
        ASSERT_EQ(said.size(), 1U);
        EXPECT_NE(said[0].find(row.message), std::string::npos) << said[0];
        if (std::string(row.line).find("setToolTo") == std::string::npos) {
            Run("undo");
        }
        Activate();
        ExpectFreshStart();
    }
}

TEST_F(TransformLifeTest, ARenamedCameraChangesNothing) {
    Begin();
    Run("createNode transform -n shot; createNode camera -n shotShape -p shot");
    Run("qmVellixLayer -moveAll shot persp; lookThru modelPanel4 shot");
    Run("setAttr shotShape.filmFit 1; setAttr shotShape.overscan 1");
    Activate();
    for (const bool isInSelectStage : {true, false}) {
        SCOPED_TRACE(isInSelectStage);
        Select(QUARTERS);
        if (isInSelectStage) {
            Run("rename shot hero");
        }
        Key(Qt::Key_Return);
        Drag({100, 300}, {180, 310});
        if (!isInSelectStage) {
            Run("rename shot hero");
        }
        messages_.clear();
        Grab();
        EXPECT_TRUE(Node().DrawTransformOutline("hero"));
        Drag({100, 300}, {110, 300});
        Key(Qt::Key_Return);
        EXPECT_THAT(messages_, ::testing::Not(::testing::Contains(::testing::HasSubstr("[Vellix2]"))));
        EXPECT_EQ(Current("hero").pixelColor(391, 411), QColor(Qt::red)); // moved by (90, 10)
        EXPECT_EQ(Current("hero").pixelColor(301, 401).alpha(), 0);
        Run("undo");
        EXPECT_EQ(Current("hero"), Picture());
        Run("rename hero shot");
        Activate();
    }
}

// Memory runs out at any allocation of the tool, from the press that selects to the key that commits.
TEST_F(TransformLifeTest, ShortOfMemoryItCommitsOrLeavesTheDrawing) {
    if (!FailingAllocation::IsPossible()) {
        GTEST_SKIP() << "this build's allocations cannot be replaced";
    }
    Begin();
    bool hasFailed = true;
    int failures = 0;
    for (int number = 1; hasFailed; number += 1 + number / 8, ++failures) {
        SCOPED_TRACE(number);
        messages_.clear();
        bool isOfTest = false;
        {
            const FailingAllocation failing(number);
            try {
                Select(QUARTERS);
                QTest::keyClick(&View(), Qt::Key_Return);
                Drag({100, 300}, {180, 310});
                QTest::keyClick(&View(), Qt::Key_Return);
            } catch (const std::bad_alloc&) {
                isOfTest = true; // which sends the events
            }
            hasFailed = FailingAllocation::HasFailed();
        }
        Release({180, 310});
        Rest();
        if (Node().HasActiveStroke()) {
            Tool().deleteAction(); // still open, as after a drag that failed
            Rest();
        }
        if (Current() != Picture()) {
            Run("undo");
        } else if (!isOfTest) {
            EXPECT_THAT(messages_, ::testing::Contains(::testing::HasSubstr("[Vellix2]")));
        }
        ASSERT_EQ(Current(), Picture());
        ASSERT_EQ(Node().GetActiveLayer("persp")->FrameCount(), 1);
        Activate();
    }
    std::printf("%d allocations failed\n", failures);
}

TEST_F(TransformLifeTest, AnotherDrawingIsNeitherLiftedNorCovered) {
    Begin();
    Run("currentTime 5; qmVellixFrame -insert");
    QImage other = Picture().mirrored();
    Node().GetActiveLayer("persp")->GetFrame(1)->SetImage(other);
    Run("currentTime 1");
    Rest();
    BeginTransform();
    const QImage shown = Grab();
    Run("currentTime 5");
    EXPECT_EQ(*Node().GetFinalImage("persp"), Node().GetLayerManager()->ComposeFrame("persp", 5, false));
    Run("currentTime 1");
    EXPECT_EQ(Grab(), shown);
    Key(Qt::Key_Return);
    QImage moved = Picture();
    const QImage lifted = moved.copy(QUARTERS);
    QPainter painter(&moved);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QUARTERS, Qt::transparent);
    painter.drawImage(QUARTERS.topLeft() + QPoint(80, 10), lifted);
    painter.end();
    EXPECT_EQ(Current(), moved);
    EXPECT_EQ(Node().GetActiveLayer("persp")->GetFrame(1)->GetImage(), other);
}

TEST_F(TransformLifeTest, PressedInAnotherViewItReverts) {
    Begin();
    Run("qmVellixLayer -add -ls 0 top; qmVellixLayer -e -active 0 persp");
    BeginTransform();
    Run("lookThru modelPanel4 top");
    Drag({500, 500}, {600, 600});
    Rest();
    Run("lookThru modelPanel4 persp");
    ExpectFreshStart();

    // A selection makes the camera of its view the active one.
    Run("lookThru modelPanel4 top");
    EXPECT_EQ(Node().GetActiveCamera(), "persp");
    Select(QUARTERS);
    EXPECT_EQ(Node().GetActiveCamera(), "top");

    // One without layers is no place for a selection.
    Run("lookThru modelPanel4 side");
    Select(QUARTERS);
    Rest();
    EXPECT_EQ(Node().GetActiveCamera(), "top");
    EXPECT_FALSE(Node().HasActiveStroke());
}

TEST_F(TransformLifeTest, UndoInTheMiddleComesUnderTheTransform) {
    Begin();
    Run("qmVellixFrame -clear");
    const QImage blank = Current();
    Run("undo");
    ASSERT_EQ(Current(), Picture());
    BeginTransform();
    Grab();
    Run("redo");
    Key(Qt::Key_Return);
    EXPECT_EQ(Current(), blank) << "what was cleared does not come back";
}

TEST_F(TransformLifeTest, NothingDanglesWhenItEndsInTheMiddle) {
    Begin();
    BeginTransform();
    Run("setToolTo moveSuperContext");
    EXPECT_FALSE(Node().HasActiveStroke());
    EXPECT_FALSE(Node().DrawTransformOutline("persp"));
    EXPECT_EQ(ChooseFromMenu(""), QStringList());
    Activate();
    ExpectFreshStart();

    // During a drag.
    BeginTransform();
    Press({500, 500});
    Move({520, 500});
    Run("setToolTo moveSuperContext");
    Move({540, 500});
    Release({540, 500});
    Activate();
    ExpectFreshStart();

    // The node goes, and so does the scene.
    BeginTransform();
    Run("delete vellix");
    Grab();
    Drag({500, 500}, {600, 600});
    Key(Qt::Key_Return);
    Run("undo");
    ExpectFreshStart();
    BeginTransform();
    Run("file -f -new");
    Rest();
    EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE);
    Drag({500, 500}, {600, 600});
    Key(Qt::Key_Return);
    Key(Qt::Key_Escape);
    Run("file -f -new"); // the draw tool has made itself a node
    Begin();

    BeginTransform();
    Key(Qt::Key_Backspace);
    ExpectFreshStart();
}

TEST_F(TransformLifeTest, TheViewMayGoInTheMiddle) {
    Begin();
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        Run("window floating; paneLayout; modelPanel -camera persp floatingPanel; showWindow floating");
        Rest();
        Use(renderer, "floatingPanel");
        lightbox::ViewportWidget& floating = View("floatingPanel");
        QTest::mousePress(&floating, Qt::LeftButton, {}, QPoint(20, 20));
        QMouseEvent move(QEvent::MouseMove, QPoint(50, 40), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&floating, &move);
        QTest::mouseRelease(&floating, Qt::LeftButton, {}, QPoint(50, 40));
        floating.setFocus();
        QTest::keyClick(&floating, Qt::Key_Return);
        Rest();
        ASSERT_EQ(Tool().GetStage(), TransformContext::TRANSFORM_STAGE);
        Run("deleteUI floating");
        Rest();
        // Another view of the same camera takes over.
        Drag({500, 500}, {520, 500});
        EXPECT_EQ(CurrentStroke()->offsetX, 20);
        Key(Qt::Key_Backspace);
        ExpectFreshStart();
    }
}

TEST_F(TransformLifeTest, UnloadingInTheMiddleLeavesNothing) {
    Begin();
    for (const bool isPressed : {false, true}) {
        BeginTransform();
        if (isPressed) {
            Press({500, 500});
        }
        host_->plugins().Unload("vellix2", true);
        EXPECT_EQ(BaseNode::GetActiveTransformContext(), nullptr);
        Move({510, 510});
        Release({510, 510});
        Press({500, 500}, Qt::RightButton);
        Grab();
        host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        Run("file -f -new; setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1");
        Begin();
    }
}

} // namespace
} // namespace vellix
