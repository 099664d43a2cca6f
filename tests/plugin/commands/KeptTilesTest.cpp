#include "commands/KeptTiles.h"

#include "paint/Composite.h"
#include "paint/Picture.h"
#include "paint/TileCoverage.h"
#include "paint/TilePatch.h"

#include <QColor>
#include <QImage>

#include <array>
#include <gtest/gtest.h>

namespace vellix {

TEST(KeptTilesTest, ThoseKeptFirstAreSqueezedAndLeadBackAllTheSame) {
    QImage before = composite::TransparentImage();
    QImage after = before.copy();
    after.fill(QColor(20, 60, 240, 128));
    TilePatch patch(before, TileCoverage::Of(after).occupied, before, &after);
    patch.SetKeys(Picture::NewKey(), Picture::NewKey());
    const QByteArray bytes = patch.TakeBytes(); // of a whole drawing, 4 MB
    ASSERT_GT(bytes.size(), 4 << 20);

    std::array<KeptTiles, 40> kept; // 160 MB of 64
    for (KeptTiles& tiles : kept) {
        tiles.Keep(bytes);
    }
    EXPECT_EQ(kept.back().Take(), bytes);
    const QByteArray squeezed = kept.front().Take();
    EXPECT_LT(squeezed.size(), bytes.size() / 10);
    TilePatch back(squeezed);
    ASSERT_FALSE(back.IsNull());
    QImage picture = before.copy();
    back.Reserve();
    back.Swap(picture);
    EXPECT_EQ(picture, after);

    int plain = 0;
    for (std::size_t i = 1; i + 1 < kept.size(); ++i) {
        plain += kept[i].Take().size() == bytes.size() ? 1 : 0;
    }
    EXPECT_GT(plain, 10);
    EXPECT_LE(plain, 16) << "no more than what they may take up";
}

} // namespace vellix
