// What happens to pen samples before they are painted: smoothing, thinning and the pressure curve.
#include "PaintTesting.h"
#include "paint/DrawUtil.h"
#include "paint/StrokeSmoother.h"
#include "paint/TabletPressure.h"

#include <gtest/gtest.h>
#include <limits>

using vellix::Stroke;
using vellix::StrokeSmoother;
using vellix::TabletPressure;
using vellix::ToolType;

namespace {

struct Pen {
    explicit Pen(ToolType tool) { stroke.tool = tool; }

    StrokeSmoother::Outcome Move(int x, int y, int size = 1, float opacity = 1.0f) {
        stroke.changed = false;
        const StrokeSmoother::Outcome outcome =
            smoother.Receive(stroke, Sample(x, y, size, opacity), "Serif");
        EXPECT_EQ(outcome.changed, stroke.changed);
        return outcome;
    }

    QPoint At(int index) const { return stroke.points.at(index).position; }

    Stroke stroke;
    StrokeSmoother smoother;
};

} // namespace

TEST(StrokeSmootherTest, AClickIsTwoPointsAPixelApart) {
    Pen pen(ToolType::Pencil);
    EXPECT_FALSE(pen.Move(100, 200).firstSegment);
    EXPECT_EQ(pen.At(0), QPoint(100, 200));
    EXPECT_TRUE(pen.Move(101, 200).firstSegment);
    EXPECT_EQ(pen.At(1), QPoint(101, 200)); // 100 2/3
    EXPECT_FALSE(pen.Move(110, 200).firstSegment);
}

TEST(StrokeSmootherTest, TheNewestOfFiveWeighsMost) {
    Pen pen(ToolType::Brush);
    const int xs[] = {-100, 0, 30, 90, 300, 330};
    float opacity = 0.0f;
    for (const int x : xs) {
        pen.Move(x, -x, 1, opacity);
        opacity += 0.2f;
    }
    ASSERT_EQ(pen.stroke.points.size(), 6);
    EXPECT_EQ(pen.At(1), QPoint(-33, 33));   // -100 / 3
    EXPECT_EQ(pen.At(4), QPoint(123, -123)); // 1850 / 15
    EXPECT_EQ(pen.At(5).x(), 212);           // 3180 / 15, the first sample forgotten
    EXPECT_FLOAT_EQ(pen.stroke.points.at(5).opacity, (5 * 1.0f + 4 * 0.8f + 3 * 0.6f + 2 * 0.4f + 0.2f) / 15);
}

TEST(StrokeSmootherTest, HalvesGoTowardPositiveInfinity) {
    // Three samples weigh 1, 2 and 3 sixths.
    Pen right(ToolType::Pencil);
    right.Move(0, 0);
    right.Move(3, 0);
    right.Move(5, 0);
    EXPECT_EQ(right.At(2).x(), 4); // 21 / 6 = 3.5
    Pen left(ToolType::Pencil);
    left.Move(0, 0);
    left.Move(-3, 0);
    left.Move(-5, 0);
    EXPECT_EQ(left.At(2).x(), -3); // -3.5
}

TEST(StrokeSmootherTest, PointsCloserThanATenthOfTheSizeAreDropped) {
    for (const int size : {70, 71}) {
        Pen pen(ToolType::Pencil);
        for (int i = 0; i < 4; ++i) {
            pen.Move(i * 100, 0, 1);
        }
        pen.smoother.Reset();
        const int last = pen.At(3).x();
        EXPECT_EQ(pen.Move(last + 7, 0, size).changed, size == 70);
        EXPECT_EQ(pen.stroke.points.size(), size == 70 ? 5 : 4);
        // A dropped sample is out of the history as well: the next one stands alone again.
        if (size == 71) {
            EXPECT_TRUE(pen.Move(last + 50, 0, size).changed);
            EXPECT_EQ(pen.At(4).x(), last + 50);
        }
    }
}

TEST(StrokeSmootherTest, ASampleOnTheLastPointIsDropped) {
    Pen pen(ToolType::Eraser);
    pen.Move(100, 100);
    pen.Move(100, 100);
    EXPECT_EQ(pen.stroke.points.size(), 2);
    EXPECT_FALSE(pen.Move(100, 100).changed);
    EXPECT_EQ(pen.stroke.points.size(), 2);
}

TEST(StrokeSmootherTest, ShapesKeepAnAnchorAndALiveEnd) {
    for (const ToolType tool : {ToolType::Line, ToolType::Arrow, ToolType::Ellipse, ToolType::Rectangle}) {
        Pen pen(tool);
        pen.Move(100, 100);
        pen.Move(101, 100);
        EXPECT_EQ(pen.At(0), QPoint(101, 100));
        EXPECT_EQ(pen.At(1), QPoint(100, 100));
        EXPECT_TRUE(pen.Move(300, 250).changed);
        EXPECT_TRUE(pen.Move(320, 270).changed);
        ASSERT_EQ(pen.stroke.points.size(), 2);
        EXPECT_EQ(pen.At(0), QPoint(101, 100));
        EXPECT_EQ(pen.At(1), QPoint(320, 270));
        EXPECT_TRUE(pen.stroke.fontFamily.isEmpty());
    }
}

TEST(StrokeSmootherTest, TextFollowsThePen) {
    Pen pen(ToolType::Text);
    pen.Move(100, 100);
    EXPECT_TRUE(pen.Move(140, 160).changed);
    ASSERT_EQ(pen.stroke.points.size(), 1);
    EXPECT_EQ(pen.At(0), QPoint(140, 160));
    EXPECT_EQ(pen.stroke.fontFamily, QString("Serif"));
}

TEST(StrokeSmootherTest, TransformOnlyNeedsARedraw) {
    Pen pen(ToolType::Transform);
    EXPECT_TRUE(pen.Move(1, 1).changed);
    EXPECT_TRUE(pen.stroke.points.isEmpty());
}

TEST(StrokeSmootherTest, WildPositionsDoNotOverflow) {
    Pen pen(ToolType::Brush);
    for (int i = 0; i < 12; ++i) {
        const int far = i % 2 == 0 ? std::numeric_limits<int>::max() : std::numeric_limits<int>::min();
        pen.Move(far, -1 - far, std::numeric_limits<int>::max());
        pen.Move(far, -1 - far, -5);
    }
    EXPECT_GE(pen.stroke.points.size(), 2);
}

TEST(TabletPressureTest, Curve) {
    struct Case {
        double raw;
        float expected;
    };
    const Case cases[] = {
        {0.04, 0.0f},    {0.0799, 0.0f}, {0.08, 0.15f}, {0.1, 0.15f},
        {0.15, 0.15f},   {0.3, 0.3f},    {0.5, 0.5f},   {0.75, 0.875f},
        {0.89, 0.9758f}, {0.91, 1.0f},   {0.99, 1.0f},  {1.0, 1.0f},
        {1e-300, 0.0f},  {0.0, 0.42f},   {-0.0, 0.42f}, {std::numeric_limits<double>::quiet_NaN(), 0.42f}};
    for (const Case& c : cases) {
        EXPECT_FLOAT_EQ(TabletPressure::Curve(c.raw, 0.42f), c.expected) << c.raw;
    }
}
