#include "openmaya/ApiBridge.h"
#include "paint/Stroke.h"
#include "plugin/tools/TransformFixture.h"

#include <QStringList>

namespace vellix {
namespace {

class TransformToolTest : public TransformFixture {
protected:
    /// The picture with a region moved.
    static QImage Moved(const QRect& region, const QPoint& by) {
        QImage image = Picture();
        const QImage lifted = image.copy(region);
        for (int y = region.top(); y <= region.bottom(); ++y) {
            for (int x = region.left(); x <= region.right(); ++x) {
                image.setPixel(x, y, 0);
            }
        }
        QPainter(&image).drawImage(region.topLeft() + by, lifted);
        return image;
    }
    /// Undoes the last edit to exactly `before` and does it again to exactly what is there now.
    void ExpectUndoable(const QImage& before) {
        const QImage after = Current();
        Run("undo");
        EXPECT_EQ(Current(), before);
        Run("redo");
        EXPECT_EQ(Current(), after);
        Run("undo");
    }
};

TEST_F(TransformToolTest, MovesASelectionInBothRenderers) {
    Begin();
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        SCOPED_TRACE(int(renderer));
        Use(renderer);
        Select(QUARTERS);
        EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE);
        Key(Qt::Key_Return);
        EXPECT_EQ(Tool().GetStage(), TransformContext::TRANSFORM_STAGE);
        ASSERT_NE(CurrentStroke(), nullptr);
        EXPECT_EQ(CurrentStroke()->selection, QUARTERS);
        // In two drags that have nothing to do with where the selection is.
        Drag({100, 300}, {180, 310});
        Drag({700, 600}, {820, 570});
        EXPECT_EQ(Current(), Picture()) << "not yet";
        Key(Qt::Key_Enter);
        EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE);
        EXPECT_EQ(Current(), Moved(QUARTERS, {200, -20}));
        ExpectUndoable(Picture());
    }
}

TEST_F(TransformToolTest, EveryPixelSurvivesBeingMoved) {
    Begin();
    const QRect noise(600, 400, 100, 60);
    Select(noise);
    Key(Qt::Key_Return);
    Drag({500, 300}, {250, 420});
    Key(Qt::Key_Return);
    const QImage moved = Current();
    const QImage before = Picture();
    for (int y = noise.top(); y <= noise.bottom(); ++y) {
        for (int x = noise.left(); x <= noise.right(); ++x) {
            const QRgb pixel = before.pixel(x, y);
            ASSERT_EQ(moved.pixel(x - 250, y + 120), qAlpha(pixel) == 0 ? 0 : pixel) << x << ", " << y;
        }
    }
    ExpectUndoable(Picture());
}

TEST_F(TransformToolTest, ASelectionDraggedAnywhichWayIsTheSame) {
    Begin();
    const QRect r = QUARTERS;
    for (const QPoint& from : {r.topLeft(), r.topRight(), r.bottomLeft(), r.bottomRight()}) {
        const QPoint to(from.x() == r.left() ? r.right() : r.left(),
                        from.y() == r.top() ? r.bottom() : r.top());
        Drag(from, to);
        Key(Qt::Key_Return);
        EXPECT_EQ(CurrentStroke()->selection, r);
        Key(Qt::Key_Backspace);
        EXPECT_EQ(CurrentStroke(), nullptr);
        EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE);
    }
    EXPECT_EQ(Current(), Picture());
}

TEST_F(TransformToolTest, WithoutASelectionTheWholeImageIsTransformed) {
    Begin();
    for (const bool click : {false, true}) {
        if (click) {
            Drag({500, 500}, {500, 500});
        }
        Key(Qt::Key_Return);
        EXPECT_EQ(CurrentStroke()->selection, QRect(QPoint(0, 0), QPoint(1022, 1022)));
        Drag({100, 300}, {100, 350});
        Key(Qt::Key_Return);
        EXPECT_EQ(Current().copy(300, 450, 100, 60), Picture().copy(QUARTERS));
        ExpectUndoable(Picture());
    }
}

// Shift and the left button turn by a degree a pixel, about the middle.
TEST_F(TransformToolTest, Rotates) {
    Begin();
    Select(QUARTERS);
    Key(Qt::Key_Return);
    Drag({500, 300}, {530, 500}, Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(CurrentStroke()->rotation, 30.0f);
    Drag({200, 300}, {260, 290}, Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(CurrentStroke()->rotation, 90.0f);
    Key(Qt::Key_Return);
    const QImage turned = Current();
    // A quarter turn clockwise about 350, 430: left becomes top.
    const struct {
        QPoint at;
        Qt::GlobalColor color;
    } rows[] = {
        {{335, 395}, Qt::blue}, {{365, 395}, Qt::red}, {{335, 465}, Qt::yellow}, {{365, 465}, Qt::green}};
    for (const auto& row : rows) {
        EXPECT_EQ(turned.pixelColor(row.at), QColor(row.color)) << row.at.x() << " " << row.at.y();
    }
    EXPECT_EQ(turned.pixelColor(310, 430).alpha(), 0);
    ExpectUndoable(Picture());
}

// The scale grows with every event, by how far the pointer is from where it was pressed.
TEST_F(TransformToolTest, ScalesByWhatEveryEventAdds) {
    Begin();
    const auto stepped = [](float scale, int press, std::initializer_list<int> positions) {
        const float anchor = static_cast<float>(press) - scale;
        for (const int x : positions) {
            scale += (static_cast<float>(x) - anchor) * 0.0001f;
            scale = scale <= 0.1f ? 0.1f : scale;
        }
        return static_cast<double>(scale);
    };
    Select(QUARTERS);
    Key(Qt::Key_Return);
    Press({400, 500}, Qt::MiddleButton);
    for (const int x : {500, 900, 900}) {
        Move({x, 510}, Qt::MiddleButton);
    }
    Release({900, 510}, Qt::MiddleButton);
    const double uniform = stepped(1.0f, 400, {500, 900, 900});
    EXPECT_EQ(CurrentStroke()->scaleX, uniform);
    EXPECT_EQ(CurrentStroke()->scaleY, uniform);
    EXPECT_GT(uniform, 1.1);

    // With Shift each axis by itself; view pixels count upward.
    const int bottom = HEIGHT - 1;
    Press({400, 500}, Qt::MiddleButton, Qt::ShiftModifier);
    Move({300, 400}, Qt::MiddleButton, Qt::ShiftModifier);
    Release({300, 400}, Qt::MiddleButton, Qt::ShiftModifier);
    EXPECT_EQ(CurrentStroke()->scaleX, stepped(static_cast<float>(uniform), 400, {300}));
    EXPECT_EQ(CurrentStroke()->scaleY, stepped(static_cast<float>(uniform), bottom - InView({0, 500}).y(),
                                               {bottom - InView({0, 400}).y()}));

    Press({1000, 500}, Qt::MiddleButton);
    for (int i = 0; i < 30; ++i) {
        Move({0, 500}, Qt::MiddleButton);
    }
    Release({0, 500}, Qt::MiddleButton);
    EXPECT_EQ(CurrentStroke()->scaleX, static_cast<double>(0.1f));
    EXPECT_EQ(CurrentStroke()->scaleY, static_cast<double>(0.1f));
    Key(Qt::Key_Return);
    QImage rest = Picture();
    QPainter painter(&rest);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QUARTERS, Qt::transparent);
    painter.end();
    const QImage small = Current();
    EXPECT_EQ(small.copy(500, 0, 524, 1024), rest.copy(500, 0, 524, 1024));
    EXPECT_GT(qAlpha(small.pixel(348, 428)), 200);
    EXPECT_EQ(qAlpha(small.pixel(330, 430)), 0);
    ExpectUndoable(Picture());
}

TEST_F(TransformToolTest, OnlyAPressInTheTransformStageBeginsADrag) {
    Begin();
    Select(QUARTERS);
    Key(Qt::Key_Return);
    Drag({100, 300}, {180, 310});
    Key(Qt::Key_Return);
    Run("undo");
    // The selection is still being dragged out when it is accepted.
    Press({300, 400});
    Move({399, 459});
    Key(Qt::Key_Return);
    ASSERT_EQ(Tool().GetStage(), TransformContext::TRANSFORM_STAGE);
    Move({450, 500});
    EXPECT_EQ(QPoint(CurrentStroke()->offsetX, CurrentStroke()->offsetY), QPoint(0, 0));
    Release({450, 500});

    // Neither the left button nor the middle one.
    MEvent press = lightbox::ApiBridge::MakeEvent(100, 300, HEIGHT, 0, 0);
    Tool().doPress(press);
    MEvent drag = lightbox::ApiBridge::MakeEvent(180, 310, HEIGHT, 0, 0);
    Tool().doDrag(drag);
    Tool().doRelease(drag);
    EXPECT_EQ(QPoint(CurrentStroke()->offsetX, CurrentStroke()->offsetY), QPoint(0, 0));
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Current(), Picture());
}

TEST_F(TransformToolTest, FlipsFromTheMenu) {
    Begin();
    Select(QUARTERS);
    Key(Qt::Key_Return);
    ChooseFromMenu("Flip Horizontal");
    EXPECT_EQ(CurrentStroke()->scaleX, -1.0);
    EXPECT_EQ(CurrentStroke()->scaleY, 1.0);
    ChooseFromMenu("Flip Vertical");
    EXPECT_EQ(CurrentStroke()->scaleY, -1.0);
    ChooseFromMenu("Flip Horizontal");
    EXPECT_EQ(CurrentStroke()->scaleX, 1.0);
    ChooseFromMenu("Flip Horizontal");
    ChooseFromMenu("Apply Transform");
    EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE);
    QImage expected = Picture();
    QPainter(&expected).drawImage(QUARTERS.topLeft(), Picture().copy(QUARTERS).mirrored(true, true));
    EXPECT_EQ(Current(), expected);
    ExpectUndoable(Picture());
}

TEST_F(TransformToolTest, MenusOfferWhatTheStageAllows) {
    Begin();
    const QStringList nothingCopied = {"Transform", "Transform Copy",        "-", "Cut",   "Copy",
                                       "[Paste]",   "[Paste and Transform]", "-", "Cancel"};
    const QStringList transforming = {
        "Apply Transform", "Revert Transform", "-", "Flip Horizontal", "Flip Vertical", "-", "Cancel"};
    Press({500, 500}); // watches the view
    Release({500, 500});
    EXPECT_EQ(ChooseFromMenu(""), nothingCopied);
    Select(QUARTERS);
    ChooseFromMenu("Copy");
    QStringList copied = nothingCopied;
    copied.replaceInStrings("[", "").replaceInStrings("]", "");
    EXPECT_EQ(ChooseFromMenu(""), copied);
    Select(QUARTERS);
    ChooseFromMenu("Transform");
    EXPECT_EQ(ChooseFromMenu(""), transforming);
    EXPECT_EQ(ChooseFromMenu("Revert Transform"), transforming);
    EXPECT_EQ(Tool().GetStage(), TransformContext::SELECT_STAGE);
    EXPECT_EQ(Current(), Picture());

    for (const auto key : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier}) {
        EXPECT_EQ(ChooseFromMenu("", {500, 500}, key), QStringList()) << int(key);
    }
    QTest::keyPress(&View(), Qt::Key_Backslash);
    EXPECT_EQ(ChooseFromMenu(""), QStringList());
    QTest::keyRelease(&View(), Qt::Key_Backslash);
    Settings::transformToolContextMenu = false;
    EXPECT_EQ(ChooseFromMenu(""), QStringList());
    Settings::transformToolContextMenu = true;
    EXPECT_EQ(ChooseFromMenu(""), copied);
}

} // namespace
} // namespace vellix
