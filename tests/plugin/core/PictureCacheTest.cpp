#include "core/PictureCache.h"

#include "paint/Composite.h"
#include "plugin/core/DocumentTest.h"

#include <vector>

namespace vellix {
namespace {

class PictureCacheTest : public DocumentTest {};

TEST_F(PictureCacheTest, KeepsWhatIsShownAndAsMuchOfTheRestAsItMay) {
    QImage square = PlainComposer::Blank();
    QPainter(&square).fillRect(0, 0, 160, 160, Qt::red);
    const std::size_t size = PackedTiles(square).ByteCount();
    PictureCache cache(3 * size);
    std::vector<std::unique_ptr<Frame>> frames;
    std::vector<std::weak_ptr<const PackedTiles>> kept;
    for (int i = 0; i < 6; ++i) {
        frames.push_back(std::make_unique<Frame>(At(i)));
        frames.back()->SetImage(square.copy());
        kept.push_back(cache.Find(frames.back().get()).drawing);
        EXPECT_EQ(cache.Find(frames.back().get()).drawing, kept.back().lock());
    }
    cache.EndRound();
    for (int i = 0; i < 6; ++i) {
        EXPECT_FALSE(kept[i].expired()) << "all of the last round, " << i;
    }
    cache.Find(frames[1].get());
    cache.EndRound();
    cache.Find(frames[4].get());
    cache.EndRound();
    // 4 was shown last; 1 and two others may stay.
    EXPECT_FALSE(kept[4].expired());
    EXPECT_FALSE(kept[1].expired());
    int alive = 0;
    for (const auto& drawing : kept) {
        alive += drawing.expired() ? 0 : 1;
    }
    EXPECT_EQ(alive, 4);
    EXPECT_EQ(cache.Find(nullptr).drawing, nullptr);
    EXPECT_EQ(cache.Find(std::make_unique<Frame>(At(1)).get()).drawing, nullptr);
}

TEST_F(PictureCacheTest, ReadsManyAtOnceAsItReadsOne) {
    std::vector<std::unique_ptr<Frame>> frames;
    std::vector<const Frame*> list{nullptr};
    for (int i = 0; i < 20; ++i) {
        frames.push_back(std::make_unique<Frame>(At(i)));
        if (i % 5 != 4) { // else a frame without a picture
            QImage picture = PlainComposer::Blank();
            QPainter(&picture).fillRect(40 * i, 30 * i, 100 + i, 100, QColor(i, 10 * i, 200));
            frames.back()->SetImage(picture);
            frames.back()->PackImage();
        }
        list.push_back(frames.back().get());
        list.push_back(frames.back().get());
    }
    frames[7]->SetPackedImage("no picture");
    PictureCache cache;
    cache.ReadAll(list);
    PictureCache single;
    for (int i = 0; i < 20; ++i) {
        EXPECT_FALSE(frames[i]->IsUnpacked()) << i;
        const Picture one = single.Find(frames[i].get());
        const Picture many = cache.Find(frames[i].get());
        EXPECT_EQ(many.key, one.key) << i;
        ASSERT_EQ(many.drawing == nullptr, one.drawing == nullptr) << i;
        if (one.drawing) {
            PictureStack stack{one};
            QImage expected = PlainComposer::Blank();
            composite::Compose(expected, composite::CoverageOf(stack).occupied, stack);
            stack = {many};
            QImage found = PlainComposer::Blank();
            composite::Compose(found, composite::CoverageOf(stack).occupied, stack);
            EXPECT_EQ(found, expected) << i;
            EXPECT_EQ(i == 7, many.drawing->Coverage().occupied.IsEmpty()) << i;
        }
    }
    EXPECT_TRUE(frames[7]->IsDamaged());
}

TEST_F(PictureCacheTest, ReadsAheadUpToHalfOfItsRoom) {
    QImage square = PlainComposer::Blank();
    QPainter(&square).fillRect(0, 0, 160, 160, Qt::red);
    const std::size_t size = PackedTiles(square).ByteCount();
    PictureCache cache(4 * size);
    std::vector<std::unique_ptr<Frame>> frames;
    int ahead = 0;
    for (int i = 0; i < 6; ++i) {
        frames.push_back(std::make_unique<Frame>(At(i)));
        frames.back()->SetImage(square.copy());
        frames.back()->PackImage();
        ahead += cache.ReadAhead(frames.back().get()) ? 1 : 0;
        EXPECT_FALSE(cache.ReadAhead(frames.back().get())) << "twice, " << i;
        EXPECT_FALSE(frames.back()->IsUnpacked()) << i;
    }
    EXPECT_EQ(ahead, 3) << "the one that goes beyond the half is the last";
    const std::weak_ptr<const PackedTiles> shown = cache.Find(frames[0].get()).drawing;
    cache.EndRound();
    for (int i = 3; i < 6; ++i) {
        EXPECT_TRUE(cache.ReadAhead(frames[i].get())) << "room again, " << i;
    }
    cache.EndRound(); // six drawings, room for four
    EXPECT_FALSE(shown.expired());
    EXPECT_FALSE(cache.ReadAhead(frames[5].get())) << "still there";
    EXPECT_TRUE(cache.ReadAhead(frames[1].get())) << "went as one of the oldest";
    EXPECT_FALSE(cache.ReadAhead(nullptr));
    EXPECT_FALSE(cache.ReadAhead(std::make_unique<Frame>(At(1)).get())) << "without a picture";
}

} // namespace
} // namespace vellix
