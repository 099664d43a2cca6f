#include "PaintTesting.h"
#include "ReferencePainter.h"
#include "paint/BrushGrid.h"
#include "paint/DrawUtil.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>

using vellix::BrushGrid;
using vellix::DrawUtil;
using vellix::StrokePoint;
using vellix::TileMask;
using vellix::ToolType;

namespace {

const ToolType FREEHAND[] = {ToolType::Pencil, ToolType::Brush, ToolType::Eraser};

// A stroke of short and long segments, back and forth, that leaves the image now and then.
QList<StrokePoint> RandomStroke(std::mt19937& random, int size, bool pressure) {
    std::uniform_int_distribution<int> place(-150, 1170);
    std::uniform_int_distribution<int> step(-40, 40);
    std::uniform_int_distribution<int> count(2, 12);
    std::uniform_real_distribution<float> opacity(0.0f, 1.0f);
    QPoint at(place(random), place(random));
    const float fixed = opacity(random);
    QList<StrokePoint> points;
    for (int i = count(random); i > 0; --i) {
        points.append(Sample(at.x(), at.y(), size, pressure ? opacity(random) : fixed));
        at += i % 5 == 0 ? QPoint(place(random), place(random)) - at : QPoint(step(random), step(random));
    }
    return points;
}

// A picture with every alpha in it, so that what is below the stroke matters.
QImage Ramp() {
    QImage image = EmptyLayer();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.scanLine(y)[4 * x + 3] = uchar((x * 3 + y) & 0xff);
        }
    }
    return image;
}

TileMask ChangedTiles(const QImage& a, const QImage& b) {
    TileMask changed;
    TileMask::All().ForEach([&](int row, int column) {
        const QRect tile(column * TileMask::TILE_WIDTH, row * TileMask::TILE_WIDTH, TileMask::TILE_WIDTH,
                         TileMask::TILE_WIDTH);
        if (a.copy(tile) != b.copy(tile)) {
            changed.Add(row, column);
        }
    });
    return changed;
}

} // namespace

TEST(Freehand, MatchesTheDocumentedArithmeticToTheBit) {
    std::mt19937 random(20180501);
    for (const ToolType tool : FREEHAND) {
        for (const int size : {1, 2, 3, 4, 6, 18, 19, 20, 21, 30, 40, 99, 100}) {
            if (tool == ToolType::Brush && size == 1) {
                continue; // an anti-aliased line, below
            }
            for (const bool pressure : {false, true}) {
                const QList<StrokePoint> stroke = RandomStroke(random, size, pressure);
                const QImage before = Ramp();
                QImage expected = before;
                ReferencePainter(expected).DrawFreehand(stroke, tool);
                QImage image = before;
                const TileMask touched = DrawUtil::DrawFreehand(image, stroke, 0, tool);
                EXPECT_EQ(Difference(image, expected), QRect())
                    << "tool " << int(tool) << " size " << size << " pressure " << pressure;
                EXPECT_EQ(touched | ChangedTiles(image, before), touched)
                    << "tool " << int(tool) << " size " << size;
            }
        }
    }
}

TEST(Freehand, BrushStampsOnTheHardWalkMatchToTheBit) {
    for (const int size : {1, 2, 3, 10, 19, 20, 60}) {
        QImage expected = EmptyLayer();
        ReferencePainter(expected).Segment(80, 100, 300, 160, size, 0.9f, 0.3f, ToolType::Brush);
        QImage image = EmptyLayer();
        DrawUtil::DrawFreehandSegment(image, 80, 100, 300, 160, size, 0.9f, 0.3f, 1.0f, ToolType::Brush);
        EXPECT_EQ(Difference(image, expected), QRect()) << "size " << size;
    }
}

TEST(Freehand, PiecesMakeTheWholeStroke) {
    std::mt19937 random(7);
    for (const ToolType tool : FREEHAND) {
        const QList<StrokePoint> stroke = RandomStroke(random, 24, true);
        QImage whole = Ramp();
        DrawUtil::DrawFreehand(whole, stroke, 0, tool);
        QImage grown = Ramp();
        for (int count = 2; count <= stroke.size(); ++count) {
            DrawUtil::DrawFreehand(grown, stroke.mid(0, count), count - 2, tool);
        }
        EXPECT_EQ(Difference(whole, grown), QRect());
        const QImage kept = grown;
        EXPECT_TRUE(DrawUtil::DrawFreehand(grown, stroke, stroke.size() - 1, tool).IsEmpty());
        EXPECT_TRUE(DrawUtil::DrawFreehand(grown, stroke.mid(0, 1), 0, tool).IsEmpty());
        EXPECT_EQ(grown, kept);
    }
}

TEST(Freehand, SmallBrushRampsInTheDirectionOfTheStroke) {
    for (const QPoint& end : {QPoint(900, 500), QPoint(124, 520), QPoint(500, 900), QPoint(520, 124)}) {
        QImage image = EmptyLayer();
        const QPoint start(512, 512);
        DrawUtil::DrawFreehand(image,
                               {Sample(start.x(), start.y(), 30, 0.2f), Sample(end.x(), end.y(), 30, 1.0f)},
                               0, ToolType::Brush);
        const QPoint nearStart = start + (end - start) / 8;
        const QPoint nearEnd = start + (end - start) * 7 / 8;
        EXPECT_NEAR(AlphaAt(image, nearStart.x(), nearStart.y()), 0.3 * 255, 12);
        EXPECT_NEAR(AlphaAt(image, nearEnd.x(), nearEnd.y()), 0.9 * 255, 12);
    }
}

// A brush of size 1 has the opacity of a segment's first point all along it.
TEST(Freehand, SizeOneBrushKeepsTheOpacityOfTheFirstPoint) {
    for (const int from : {100, -10000}) { // a segment from far outside too
        QImage image = EmptyLayer();
        DrawUtil::DrawFreehand(image, {Sample(from, 500, 1, 0.2f), Sample(900, 500, 1, 1.0f)}, 0,
                               ToolType::Brush);
        for (const int x : {150, 500, 850}) {
            EXPECT_NEAR(AlphaAt(image, x, 500), 0.2 * 255, 1) << from << " " << x;
        }
    }
}

// The opacity changes evenly along a segment. One of 20000 pixels shows its middle in the image.
TEST(Freehand, ASegmentFromFarOutsideHasTheOpacitiesOfItsMiddle) {
    for (const ToolType tool : {ToolType::Pencil, ToolType::Brush}) {
        QImage image = EmptyLayer();
        DrawUtil::DrawFreehand(image, {Sample(-10000, 500, 30, 0.0f), Sample(10000, 500, 30, 1.0f)}, 0, tool);
        for (const int x : {20, 500, 1000}) {
            EXPECT_NEAR(AlphaAt(image, x, 500), (x + 10000) / 20000.0 * 255.0, 2) << int(tool) << " " << x;
        }
    }
}

TEST(Freehand, SizeOneBrushIsALineWithoutGaps) {
    QImage image = EmptyLayer();
    QList<StrokePoint> points;
    for (int x = 100; x <= 200; x += 10) {
        points.append(Sample(x, 300 + (x - 100) / 2, 1, 0.6f));
    }
    DrawUtil::DrawFreehand(image, points, 0, ToolType::Brush);
    for (int x = 100; x <= 200; ++x) {
        int column = 0;
        for (int y = 290; y < 360; ++y) {
            column += AlphaAt(image, x, y);
        }
        EXPECT_NEAR(column, 153, 1) << "column " << x;
    }
}

TEST(Freehand, SinglePixelsLeaveColumnZeroAlone) {
    QImage image = EmptyLayer();
    DrawUtil::DrawFreehand(image, {Sample(-3, 5), Sample(3, 5)}, 0, ToolType::Pencil);
    DrawUtil::DrawFreehand(image, {Sample(7, 3), Sample(7, -3)}, 0, ToolType::Pencil);
    EXPECT_EQ(AlphaAt(image, 0, 5), 0);
    EXPECT_EQ(AlphaAt(image, 1, 5), 255);
    EXPECT_EQ(AlphaAt(image, 7, 0), 255);
    EXPECT_DOUBLE_EQ(Coverage(image), 3 + 4);
}

TEST(Freehand, WildPositionsCostNoMoreThanALongLine) {
    constexpr int far = 1 << 30;
    for (const ToolType tool : FREEHAND) {
        for (const int size : {1, 30, 100}) {
            // Through the image on the same line as an ordinary stroke: the same pixels, whatever the ends.
            QImage wild = EmptyLayer(QColor(1, 2, 3, 255 * (tool == ToolType::Eraser)));
            QImage near = wild;
            DrawUtil::DrawFreehand(wild, {Sample(-far, 500, size), Sample(far, 500, size)}, 0, tool);
            DrawUtil::DrawFreehand(near, {Sample(-200, 500, size), Sample(1223, 500, size)}, 0, tool);
            for (const int x : {1, 300, 1023}) {
                EXPECT_EQ(AlphaAt(wild, x, 499), AlphaAt(near, x, 499))
                    << int(tool) << ' ' << size << ' ' << x;
            }
            // Past it: nothing.
            QImage missed = near;
            EXPECT_TRUE(
                DrawUtil::DrawFreehand(missed, {Sample(-far, -far, size), Sample(far, -far, size)}, 0, tool)
                    .IsEmpty());
            EXPECT_TRUE(
                DrawUtil::DrawFreehand(missed, {Sample(far, far, size), Sample(far, far, size)}, 0, tool)
                    .IsEmpty());
            EXPECT_EQ(missed, near);
        }
    }
}

TEST(Freehand, SettingsOutOfRangeAreBounded) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const ToolType tool : FREEHAND) {
        QImage image = Ramp();
        const QImage before = image;
        DrawUtil::DrawFreehand(
            image, {Sample(50, 50, 2000000000, nan), Sample(90, 60, -5, 9.0f), Sample(70, 70, 0, -1)}, 0,
            tool);
        const QRect changed = Difference(image, before);
        EXPECT_EQ(changed | QRect(0, 0, 150, 150), QRect(0, 0, 150, 150));
    }
    QImage grey(64, 64, QImage::Format_Grayscale8);
    grey.fill(7);
    const QImage before = grey;
    QImage none;
    EXPECT_TRUE(
        DrawUtil::DrawFreehand(grey, {Sample(5, 5, 9), Sample(9, 9, 9)}, 0, ToolType::Pencil).IsEmpty());
    EXPECT_TRUE(
        DrawUtil::DrawFreehand(none, {Sample(5, 5, 9), Sample(9, 9, 9)}, 0, ToolType::Pencil).IsEmpty());
    EXPECT_EQ(grey, before);
}

TEST(Freehand, ACopyOfTheImageKeepsItsPixels) {
    QImage image = EmptyLayer();
    const QImage copy = image;
    DrawUtil::DrawFreehand(image, {Sample(5, 5, 9), Sample(9, 9, 9)}, 0, ToolType::Pencil);
    EXPECT_GT(Coverage(image), 0.0);
    EXPECT_EQ(Coverage(copy), 0.0);
}

// --- the grid ---------------------------------------------------------------------------------------------

TEST(BrushGridTest, RadiusOneIsFourCells) {
    for (const ToolType tool : FREEHAND) {
        DrawUtil::UpdateGridWu(0.0f, 1.0f, 0.5f, tool);
        int filled = 0;
        for (int i = 0; i < BrushGrid::SIDE; ++i) {
            for (int j = 0; j < BrushGrid::SIDE; ++j) {
                const bool inside = (i == 1 || i == 2) && (j == 1 || j == 2);
                filled += DrawUtil::Grid().Cell(i, j) != 0;
                EXPECT_EQ(DrawUtil::Grid().Cell(i, j), inside ? 127 : 0);
            }
        }
        EXPECT_EQ(filled, 4);
    }
}

TEST(BrushGridTest, PencilDiscIsSymmetricRoundAndCentred) {
    for (int size = 3; size <= 100; ++size) {
        const float radius = 0.5f * float(size);
        DrawUtil::UpdateGridWu(0.0f, radius, 1.0f, ToolType::Pencil);
        const BrushGrid& grid = DrawUtil::Grid();
        const int centre = int(radius + 1.0f);
        double sum = 0.0;
        for (int i = 0; i < BrushGrid::SIDE; ++i) {
            for (int j = 0; j < BrushGrid::SIDE; ++j) {
                const int cell = grid.Cell(i, j);
                const double distance = std::hypot(i - centre, j - centre);
                sum += cell / 255.0;
                ASSERT_EQ(cell, grid.Cell(j, i)) << "size " << size;
                const int mirrored = 2 * centre - i;
                ASSERT_EQ(cell, mirrored < BrushGrid::SIDE && mirrored >= 0 ? grid.Cell(mirrored, j) : 0);
                // Full up to the radius, empty a cell beyond; a cell on the radius itself may round either
                // way.
                if (distance < double(radius) - 0.01) {
                    ASSERT_EQ(cell, 255) << "size " << size << " at " << i << ", " << j;
                } else if (distance >= double(radius) + 1.0) {
                    ASSERT_EQ(cell, 0) << "size " << size << " at " << i << ", " << j;
                }
            }
        }
        const double area = 3.14159265 * (double(radius) + 0.5) * (double(radius) + 0.5);
        EXPECT_NEAR(sum / area, 1.0, size < 12 ? 0.08 : 0.02) << "size " << size;
    }
}

TEST(BrushGridTest, CentresWhereTheToolsPutThem) {
    struct Case {
        ToolType tool;
        int size;
        int offset; // of the disc's centre from the sample, in both axes
    };
    const Case cases[] = {{ToolType::Pencil, 20, 0},  {ToolType::Pencil, 21, -1}, {ToolType::Pencil, 100, 0},
                          {ToolType::Pencil, 99, -1}, {ToolType::Eraser, 20, -1}, {ToolType::Eraser, 21, -2},
                          {ToolType::Brush, 20, -1},  {ToolType::Brush, 21, -2},  {ToolType::Brush, 18, 0},
                          {ToolType::Brush, 19, -1}};
    for (const Case& c : cases) {
        QImage image = EmptyLayer(QColor(0, 0, 0, c.tool == ToolType::Eraser ? 255 : 0));
        const QImage before = image;
        // Both samples at one place; the soft brush's second stamp, one pixel on, has a flow of 0.
        DrawUtil::DrawFreehand(image, {Sample(500, 500, c.size), Sample(500, 500, c.size)}, 0, c.tool);
        const QRect changed = Difference(image, before);
        EXPECT_EQ(changed.left() + changed.right(), 2 * (500 + c.offset)) << int(c.tool) << ' ' << c.size;
        EXPECT_EQ(changed.top() + changed.bottom(), 2 * (500 + c.offset)) << int(c.tool) << ' ' << c.size;
    }
}

TEST(BrushGridTest, AdditiveStampsBuildUpToTheCapAndNeverLower) {
    QImage image = EmptyLayer();
    image.scanLine(500)[4 * 500 + 3] = 240;
    DrawUtil::UpdateBrushGrid(40, 20.0f, 1.0f, ToolType::Brush);
    int last = 0;
    for (int i = 0; i < 40; ++i) {
        DrawUtil::PlotAdditiveBrush(image, 500, 500, 20.0f, 0.25f, 0.6f);
        const int alpha = AlphaAt(image, 510, 505);
        EXPECT_GE(alpha, last);
        EXPECT_LE(alpha, 153);
        last = alpha;
    }
    EXPECT_EQ(last, 153);
    EXPECT_EQ(AlphaAt(image, 500, 500), 240);
}

TEST(BrushGridTest, StampsOverhangingAnEdgeKeepInside) {
    for (const QPoint& at :
         {QPoint(0, 0), QPoint(1023, 0), QPoint(0, 1023), QPoint(1023, 1023), QPoint(-49, 500)}) {
        QImage image = EmptyLayer();
        QImage larger(2048, 2048, QImage::Format_RGBA8888);
        larger.fill(Qt::transparent);
        DrawUtil::UpdateGridWu(0.0f, 50.0f, 1.0f, ToolType::Pencil);
        DrawUtil::PlotGrid(image, at.x() - 50, at.y() - 50, at.x() + 51, at.y() + 51);
        // A larger picture is painted on in its first 1024 x 1024 pixels only.
        DrawUtil::PlotGrid(larger, at.x() - 50, at.y() - 50, at.x() + 51, at.y() + 51);
        EXPECT_NEAR(Coverage(image), Coverage(larger), 1e-6);
        EXPECT_GT(Coverage(image), 0.0);
        EXPECT_LT(Coverage(image), 8012.0 / 3);
        const QImage stamped = image;
        for (const int far : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
            DrawUtil::PlotGrid(image, far, far, far, far);
            DrawUtil::PlotAdditiveBrush(image, far, 500, 50.0f, 1.0f, 1.0f);
        }
        EXPECT_EQ(image, stamped);
    }
}
