#include "paint/WuPrimitives.h"

#include "PaintTesting.h"

#include <gtest/gtest.h>
#include <limits>

TEST(WuPrimitives, ScalarFunctionsTruncateTowardZero) {
    struct Case {
        float x;
        int whole;
        int rounded;
        float fraction;
    };
    const Case cases[] = {{2.75f, 2, 3, 0.75f},  {0.0f, 0, 0, 0.0f},   {-0.7f, 0, 0, 1.7f},
                          {-1.5f, -1, -1, 1.5f}, {-1.0f, -1, 0, 1.0f}, {0.5f, 0, 1, 0.5f}};
    for (const Case& c : cases) {
        EXPECT_EQ(vellix::ipart_(c.x), c.whole) << c.x;
        EXPECT_EQ(vellix::round_(c.x), c.rounded) << c.x;
        EXPECT_FLOAT_EQ(vellix::fpart_(c.x), c.fraction) << c.x;
        EXPECT_FLOAT_EQ(vellix::rfpart_(c.x), 1.0f - c.fraction) << c.x;
    }
    EXPECT_EQ(vellix::ipart_(1e20f), std::numeric_limits<int>::max());
    EXPECT_EQ(vellix::ipart_(-1e20f), std::numeric_limits<int>::min());
    EXPECT_EQ(vellix::ipart_(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST(WuPrimitives, PlotOnlyRaisesAlphaInsideTheImage) {
    struct Case {
        int before;
        float coverage;
        int after;
    };
    const Case cases[] = {
        {255, 1.0f, 255}, {200, 0.5f, 200}, {100, 0.5f, 127}, {0, 1.5f, 255}, {9, -1.0f, 9}};
    for (const Case& c : cases) {
        QImage image = EmptyLayer(QColor(10, 20, 30, c.before));
        vellix::plot_(image, 1023, 7, c.coverage);
        EXPECT_EQ(image.pixelColor(1023, 7), QColor(10, 20, 30, c.after));
        const QImage plotted = image;
        for (const QPoint& outside : {QPoint(-1, 7), QPoint(1024, 7), QPoint(7, -1), QPoint(7, 1024)}) {
            vellix::plot_(image, outside.x(), outside.y(), 1.0f);
        }
        EXPECT_EQ(image, plotted);
    }
}

TEST(WuPrimitives, CirclesFadeFromTheCentreAndAreSymmetric) {
    for (const float radius : {3.0f, 12.0f, 49.5f, 120.0f}) {
        QImage image = EmptyLayer();
        vellix::drawCircleWu(image, 500, 400, radius, 1.0f);
        EXPECT_EQ(AlphaAt(image, 500, 400), 255);
        // A cone of height 1.
        EXPECT_NEAR(Coverage(image) / (3.14159265 * double(radius * radius) / 3.0), 1.0, 0.12) << radius;
        QRect drawn = Difference(image, EmptyLayer());
        EXPECT_EQ(drawn.left() + drawn.right(), 1000);
        EXPECT_EQ(drawn.top() + drawn.bottom(), 800);
        EXPECT_LE(drawn.width(), int(2 * radius) + 1);
    }
    QImage image = EmptyLayer();
    vellix::ciclePlot(image, 100.5f, 100.5f, 4.0f, 2.0f, 0.5f);
    EXPECT_EQ(AlphaAt(image, 96, 98) + AlphaAt(image, 104, 98) + AlphaAt(image, 96, 102) +
                  AlphaAt(image, 104, 102),
              4 * 127);
}

TEST(WuPrimitives, WildCirclesEnd) {
    QImage image = EmptyLayer();
    vellix::drawCircleWu(image, 1 << 30, -(1 << 30), 1e30f, 1.0f);
    vellix::drawCircleWu(image, 500, 500, std::numeric_limits<float>::quiet_NaN(), 1.0f);
    EXPECT_EQ(Coverage(image), 0.0);
    vellix::drawCircleWu(image, 512, 512, 1e30f, 1.0f);
    EXPECT_GE(AlphaAt(image, 0, 512), 250);
}

TEST(WuPrimitives, LinesHaveOnePixelOfCoverageAtEveryStep) {
    const QPoint ends[] = {{700, 500}, {300, 500}, {500, 700}, {500, 300}, {740, 601},
                           {260, 399}, {601, 260}, {399, 740}, {620, 620}, {500, 500}};
    for (const QPoint& end : ends) {
        QImage image = EmptyLayer();
        vellix::drawLineWu(image, 500, 500, end.x(), end.y(), 1.0f);
        const int steps = std::max(std::abs(end.x() - 500), std::abs(end.y() - 500));
        EXPECT_NEAR(Coverage(image), steps + 1, 0.01 * steps) << end.x() << ", " << end.y();
        EXPECT_EQ(AlphaAt(image, 500, 500), 255);
        EXPECT_EQ(AlphaAt(image, end.x(), end.y()), 255);
        QImage back = EmptyLayer();
        vellix::drawLineWu(back, end.x(), end.y(), 500, 500, 1.0f);
        EXPECT_EQ(image, back);
    }
}

TEST(WuPrimitives, LinesLeavingTheImageAtTheTopLeftStayThin) {
    QImage image = EmptyLayer();
    vellix::drawLineWu(image, -60, -15, 60, 15, 1.0f);
    for (int x = 0; x < 56; ++x) {
        int column = 0;
        for (int y = 0; y < 20; ++y) {
            column += AlphaAt(image, x, y);
        }
        EXPECT_NEAR(column, 255, 2) << "column " << x;
    }
}
