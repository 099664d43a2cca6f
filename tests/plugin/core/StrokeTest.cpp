#include "paint/Composite.h"
#include "paint/DrawUtil.h"
#include "plugin/ShortOfMemory.h"
#include "plugin/core/DocumentTest.h"

#include <new>
#include <random>

namespace vellix {
namespace {

class StrokeTest : public DocumentTest {
protected:
    StrokeTest() { layer_ = AddLayer(camera_, {1}); }

    QImage& Current() { return layer_->GetCurrentFrame()->GetImage(); }

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
        Stroke* stroke = manager_.GetActiveStroke(camera_, true);
        stroke->tool = ToolType::Transform;
        stroke->selection = selection;
        stroke->freshSelection = stroke->changed = true;
        return stroke;
    }

    Layer* layer_;
    QByteArray undo_;
};

TEST_F(StrokeTest, IsCommittedOverTheDrawing) {
    for (const ToolType tool : {ToolType::Pencil, ToolType::Brush, ToolType::Line, ToolType::Arrow,
                                ToolType::Ellipse, ToolType::Rectangle, ToolType::Text}) {
        for (const bool composedBefore : {false, true}) {
            const QImage before = Current().copy();
            Stroke* stroke = BeginStroke(camera_, tool);
            stroke->text = "Vellix";
            if (composedBefore) {
                manager_.GetFlattenedImage(camera_);
                stroke->points.append(Point(700, 700));
            }
            const QImage alone = Alone(*stroke);
            QImage expected = before.copy();
            QPainter(&expected).drawImage(0, 0, alone);
            ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
            EXPECT_FALSE(manager_.HasActiveStroke());
            EXPECT_LE(PlainComposer::Difference(Current(), expected), 2) << int(tool) << composedBefore;
            EXPECT_NE(Current(), before) << int(tool);
            EXPECT_EQ(ChangedWhereTransparent(alone, before, Current()), 0) << int(tool) << composedBefore;
            EXPECT_LE(Error(camera_), 2);
            const QImage after = Current().copy();
            ASSERT_TRUE(manager_.UndoStroke(camera_, undo_));
            EXPECT_EQ(Current(), before) << int(tool);
            EXPECT_LE(Error(camera_), 2);
            ASSERT_TRUE(manager_.UndoStroke(camera_, undo_));
            EXPECT_EQ(Current(), after);
            ASSERT_TRUE(manager_.UndoStroke(camera_, undo_));
        }
    }
}

TEST_F(StrokeTest, KeepsColoursUnderTransparencyAndFaintEdges) {
    Current().fill(qRgba(0, 0, 0, 0));
    Current().setPixel(5, 5, qRgba(11, 22, 33, 0));
    Current().setPixel(300, 333, qRgba(3, 140, 77, 2));
    Stroke* stroke = BeginStroke(camera_, ToolType::Line, QColor(10, 120, 240));
    stroke->points = {Point(600, 600, 1, 0.01f), Point(700, 650, 1, 0.01f)};
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    EXPECT_EQ(Current().pixel(5, 5), qRgba(11, 22, 33, 0));
    EXPECT_EQ(Current().pixel(300, 333), qRgba(3, 140, 77, 2));
}

TEST_F(StrokeTest, ErasesOnlyAlpha) {
    const QImage before = Current().copy();
    const Stroke stroke = *BeginStroke(camera_, ToolType::Eraser);
    QImage expected = before.copy();
    DrawUtil::DrawFreehand(expected, stroke.points, 0, ToolType::Eraser);
    QImage shown = *manager_.GetFlattenedImage(camera_);
    EXPECT_LE(PlainComposer::Difference(shown, expected), 1);
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    EXPECT_EQ(Current(), expected);
    EXPECT_NE(Current(), before);
    EXPECT_LE(Error(camera_), 1);
    ASSERT_TRUE(manager_.UndoStroke(camera_, undo_));
    EXPECT_EQ(Current(), before);
}

TEST_F(StrokeTest, ErasesWhatTheLayerShowsNow) {
    BeginStroke(camera_, ToolType::Eraser);
    manager_.GetFlattenedImage(camera_);
    layer_->SetImage(Drawing(7));
    QImage expected = Drawing(7);
    DrawUtil::DrawFreehand(expected, manager_.GetActiveStroke(camera_, true)->points, 0, ToolType::Eraser);
    EXPECT_LE(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), expected), 1);
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    EXPECT_EQ(Current(), expected);
}

// The tail is seen, and gone without a trace when the stroke goes on, is committed, undone or dropped.
TEST_F(StrokeTest, ATailIsSeenAndNeverCommitted) {
    const auto grow = [](Stroke& stroke, int step, bool hasTail) {
        stroke.points.append(Point(300 + 20 * step, 380 + step * step, 10 + 4 * step, 0.6f));
        stroke.tail.clear();
        for (int i = 1; hasTail && i < 4; ++i) {
            stroke.tail.append(Point(310 + 20 * step + 30 * i, 390 + step * step - 9 * i, 30, 0.9f));
        }
        stroke.changed = true;
    };
    QPainter(&Current()).fillRect(200, 250, 600, 400, QColor(90, 20, 160)); // something to erase
    for (const ToolType tool : {ToolType::Pencil, ToolType::Brush, ToolType::Eraser}) {
        const QImage before = Current().copy();
        QList<QImage> without;
        QList<QImage> committed;
        for (const bool hasTail : {false, true}) {
            Stroke* const stroke = BeginStroke(camera_, tool);
            stroke->points.clear();
            for (int step = 0; step < 8; ++step) {
                grow(*stroke, step, hasTail);
                const QImage seen = manager_.GetFlattenedImage(camera_)->copy();
                if (!hasTail) {
                    without.append(seen);
                    continue;
                }
                EXPECT_NE(seen, without[step]) << int(tool) << step;
                const QPoint end = stroke->tail.last().position;
                EXPECT_NE(seen.pixel(end), without[step].pixel(end)) << int(tool) << step;
                if (step % 3 == 2) {
                    const QList<StrokePoint> tail = stroke->tail;
                    stroke->tail.clear();
                    stroke->changed = true;
                    EXPECT_EQ(*manager_.GetFlattenedImage(camera_), without[step]) << int(tool) << step;
                    stroke->tail = tail;
                    stroke->changed = true;
                    EXPECT_EQ(*manager_.GetFlattenedImage(camera_), seen) << int(tool) << step;
                }
            }
            ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
            committed.append(Current().copy());
            EXPECT_LE(Error(camera_), 2);
            ASSERT_TRUE(manager_.UndoStroke(camera_, undo_));
            EXPECT_EQ(Current(), before);
            EXPECT_LE(Error(camera_), 2);
        }
        EXPECT_EQ(committed[0], committed[1]) << int(tool);

        // Dropped, with the canvas kept for the next stroke.
        Stroke* stroke = BeginStroke(camera_, tool);
        stroke->points.clear();
        grow(*stroke, 0, true);
        manager_.GetFlattenedImage(camera_);
        manager_.CancelActiveStroke();
        EXPECT_LE(Error(camera_), 2);
        stroke = BeginStroke(camera_, tool);
        stroke->points.clear();
        grow(*stroke, 0, false);
        EXPECT_EQ(*manager_.GetFlattenedImage(camera_), without[0]) << int(tool);
        manager_.CancelActiveStroke();
        EXPECT_EQ(Current(), before);
    }
}

TEST_F(StrokeTest, NeedsAFrameToBeDrawnOn) {
    ShowTime(4);
    EXPECT_FALSE(manager_.CanDraw(camera_));
    EXPECT_EQ(manager_.GetActiveStroke(camera_, false), nullptr);
    EXPECT_NE(manager_.GetActiveStroke(camera_, true), nullptr)
        << "shapes and transforms take the held drawing";
    manager_.CancelActiveStroke();
    layer_->SetState(LayerState::Static);
    EXPECT_TRUE(manager_.CanDraw(camera_));
    EXPECT_NE(manager_.GetActiveStroke(camera_, false), nullptr);
    manager_.CancelActiveStroke();
    EXPECT_EQ(manager_.GetActiveStroke("nowhere", true), nullptr);
    EXPECT_FALSE(manager_.CommitActiveStroke(camera_, undo_)) << "no stroke";

    layer_->SetState(LayerState::Animated);
    ShowTime(0);
    BeginStroke(camera_, ToolType::Line);
    manager_.GetFlattenedImage(camera_);
    EXPECT_FALSE(manager_.CommitActiveStroke("nowhere", undo_));
    EXPECT_TRUE(manager_.HasActiveStroke());
    EXPECT_FALSE(manager_.CommitActiveStroke(camera_, undo_)) << "no drawing at this time";
    EXPECT_FALSE(manager_.HasActiveStroke());
    EXPECT_FALSE(manager_.UndoStroke(camera_, undo_));
}

TEST_F(StrokeTest, StartsWithTheDefaults) {
    Stroke* stroke = manager_.GetActiveStroke(camera_, false);
    ASSERT_NE(stroke, nullptr);
    EXPECT_EQ(stroke->tool, ToolType::Pencil);
    EXPECT_EQ(stroke->color, QColor(255, 255, 255, 255));
    EXPECT_TRUE(stroke->points.isEmpty());
    EXPECT_EQ(stroke->selection, QRect());
    EXPECT_EQ(manager_.GetActiveStroke("elsewhere", true), stroke) << "there is one stroke at a time";
}

TEST_F(StrokeTest, UndoNeedsAPicture) {
    const QImage before = Current().copy();
    for (const QByteArray& bad : {QByteArray(), QByteArray("no PNG"), QByteArray(100000, '\x89')}) {
        QByteArray buffer = bad;
        EXPECT_FALSE(manager_.UndoStroke(camera_, buffer));
        EXPECT_EQ(buffer, bad);
        EXPECT_EQ(Current(), before);
    }
    EXPECT_FALSE(manager_.UndoStroke("nowhere", undo_));
}

TEST_F(StrokeTest, CancellingShowsTheDrawingAgain) {
    BeginStroke(camera_, ToolType::Brush);
    manager_.GetFlattenedImage(camera_);
    manager_.CancelActiveStroke();
    EXPECT_FALSE(manager_.HasActiveStroke());
    AddLayer("other", {1});
    manager_.GetFlattenedImage("other");
    EXPECT_LE(Error(camera_), 1) << "even when another camera was composed first";
}

/// A stroke of a random tool at a random place.
void Scribble(LayerManager& manager, const QString& camera, std::mt19937& random) {
    const auto in = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)); };
    const QList<ToolType> tools = {ToolType::Pencil,    ToolType::Brush, ToolType::Eraser,
                                   ToolType::Line,      ToolType::Arrow, ToolType::Ellipse,
                                   ToolType::Rectangle, ToolType::Text,  ToolType::Transform};
    Stroke* stroke = manager.GetActiveStroke(camera, true);
    stroke->tool = tools[in(tools.size())];
    stroke->color = QColor::fromHsv(in(360), 200, 200);
    stroke->text = "Vellix";
    for (int i = 0; i < 6; ++i) {
        StrokePoint point;
        point.size = 1 + in(60);
        point.opacity = 0.2f + 0.01f * static_cast<float>(in(80));
        point.position = QPoint(in(1300) - 150, in(1300) - 150);
        stroke->points.append(point);
        if (stroke->tool != ToolType::Transform && in(3) == 0) {
            stroke->changed = true;
            manager.GetFlattenedImage(camera);
        }
    }
    stroke->selection = QRect(in(1000) - 100, in(1000) - 100, 1 + in(500), 1 + in(500));
    stroke->freshSelection = stroke->changed = true;
    stroke->copyToClipboard = in(2) == 0;
    stroke->liftedImageEmptied = in(4) == 0;
    stroke->pasted = manager.PasteTransformImageAvailable() && in(3) == 0;
    stroke->rotation = static_cast<float>(in(2) * in(90));
    stroke->offsetX = in(400) - 200;
}

/// A copy of the frame's picture; it stays packed or unpacked.
QImage Shown(const Frame& frame) {
    const QImage shown = frame.PeekImage();
    return shown.isNull() ? PlainComposer::Blank() : shown.copy();
}

TEST_F(StrokeTest, UndoIsExactWhateverHappensBetween) {
    for (const unsigned seed : {1u, 2u, 3u}) {
        std::mt19937 random(seed);
        Layer* const drawn = AddLayer(camera_, {});
        drawn->AddFrame(At(1));
        manager_.SetActiveLayer(camera_, manager_.LayerCount(camera_) - 1, false);
        ShowTime(1);
        Frame& frame = *drawn->GetCurrentFrame();
        QList<QByteArray> steps;
        QList<QImage> pictures = {PlainComposer::Blank()};
        int at = 0;
        for (int turn = 0; turn < 60; ++turn) {
            switch (random() % 6) {
            case 0:
                frame.PackImage();
                break;
            case 1:
                frame.GetPackedImage();
                break;
            case 2:
                if (at > 0) {
                    ASSERT_TRUE(manager_.UndoStroke(camera_, steps[--at])) << seed << ' ' << turn;
                }
                break;
            case 3:
                if (at < steps.size()) {
                    ASSERT_TRUE(manager_.UndoStroke(camera_, steps[at++])) << seed << ' ' << turn;
                }
                break;
            default:
                Scribble(manager_, camera_, random);
                ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
                steps = steps.mid(0, at) << undo_;
                pictures = pictures.mid(0, ++at) << Shown(frame);
            }
            ASSERT_EQ(Shown(frame), pictures[at]) << seed << ' ' << turn;
            if (random() % 2 == 0) {
                ASSERT_LE(Error(camera_), 2) << seed << ' ' << turn;
            }
        }
        while (at > 0) {
            ASSERT_TRUE(manager_.UndoStroke(camera_, steps[--at]));
            ASSERT_LE(Error(camera_), 2) << seed << ' ' << at;
        }
        EXPECT_EQ(frame.GetPictureKey(), 0) << "no picture, as before the first stroke";
        EXPECT_TRUE(frame.PeekImage().isNull());
        EXPECT_EQ(frame.GetPackedImage(), Frame(At(1)).GetPackedImage());
    }
}

TEST_F(StrokeTest, UndoFitsItsOwnPictureOnly) {
    Frame& frame = *layer_->GetCurrentFrame();
    BeginStroke(camera_, ToolType::Brush);
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    const QImage drawn = frame.PeekImage().copy();
    const QByteArray sound = undo_;
    const auto refuses = [&](QByteArray buffer) {
        const QImage before = frame.PeekImage().copy();
        const QByteArray given = buffer;
        return !manager_.UndoStroke(camera_, buffer) && buffer == given && frame.PeekImage() == before;
    };
    frame.SetImage(Drawing(5));
    EXPECT_TRUE(refuses(undo_));
    frame.SetPackedImage(Frame(frame).GetPackedImage());
    EXPECT_TRUE(refuses(undo_));
    layer_->AddFrame(At(2));
    ShowTime(2);
    EXPECT_FALSE(manager_.UndoStroke(camera_, undo_)) << "another drawing";
    ShowTime(1);

    frame.SetImage(drawn);
    EXPECT_TRUE(refuses(undo_)) << "nothing says that this is the same picture";
    BeginStroke(camera_, ToolType::Line);
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    for (const int place : {0, 9, 20, 30, 500, undo_.size() - 1}) {
        QByteArray damaged = undo_;
        damaged[place] = static_cast<char>(damaged[place] ^ 4);
        EXPECT_TRUE(refuses(damaged)) << place;
    }
    EXPECT_TRUE(refuses(sound)) << "that of an earlier picture";
    EXPECT_TRUE(manager_.UndoStroke(camera_, undo_));
    EXPECT_EQ(frame.PeekImage(), drawn);
}

TEST_F(StrokeTest, AShortageOfMemoryCostsNothing) {
    Frame& frame = *layer_->GetCurrentFrame();
    const QImage before = Current().copy();
    BeginStroke(camera_, ToolType::Brush);
    manager_.PaintActiveStroke();
    {
        const ShortOfMemory shortage;
        if (!shortage.IsShort()) {
            GTEST_SKIP() << "memory cannot be limited here";
        }
        EXPECT_THROW(manager_.CommitActiveStroke(camera_, undo_), std::bad_alloc);
    }
    EXPECT_EQ(frame.PeekImage(), before);
    ASSERT_TRUE(manager_.HasActiveStroke());
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    const QImage after = frame.PeekImage().copy();
    frame.PackImage();
    const QByteArray kept(undo_.constData(), undo_.size());
    {
        const ShortOfMemory shortage;
        EXPECT_THROW(manager_.UndoStroke(camera_, undo_), std::bad_alloc);
    }
    EXPECT_EQ(undo_, kept);
    EXPECT_EQ(frame.PeekImage(), after);
    ASSERT_TRUE(manager_.UndoStroke(camera_, undo_));
    EXPECT_EQ(frame.PeekImage(), before);
    {
        const ShortOfMemory shortage;
        EXPECT_TRUE(manager_.UndoStroke(camera_, undo_)) << "swapping pixels needs hardly any memory";
    }
    EXPECT_EQ(frame.PeekImage(), after);
}

// --- the transform tool

TEST_F(StrokeTest, MovesASelection) {
    Current() = PlainComposer::Blank();
    QPainter(&Current()).fillRect(QRect(100, 100, 50, 40), QColor(250, 20, 40));
    layer_->ForceCacheUpdate();
    QImage expected = PlainComposer::Blank();
    QPainter painter(&expected);
    painter.fillRect(QRect(100, 100, 50, 40), QColor(250, 20, 40));
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(110, 90, 20, 30), Qt::transparent); // edges included: 110 to 129, 90 to 119
    painter.fillRect(QRect(410, 400, 20, 20), QColor(250, 20, 40));
    painter.end();
    Stroke* stroke = BeginTransform(QRect(QPoint(110, 90), QPoint(129, 119)));
    EXPECT_LE(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), Current()), 0)
        << "not moved yet";
    stroke->freshSelection = false;
    stroke->offsetX = 300;
    stroke->offsetY = 300;
    stroke->changed = true;
    EXPECT_EQ(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), expected), 0);
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    EXPECT_EQ(PlainComposer::Difference(Current(), expected), 0);
    EXPECT_EQ(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), expected), 0);
    EXPECT_FALSE(manager_.PasteTransformImageAvailable());
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
    manager_.CancelActiveStroke();
    EXPECT_TRUE(manager_.PasteTransformImageAvailable());
    EXPECT_EQ(Current(), whole);

    // Copy and transform: the source stays.
    Stroke* stroke = BeginTransform(region);
    stroke->copyToClipboard = true;
    stroke->offsetY = 500;
    QImage expected = whole.copy();
    QPainter(&expected).drawImage(200, 800, whole.copy(region));
    EXPECT_LE(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), expected), 1);
    manager_.CancelActiveStroke();

    // Cut: nothing is left to draw.
    stroke = BeginTransform(region);
    stroke->copyToClipboard = stroke->liftedImageEmptied = true;
    EXPECT_LE(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), holed), 1);
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    EXPECT_EQ(Current(), holed);

    // Paste, at once and untransformed, one pixel larger than the region as the tool has it.
    stroke = BeginTransform(QRect(QPoint(600, 600), QPoint(800, 680)));
    stroke->pasted = true;
    expected = holed.copy();
    QPainter(&expected).drawImage(600, 600, whole.copy(region));
    EXPECT_LE(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), expected), 1);
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
    EXPECT_LE(PlainComposer::Difference(Current(), expected), 1);
    EXPECT_TRUE(manager_.PasteTransformImageAvailable()) << "it can be pasted again";
    ASSERT_TRUE(manager_.UndoStroke(camera_, undo_));
    EXPECT_EQ(Current(), holed);
}

TEST_F(StrokeTest, HidingTheLayerOnTheWayLosesNothing) {
    const QImage before = Current().copy();
    for (const ToolType tool : {ToolType::Eraser, ToolType::Transform}) {
        Stroke* stroke = BeginTransform(QRect(200, 300, 200, 80));
        stroke->tool = tool;
        stroke->points = {Point(3, 3), Point(9, 9)}; // where there is nothing to erase
        for (const bool visible : {false, true, false}) {
            manager_.SetLayerVisible(camera_, 0, visible);
            manager_.GetFlattenedImage(camera_);
            stroke->freshSelection = false;
        }
        ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
        EXPECT_LE(PlainComposer::Difference(Current(), before), 1) << int(tool);
        manager_.SetLayerVisible(camera_, 0, true);
    }
}

TEST_F(StrokeTest, SelectionsThatAreNoneLoseNothing) {
    const QImage before = Current().copy();
    for (const QRect& selection : {QRect(), QRect(QPoint(50, 50), QPoint(40, 60))}) {
        BeginTransform(selection)->copyToClipboard = true;
        EXPECT_EQ(*manager_.GetFlattenedImage(camera_), PlainComposer::Blank()) << "the layer is skipped";
        ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
        EXPECT_EQ(Current(), before);
        EXPECT_LE(Error(camera_), 1);
    }
    EXPECT_FALSE(manager_.PasteTransformImageAvailable());
}

TEST_F(StrokeTest, SelectionsThatGoFarOutTransformWhatTheyHold) {
    const QImage before = Current().copy();
    const int far = 2000000000;
    const struct {
        QRect selection;
        QPoint offset;
        float rotation;
        QTransform moved; // of the whole picture
    } rows[] = {
        {{QPoint(-far, -far), QPoint(far, far)}, {100, 50}, 0, QTransform::fromTranslate(100, 50)},
        {{QPoint(-5000, -5000), QPoint(6023, 6023)}, {0, 0}, 180, QTransform(-1, 0, 0, -1, 1024, 1024)},
        {{QPoint(-5000, -9), QPoint(2023, 1033)}, {3000, 0}, 180, QTransform(-1, 0, 0, -1, 24, 1025)},
        {{QPoint(-9000, -9000), QPoint(-5000, -5000)}, {100, 50}, 45, QTransform()}, // holds nothing
    };
    for (const auto& row : rows) {
        QImage expected = PlainComposer::Blank();
        QPainter painter(&expected);
        painter.setTransform(row.moved);
        painter.drawImage(0, 0, before);
        painter.end();
        Stroke* const stroke = BeginTransform(row.selection);
        EXPECT_EQ(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), before), 0)
            << "not moved yet";
        stroke->freshSelection = false;
        stroke->offsetX = row.offset.x();
        stroke->offsetY = row.offset.y();
        stroke->rotation = row.rotation;
        stroke->changed = true;
        const QImage shown = manager_.GetFlattenedImage(camera_)->copy();
        EXPECT_LE(PlainComposer::Difference(shown, expected), 2) << row.selection.left();
        ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo_));
        EXPECT_LE(PlainComposer::Difference(Current(), shown), 1);
        ASSERT_TRUE(manager_.UndoStroke(camera_, undo_));
        EXPECT_EQ(Current(), before);
    }
}

} // namespace
} // namespace vellix
