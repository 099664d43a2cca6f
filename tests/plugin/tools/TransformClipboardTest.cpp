#include "paint/Stroke.h"
#include "plugin/tools/TransformFixture.h"

namespace vellix {
namespace {

class TransformClipboardTest : public TransformFixture {
protected:
    static QImage Without(const QRect& region) {
        QImage image = Picture();
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(region, Qt::transparent);
        return image;
    }
    static QImage With(QImage image, const QPoint& leftTop) {
        QPainter(&image).drawImage(leftTop, Picture().copy(QUARTERS));
        return image;
    }
    void ExpectUndoableTo(const QImage& before) {
        const QImage after = Current();
        Run("undo");
        EXPECT_EQ(Current(), before);
        Run("redo");
        EXPECT_EQ(Current(), after);
    }
};

TEST_F(TransformClipboardTest, CutsCopiesAndPastes) {
    Begin();
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        SCOPED_TRACE(int(renderer));
        Use(renderer);
        Draw(Picture());
        Select(QUARTERS);
        ChooseFromMenu("Copy");
        EXPECT_EQ(Current(), Picture());
        EXPECT_FALSE(Node().HasActiveStroke());

        Select(QUARTERS);
        ChooseFromMenu("Cut");
        const QImage cut = Current();
        EXPECT_EQ(cut, Without(QUARTERS));
        ExpectUndoableTo(Picture());

        ChooseFromMenu("Paste", {500, 600});
        EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE);
        // Its corner is counted from the view's edge, not from the pixel's: one up.
        const QImage pasted = With(cut, {500, 599});
        EXPECT_EQ(Current(), pasted);
        ExpectUndoableTo(cut);

        ChooseFromMenu("Paste and Transform", {100, 300});
        EXPECT_EQ(Tool().GetStage(), TransformContext::TRANSFORM_STAGE);
        ASSERT_NE(CurrentStroke(), nullptr);
        EXPECT_EQ(CurrentStroke()->selection.size(), QUARTERS.size() + QSize(1, 1));
        ChooseFromMenu("Flip Vertical", {100, 300});
        Drag({10, 500}, {10, 560});
        ChooseFromMenu("Apply Transform");
        const QImage both = Current();
        EXPECT_EQ(both.copy(500, 599, 100, 60), Picture().copy(QUARTERS));
        // Where the region of 101 by 61 pixels has its middle.
        EXPECT_EQ(both.copy(100, 359, 100, 60), Picture().copy(QUARTERS).mirrored(false, true));
        ExpectUndoableTo(pasted);
        Run("undo; undo; undo");
        EXPECT_EQ(Current(), Picture());
    }
}

TEST_F(TransformClipboardTest, ACopyIsTransformedAndTheSourceStays) {
    Begin();
    Select(QUARTERS);
    ChooseFromMenu("Transform Copy");
    Drag({500, 500}, {700, 600});
    Key(Qt::Key_Return);
    EXPECT_EQ(Current(), With(Picture(), {500, 500}));
    ExpectUndoableTo(Picture());
}

TEST_F(TransformClipboardTest, PastingCreatesWhatIsMissingAndCancellingRemovesIt) {
    Begin();
    Select(QUARTERS);
    ChooseFromMenu("Copy");
    const auto count = [](const char* camera) {
        QList<int> times;
        Node().GetFrameTimes(camera, times);
        return times.size();
    };
    for (const char* state : {"0", "1"}) {
        SCOPED_TRACE(state);
        Run("currentTime 12");
        const bool isStatic = state[0] == '1';
        Settings::insertDefaultStaticFrame = true;
        Settings::defaultStaticFrameTime = -3;
        Run("qmVellixLayer -add -ls " + std::string(state) + " persp");
        ASSERT_EQ(count("persp"), 0);
        for (const char* end : {"Revert Transform", "Cancel"}) {
            ChooseFromMenu("Paste and Transform");
            EXPECT_EQ(count("persp"), 1) << end;
            ChooseFromMenu(end);
            EXPECT_EQ(count("persp"), 0) << end;
            Activate();
        }
        ChooseFromMenu("Paste");
        EXPECT_TRUE(Node().FrameExists("persp", MTime(isStatic ? -3 : 12, MTime::uiUnit())));
        EXPECT_EQ(qAlpha(Current().pixel(510, 510)), 255);
        Run("undo");
        EXPECT_EQ(count("persp"), 0);
        Run("redo");
        EXPECT_EQ(count("persp"), 1);
        EXPECT_EQ(qAlpha(Current().pixel(510, 510)), 255);
    }

    // A camera without layers.
    Run("lookThru modelPanel4 front");
    Settings::automaticallyAddFirstLayer = true;
    Settings::alwaysDisplayNewLayerDialog = false;
    Press({500, 500});
    Release({500, 500});
    Rest();
    ChooseFromMenu("Paste and Transform");
    EXPECT_EQ(Node().LayerCount("front"), 1);
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Node().LayerCount("front"), 0);
    ChooseFromMenu("Paste");
    EXPECT_EQ(Node().LayerCount("front"), 1);
    Run("undo");
    EXPECT_EQ(Node().LayerCount("front"), 0);
}

// A new layer may be one that nothing can be pasted into.
TEST_F(TransformClipboardTest, PastingThatIsRefusedLeavesNoLayer) {
    Begin();
    Select(QUARTERS);
    ChooseFromMenu("Copy");
    Run("lookThru modelPanel4 front");
    Press({500, 500});
    Release({500, 500});
    Rest();
    Settings::automaticallyAddFirstLayer = true;
    Settings::alwaysDisplayNewLayerDialog = false;
    Settings::defaultLayerState = static_cast<int>(LayerState::Locked);
    for (const char* item : {"Paste", "Paste and Transform"}) {
        messages_.clear();
        ChooseFromMenu(item);
        ASSERT_FALSE(messages_.empty()) << item;
        EXPECT_NE(messages_.back().find("Active layer is locked."), std::string::npos) << messages_.back();
        EXPECT_EQ(Node().LayerCount("front"), 0) << item;
        EXPECT_FALSE(Node().HasActiveStroke());
    }
    Settings::defaultLayerState = static_cast<int>(LayerState::Animated);
    ChooseFromMenu("Paste");
    EXPECT_EQ(Node().LayerCount("front"), 1);
}

// Others may change the layers while something pasted waits to be applied.
TEST_F(TransformClipboardTest, CancellingTouchesNoOtherLayer) {
    Begin();
    Select(QUARTERS);
    ChooseFromMenu("Copy");
    Run("currentTime 5; qmVellixLayer -add -ls 0 persp");
    ChooseFromMenu("Paste and Transform");
    Run("qmVellixLayer -e -active 0 persp; qmVellixFrame -insert");
    ASSERT_TRUE(Node().FrameExists("persp", MTime(5, MTime::uiUnit())));
    Key(Qt::Key_Return);
    EXPECT_TRUE(Node().FrameExists("persp", MTime(5, MTime::uiUnit())));
    EXPECT_EQ(Node().GetLayer("persp", 1)->FrameCount(), 0);

    Run("qmVellixLayer -e -active 1 persp");
    ChooseFromMenu("Paste and Transform");
    Run("qmVellixLayer -delete 1 persp");
    Key(Qt::Key_Escape);
    EXPECT_EQ(Node().LayerCount("persp"), 1);
    EXPECT_EQ(Node().GetLayer("persp", 0)->FrameCount(), 2);
}

TEST_F(TransformClipboardTest, LockedAndHiddenLayersAreCopiedFromOnly) {
    Begin();
    const struct {
        const char* set;
        const char* reset;
        const char* message;
    } rows[] = {
        {"qmVellixLayer -es 2 0 persp", "qmVellixLayer -es 0 0 persp", "Active layer is locked."},
        {"qmVellixLayer -ev 0 0 persp", "qmVellixLayer -ev 1 0 persp", "Active layer is not visible."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.set);
        Run(row.set);
        for (const char* item : {"Transform", "Transform Copy", "Cut"}) {
            Select(QUARTERS);
            messages_.clear();
            ChooseFromMenu(item);
            ASSERT_FALSE(messages_.empty()) << item;
            EXPECT_NE(messages_.back().find(row.message), std::string::npos) << messages_.back();
            EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE) << item;
            EXPECT_FALSE(Node().HasActiveStroke());
        }
        ChooseFromMenu("Copy");
        EXPECT_TRUE(Tool().PasteAvailable());
        ChooseFromMenu("Paste");
        EXPECT_EQ(Current(), Picture());
        // A copy that was refused leaves the selection, which is then moved itself.
        Select(QUARTERS);
        ChooseFromMenu("Transform Copy");
        Run(row.reset);
        Key(Qt::Key_Return);
        Drag({500, 500}, {700, 600});
        Key(Qt::Key_Return);
        EXPECT_EQ(Current(), With(Without(QUARTERS), {500, 500}));
        Run("undo");
    }
}

} // namespace
} // namespace vellix
