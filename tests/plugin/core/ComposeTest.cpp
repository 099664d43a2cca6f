#include "paint/DrawUtil.h"
#include "plugin/ShortOfMemory.h"
#include "plugin/core/DocumentTest.h"

#include <functional>
#include <gmock/gmock.h>

namespace vellix {
namespace {

class ComposeTest : public DocumentTest {
protected:
    static void SetGhosts(int previous, int next, bool tinted) {
        Settings::ghostPrev = previous > 0;
        Settings::ghostPrevCount = previous;
        Settings::ghostNext = next > 0;
        Settings::ghostNextCount = next;
        Settings::ghostColorOverride = tinted;
        Settings::ghostColorOverridePrev = QColor(0, 128, 0);
        Settings::ghostColorOverrideNext = QColor(128, 0, 0);
    }

    /// Three layers; the one in the middle is active and has many keys. Shown at its key 5.
    void MakeDocument() {
        AddLayer(camera_, {1, 9});
        AddLayer(camera_, {1, 2, 3, 4, 5, 6, 7, 8});
        AddLayer(camera_, {1, 5});
        manager_.SetActiveLayer(camera_, 1, true);
        ShowTime(5);
    }
};

TEST_F(ComposeTest, AgreesWithThePlainWay) {
    MakeDocument();
    const struct {
        int previous, next;
        bool tinted;
    } cases[] = {{0, 0, false}, {3, 0, false}, {0, 3, false}, {3, 3, false},
                 {1, 2, true},  {9, 9, true},  {9, 0, true}};
    for (const auto& c : cases) {
        SetGhosts(c.previous, c.next, c.tinted);
        for (const int time : {0, 1, 5, 8, 30}) {
            ShowTime(time);
            manager_.QueueMasterCacheUpdateAll();
            EXPECT_LE(Error(camera_), 2)
                << c.previous << " " << c.next << " " << c.tinted << " time " << time;
        }
    }
}

TEST_F(ComposeTest, GhostsFadeAwayFromTheCurrentKey) {
    Layer* layer = AddLayer(camera_, {1, 5, 9, 13});
    for (int i = 0; i < 4; ++i) {
        QImage square = PlainComposer::Blank();
        QPainter(&square).fillRect(i * 100, 0, 150, 50, QColor(50 * i, 0, 200));
        layer->GetFrame(i)->SetImage(square);
    }
    SetGhosts(3, 0, false);
    ShowTime(13);
    const QImage& image = *manager_.GetFlattenedImage(camera_);
    const auto alphaAt = [&image](int x) { return qAlpha(image.pixel(x, 25)); };
    EXPECT_NEAR(alphaAt(50), 255 * 0.1333, 2);
    EXPECT_NEAR(alphaAt(170), 255 * 0.2667, 2);
    EXPECT_NEAR(alphaAt(280), 255 * 0.4, 2);
    EXPECT_EQ(image.pixel(320, 25), qRgba(150, 0, 200, 255)) << "the layer covers its ghosts";
    EXPECT_EQ(image.pixel(50, 51), 0u) << "empty pixels are 0";

    Settings::ghostColorOverride = true;
    Settings::ghostColorOverridePrev = QColor(7, 100, 9);
    manager_.QueueMasterCacheUpdate(camera_);
    manager_.GetFlattenedImage(camera_);
    EXPECT_EQ(image.pixel(170, 25) & RGB_MASK, qRgb(7, 100, 9) & RGB_MASK);
    EXPECT_EQ(image.pixel(320, 25), qRgba(150, 0, 200, 255));

    Settings::ghostPrev = false;
    Settings::ghostNext = true;
    manager_.QueueMasterCacheUpdate(camera_);
    manager_.GetFlattenedImage(camera_);
    EXPECT_EQ(alphaAt(170), 0) << "ghosts that are turned off do not stay";
}

TEST_F(ComposeTest, SeesEveryChange) {
    MakeDocument();
    SetGhosts(2, 2, true);
    const QString other = "other";
    AddLayer(other, {1});
    manager_.SetActiveCamera(camera_);
    Layer* active = manager_.GetActiveLayer(camera_);
    const struct {
        const char* what;
        std::function<void()> change;
    } cases[] = {
        {"time", [this] { ShowTime(6); }},
        {"time back", [this] { ShowTime(5); }},
        {"hiding", [this] { manager_.SetLayerVisible(camera_, 2, false); }},
        {"hiding the active layer", [this] { manager_.SetLayerVisible(camera_, 1, false); }},
        {"showing", [this] { manager_.SetLayerVisible(camera_, 1, true); }},
        {"image", [=] { active->SetImage(Drawing(20)); }},
        {"pixels",
         [=] {
             active->GetImage(0)->fill(QColor(0, 9, 90, 99));
             active->ForceCacheUpdate();
         }},
        {"pixels of a ghost",
         [=] {
             active->GetImage(-1)->fill(QColor(90, 9, 0, 30));
             active->ForceCacheUpdate();
         }},
        {"a key that is a ghost", [=] { active->RemoveFrame(At(6)); }},
        {"a new key", [this] { manager_.AddFrame(camera_, At(6)); }},
        {"packing a ghost",
         [=] {
             active->GetFrame(5)->PackImage();
             active->ForceCacheUpdate();
         }},
        {"moving a layer", [this] { manager_.MoveLayer(camera_, 1, 2); }},
        {"removing a layer", [this] { manager_.RemoveLayer(camera_, 1); }},
        {"a layer from elsewhere", [=] { manager_.MoveLayer(other, 0, camera_, 0); }},
        {"ghosting",
         [this] {
             SetGhosts(3, 0, false);
             manager_.QueueMasterCacheUpdate(camera_);
         }},
        {"the active layer",
         [this] {
             manager_.SetActiveLayer(camera_, 0, true);
             manager_.QueueMasterCacheUpdate(camera_);
         }},
    };
    EXPECT_LE(Error(camera_), 2);
    for (const auto& c : cases) {
        c.change();
        EXPECT_TRUE(manager_.CacheUpdateRequired(camera_)) << c.what;
        EXPECT_LE(Error(camera_), 2) << c.what;
        manager_.GetFlattenedImage(camera_); // what the plain way read counts as read
        EXPECT_FALSE(manager_.CacheUpdateRequired(camera_)) << c.what;
    }
}

TEST_F(ComposeTest, LeavesTheImageAloneUntilSomethingChanges) {
    MakeDocument();
    QImage* image = manager_.GetFlattenedImage(camera_);
    const qint64 key = image->cacheKey();
    EXPECT_FALSE(manager_.CacheUpdateRequired(camera_));
    SetGhosts(3, 3, false); // a setting alone asks for nothing
    EXPECT_EQ(manager_.GetFlattenedImage(camera_), image);
    EXPECT_EQ(image->cacheKey(), key);
    manager_.QueueMasterCacheUpdate(camera_);
    manager_.QueueMasterCacheUpdate(camera_);
    manager_.MasterCacheUpdateCompleted(camera_);
    EXPECT_FALSE(manager_.MasterCacheUpdateRequired(camera_)) << "queued once";
    manager_.QueueMasterCacheUpdateAll();
    manager_.GetFlattenedImage(camera_);
    EXPECT_NE(image->cacheKey(), key);

    // Neither a stroke that rests nor one that was dropped has the picture composed again and again.
    BeginStroke(camera_, ToolType::Pencil);
    manager_.GetFlattenedImage(camera_);
    EXPECT_FALSE(manager_.CacheUpdateRequired(camera_)) << "the stroke rests";
    manager_.CancelActiveStroke();
    EXPECT_TRUE(manager_.CacheUpdateRequired(camera_));
    manager_.GetFlattenedImage(camera_);
    EXPECT_FALSE(manager_.CacheUpdateRequired(camera_)) << "the stroke is gone";

    image->fill(Qt::red); // someone wrote into it
    manager_.QueueMasterCacheUpdate(camera_);
    EXPECT_LE(Error(camera_), 2);
}

TEST_F(ComposeTest, StartsTransparentAndEndsWithTheLastLayer) {
    EXPECT_EQ(manager_.GetFlattenedImage(camera_), nullptr);
    AddLayer(camera_, {});
    const QImage* image = manager_.GetFlattenedImage(camera_);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(*image, PlainComposer::Blank());
    EXPECT_EQ(image->format(), QImage::Format_RGBA8888);
}

TEST_F(ComposeTest, GrowingStrokesLookAsIfPaintedAtOnce) {
    MakeDocument();
    SetGhosts(2, 1, false);
    for (const ToolType tool : {ToolType::Pencil, ToolType::Brush}) {
        Stroke* stroke = manager_.GetActiveStroke(camera_, true);
        stroke->tool = tool;
        stroke->color = QColor(200, 0, 120);
        QImage work = PlainComposer::Blank();
        work.fill(QColor(200, 0, 120, 0));
        for (int i = 0; i < 12; ++i) {
            stroke->points.append(Point(150 + 60 * i, 400 + 25 * (i % 3), 40, 0.6f));
            stroke->changed = true;
            manager_.GetFlattenedImage(camera_);
        }
        DrawUtil::DrawFreehand(work, stroke->points, 0, tool);
        EXPECT_FALSE(stroke->changed);
        EXPECT_LE(Error(camera_, &work), 2) << int(tool);
        manager_.SetLayerVisible(camera_, 2, tool == ToolType::Brush); // under way, over the stroke
        EXPECT_LE(Error(camera_, &work), 2) << int(tool);
        manager_.CancelActiveStroke();
        EXPECT_LE(Error(camera_), 2) << int(tool);
    }
}

TEST_F(ComposeTest, ShapesLeaveNothingBehindWhereTheyWere) {
    MakeDocument();
    for (const ToolType tool : {ToolType::Line, ToolType::Arrow, ToolType::Ellipse, ToolType::Rectangle}) {
        Stroke* stroke = BeginStroke(camera_, tool);
        manager_.GetFlattenedImage(camera_);
        stroke->points[1] = Point(830, 120);
        stroke->changed = true;
        QImage work = PlainComposer::Blank();
        DrawUtil::DrawStroke(work, *stroke, true);
        EXPECT_LE(Error(camera_, &work), 2) << int(tool);
        manager_.CancelActiveStroke();
    }
}

TEST_F(ComposeTest, AStrokeKeepsTheGhostsItBeganWith) {
    MakeDocument();
    SetGhosts(3, 3, false);
    manager_.QueueMasterCacheUpdate(camera_);
    manager_.GetFlattenedImage(camera_);
    Stroke* stroke = BeginStroke(camera_, ToolType::Pencil);
    QImage work = PlainComposer::Blank();
    work.fill(QColor(10, 120, 240, 0));
    DrawUtil::DrawFreehand(work, stroke->points, 0, ToolType::Pencil);
    Settings::ghostColorOverride = true;
    manager_.QueueMasterCacheUpdate(camera_);
    const QImage shown = manager_.GetFlattenedImage(camera_)->copy();
    EXPECT_GT(PlainComposer::Difference(shown, Plain(camera_, &work)), 20)
        << "no new colours while it is drawn";
    Settings::ghostColorOverride = false;
    EXPECT_LE(PlainComposer::Difference(shown, Plain(camera_, &work)), 2);
    ShowTime(6);
    EXPECT_LE(Error(camera_), 2) << "but never the ghosts of another drawing";
    manager_.CancelActiveStroke();
    Settings::ghostColorOverride = true;
    EXPECT_LE(Error(camera_), 2);
}

TEST_F(ComposeTest, AStrokeIsShownWhereverItsDrawingIs) {
    MakeDocument();
    ShowTime(5);
    Stroke* stroke = BeginStroke(camera_, ToolType::Pencil);
    Layer* drawn = manager_.GetActiveLayer(camera_);
    QImage work = PlainComposer::Blank();
    work.fill(QColor(10, 120, 240, 0));
    DrawUtil::DrawFreehand(work, stroke->points, 0, ToolType::Pencil);
    // The active layer of the reference is the one with the stroke.
    const auto plain = [&](bool shown) {
        const int active = manager_.GetActiveLayerIndex(camera_);
        manager_.SetActiveLayer(camera_, manager_.FindLayer(drawn->GetId()).index, false);
        QImage image = Plain(camera_, shown ? &work : nullptr);
        manager_.SetActiveLayer(camera_, active, false);
        return image;
    };
    const auto error = [&](bool shown) {
        stroke->changed = true;
        return PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), plain(shown));
    };
    EXPECT_LE(error(true), 2);
    ShowTime(6);
    EXPECT_LE(error(false), 2) << "another drawing";
    ShowTime(5);
    EXPECT_LE(error(true), 2);
    manager_.SetActiveLayer(camera_, 0, false);
    EXPECT_LE(error(true), 2) << "another active layer";
    manager_.MoveLayer(camera_, manager_.FindLayer(drawn->GetId()).index, 0);
    EXPECT_LE(error(true), 2) << "at another place";
    drawn->SetVisible(false);
    EXPECT_LE(error(false), 2) << "hidden";
    drawn->SetVisible(true);
    manager_.MoveLayer(camera_, 0, "other", 0);
    stroke->changed = true;
    EXPECT_LE(PlainComposer::Difference(*manager_.GetFlattenedImage("other"), Plain("other", &work)), 2);
    manager_.CancelActiveStroke();
}

TEST_F(ComposeTest, AStrokeBelongsToItsCamera) {
    MakeDocument();
    AddLayer("other", {1});
    BeginStroke(camera_, ToolType::Brush);
    EXPECT_LE(Error("other"), 1);
    EXPECT_TRUE(manager_.GetActiveStroke(camera_, true)->changed) << "its own camera has yet to show it";
    const QImage before = manager_.ComposeFrame(camera_, 5, false);
    EXPECT_GT(PlainComposer::Difference(*manager_.GetFlattenedImage(camera_), before), 20);
}

TEST_F(ComposeTest, PlaybackHidesGhostsWhereTheUserWantsIt) {
    MakeDocument();
    SetGhosts(2, 2, false);
    manager_.QueueMasterCacheUpdate(camera_);
    manager_.GetFlattenedImage(camera_);
    MAnimControl::playForward();
    Settings::disableGhostingDuringPlayback = false;
    manager_.OnPlaybackTimeChanged(5, false);
    EXPECT_TRUE(manager_.MasterCacheUpdateRequired(camera_)) << "playback began";
    EXPECT_LE(Error(camera_), 2);
    manager_.OnPlaybackTimeChanged(5, false);
    EXPECT_FALSE(manager_.CacheUpdateRequired(camera_));
    Settings::disableGhostingDuringPlayback = true;
    ShowTime(6);
    const QImage shown = manager_.GetFlattenedImage(camera_)->copy();
    MAnimControl::stop();
    SetGhosts(0, 0, false);
    EXPECT_LE(PlainComposer::Difference(shown, Plain(camera_)), 2);
    SetGhosts(2, 2, false);
    BeginStroke(camera_, ToolType::Eraser)->points = {Point(5, 5)};
    EXPECT_LE(Error(camera_), 2) << "a stroke after playback has its ghosts";
}

TEST_F(ComposeTest, FramesThatShowTheSameLookTheSame) {
    MakeDocument();
    AddLayer(camera_, {3, 4});
    AddLayer(camera_, {2, 5, 6});
    manager_.SetLayerVisible(camera_, manager_.LayerCount(camera_) - 1, false);
    SetGhosts(2, 2, true);
    int same = 0;
    for (int time = 0; time < 12; ++time) {
        const auto shown = manager_.GetShownFrames(camera_, time);
        const auto next = manager_.GetShownFrames(camera_, time + 1);
        EXPECT_EQ(shown.size(), size_t(manager_.LayerCount(camera_)) - 1) << "the visible layers";
        const int difference = PlainComposer::Difference(manager_.ComposeFrame(camera_, time, true),
                                                         manager_.ComposeFrame(camera_, time + 1, true));
        EXPECT_EQ(shown == next, difference == 0) << time;
        same += shown == next ? 1 : 0;
    }
    EXPECT_GT(same, 0);
    EXPECT_LT(same, 12);
    EXPECT_TRUE(manager_.GetShownFrames("nowhere", 1).empty());
}

TEST_F(ComposeTest, ComposesAnyTimeWithoutTouchingAnything) {
    MakeDocument();
    AddLayer(camera_, {2});
    SetGhosts(2, 2, true);
    Layer* active = manager_.GetActiveLayer(camera_);
    active->GetFrame(7)->PackImage();
    manager_.SetLayerVisible(camera_, 2, false);
    manager_.QueueMasterCacheUpdate(camera_);
    manager_.GetFlattenedImage(camera_);
    const qint64 key = manager_.GetFlattenedImage(camera_)->cacheKey();
    QList<QImage> composed;
    for (int time = 0; time < 10; ++time) {
        composed.append(manager_.ComposeFrame(camera_, time, true));
    }
    const QImage bare = manager_.ComposeFrame(camera_, 7, false);
    EXPECT_EQ(active->GetCurrentFrameIndex(), 4);
    EXPECT_FALSE(active->GetFrame(7)->IsUnpacked());
    EXPECT_FALSE(manager_.CacheUpdateRequired(camera_));
    EXPECT_EQ(manager_.GetFlattenedImage(camera_)->cacheKey(), key);
    EXPECT_TRUE(manager_.ComposeFrame("nowhere", 1, true).isNull());
    for (int time = 0; time < 10; ++time) {
        ShowTime(time);
        manager_.QueueMasterCacheUpdate(camera_);
        EXPECT_EQ(*manager_.GetFlattenedImage(camera_), composed[time]) << time;
    }
    ShowTime(7);
    SetGhosts(0, 0, false);
    EXPECT_LE(PlainComposer::Difference(Plain(camera_), bare), 2);
}

TEST_F(ComposeTest, ALackOfMemoryIsReportedOnceAndTheDrawingShownLater) {
    Layer* layer = AddLayer(camera_, {1});
    manager_.GetFlattenedImage(camera_);
    layer->GetFrame(0)->SetImage(Drawing(9));
    layer->GetFrame(0)->PackImage();
    layer->ForceCacheUpdate();
    {
        const ShortOfMemory scope;
        if (!scope.IsShort()) {
            GTEST_SKIP() << "memory cannot be limited here";
        }
        manager_.GetFlattenedImage(camera_);
        manager_.GetFlattenedImage(camera_);
    }
    EXPECT_THAT(Messages(),
                ::testing::ElementsAre("Out of memory: the drawing cannot be shown. Nothing of it is lost."));
    EXPECT_LE(Error(camera_), 2);
}

TEST_F(ComposeTest, CommittedStrokesHaveTheirColorWhetherShownBeforeOrNot) {
    MakeDocument();
    const auto begin = [&](const QColor& color) {
        Stroke* stroke = manager_.GetActiveStroke(camera_, true);
        stroke->tool = ToolType::Brush;
        stroke->color = color;
        stroke->points = {Point(100, 100, 40, 0.6f), Point(900, 700, 40, 0.6f)};
        stroke->changed = true;
    };
    QList<QImage> pictures;
    for (const bool isShown : {false, true}) {
        begin(QColor(0, 250, 0));
        manager_.GetFlattenedImage(camera_);
        manager_.CancelActiveStroke(); // its colour stays behind
        begin(QColor(200, 0, 120));
        if (isShown) {
            manager_.GetFlattenedImage(camera_);
        }
        QByteArray undo;
        ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo));
        EXPECT_LE(Error(camera_), 2);
        pictures.append(manager_.GetActiveLayer(camera_)->GetCurrentFrame()->GetImage().copy());
        ASSERT_TRUE(manager_.UndoStroke(camera_, undo));
    }
    EXPECT_EQ(pictures[0], pictures[1]);
    EXPECT_NE(pictures[0], manager_.GetActiveLayer(camera_)->GetCurrentFrame()->GetImage());
}

TEST_F(ComposeTest, ShowingPackedFramesLeavesThemPacked) {
    MakeDocument();
    SetGhosts(1, 1, false);
    Layer* active = manager_.GetActiveLayer(camera_);
    QList<QImage> expected;
    for (int time = 1; time < 9; ++time) {
        ShowTime(time);
        expected.append(manager_.GetFlattenedImage(camera_)->copy());
    }
    for (int i = 0; i < active->FrameCount(); ++i) {
        active->GetFrame(i)->PackImage();
    }
    for (int time = 1; time < 9; ++time) {
        ShowTime(time);
        EXPECT_EQ(*manager_.GetFlattenedImage(camera_), expected[time - 1]) << time;
        EXPECT_FALSE(active->GetFrame(time - 1)->IsUnpacked());
    }
    const QByteArray before = active->GetFrame(7)->GetPackedImage();
    BeginStroke(camera_, ToolType::Pencil);
    QByteArray undo;
    ASSERT_TRUE(manager_.CommitActiveStroke(camera_, undo));
    ASSERT_TRUE(manager_.UndoStroke(camera_, undo));
    EXPECT_TRUE(active->GetFrame(7)->GetPackedImage().isSharedWith(before))
        << "the picture before the stroke is known as bytes";
    EXPECT_LE(Error(camera_), 2);
}

TEST_F(ComposeTest, OverridesTheColourOfWhatCanBeSeen) {
    QImage image = PlainComposer::Blank();
    image.setPixel(3, 4, qRgba(200, 100, 50, 1));
    image.setPixel(5, 4, qRgba(200, 100, 50, 0));
    LayerManager::OverrideImageColor(image, QColor(1, 2, 3));
    EXPECT_EQ(image.pixel(3, 4), qRgba(1, 2, 3, 1));
    EXPECT_EQ(image.pixel(5, 4), qRgba(200, 100, 50, 0));
    QImage none;
    LayerManager::OverrideImageColor(none, QColor(1, 2, 3));
    EXPECT_TRUE(none.isNull());
}

} // namespace
} // namespace vellix
