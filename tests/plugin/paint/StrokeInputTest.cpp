// What happens to pen samples before they are painted: smoothing, thinning and the pressure curve.
#include "PaintTesting.h"
#include "paint/DrawUtil.h"
#include "paint/LineStyle.h"
#include "paint/StrokeSmoother.h"
#include "paint/TabletPressure.h"

#include <QLineF>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using vellix::LineStyle;
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
            pen.Move(i * 100, 0, size);
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

namespace {

constexpr double RADIUS = 150.0;

/// A stroke with a style, drawn at once from samples that come every 8 ms.
QList<vellix::StrokePoint> Drawn(const QList<QPoint>& samples, const LineStyle& style, int size = 4) {
    Pen pen(ToolType::Pencil);
    pen.smoother.Reset(style);
    for (const QPoint& sample : samples) {
        pen.Move(sample.x(), sample.y(), size);
    }
    pen.smoother.Finish(pen.stroke);
    return pen.stroke.points;
}

/// A circle around the middle of the image, by a hand that trembles by a pixel.
QList<QPoint> Circle(int milliseconds, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0.0, 1.0);
    QList<QPoint> samples;
    for (int time = 0; time <= milliseconds; time += 8) {
        const double angle = 2.0 * M_PI * time / milliseconds + seed;
        samples.append(QPointF(512.0 + RADIUS * std::cos(angle) + noise(random),
                               512.0 + RADIUS * std::sin(angle) + noise(random))
                           .toPoint());
    }
    return samples;
}

/// The root mean square of the line's distance from the circle, in pixels.
double DistanceFromCircle(const QList<vellix::StrokePoint>& points) {
    double sum = 0.0;
    int count = 0;
    for (int i = 1; i < points.size(); ++i) {
        const QLineF segment(points[i - 1].position, points[i].position);
        for (int part = 0; part < 20; ++part) {
            const double distance = QLineF(QPointF(512, 512), segment.pointAt(part / 20.0)).length() - RADIUS;
            sum += distance * distance;
            ++count;
        }
    }
    return std::sqrt(sum / count);
}

LineStyle Style(bool smoothCurves, int stabiliser) {
    LineStyle style;
    style.smoothCurves = smoothCurves;
    style.stabiliser = stabiliser;
    return style;
}

} // namespace

TEST(LineStyleTest, FastCirclesAreRoundAndEndAtThePen) {
    for (const int milliseconds : {600, 250, 130}) {
        double plain = 0.0;
        double curved = 0.0;
        for (unsigned seed = 0; seed < 20; ++seed) {
            const QList<QPoint> samples = Circle(milliseconds, seed);
            plain += DistanceFromCircle(Drawn(samples, LineStyle())) / 20;
            for (const int size : {1, 4, 40}) {
                const auto points = Drawn(samples, Style(true, 0), size);
                curved = std::max(curved, DistanceFromCircle(points));
                EXPECT_EQ(points.last().position, samples.last());
                EXPECT_LE(points.size(), 2 * M_PI * RADIUS / 3) << "points are three pixels apart at least";
            }
        }
        EXPECT_LT(curved, milliseconds == 130 ? std::min(plain / 3, 2.0) : 1.6)
            << milliseconds << " ms, without " << plain;
    }
}

TEST(LineStyleTest, ACornerWhereThePenStopsStaysSharp) {
    for (const double degrees : {75.0, 90.0, 135.0, 170.0}) {
        QList<QPoint> samples;
        QPointF at(200, 500);
        for (const double step : {20, 20, 20, 16, 9, 4, 2}) {
            samples.append((at += QPointF(step, 0)).toPoint());
        }
        const QPoint corner = samples.last();
        const double turned = degrees * M_PI / 180.0;
        for (const double step : {2, 4, 9, 16, 20, 20, 20}) {
            samples.append((at += step * QPointF(std::cos(turned), std::sin(turned))).toPoint());
        }
        double nearest = 1000.0;
        for (const auto& point : Drawn(samples, Style(true, 0))) {
            const QPoint from = point.position - corner;
            nearest = std::min(nearest, std::hypot(from.x(), from.y()));
            // Beyond the corner, neither to its right nor above the line.
            EXPECT_LE(from.x(), std::max(0.0, 91 * std::cos(turned)) + 1) << degrees;
            EXPECT_GE(from.y(), -1) << degrees;
        }
        EXPECT_LE(nearest, 1.0) << degrees;
    }
}

// The pen goes as fast as ever up to the corner, rests there, and goes on. It tells nothing while it rests,
// and a busy machine looks late now and then.
TEST(LineStyleTest, ACornerWhereThePenRestsStaysSharpHoweverUnevenlyItIsSampled) {
    std::mt19937 random(5);
    const auto between = [&random](double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random);
    };
    for (const double degrees : {75.0, 90.0, 135.0, 170.0}) {
        for (int run = 0; run < 60; ++run) {
            const QPointF out(std::cos(degrees * M_PI / 180.0), std::sin(degrees * M_PI / 180.0));
            const double speed = between(0.4, 2.0); // pixels a millisecond
            const double arrival = 200.0 / speed;
            constexpr double rest = 100.0;
            Stroke stroke;
            StrokeSmoother smoother;
            smoother.Reset(Style(true, 0));
            QPoint last;
            double time = between(0.0, 8.0);
            while (time < 2.0 * arrival + rest) {
                const double before = std::max(arrival - time, 0.0) * speed;
                const double after = std::max(time - arrival - rest, 0.0) * speed;
                const QPoint at = (QPointF(500 - before, 500) + after * out).toPoint();
                if (at != last) {
                    smoother.Receive(stroke, Sample(at.x(), at.y(), 4), at, time, QString());
                }
                last = at;
                time += 8.0 + (run % 4 == 0 ? between(0.0, 30.0) : between(0.0, 3.0));
            }
            smoother.Finish(stroke);
            double nearest = 1000.0;
            for (const auto& point : stroke.points) {
                const QPoint from = point.position - QPoint(500, 500);
                nearest = std::min(nearest, std::hypot(from.x(), from.y()));
                EXPECT_LE(from.x(), std::max(0.0, 201.0 * out.x()) + 1.0) << degrees << " run " << run;
                EXPECT_GE(from.y(), -1) << degrees << " run " << run;
            }
            EXPECT_LE(nearest, 1.5) << degrees << " run " << run;
        }
    }
}

TEST(LineStyleTest, TheTailReachesThePenAndIsNoPartOfTheStroke) {
    for (const bool sizeVaries : {false, true}) {
        LineStyle style = Style(true, 0);
        style.sizeVaries = sizeVaries;
        Pen pen(ToolType::Brush);
        Pen other(ToolType::Brush);
        pen.smoother.Reset(style);
        other.smoother.Reset(style);
        const auto samples = Circle(250, 3);
        for (int i = 0; i < samples.size(); ++i) {
            pen.Move(samples[i].x(), samples[i].y(), sizeVaries ? 20 + i : 20);
            other.Move(samples[i].x(), samples[i].y(), sizeVaries ? 20 + i : 20);
            EXPECT_TRUE(pen.smoother.DrawTail(pen.stroke));
            EXPECT_TRUE(pen.stroke.changed);
            EXPECT_FALSE(pen.smoother.DrawTail(pen.stroke)) << "once for each sample";
            const auto& end = pen.stroke.tail.isEmpty() ? pen.stroke.points : pen.stroke.tail;
            const QPoint off = end.last().position - samples[i];
            EXPECT_LE(std::max(std::abs(off.x()), std::abs(off.y())), sizeVaries ? 1 : 0) << i;
            ASSERT_EQ(pen.stroke.points.size(), other.stroke.points.size());
        }
        pen.smoother.Finish(pen.stroke);
        other.smoother.Finish(other.stroke);
        EXPECT_TRUE(pen.stroke.tail.isEmpty());
        ASSERT_EQ(pen.stroke.points.size(), other.stroke.points.size());
        for (int i = 0; i < pen.stroke.points.size(); ++i) {
            EXPECT_EQ(pen.stroke.points[i].position, other.stroke.points[i].position);
            EXPECT_EQ(pen.stroke.points[i].size, other.stroke.points[i].size);
        }
    }
    // A plain line and a string need none.
    for (const LineStyle& style : {LineStyle(), Style(false, 30), Style(true, 30)}) {
        Pen pen(ToolType::Pencil);
        pen.smoother.Reset(style);
        for (int i = 0; i < 20; ++i) {
            pen.Move(100 + 9 * i, 100);
            EXPECT_FALSE(pen.smoother.DrawTail(pen.stroke));
            EXPECT_TRUE(pen.stroke.tail.isEmpty());
        }
    }
}

TEST(LineStyleTest, SizeAndOpacityChangeEvenlyAlongTheCurve) {
    Pen pen(ToolType::Brush);
    pen.smoother.Reset(Style(true, 0));
    for (int i = 0; i < 10; ++i) {
        pen.Move(100 + 40 * i, 100 + 5 * i * i, 10 + 4 * i * i, 0.1f + 0.1f * i);
    }
    pen.smoother.Finish(pen.stroke);
    const auto& points = pen.stroke.points;
    ASSERT_GT(points.size(), 20);
    for (int i = 1; i < points.size(); ++i) {
        EXPECT_GE(points[i].size, points[i - 1].size);
        EXPECT_GE(points[i].opacity, points[i - 1].opacity);
    }
    EXPECT_EQ(points.first().size, 10);
    EXPECT_EQ(points.last().size, 10 + 4 * 81);
    EXPECT_FLOAT_EQ(points.last().opacity, 1.0f);
}

TEST(LineStyleTest, ASizeThatChangesDoesSoInSmallSteps) {
    for (const int stabiliser : {0, 20}) {
        Pen pen(ToolType::Pencil);
        pen.smoother.Reset(Style(false, stabiliser));
        for (int i = 0; i < 12; ++i) {
            pen.Move(100 + 60 * i, 100, i < 6 ? 2 + 8 * i : 90 - 8 * i);
        }
        pen.smoother.Finish(pen.stroke);
        const auto& points = pen.stroke.points;
        int largest = 0;
        for (int i = 1; i < points.size(); ++i) {
            EXPECT_LE(std::abs(points[i].size - points[i - 1].size), 2) << i;
            EXPECT_GT(points[i].position.x(), points[i - 1].position.x());
            largest = std::max(largest, points[i].size);
        }
        EXPECT_GE(largest, 30);
    }
}

TEST(LineStyleTest, TheEdgesOfALineWhoseSizeVariesAreEven) {
    for (const ToolType tool : {ToolType::Pencil, ToolType::Brush}) {
        for (const bool smoothCurves : {false, true}) {
            Stroke stroke;
            stroke.tool = tool;
            StrokeSmoother smoother;
            LineStyle style = Style(smoothCurves, 0);
            style.sizeVaries = true;
            smoother.Reset(style);
            for (int i = 0; i <= 60; ++i) {
                smoother.Receive(stroke, Sample(100 + 12 * i, 500, 4 + i * 36 / 60), QString());
            }
            smoother.Finish(stroke);
            QImage image = EmptyLayer();
            vellix::DrawUtil::DrawFreehand(image, stroke.points, 0, tool);
            const auto coverage = [&image](int x, int from, int to) {
                double sum = 0.0;
                for (int y = from; y < to; ++y) {
                    sum += AlphaAt(image, x, y) / 255.0;
                }
                return sum;
            };
            double largest[2] = {};
            for (int x = 140; x < 790; ++x) {
                for (const int side : {0, 1}) { // above and below the middle
                    const double here = coverage(x, side == 0 ? 440 : 500, side == 0 ? 500 : 560);
                    largest[side] = std::max(largest[side], here);
                    EXPECT_GE(here, largest[side] - (tool == ToolType::Pencil ? 0.1 : 0.45))
                        << int(tool) << smoothCurves << " x " << x << " side " << side;
                }
            }
        }
    }
}

TEST(LineStyleTest, CurvesFollowAPenBetweenPixels) {
    // A slow, almost level line: in whole pixels it is a staircase.
    double errors[2] = {};
    for (const bool exact : {false, true}) {
        Stroke stroke;
        StrokeSmoother smoother;
        smoother.Reset(Style(true, 0));
        for (int i = 0; i <= 60; ++i) {
            const QPointF at(100.0 + 1.7 * i, 200.3 + 0.13 * i);
            smoother.Receive(stroke, Sample(int(std::lround(at.x())), int(std::lround(at.y())), 4),
                             exact ? at : QPointF(at.toPoint()), 8.0 * i, QString());
        }
        smoother.Finish(stroke);
        for (const auto& point : stroke.points) {
            const double y = 200.3 + 0.13 * (point.position.x() - 100.0) / 1.7;
            errors[exact ? 1 : 0] += std::pow(point.position.y() - y, 2) / stroke.points.size();
        }
    }
    EXPECT_LT(errors[1], errors[0]);
    // A plain line, and one on a string alone, take whole pixels.
    for (const LineStyle& style : {LineStyle(), Style(false, 10)}) {
        QList<vellix::StrokePoint> drawn[2];
        for (const bool exact : {false, true}) {
            Stroke stroke;
            StrokeSmoother smoother;
            smoother.Reset(style);
            for (int i = 0; i < 30; ++i) {
                smoother.Receive(stroke, Sample(100 + 7 * i, 200 + i, 4),
                                 QPointF(100 + 7 * i + (exact ? 0.4 : 0.0), 200 + i), 8.0 * i, QString());
            }
            smoother.Finish(stroke);
            drawn[exact ? 1 : 0] = stroke.points;
        }
        ASSERT_EQ(drawn[0].size(), drawn[1].size());
        for (int i = 0; i < drawn[0].size(); ++i) {
            EXPECT_EQ(drawn[0][i].position, drawn[1][i].position);
        }
    }
}

TEST(LineStyleTest, ThePenDrawsTheBrushOnAString) {
    for (const bool smoothCurves : {false, true}) {
        Pen pen(ToolType::Pencil);
        pen.smoother.Reset(Style(smoothCurves, 50));
        pen.Move(100, 100);
        EXPECT_FALSE(pen.Move(130, 140).changed) << "the string is slack";
        EXPECT_EQ(pen.smoother.String(), QLineF(100, 100, 130, 140));
        for (int x = 150; x <= 600; x += 10) {
            pen.Move(x, 100);
        }
        EXPECT_EQ(pen.smoother.String(), QLineF(550, 100, 600, 100)) << "it follows along the string";
        for (const auto& point : pen.stroke.points) {
            EXPECT_LE(point.position.x(), 550);
        }
        EXPECT_TRUE(pen.smoother.Finish(pen.stroke).changed);
        EXPECT_EQ(pen.stroke.points.last().position, QPoint(600, 100)) << "it catches up";
    }
}

TEST(LineStyleTest, AClickLeavesADot) {
    for (const LineStyle& style : {Style(true, 0), Style(false, 30), Style(true, 30)}) {
        const auto points = Drawn({{100, 100}, {101, 100}}, style);
        ASSERT_EQ(points.size(), 2);
        EXPECT_EQ(points[0].position, QPoint(100, 100));
        EXPECT_EQ(points[1].position, QPoint(101, 100));
    }
}

TEST(LineStyleTest, WithoutAStyleNothingIsAddedAtTheEnd) {
    Pen pen(ToolType::Pencil);
    pen.smoother.Reset();
    for (const QPoint& sample : Circle(250, 1)) {
        pen.Move(sample.x(), sample.y(), 4);
    }
    const int count = pen.stroke.points.size();
    EXPECT_FALSE(pen.smoother.Finish(pen.stroke).changed);
    EXPECT_EQ(pen.stroke.points.size(), count);
}

TEST(LineStyleTest, WildPositionsEnd) {
    for (const LineStyle& style : {Style(true, 0), Style(true, 100), Style(false, 100)}) {
        QList<QPoint> samples;
        for (int i = 0; i < 12; ++i) {
            const int far = i % 2 == 0 ? std::numeric_limits<int>::max() : std::numeric_limits<int>::min();
            samples.append({far, -1 - far});
        }
        EXPECT_GE(Drawn(samples, style).size(), 2);
    }
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
