#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "plugin/core/DocumentTest.h"

namespace vellix {
namespace {

class StrokeTest : public DocumentTest {
protected:
    StrokeTest() { layer = AddLayer(camera, {1}); }

    QImage& Current() { return layer->GetCurrentFrame()->GetImage(); }

    /// The stroke by itself, painted in one go.
    static QImage Alone(const Stroke& stroke) {
        QImage image = PlainComposer::Blank();
        if (stroke.tool == ToolType::Pencil || stroke.tool == ToolType::Brush) {
            QColor color = stroke.color;
            color.setAlpha(0);
            image.fill(color);
            DrawUtil::DrawFreehand(image, stroke.points, 0, stroke.tool);
        } else {
            DrawUtil::DrawStroke(image, stroke, false);
        }
        return image;
    }

    /// Pixels that differ in a and b although the stroke is fully transparent there.
    static int ChangedWhereTransparent(const QImage& stroke, const QImage& a, const QImage& b) {
        int count = 0;
        for (int y = 0; y < 1024; ++y) {
            const auto* s = reinterpret_cast<const quint32*>(stroke.constScanLine(y));
            const auto* p = reinterpret_cast<const quint32*>(a.constScanLine(y));
            const auto* q = reinterpret_cast<const quint32*>(b.constScanLine(y));
            for (int x = 0; x < 1024; ++x) {
                count += s[x] >> 24 == 0 && p[x] != q[x] ? 1 : 0;
            }
        }
        return count;
    }

    Stroke* BeginTransform(const QRect& selection) {
        Stroke* stroke = manager.GetActiveStroke(camera, true);
        stroke->tool = ToolType::Transform;
        stroke->selection = selection;
        stroke->freshSelection = stroke->changed = true;
        return stroke;
    }

    Layer* layer;
    QByteArray undo;
};

TEST_F(StrokeTest, IsCommittedOverTheDrawing) {
    for (const ToolType tool : {ToolType::Pencil, ToolType::Brush, ToolType::Line, ToolType::Arrow,
                                ToolType::Ellipse, ToolType::Rectangle, ToolType::Text}) {
        for (const bool composedBefore : {false, true}) {
            const QImage before = Current().copy();
            Stroke* stroke = BeginStroke(camera, tool);
            stroke->text = "Vellix";
            if (composedBefore) {
                manager.GetFlattenedImage(camera);
                stroke->points.append(Point(700, 700));
            }
            const QImage alone = Alone(*stroke);
            QImage expected = before.copy();
            QPainter(&expected).drawImage(0, 0, alone);
            ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
            EXPECT_FALSE(manager.HasActiveStroke());
            EXPECT_LE(PlainComposer::Difference(Current(), expected), 2) << int(tool) << composedBefore;
            EXPECT_NE(Current(), before) << int(tool);
            EXPECT_EQ(ChangedWhereTransparent(alone, before, Current()), 0) << int(tool) << composedBefore;
            EXPECT_LE(Error(camera), 2);
            const QImage after = Current().copy();
            ASSERT_TRUE(manager.UndoStroke(camera, undo));
            EXPECT_EQ(Current(), before) << int(tool);
            EXPECT_LE(Error(camera), 2);
            ASSERT_TRUE(manager.UndoStroke(camera, undo));
            EXPECT_EQ(Current(), after);
            ASSERT_TRUE(manager.UndoStroke(camera, undo));
        }
    }
}

TEST_F(StrokeTest, KeepsColoursUnderTransparencyAndFaintEdges) {
    Current().fill(qRgba(0, 0, 0, 0));
    Current().setPixel(5, 5, qRgba(11, 22, 33, 0));
    Current().setPixel(300, 333, qRgba(3, 140, 77, 2));
    Stroke* stroke = BeginStroke(camera, ToolType::Line, QColor(10, 120, 240));
    stroke->points = {Point(600, 600, 1, 0.01f), Point(700, 650, 1, 0.01f)};
    ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
    EXPECT_EQ(Current().pixel(5, 5), qRgba(11, 22, 33, 0));
    EXPECT_EQ(Current().pixel(300, 333), qRgba(3, 140, 77, 2));
}

TEST_F(StrokeTest, ErasesOnlyAlpha) {
    const QImage before = Current().copy();
    const Stroke stroke = *BeginStroke(camera, ToolType::Eraser);
    QImage expected = before.copy();
    DrawUtil::DrawFreehand(expected, stroke.points, 0, ToolType::Eraser);
    QImage shown = *manager.GetFlattenedImage(camera);
    EXPECT_LE(PlainComposer::Difference(shown, expected), 1);
    ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
    EXPECT_EQ(Current(), expected);
    EXPECT_NE(Current(), before);
    EXPECT_LE(Error(camera), 1);
    ASSERT_TRUE(manager.UndoStroke(camera, undo));
    EXPECT_EQ(Current(), before);
}

TEST_F(StrokeTest, ErasesWhatTheLayerShowsNow) {
    BeginStroke(camera, ToolType::Eraser);
    manager.GetFlattenedImage(camera);
    layer->SetImage(Drawing(7));
    QImage expected = Drawing(7);
    DrawUtil::DrawFreehand(expected, manager.GetActiveStroke(camera, true)->points, 0, ToolType::Eraser);
    EXPECT_LE(PlainComposer::Difference(*manager.GetFlattenedImage(camera), expected), 1);
    ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
    EXPECT_EQ(Current(), expected);
}

TEST_F(StrokeTest, NeedsAFrameToBeDrawnOn) {
    ShowTime(4);
    EXPECT_FALSE(manager.CanDraw(camera));
    EXPECT_EQ(manager.GetActiveStroke(camera, false), nullptr);
    EXPECT_NE(manager.GetActiveStroke(camera, true), nullptr)
        << "shapes and transforms take the held drawing";
    manager.CancelActiveStroke();
    layer->SetState(LayerState::Static);
    EXPECT_TRUE(manager.CanDraw(camera));
    EXPECT_NE(manager.GetActiveStroke(camera, false), nullptr);
    manager.CancelActiveStroke();
    EXPECT_EQ(manager.GetActiveStroke("nowhere", true), nullptr);
    EXPECT_FALSE(manager.CommitActiveStroke(camera, undo)) << "no stroke";

    layer->SetState(LayerState::Animated);
    ShowTime(0);
    BeginStroke(camera, ToolType::Line);
    manager.GetFlattenedImage(camera);
    EXPECT_FALSE(manager.CommitActiveStroke("nowhere", undo));
    EXPECT_TRUE(manager.HasActiveStroke());
    EXPECT_FALSE(manager.CommitActiveStroke(camera, undo)) << "no drawing at this time";
    EXPECT_FALSE(manager.HasActiveStroke());
    EXPECT_FALSE(manager.UndoStroke(camera, undo));
}

TEST_F(StrokeTest, StartsWithTheDefaults) {
    Stroke* stroke = manager.GetActiveStroke(camera, false);
    ASSERT_NE(stroke, nullptr);
    EXPECT_EQ(stroke->tool, ToolType::Pencil);
    EXPECT_EQ(stroke->color, QColor(255, 255, 255, 255));
    EXPECT_TRUE(stroke->points.isEmpty());
    EXPECT_EQ(stroke->selection, QRect());
    EXPECT_EQ(manager.GetActiveStroke("elsewhere", true), stroke) << "there is one stroke at a time";
}

TEST_F(StrokeTest, UndoNeedsAPicture) {
    const QImage before = Current().copy();
    for (const QByteArray& bad : {QByteArray(), QByteArray("no PNG"), QByteArray(100000, '\x89')}) {
        QByteArray buffer = bad;
        EXPECT_FALSE(manager.UndoStroke(camera, buffer));
        EXPECT_EQ(buffer, bad);
        EXPECT_EQ(Current(), before);
    }
    EXPECT_FALSE(manager.UndoStroke("nowhere", undo));
}

TEST_F(StrokeTest, CancellingShowsTheDrawingAgain) {
    BeginStroke(camera, ToolType::Brush);
    manager.GetFlattenedImage(camera);
    manager.CancelActiveStroke();
    EXPECT_FALSE(manager.HasActiveStroke());
    AddLayer("other", {1});
    manager.GetFlattenedImage("other");
    EXPECT_LE(Error(camera), 1) << "even when another camera was composed first";
}

// --- the transform tool

TEST_F(StrokeTest, MovesASelection) {
    Current() = PlainComposer::Blank();
    QPainter(&Current()).fillRect(QRect(100, 100, 50, 40), QColor(250, 20, 40));
    layer->ForceCacheUpdate();
    QImage expected = PlainComposer::Blank();
    QPainter painter(&expected);
    painter.fillRect(QRect(100, 100, 50, 40), QColor(250, 20, 40));
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(110, 90, 20, 30), Qt::transparent); // edges included: 110 to 129, 90 to 119
    painter.fillRect(QRect(410, 400, 20, 20), QColor(250, 20, 40));
    painter.end();
    Stroke* stroke = BeginTransform(QRect(QPoint(110, 90), QPoint(129, 119)));
    EXPECT_LE(PlainComposer::Difference(*manager.GetFlattenedImage(camera), Current()), 0) << "not moved yet";
    stroke->freshSelection = false;
    stroke->offsetX = 300;
    stroke->offsetY = 300;
    stroke->changed = true;
    EXPECT_EQ(PlainComposer::Difference(*manager.GetFlattenedImage(camera), expected), 0);
    ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
    EXPECT_EQ(PlainComposer::Difference(Current(), expected), 0);
    EXPECT_EQ(PlainComposer::Difference(*manager.GetFlattenedImage(camera), expected), 0);
    EXPECT_FALSE(manager.PasteTransformImageAvailable());
}

TEST_F(StrokeTest, CutsCopiesAndPastes) {
    const QRect region(QPoint(200, 300), QPoint(399, 379));
    const QImage whole = Current().copy();
    QImage holed = whole.copy();
    for (int y = region.top(); y <= region.bottom(); ++y) {
        for (int x = region.left(); x <= region.right(); ++x) {
            holed.setPixel(x, y, 0);
        }
    }
    // Copy: taken although nothing was composed before the tool gives up its stroke.
    BeginTransform(region)->copyToClipboard = true;
    manager.CancelActiveStroke();
    EXPECT_TRUE(manager.PasteTransformImageAvailable());
    EXPECT_EQ(Current(), whole);

    // Copy and transform: the source stays.
    Stroke* stroke = BeginTransform(region);
    stroke->copyToClipboard = true;
    stroke->offsetY = 500;
    QImage expected = whole.copy();
    QPainter(&expected).drawImage(200, 800, whole.copy(region));
    EXPECT_LE(PlainComposer::Difference(*manager.GetFlattenedImage(camera), expected), 1);
    manager.CancelActiveStroke();

    // Cut: nothing is left to draw.
    stroke = BeginTransform(region);
    stroke->copyToClipboard = stroke->liftedImageEmptied = true;
    EXPECT_LE(PlainComposer::Difference(*manager.GetFlattenedImage(camera), holed), 1);
    ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
    EXPECT_EQ(Current(), holed);

    // Paste, at once and untransformed, one pixel larger than the region as the tool has it.
    stroke = BeginTransform(QRect(QPoint(600, 600), QPoint(800, 680)));
    stroke->pasted = true;
    expected = holed.copy();
    QPainter(&expected).drawImage(600, 600, whole.copy(region));
    EXPECT_LE(PlainComposer::Difference(*manager.GetFlattenedImage(camera), expected), 1);
    ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
    EXPECT_LE(PlainComposer::Difference(Current(), expected), 1);
    EXPECT_TRUE(manager.PasteTransformImageAvailable()) << "it can be pasted again";
    ASSERT_TRUE(manager.UndoStroke(camera, undo));
    EXPECT_EQ(Current(), holed);
}

TEST_F(StrokeTest, HidingTheLayerOnTheWayLosesNothing) {
    const QImage before = Current().copy();
    for (const ToolType tool : {ToolType::Eraser, ToolType::Transform}) {
        Stroke* stroke = BeginTransform(QRect(200, 300, 200, 80));
        stroke->tool = tool;
        stroke->points = {Point(3, 3), Point(9, 9)}; // where there is nothing to erase
        for (const bool visible : {false, true, false}) {
            manager.SetLayerVisible(camera, 0, visible);
            manager.GetFlattenedImage(camera);
            stroke->freshSelection = false;
        }
        ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
        EXPECT_LE(PlainComposer::Difference(Current(), before), 1) << int(tool);
        manager.SetLayerVisible(camera, 0, true);
    }
}

TEST_F(StrokeTest, SelectionsThatAreNoneLoseNothing) {
    const QImage before = Current().copy();
    const int far = 2000000000;
    for (const QRect& selection :
         {QRect(), QRect(QPoint(50, 50), QPoint(40, 60)), QRect(QPoint(-far, -far), QPoint(far, far)),
          QRect(QPoint(0, 9), QPoint(9, far))}) {
        BeginTransform(selection)->copyToClipboard = true;
        EXPECT_EQ(*manager.GetFlattenedImage(camera), PlainComposer::Blank()) << "the layer is skipped";
        ASSERT_TRUE(manager.CommitActiveStroke(camera, undo));
        EXPECT_EQ(Current(), before);
        EXPECT_LE(Error(camera), 1);
    }
    EXPECT_FALSE(manager.PasteTransformImageAvailable());
}

} // namespace
} // namespace vellix
