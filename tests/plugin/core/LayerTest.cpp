#include "plugin/core/DocumentTest.h"

namespace vellix {
namespace {

class LayerTest : public DocumentTest {
protected:
    Layer layer_;

    void AddKeys(const QList<int>& times) {
        for (const int time : times) {
            layer_.AddFrame(At(time));
        }
    }
    static int TimeOf(const Frame* frame) { return frame ? frame->GetTimeValue() : -1; }
    QList<int> Times() const {
        QList<int> times;
        layer_.GetFrameTimes(times);
        return times;
    }
};

TEST_F(LayerTest, HoldsEachKeyUntilTheNext) {
    AddKeys({10, 1});
    const struct {
        int time;
        int index;
    } cases[] = {{0, -1}, {1, 0}, {9, 0}, {10, 1}, {5000, 1}, {-2147483647, -1}, {2147483647, 1}};
    for (const auto& c : cases) {
        layer_.UpdateCurrentFrameIndex(c.time);
        EXPECT_EQ(layer_.GetCurrentFrameIndex(), c.index) << "time " << c.time;
    }
}

TEST_F(LayerTest, ManyFramesGoAndComeAtOnce) {
    AddKeys({1, 3, 5, 7});
    ShowTime(6);
    const Frame* const three = layer_.GetFrame(1);
    FrameList frames = layer_.TakeFrames({layer_.GetFrame(3)->GetId(), three->GetId(), FrameId::None});
    EXPECT_EQ(Times(), QList<int>({1, 5}));
    EXPECT_EQ(layer_.GetCurrentFrameIndex(), 1);
    ASSERT_EQ(frames.size(), 2U);
    frames.insert(frames.begin(), std::make_unique<Frame>(At(6)));
    frames.push_back(std::make_unique<Frame>(At(-2)));
    layer_.PutFrames(frames);
    EXPECT_EQ(Times(), QList<int>({-2, 1, 3, 5, 6, 7}));
    EXPECT_EQ(layer_.GetFrame(2), three);
    EXPECT_EQ(layer_.GetCurrentFrameIndex(), 4);
}

TEST_F(LayerTest, FindsNeighboursOfThePlaybackTime) {
    AddKeys({1, 10, 20});
    const struct {
        int time;
        bool wrap;
        int previous, next;
    } cases[] = {
        {10, false, 1, 20}, {1, false, -1, 10}, {1, true, 20, 10},   {20, false, 10, -1}, {20, true, 10, 1},
        {0, false, -1, 1},  {0, true, 20, 1},   {15, false, 10, 20}, {99, true, 20, 1},
    };
    for (const auto& c : cases) {
        MayaUtil::SetPlaybackTime(c.time);
        EXPECT_EQ(TimeOf(layer_.GetPreviousFrame(c.wrap)), c.previous) << c.time << c.wrap;
        EXPECT_EQ(TimeOf(layer_.GetNextFrame(c.wrap)), c.next) << c.time << c.wrap;
    }
    MayaUtil::SetPlaybackTime(At(10.9));
    EXPECT_EQ(TimeOf(layer_.GetPreviousFrame(false)), 1) << "10.9 is frame 10";
    layer_.RemoveAllFrames();
    EXPECT_EQ(layer_.GetPreviousFrame(true), nullptr);
    EXPECT_EQ(layer_.GetNextFrame(true), nullptr);
}

TEST_F(LayerTest, KeepsOneFrameForATime) {
    EXPECT_EQ(layer_.AddFrame(At(5)), 0);
    const Frame* first = layer_.GetFrame(0);
    EXPECT_EQ(layer_.InsertFrame(new Frame(At(5.7))), -1);
    EXPECT_EQ(layer_.InsertFrame(nullptr), -1);
    EXPECT_EQ(layer_.GetFrame(0), first);
    EXPECT_EQ(layer_.AddFrame(At(2)), 0);
    EXPECT_EQ(layer_.AddFrame(At(9)), 2);
    EXPECT_EQ(layer_.AddFrame(At(7)), 2);
    EXPECT_EQ(Times(), (QList<int>{2, 5, 7, 9}));
}

TEST_F(LayerTest, RemovesFramesToTheCaller) {
    AddKeys({1, 5, 9});
    MayaUtil::SetPlaybackTime(9);
    EXPECT_EQ(layer_.RemoveFrame(At(4)), nullptr);
    const std::unique_ptr<Frame> removed = layer_.RemoveFrame(At(5.5));
    EXPECT_EQ(TimeOf(removed.get()), 5);
    EXPECT_EQ(layer_.GetCurrentFrameIndex(), 0) << "the index follows the time of the removal";
    const std::unique_ptr<Frame> now = layer_.RemoveFrame();
    EXPECT_EQ(TimeOf(now.get()), 9);
    EXPECT_EQ(Times(), QList<int>{1});
}

TEST_F(LayerTest, TellsWhenItsPictureChanged) {
    const auto changed = [this](const char* what, bool expected) {
        EXPECT_EQ(layer_.CacheUpdateRequired(), expected) << what;
        layer_.GetImage(0);
        EXPECT_FALSE(layer_.CacheUpdateRequired()) << "read after " << what;
    };
    changed("construction", true);
    AddKeys({1, 5});
    changed("new keys", true);
    layer_.SetVisible(true);
    layer_.SetOpacity(1.0f);
    layer_.SetState(LayerState::Locked);
    layer_.SetActive(true);
    changed("nothing of the picture", false);
    layer_.SetOpacity(-0.2f);
    EXPECT_EQ(layer_.GetOpacity(), 0.0f);
    changed("opacity", true);
    layer_.SetOpacity(-7.0f);
    changed("the same opacity", false);
    layer_.SetOpacity(1.7f);
    EXPECT_EQ(layer_.GetOpacity(), 1.0f);
    changed("opacity", true);
    layer_.SetVisible(false);
    changed("hiding", true);
    layer_.UpdateCurrentFrameIndex(4);
    changed("the same key's hold", false);
    layer_.UpdateCurrentFrameIndex(5);
    changed("time", true);
    layer_.SetImage(Drawing(1));
    changed("image", true);
    layer_.SetFrameTimes({2, 6});
    changed("times", false);
    layer_.AddFrame(At(50));
    changed("a key that is a ghost", true);
    layer_.RemoveFrame(At(50));
    changed("a ghost that goes", true);
    layer_.RemoveAllFrames();
    changed("no keys", true);
}

TEST_F(LayerTest, GivesImagesAroundTheCurrentKey) {
    AddKeys({1, 5, 9});
    layer_.UpdateCurrentFrameIndex(5);
    for (int offset = -1; offset <= 1; ++offset) {
        EXPECT_EQ(layer_.GetImage(offset), &layer_.GetFrame(1 + offset)->GetImage());
    }
    for (const int offset : {-2, 2, 2147483647, -2147483647 - 1}) {
        EXPECT_TRUE(layer_.GetImage(offset)->isNull()) << offset;
    }
    layer_.SetVisible(false);
    EXPECT_TRUE(layer_.GetImage(0)->isNull());
    layer_.UpdateCurrentFrameIndex(0);
    layer_.SetImage(Drawing(1)); // there is no current frame to take it
    EXPECT_EQ(layer_.GetFrame(0)->GetImage(), PlainComposer::Blank());
    EXPECT_EQ(layer_.GetFrame(3), nullptr);
    EXPECT_EQ(layer_.GetFrame(-1), nullptr);
}

TEST_F(LayerTest, StaticLayersHaveAFrameFromTheirFirstKeyOn) {
    AddKeys({3});
    for (const LayerState state : {LayerState::Animated, LayerState::Static, LayerState::Locked}) {
        layer_.SetState(state);
        MayaUtil::SetPlaybackTime(8);
        layer_.UpdateCurrentFrameIndex();
        EXPECT_EQ(layer_.FrameExists(), state == LayerState::Static);
        MayaUtil::SetPlaybackTime(2);
        layer_.UpdateCurrentFrameIndex();
        EXPECT_FALSE(layer_.FrameExists());
    }
    EXPECT_TRUE(layer_.FrameExists(At(3.9)));
}

TEST_F(LayerTest, SetsAsManyTimesAsItHas) {
    AddKeys({1, 5, 9});
    layer_.SetFrameTimes({2, 6});
    EXPECT_EQ(Times(), (QList<int>{2, 6, 9}));
    layer_.SetFrameTimes({2, 9, 9, 40});
    EXPECT_EQ(Times(), (QList<int>{2, 9})) << "a time is listed once";
    const std::unique_ptr<Frame> copy = layer_.GetFrameCopy(At(2));
    EXPECT_EQ(TimeOf(copy.get()), 2);
    EXPECT_NE(copy.get(), layer_.GetFrame(0));
    EXPECT_EQ(layer_.GetFrameCopy(At(3)), nullptr);
}

} // namespace
} // namespace vellix
