// What is seen of flips, ghosts of several layers, pinned drawings and dimmed layers.
#include "core/LightTable.h"

#include "host/GhostLayers.h"
#include "plugin/core/DocumentTest.h"

#include <functional>

namespace vellix {
namespace {

class LightTableTest : public DocumentTest {
protected:
    LightTableTest() { Reset(); }
    ~LightTableTest() override { Reset(); }

    static void Reset() {
        Settings::ghostLayers = static_cast<int>(GhostLayers::Active);
        Settings::pinnedColor = QColor(0, 0, 128);
        Settings::otherLayersOpacity = 100;
    }
    static void SetGhosts(int count, GhostLayers layers = GhostLayers::Active) {
        Settings::ghostPrev = Settings::ghostNext = count > 0;
        Settings::ghostPrevCount = Settings::ghostNextCount = qMax(count, 1);
        Settings::ghostLayers = static_cast<int>(layers);
    }

    /// A layer whose drawings are opaque squares of one colour, 40 pixels wide, each right of the one before;
    /// the first at `left`, 0.
    Layer* AddSquares(int left, int top, const QColor& color, const QList<int>& times) {
        Layer* const layer = AddLayer(camera_, times);
        for (int i = 0; i < times.size(); ++i) {
            QImage square = PlainComposer::Blank();
            QPainter(&square).fillRect(left + 50 * i, top, 40, 40, color);
            layer->GetFrame(i)->SetImage(square);
        }
        layer->ForceCacheUpdate();
        return layer;
    }
    QImage Seen() {
        manager_.QueueMasterCacheUpdateAll();
        return manager_.GetFlattenedImage(camera_)->copy();
    }
    /// The pixel in the middle of square `index` of a row of AddSquares(0, top...).
    QColor At(int index, int top) { return Seen().pixelColor(50 * index + 20, top + 20); }
    using DocumentTest::At;
    int AlphaAt(int index, int top) { return At(index, top).alpha(); }

    static DrawingId IdOf(const Layer& layer, int index) {
        return {layer.GetId(), layer.GetFrame(index)->GetId()};
    }
};

TEST_F(LightTableTest, AFlipShowsTheDrawingAsItIsExported) {
    AddLayer(camera_, {1, 20});
    AddLayer(camera_, {1, 5, 9, 13});
    AddLayer(camera_, {1, 7});
    manager_.SetActiveLayer(camera_, 1, true);
    SetGhosts(2);
    manager_.SetPinned(IdOf(*manager_.GetLayer(camera_, 1), 0), true);
    ShowTime(10);
    const QImage unflipped = Seen();
    const struct {
        int steps;
        bool all;
        int time; // of the frame that is exported
    } rows[] = {
        // Keys of any layer: 1, 5, 7, 9, 13, 20.
        {-1, true, 7},
        {1, true, 13},
        {2, true, 20},
        {9, true, 20},
        {-2, true, 5},
        {-9, true, 1},
        // The others stay as they are, which is as from 7 to 19.
        {1, false, 13},
        {5, false, 13},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(manager_.Flip(camera_, row.steps, row.all));
        EXPECT_TRUE(manager_.CacheUpdateRequired(camera_));
        EXPECT_EQ(*manager_.GetFlattenedImage(camera_), manager_.ComposeFrame(camera_, row.time, false))
            << row.steps << row.all;
        EXPECT_FALSE(manager_.CacheUpdateRequired(camera_)) << "once is enough";
        ASSERT_TRUE(manager_.Flip(camera_, row.steps, row.all));
        EXPECT_FALSE(manager_.CacheUpdateRequired(camera_)) << "the key repeats itself";
        EXPECT_EQ(manager_.GetActiveLayer(camera_)->GetCurrentFrameIndex(), 2) << "the drawing stays";
        manager_.EndFlip();
        EXPECT_TRUE(manager_.CacheUpdateRequired(camera_));
        EXPECT_EQ(*manager_.GetFlattenedImage(camera_), unflipped);
    }
}

TEST_F(LightTableTest, FlippingTheActiveLayerLeavesTheOthers) {
    AddSquares(0, 0, Qt::red, {1, 5, 9});
    AddSquares(0, 100, Qt::blue, {1, 5, 9});
    manager_.SetActiveLayer(camera_, 0, true);
    ShowTime(5);
    ASSERT_TRUE(manager_.Flip(camera_, 1, false));
    EXPECT_EQ(AlphaAt(1, 0), 0);
    EXPECT_EQ(At(2, 0), QColor(Qt::red));
    EXPECT_EQ(At(1, 100), QColor(Qt::blue));
    EXPECT_EQ(AlphaAt(2, 100), 0);

    // Before the first key there is nothing before, and the first drawing comes next.
    ShowTime(0);
    ASSERT_TRUE(manager_.Flip(camera_, -1, false));
    EXPECT_EQ(AlphaAt(0, 0), 0);
    ASSERT_TRUE(manager_.Flip(camera_, 1, false));
    EXPECT_EQ(At(0, 0), QColor(Qt::red));
    EXPECT_EQ(AlphaAt(0, 100), 0);

    manager_.SetLayerVisible(camera_, 0, false);
    EXPECT_FALSE(manager_.Flip(camera_, 1, false)) << "of a hidden layer there is nothing to see";
    EXPECT_TRUE(manager_.Flip(camera_, 1, true));
    EXPECT_EQ(AlphaAt(0, 0), 0);
    EXPECT_EQ(At(0, 100), QColor(Qt::blue));
    EXPECT_FALSE(manager_.Flip("nowhere", 1, true));
}

TEST_F(LightTableTest, AStaticLayerStaysWhenAllAreFlipped) {
    AddSquares(0, 0, Qt::red, {-999});
    manager_.SetLayerState(camera_, 0, LayerState::Static);
    AddSquares(0, 100, Qt::blue, {3, 5});
    ShowTime(3);
    ASSERT_TRUE(manager_.Flip(camera_, -1, true));
    EXPECT_EQ(At(0, 100), QColor(Qt::blue)) << "its key is none to go back to";
    ASSERT_TRUE(manager_.Flip(camera_, 1, true));
    EXPECT_EQ(At(1, 100), QColor(Qt::blue));
    EXPECT_EQ(At(0, 0), QColor(Qt::red));
}

// They are merged when they are shown again, and only those of a few times are kept.
TEST_F(LightTableTest, GhostsOfSeveralLayersLookTheSameHoweverOftenTheyAreShown) {
    for (int layer = 0; layer < 3; ++layer) {
        AddLayer(camera_, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    }
    SetGhosts(2, GhostLayers::Visible);
    QList<QImage> first;
    for (int time = 1; time <= 10; ++time) {
        ShowTime(time);
        first.append(Seen());
        EXPECT_EQ(first.last(), manager_.ComposeFrame(camera_, time, true)) << time;
    }
    for (const int time : {10, 9, 10, 9, 9, 3, 2, 3, 2, 10, 4, 4, 1, 1, 10}) {
        ShowTime(time);
        EXPECT_EQ(Seen(), first[time - 1]) << time;
        manager_.GetLayer(camera_, 1)->ForceCacheUpdate();
        EXPECT_EQ(Seen(), first[time - 1]) << time;
    }
}

TEST_F(LightTableTest, AFlipEndsWhenTheDrawingOrTheTimeChanges) {
    AddLayer(camera_, {1, 9});
    Layer* const active = AddLayer(camera_, {1, 5, 9});
    AddLayer("other", {1});
    manager_.SetActiveCamera(camera_);
    manager_.SetActiveLayer(camera_, 1, true);
    ShowTime(5);
    const struct {
        const char* what;
        std::function<void()> change;
    } cases[] = {
        {"time", [this] { ShowTime(9); }},
        {"time back", [this] { ShowTime(5); }},
        {"picture", [=] { active->SetImage(Drawing(30)); }},
        {"stroke", [this] { BeginStroke(camera_, ToolType::Line); }},
        {"stroke dropped", [this] { manager_.CancelActiveStroke(); }},
        {"frame", [=] { active->RemoveFrame(DocumentTest::At(9)); }},
        {"hidden layer", [this] { manager_.SetLayerVisible(camera_, 0, false); }},
        {"active layer", [this] { manager_.SetActiveLayer(camera_, 0, true); }},
        {"layer shown", [this] { manager_.SetLayerVisible(camera_, 0, true); }},
        {"layer moved", [this] { manager_.MoveLayer(camera_, 0, 1); }},
        {"other camera renamed", [this] { manager_.RenameCamera("other", "renamed", false); }},
        {"active camera", [this] { manager_.SetActiveCamera("renamed"); }},
        {"layer removed", [this] { manager_.RemoveLayer(camera_, 0); }},
    };
    for (const auto& c : cases) {
        if (manager_.HasActiveStroke()) {
            manager_.GetActiveStroke(camera_, true)->tool = ToolType::Transform;
        }
        manager_.Flip(camera_, -1, true);
        ASSERT_TRUE(manager_.GetLightTable().IsFlipped()) << c.what;
        manager_.GetFlattenedImage(camera_);
        c.change();
        EXPECT_FALSE(manager_.GetLightTable().IsFlipped()) << c.what;
        if (!manager_.HasActiveStroke()) {
            EXPECT_LE(Error(camera_), 2) << c.what;
        }
    }
}

TEST_F(LightTableTest, GhostsOfTheLayersThatAreAskedFor) {
    AddSquares(0, 0, Qt::red, {1, 5, 9});
    AddSquares(0, 100, Qt::blue, {1, 5, 9});
    Layer* const hidden = AddSquares(0, 200, Qt::green, {1, 5, 9});
    hidden->SetVisible(false);
    manager_.SetActiveLayer(camera_, 0, true);
    ShowTime(5);
    const LayerId red = manager_.GetLayer(camera_, 0)->GetId();
    const LayerId blue = manager_.GetLayer(camera_, 1)->GetId();
    const int ghost = 102; // 0.4 of 255
    const auto expectGhosts = [&](const char* what, bool ofRed, bool ofBlue) {
        SCOPED_TRACE(what);
        EXPECT_NEAR(AlphaAt(0, 0), ofRed ? ghost : 0, 1);
        EXPECT_NEAR(AlphaAt(2, 0), ofRed ? ghost : 0, 1);
        EXPECT_NEAR(AlphaAt(0, 100), ofBlue ? ghost : 0, 1);
        EXPECT_NEAR(AlphaAt(2, 100), ofBlue ? ghost : 0, 1);
        EXPECT_EQ(AlphaAt(0, 200), 0) << "hidden";
        EXPECT_EQ(At(1, 0), QColor(Qt::red));
        EXPECT_EQ(At(1, 100), QColor(Qt::blue));
    };
    SetGhosts(1);
    expectGhosts("active", true, false);
    SetGhosts(1, GhostLayers::Visible);
    expectGhosts("visible", true, true);
    EXPECT_EQ(At(0, 100).rgb() & 0xffffff, QColor(Qt::blue).rgb() & 0xffffff);
    SetGhosts(1, GhostLayers::Marked);
    expectGhosts("none marked", false, false);
    manager_.SetLayerMarked(blue, true);
    manager_.SetLayerMarked(hidden->GetId(), true);
    expectGhosts("blue marked", false, true);
    const QImage exported = manager_.ComposeFrame(camera_, 5, true);
    EXPECT_EQ(exported.pixelColor(20, 20).alpha(), 0) << "an export with ghosts has those that are asked for";
    EXPECT_NEAR(exported.pixelColor(20, 120).alpha(), ghost, 1);
    EXPECT_EQ(exported.pixelColor(20, 220).alpha(), 0) << "hidden";
    EXPECT_EQ(manager_.ComposeFrame(camera_, 5, false).pixelColor(20, 120).alpha(), 0) << "or none";
    manager_.SetLayerMarked(red, true);
    manager_.SetLayerMarked(blue, false);
    expectGhosts("red marked", true, false);
    SetGhosts(1, GhostLayers::Active);
    expectGhosts("active again", true, false);
    Settings::ghostColorOverride = true;
    Settings::ghostColorOverrideNext = QColor(1, 200, 3);
    SetGhosts(1, GhostLayers::Visible);
    EXPECT_NEAR(At(2, 100).green(), 200, 2);
    Settings::ghostPrev = Settings::ghostNext = false;
    expectGhosts("off", false, false);
}

// What is kept of each layer's ghosts must follow every change.
TEST_F(LightTableTest, GhostsOfAllLayersSeeEveryChange) {
    AddLayer(camera_, {1, 3, 5, 9});
    Layer* const active = AddLayer(camera_, {1, 2, 3, 4, 5, 6, 7, 8});
    Layer* const top = AddLayer(camera_, {1, 5, 6});
    manager_.SetActiveLayer(camera_, 1, true);
    SetGhosts(2, GhostLayers::Visible);
    ShowTime(5);
    const struct {
        const char* what;
        std::function<void()> change;
    } cases[] = {
        {"time", [this] { ShowTime(6); }},
        {"time back", [this] { ShowTime(5); }},
        {"time 1", [this] { ShowTime(1); }},
        {"time 2", [this] { ShowTime(2); }},
        {"time 3", [this] { ShowTime(3); }},
        {"time 7", [this] { ShowTime(7); }},
        {"time 8", [this] { ShowTime(8); }},
        {"time 2 again", [this] { ShowTime(2); }},
        {"time 5 again", [this] { ShowTime(5); }},
        {"drawing", [=] { active->SetImage(Drawing(41)); }},
        {"ghost painted",
         [=] {
             top->GetFrame(0)->SetImage(Drawing(40));
             top->ForceCacheUpdate();
         }},
        {"ghost removed", [=] { active->RemoveFrame(DocumentTest::At(6)); }},
        {"layer hidden", [this] { manager_.SetLayerVisible(camera_, 0, false); }},
        {"layer shown", [this] { manager_.SetLayerVisible(camera_, 0, true); }},
        {"layers moved", [this] { manager_.MoveLayer(camera_, 0, 2); }},
        {"settings",
         [this] {
             SetGhosts(1, GhostLayers::Visible);
             manager_.OnGhostingChanged();
         }},
        {"layer removed", [this] { manager_.RemoveLayer(camera_, 1); }},
    };
    for (const auto& c : cases) {
        c.change();
        const QImage seen = manager_.GetFlattenedImage(camera_)->copy();
        const std::shared_ptr<LayerManager> fresh = manager_.Clone();
        fresh->OnPlaybackTimeChanged(MayaUtil::GetPlaybackTimeValue(), false);
        EXPECT_EQ(seen, *fresh->GetFlattenedImage(camera_)) << c.what;
    }
}

TEST_F(LightTableTest, PinnedDrawingsStayInTheirColour) {
    Layer* const layer = AddSquares(0, 0, Qt::red, {1, 5, 9, 13});
    Settings::pinnedColor = QColor(10, 20, 250);
    const DrawingId first = IdOf(*layer, 0);
    manager_.SetPinned(first, true);
    ShowTime(13);
    const auto expectPinned = [&](const char* what) {
        const QColor pinned = At(0, 0);
        EXPECT_NEAR(pinned.alpha(), 102, 1) << what;
        EXPECT_NEAR(pinned.blue(), 250, 2) << what;
        EXPECT_NEAR(pinned.red(), 10, 2) << what;
    };
    expectPinned("without ghosts");
    EXPECT_EQ(AlphaAt(1, 0), 0);
    SetGhosts(3);
    expectPinned("once, and not as a ghost too");
    EXPECT_NEAR(AlphaAt(1, 0), 68, 2) << "others are ghosts as before";
    SetGhosts(0);
    ShowTime(1);
    const Layer* const faint = AddSquares(0, 100, QColor(255, 0, 0, 128), {1});
    manager_.SetPinned(IdOf(*faint, 0), true);
    EXPECT_NEAR(AlphaAt(0, 100), 128, 1) << "not under itself";

    layer->GetFrame(0)->SetTimeValue(2);
    layer->FramesChanged();
    ShowTime(9);
    expectPinned("retimed");
    std::unique_ptr<Frame> removed = layer->RemoveFrame(first.frame);
    EXPECT_EQ(AlphaAt(0, 0), 0);
    layer->InsertFrame(removed.release());
    expectPinned("as after undo");
    layer->SetVisible(false);
    EXPECT_EQ(AlphaAt(0, 0), 0);
    layer->SetVisible(true);

    EXPECT_EQ(manager_.ComposeFrame(camera_, 9, true).pixelColor(20, 20).alpha(), 0) << "not exported";
    EXPECT_FALSE(manager_.Clone()->GetLightTable().IsPinned(first));
    manager_.SetPinned(IdOf(*layer, 1), true);
    manager_.SetPinned(first, false);
    EXPECT_EQ(AlphaAt(0, 0), 0);
    EXPECT_NEAR(AlphaAt(1, 0), 102, 1);
    manager_.UnpinAll();
    EXPECT_EQ(AlphaAt(1, 0), 0);
}

TEST_F(LightTableTest, OtherLayersAreDimmed) {
    AddSquares(0, 0, Qt::red, {1});
    AddSquares(0, 100, Qt::green, {1});
    AddSquares(0, 200, Qt::blue, {1});
    manager_.SetActiveLayer(camera_, 1, true);
    Settings::otherLayersOpacity = 25;
    EXPECT_NEAR(AlphaAt(0, 0), 64, 1);
    EXPECT_EQ(At(0, 100), QColor(Qt::green));
    EXPECT_NEAR(AlphaAt(0, 200), 64, 1);
    manager_.GetFlattenedImage(camera_);
    manager_.SetActiveLayer(camera_, 2, true);
    EXPECT_TRUE(manager_.CacheUpdateRequired(camera_)) << "another one is dimmed";
    EXPECT_NEAR(AlphaAt(0, 100), 64, 1);
    EXPECT_EQ(At(0, 200), QColor(Qt::blue));

    BeginStroke(camera_, ToolType::Line, QColor(Qt::black));
    const QImage drawn = Seen();
    EXPECT_NEAR(drawn.pixelColor(20, 120).alpha(), 64, 1) << "under the stroke as well";
    EXPECT_EQ(drawn.pixelColor(20, 220), QColor(Qt::blue));
    manager_.CancelActiveStroke();
    EXPECT_EQ(manager_.ComposeFrame(camera_, 1, true).pixelColor(20, 20), QColor(Qt::red)) << "not exported";
    Settings::otherLayersOpacity = 0;
    EXPECT_EQ(AlphaAt(0, 0), 0);
    EXPECT_EQ(At(0, 200), QColor(Qt::blue));
}

} // namespace
} // namespace vellix
