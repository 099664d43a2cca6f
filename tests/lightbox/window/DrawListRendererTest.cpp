#include "viewport/DrawListRenderer.h"

#include "OffscreenGl.h"
#include "openmaya/Texture.h"

#include <QPainter>

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using lightbox::DrawItem;
using lightbox::DrawList;
using lightbox::DrawListRenderer;
using lightbox::Texture;

/// A framebuffer to draw lists into, of a known background.
class DrawListRendererTest : public ::testing::Test {
protected:
    QImage Draw(const DrawList& list, const QSize& size, double ratio = 1.0) {
        const QSize pixels(qRound(size.width() * ratio), qRound(size.height() * ratio));
        return gl_.Picture(pixels, BACK, [&] { renderer_.Draw(list, size, ratio); });
    }

    /// Strokes, soft edges and single pixels, of every alpha.
    static std::shared_ptr<Texture> Picture(int side) {
        auto texture = std::make_shared<Texture>();
        texture->image = QImage(side, side, QImage::Format_RGBA8888);
        std::mt19937 random(7);
        for (int y = 0; y < side; ++y) {
            auto* const row = reinterpret_cast<quint32*>(texture->image.scanLine(y));
            for (int x = 0; x < side; ++x) {
                row[x] = random();
            }
        }
        texture->revision = 1;
        return texture;
    }
    static DrawItem Square(const std::shared_ptr<Texture>& texture, const QPointF& center, double side) {
        DrawItem item;
        item.kind = DrawItem::Kind::Rectangle;
        item.filled = true;
        item.texture = texture;
        item.position = center;
        item.halfWidth = item.halfHeight = side / 2.0;
        return item;
    }
    /// The largest difference in a channel between the framebuffer and the picture over the background with
    /// its upper left corner at a pixel.
    static int Difference(const QImage& drawn, const QImage& picture, const QPoint& corner, double opacity) {
        int largest = 0;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                const QPoint at = QPoint(x, y) - corner;
                const QColor over = picture.rect().contains(at) ? picture.pixelColor(at) : QColor(0, 0, 0, 0);
                const double alpha = over.alphaF() * opacity;
                const QColor now = drawn.pixelColor(x, y);
                const auto channel = [&](int source, int back, int result) {
                    const int wanted = static_cast<int>(std::lround(source * alpha + back * (1.0 - alpha)));
                    largest = std::max(largest, std::abs(wanted - result));
                };
                channel(over.red(), BACK.red(), now.red());
                channel(over.green(), BACK.green(), now.green());
                channel(over.blue(), BACK.blue(), now.blue());
            }
        }
        return largest;
    }

    static inline const QColor BACK{107, 109, 112};
    OffscreenGl gl_;
    DrawListRenderer renderer_;
};

TEST_F(DrawListRendererTest, ATextureAtItsOwnSizeIsCopiedPixelByPixel) {
    struct Row {
        QSize view;
        double ratio;
        QPointF center;
        double side;
        double opacity;
        QPoint corner;
    };
    const Row rows[] = {
        {{80, 80}, 1.0, {40, 40}, 64, 1.0, {8, 8}},
        // Views of odd size: the half pixel goes left and up, as the tools count pixels.
        {{81, 81}, 1.0, {40.5, 40.5}, 64, 1.0, {8, 8}},
        {{81, 80}, 1.0, {40.5, 40}, 64, 0.5, {8, 8}},
        {{80, 61}, 1.0, {40, 30.5}, 64, 1.0, {8, -2}},
        {{80, 80}, 1.0, {33.25, 40}, 64, 1.0, {1, 8}},
        // Screens of high resolution: a gate of 64 pixels of the screen.
        {{40, 40}, 2.0, {20, 20}, 32, 1.0, {8, 8}},
        {{54, 54}, 1.5, {27, 27}, 64 / 1.5, 1.0, {8, 8}},
    };
    const auto texture = Picture(64);
    for (const Row& row : rows) {
        DrawItem item = Square(texture, row.center, row.side);
        item.color = QColor::fromRgbF(1.0, 1.0, 1.0, row.opacity);
        const QImage drawn = Draw({item}, row.view, row.ratio);
        EXPECT_LE(Difference(drawn, texture->image, row.corner, row.opacity), 2)
            << row.view.width() << " x " << row.view.height() << " at " << row.ratio;
    }
}

TEST_F(DrawListRendererTest, NothingBleedsInFromWhatIsTransparent) {
    // White next to transparent black: at any size no pixel may be darker than the background.
    auto texture = std::make_shared<Texture>();
    texture->image = QImage(64, 64, QImage::Format_RGBA8888);
    texture->image.fill(Qt::transparent);
    QPainter(&texture->image).fillRect(20, 0, 9, 64, Qt::white);
    for (const double side : {20.0, 40.0, 63.0, 70.5, 150.0}) {
        const QImage drawn = Draw({Square(texture, {80, 80}, side)}, {160, 160});
        int brightest = 0;
        for (int x = 0; x < drawn.width(); ++x) {
            EXPECT_GE(drawn.pixelColor(x, 80).red(), BACK.red() - 1) << side << " at " << x;
            brightest = std::max(brightest, drawn.pixelColor(x, 80).red());
        }
        EXPECT_GT(brightest, 180) << side;
    }
}

TEST_F(DrawListRendererTest, ATextureIsUploadedAgainOnlyWhenItsRevisionRose) {
    const auto texture = Picture(32);
    const DrawList list{Square(texture, {40, 40}, 32)};
    for (int i = 0; i < 3; ++i) {
        Draw(list, {80, 80});
    }
    EXPECT_EQ(renderer_.UploadCount(), 1u);
    texture->image.fill(QColor(255, 0, 0));
    EXPECT_NE(Draw(list, {80, 80}).pixelColor(40, 40), QColor(255, 0, 0));
    texture->Changed(texture->image.rect());
    EXPECT_EQ(Draw(list, {80, 80}).pixelColor(40, 40), QColor(255, 0, 0));
    EXPECT_EQ(renderer_.UploadCount(), 2u);
    // Of two changes that were not drawn in between, both are seen, and nothing of what was not told.
    texture->image.fill(QColor(0, 255, 0));
    texture->Changed({10, 10, 4, 2});
    texture->Changed({20, 12, 4, 2});
    const QImage parts = Draw(list, {80, 80});
    EXPECT_EQ(parts.pixelColor(24 + 10, 24 + 10), QColor(0, 255, 0));
    EXPECT_EQ(parts.pixelColor(24 + 23, 24 + 13), QColor(0, 255, 0));
    EXPECT_EQ(parts.pixelColor(24 + 10, 24 + 20), QColor(255, 0, 0));
    for (int i = 0; i < 40; ++i) {
        texture->Changed({0, 0, 1, 1});
    }
    EXPECT_EQ(Draw(list, {80, 80}).pixelColor(40, 40), QColor(0, 255, 0)) << "too many to be told apart";
    // A texture that changes its size is a new one on the card.
    texture->image = QImage(16, 16, QImage::Format_RGBA8888);
    texture->image.fill(QColor(0, 0, 255));
    texture->Changed(texture->image.rect());
    EXPECT_EQ(Draw(list, {80, 80}).pixelColor(40, 40), QColor(0, 0, 255));
}

TEST_F(DrawListRendererTest, LaterItemsLieOverEarlierOnesUnlessTheirPriorityIsLower) {
    const auto box = [](const QColor& color, unsigned priority) {
        DrawItem item;
        item.kind = DrawItem::Kind::Rectangle;
        item.filled = true;
        item.color = color;
        item.position = {10, 10};
        item.halfWidth = item.halfHeight = 5;
        item.depthPriority = priority;
        return item;
    };
    EXPECT_EQ(Draw({box(Qt::red, 0), box(Qt::green, 0)}, {20, 20}).pixelColor(10, 10), QColor(Qt::green));
    EXPECT_EQ(Draw({box(Qt::red, 5), box(Qt::green, 2)}, {20, 20}).pixelColor(10, 10), QColor(Qt::red));
    EXPECT_EQ(Draw({box(Qt::red, 5), box(Qt::green, 5)}, {20, 20}).pixelColor(10, 10), QColor(Qt::green));
}

TEST_F(DrawListRendererTest, StraightLinesAreAsWideAsAskedForAndLieOnWholePixels) {
    struct Row {
        float width;
        double ratio;
        int pixels;
    };
    for (const Row& row : {Row{1, 1, 1}, Row{2, 1, 2}, Row{3, 1, 3}, Row{1, 2, 2}, Row{1, 1.5, 2}}) {
        DrawItem line;
        line.kind = DrawItem::Kind::Line;
        line.lineWidth = row.width;
        line.color = Qt::white;
        line.position = {2, 20};
        line.end = {38, 20};
        const QImage drawn = Draw({line}, {40, 40}, row.ratio);
        int full = 0;
        for (int y = 0; y < drawn.height(); ++y) {
            const QColor color = drawn.pixelColor(drawn.width() / 2, y);
            full += color == QColor(Qt::white);
            EXPECT_TRUE(color == QColor(Qt::white) || color == BACK) << row.width << " at " << row.ratio;
        }
        EXPECT_EQ(full, row.pixels) << row.width << " at " << row.ratio;
    }
}

TEST_F(DrawListRendererTest, CirclesSlantedLinesAndTurnedBoxesCoverTheirArea) {
    const auto covered = [&](const DrawItem& item) {
        const QImage drawn = Draw({item}, {100, 100});
        double sum = 0.0;
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x < 100; ++x) {
                sum += (drawn.pixelColor(x, y).red() - BACK.red()) / (255.0 - BACK.red());
            }
        }
        return sum;
    };
    DrawItem item;
    item.color = Qt::white;
    item.position = {50, 50};
    item.kind = DrawItem::Kind::Circle;
    item.radius = 30;
    EXPECT_NEAR(covered(item), 2 * M_PI * 30, 40);
    item.filled = true;
    EXPECT_NEAR(covered(item), M_PI * 900, 60);
    item.kind = DrawItem::Kind::Rectangle;
    item.halfWidth = 20;
    item.halfHeight = 10;
    item.up = QPointF(std::sqrt(0.5), std::sqrt(0.5));
    EXPECT_NEAR(covered(item), 800, 40);
    item.kind = DrawItem::Kind::Line;
    item.lineWidth = 2;
    item.position = {20, 20};
    item.end = {80, 60};
    EXPECT_NEAR(covered(item), 2 * std::hypot(60, 40), 20);
}

TEST_F(DrawListRendererTest, TextStandsOnItsBaseLineAtTheSideAskedFor) {
    const auto box = [&](Qt::Alignment alignment, double ratio) {
        DrawItem item;
        item.kind = DrawItem::Kind::Text;
        item.text = "HHHHH";
        item.color = Qt::white;
        item.fontSize = 16;
        item.position = {100, 50};
        item.alignment = alignment;
        const QImage drawn = Draw({item}, {200, 100}, ratio);
        QRect bounds;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                if (drawn.pixelColor(x, y).red() > 200) {
                    bounds |= QRect(x, y, 1, 1);
                }
            }
        }
        return bounds;
    };
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const double slack = 4.5 * ratio;
        EXPECT_NEAR(box(Qt::AlignLeft, ratio).left(), 100 * ratio, slack);
        EXPECT_NEAR(box(Qt::AlignRight, ratio).right(), 100 * ratio, slack);
        EXPECT_NEAR(box(Qt::AlignHCenter, ratio).center().x(), 100 * ratio, slack);
        EXPECT_NEAR(box(Qt::AlignLeft, ratio).bottom(), 50 * ratio, slack);
        EXPECT_GT(box(Qt::AlignLeft, ratio).height(), 9 * ratio);
    }
}
