#include "viewport/ViewFrame.h"

#include "OffscreenGl.h"
#include "lightbox/MelFixture.h"
#include "openmaya/Texture.h"
#include "scene/DagNode.h"
#include "scene/Plug.h"
#include "scene/Scene.h"
#include "viewport/DrawListRenderer.h"

#include <cmath>
#include <random>

using namespace lightbox;

class ViewFrameTest : public MelFixture {
protected:
    static constexpr int SIDE = 200;

    ViewFrame Frame(const DrawList& overlay, double pixelRatio = 1.0) {
        auto& shape = static_cast<DagNode&>(*host_.scene().Find("perspShape"));
        return {DrawnScene(host_.scene(), CameraView(shape, SIDE, SIDE), shape, options_), overlay,
                pixelRatio};
    }
    static std::shared_ptr<Texture> Noise(int side) {
        auto texture = std::make_shared<Texture>();
        texture->image = QImage(side, side, QImage::Format_RGBA8888);
        FillWithNoise(*texture, texture->image.rect());
        return texture;
    }
    static void FillWithNoise(Texture& texture, const QRect& area) {
        static std::mt19937 random(3);
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                texture.image.setPixel(x, y, random());
            }
        }
        texture.Changed(area);
    }
    static DrawItem Square(const std::shared_ptr<Texture>& texture, double side) {
        DrawItem item;
        item.kind = DrawItem::Kind::Rectangle;
        item.filled = true;
        item.texture = texture;
        item.position = {SIDE / 2.0, SIDE / 2.0};
        item.halfWidth = item.halfHeight = side / 2.0;
        return item;
    }
    static QRect Differences(const QImage& a, const QImage& b) {
        QRect area;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                if (a.pixel(x, y) != b.pixel(x, y)) {
                    area |= QRect(x, a.height() - 1 - y, 1, 1);
                }
            }
        }
        return area;
    }

    DisplayOptions options_;
};

TEST_F(ViewFrameTest, ChangedTexelsAreSeenWithinTheAreaAndTheAreaIsNarrow) {
    OffscreenGl gl;
    DrawListRenderer renderer;
    std::mt19937 random(11);
    const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (const double ratio : {1.0, 1.5, 2.0}) {
        for (const double scale : {0.11, 0.3, 0.59, 0.61, 0.97, 1.0, 1.7, 4.0}) {
            for (const double degrees : {0.0, 30.0}) {
                const auto texture = Noise(128);
                DrawItem item = Square(texture, 128 * scale);
                item.position += QPointF(upTo(90) / 10.0, upTo(90) / 10.0);
                item.up = {std::sin(degrees * M_PI / 180.0), std::cos(degrees * M_PI / 180.0)};
                const auto draw = [&](const ViewFrame& frame) {
                    return gl.Picture(frame.Area().size(), Qt::gray, [&] {
                        renderer.Draw(frame.Overlay(), {SIDE, SIDE}, ratio);
                    });
                };
                const ViewFrame before = Frame({item}, ratio);
                const QImage first = draw(before);
                const QRect texels(upTo(112), upTo(112), 1 + upTo(16), 1 + upTo(16));
                FillWithNoise(*texture, texels);
                const ViewFrame after = Frame({item}, ratio);
                const QRect seen = Differences(first, draw(after));
                const QRect area = after.ChangedSince(before);
                EXPECT_TRUE(area.contains(seen) || seen.isEmpty())
                    << "scale " << scale << ", ratio " << ratio << ", " << degrees << " degrees";
                if (degrees == 0.0) {
                    const double room = 2.0 * (2.0 * std::max(2.0, scale * ratio) + 4.0);
                    EXPECT_LE(area.width(), texels.width() * scale * ratio + room) << scale << " " << ratio;
                }
            }
        }
    }
}

TEST_F(ViewFrameTest, WhateverElseIsAnotherIsDrawnWhole) {
    Run("polySphere -n ball; spaceLocator -n mark; select -cl");
    const auto texture = Noise(16);
    const DrawItem square = Square(texture, 16);
    DrawItem moved = square;
    moved.position += QPointF(1, 0);
    DrawItem other = square;
    other.texture = Noise(16);
    DrawItem fainter = square;
    fainter.color.setAlphaF(0.5);
    EXPECT_TRUE(Frame({square}).ChangedSince(Frame({square})).isEmpty());
    const QRect whole(0, 0, SIDE, SIDE);
    for (const DrawList& list : {DrawList(), DrawList{square, square}, {moved}, {other}, {fainter}}) {
        EXPECT_EQ(Frame(list).ChangedSince(Frame({square})), whole);
    }
    EXPECT_EQ(Frame({square}, 2.0).ChangedSince(Frame({square})), QRect(0, 0, 2 * SIDE, 2 * SIDE));
    for (const char* line :
         {"setAttr persp.tx 3", "setAttr perspShape.pze 1; setAttr perspShape.zoom 0.5", "setAttr ball.ty 1",
          "setAttr polySphere1.r 2", "setAttr lambert1.c 1 0 0", "select ball", "select mark",
          "setAttr mark.s 2 2 2", "setAttr ball.v 0", "setAttr mark.v 0", "camera"}) {
        const ViewFrame before = Frame({square});
        Run(line);
        EXPECT_EQ(Frame({square}).ChangedSince(before), whole) << line;
        EXPECT_TRUE(Frame({square}).ChangedSince(Frame({square})).isEmpty()) << line;
    }
    const ViewFrame before = Frame({square});
    options_.grid = false;
    EXPECT_EQ(Frame({square}).ChangedSince(before), whole);
}
