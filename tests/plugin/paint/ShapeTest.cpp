#include "PaintTesting.h"
#include "paint/DrawUtil.h"

#include <QPainter>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using vellix::DrawUtil;
using vellix::Stroke;
using vellix::ToolType;

namespace {

const ToolType SHAPES[] = {ToolType::Line, ToolType::Arrow, ToolType::Ellipse, ToolType::Rectangle};

Stroke Shape(ToolType tool, const QPoint& from, const QPoint& to, int size = 4, float opacity = 1.0f) {
    Stroke stroke;
    stroke.tool = tool;
    stroke.color = QColor(200, 40, 20);
    stroke.points = {Sample(from.x(), from.y(), size, opacity), Sample(to.x(), to.y(), size, opacity)};
    return stroke;
}

QImage Drawn(const Stroke& stroke, bool editing = false) {
    QImage image(1024, 1024, QImage::Format_RGBA8888);
    image.fill(Qt::blue); // to be cleared
    DrawUtil::DrawStroke(image, stroke, editing);
    return image;
}

QRect Inked(const QImage& image) {
    return Difference(image, EmptyLayer(Qt::transparent));
}

int HighestAlpha(const QImage& image) {
    int highest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            highest = std::max(highest, AlphaAt(image, x, y));
        }
    }
    return highest;
}

Stroke Text(const QString& text, int size = 30) {
    Stroke stroke;
    stroke.tool = ToolType::Text;
    stroke.color = Qt::black;
    stroke.text = text;
    stroke.points = {Sample(300, 400, size)};
    return stroke;
}

} // namespace

TEST(Shapes, FillTheRectangleBetweenTheirPointsWhicheverWayItWasDragged) {
    const QRect spanned(298, 198, 204, 154); // with half of the pen's width
    for (const ToolType tool : SHAPES) {
        EXPECT_EQ(Inked(Drawn(Shape(tool, {300, 200}, {500, 350}))), spanned) << int(tool);
    }
    for (const ToolType tool : {ToolType::Ellipse, ToolType::Rectangle}) {
        const QImage forward = Drawn(Shape(tool, {300, 200}, {500, 350}));
        EXPECT_EQ(Drawn(Shape(tool, {500, 200}, {300, 350})), forward);
        EXPECT_EQ(Drawn(Shape(tool, {500, 350}, {300, 200})), forward);
        EXPECT_EQ(AlphaAt(forward, 400, 275), 0); // an outline
    }
}

TEST(Shapes, LookLikeWhatTheyAre) {
    const auto alpha = [](const QImage& image, double x, double y) {
        return AlphaAt(image, int(std::lround(x)), int(std::lround(y)));
    };
    // An arrow to the right has two head lines of 40 pixels, 36 degrees above and below its shaft.
    const QImage arrow = Drawn(Shape(ToolType::Arrow, {200, 500}, {600, 500}, 6));
    const double angle = 36.0 * M_PI / 180.0;
    for (const double along : {10.0, 20.0, 38.0}) {
        const double back = along * std::cos(angle);
        const double aside = along * std::sin(angle);
        EXPECT_GT(alpha(arrow, 600.0 - back, 500.0 - aside), 200) << along;
        EXPECT_GT(alpha(arrow, 600.0 - back, 500.0 + aside), 200) << along;
    }
    EXPECT_EQ(alpha(arrow, 580, 506), 0) << "nothing between the shaft and the head";
    EXPECT_EQ(alpha(arrow, 220, 512), 0) << "no head at its start";

    // An ellipse touches the rectangle in the middle of the sides and keeps clear of the corners.
    const QImage ellipse = Drawn(Shape(ToolType::Ellipse, {300, 200}, {500, 300}, 6));
    const QImage rectangle = Drawn(Shape(ToolType::Rectangle, {300, 200}, {500, 300}, 6));
    const double diagonal = std::sqrt(0.5);
    for (const double x : {-1.0, 1.0}) {
        for (const double y : {-1.0, 1.0}) {
            EXPECT_EQ(alpha(ellipse, 400 + 100 * x, 250 + 50 * y), 0);
            EXPECT_GT(alpha(ellipse, 400 + 100 * x * diagonal, 250 + 50 * y * diagonal), 200);
            EXPECT_GT(alpha(rectangle, 400 + 100 * x, 250 + 50 * y), 200);
            EXPECT_EQ(alpha(rectangle, 400 + 100 * x * diagonal, 250 + 50 * y * diagonal), 0);
        }
    }
    EXPECT_GT(alpha(ellipse, 400, 200), 200);
    EXPECT_GT(alpha(ellipse, 300, 250), 200);
}

TEST(Shapes, HaveRoundEnds) {
    for (const ToolType tool : {ToolType::Line, ToolType::Arrow}) {
        const QImage image = Drawn(Shape(tool, {300, 200}, {600, 200}, 40));
        EXPECT_EQ(AlphaAt(image, 283, 200), 255) << "a flat end would stop at 300";
        EXPECT_EQ(AlphaAt(image, 283, 183), 0) << "a square end would fill the corner";
        EXPECT_EQ(AlphaAt(image, 287, 188), 255) << "inside the circle";
    }
}

TEST(Shapes, NeedTwoPoints) {
    for (const ToolType tool : SHAPES) {
        Stroke stroke = Shape(tool, {300, 200}, {500, 350});
        stroke.points.removeLast();
        EXPECT_TRUE(Inked(Drawn(stroke)).isEmpty()) << int(tool);
    }
    for (const ToolType tool : {ToolType::Pencil, ToolType::Brush, ToolType::Eraser, ToolType::Transform}) {
        EXPECT_TRUE(Inked(Drawn(Shape(tool, {300, 200}, {500, 350}))).isEmpty()) << int(tool);
    }
    EXPECT_TRUE(Inked(Drawn(Stroke())).isEmpty());
}

TEST(Shapes, OpacityIsLaidOnOnce) {
    for (const ToolType tool : SHAPES) {
        const QImage image = Drawn(Shape(tool, {300, 200}, {500, 350}, 24, 0.5f));
        EXPECT_NEAR(HighestAlpha(image), 127, 1) << int(tool);
    }
}

TEST(Shapes, ArrowHeadsAreForty) {
    struct Case {
        QPoint start;
        QPoint tip;
        double length;
    };
    const Case cases[] = {{{100, 500}, {200, 500}, 20.0},
                          {{100, 500}, {700, 500}, 40.0},
                          {{700, 500}, {500, 500}, 40.0},
                          {{500, 100}, {500, 150}, 10.0},
                          {{0, 0}, {300, 400}, 40.0}};
    for (const Case& c : cases) {
        for (const float angle : {0.62831855f, -0.62831855f}) {
            const QPoint head = DrawUtil::GetArrowHeadPoint(c.start, c.tip, angle);
            const QPointF shaft = c.start - c.tip;
            const QPointF line = head - c.tip;
            const double length = std::hypot(line.x(), line.y());
            EXPECT_NEAR(length, c.length, 1.5);
            const double turn = std::atan2(shaft.x() * line.y() - shaft.y() * line.x(),
                                           shaft.x() * line.x() + shaft.y() * line.y());
            EXPECT_NEAR(turn, double(angle), 1.5 / c.length);
        }
    }
    EXPECT_EQ(DrawUtil::GetArrowHeadPoint({100, 500}, {200, 500}, 0.62831855f), QPoint(183, 488));
    EXPECT_EQ(DrawUtil::GetArrowHeadPoint({7, 7}, {7, 7}, 0.62831855f), QPoint(7, 7));
}

TEST(Shapes, WildValuesNeitherHangNorCrash) {
    constexpr int far = 1 << 30;
    for (const ToolType tool : SHAPES) {
        EXPECT_EQ(AlphaAt(Drawn(Shape(tool, {500, 500}, {500, far}, 2000000000)), 500, 1000), 255)
            << int(tool);
        Drawn(Shape(tool, {-far, -far}, {far, far}, -7, std::numeric_limits<float>::quiet_NaN()));
        Drawn(Shape(tool, {far, far}, {far, far}, 50));
    }
    EXPECT_EQ(AlphaAt(Drawn(Shape(ToolType::Line, {-far, 500}, {far, 500}, 6)), 500, 500), 255);
    EXPECT_EQ(AlphaAt(Drawn(Shape(ToolType::Rectangle, {-far, 500}, {far, far}, 6)), 500, 500), 255);
    QImage none;
    DrawUtil::DrawStroke(none, Shape(ToolType::Line, {1, 1}, {9, 9}), false);
    EXPECT_TRUE(none.isNull());
}

TEST(TextStroke, StandsBelowAndRightOfItsPoint) {
    const QRect one = Inked(Drawn(Text("Hg")));
    EXPECT_TRUE(QRect(295, 400, 120, 80).contains(one));
    EXPECT_GT(one.height(), 25);
    const QRect two = Inked(Drawn(Text("Hg\nHg")));
    EXPECT_EQ(two.left(), one.left());
    EXPECT_GT(two.height(), 2 * one.height());
    EXPECT_GT(Inked(Drawn(Text("Hg", 60))).height(), 3 * one.height() / 2);
    EXPECT_FALSE(Inked(Drawn(Text("Hg", -3))).isEmpty());
    Stroke nowhere = Text("Hg");
    nowhere.points.clear();
    EXPECT_TRUE(Inked(Drawn(nowhere, true)).isEmpty());
}

TEST(TextStroke, HasItsFontAndItsOpacity) {
    // In a font of one width, ten narrow letters push the next as far as ten wide ones.
    const auto endAfter = [](const char* family, QChar letter) {
        Stroke stroke = Text(QString(10, letter) + "H");
        stroke.fontFamily = family;
        return Inked(Drawn(stroke)).right();
    };
    EXPECT_NEAR(endAfter("DejaVu Sans Mono", 'i'), endAfter("DejaVu Sans Mono", 'W'), 2);
    EXPECT_LT(endAfter("DejaVu Sans", 'i') + 150, endAfter("DejaVu Sans", 'W'));

    Stroke faint = Text("HHH", 60);
    faint.points[0].opacity = 0.5f;
    EXPECT_EQ(HighestAlpha(Drawn(Text("HHH", 60))), 255);
    EXPECT_NEAR(HighestAlpha(Drawn(faint)), 127, 1);
}

TEST(TextStroke, ShowsACaretWhereTheNextLetterGoes) {
    const auto caretOf = [](Stroke stroke, int caret) {
        const QImage without = Drawn(stroke, true);
        stroke.caret = caret;
        return Difference(Drawn(stroke, true), without);
    };
    Stroke stroke = Text("HH\nH");
    const QRect letter = Inked(Drawn(Text("H")));
    const QRect first = caretOf(stroke, 0);
    const QRect second = caretOf(stroke, 1);
    const QRect last = caretOf(stroke, 4);
    EXPECT_LE(first.width(), 3);
    EXPECT_GT(first.height(), letter.height());
    EXPECT_NEAR(first.left(), 300, 1);
    EXPECT_GT(second.left(), letter.right());
    EXPECT_EQ(second.top(), first.top());
    EXPECT_NEAR(last.left(), second.left(), 1) << "after the first letter of the second line";
    EXPECT_GT(last.top(), letter.bottom());
    EXPECT_LT(last.bottom(), Inked(Drawn(stroke, true)).bottom()) << "inside the frame";
    EXPECT_TRUE(Difference(Drawn(stroke), Drawn(Text("HH\nH"))).isEmpty()) << "no part of the drawing";
}

TEST(TextStroke, IsFramedWhileItIsTyped) {
    EXPECT_TRUE(Inked(Drawn(Text(""))).isEmpty());
    const QRect frame = Inked(Drawn(Text(""), true));
    EXPECT_GT(frame.height(), 30);
    EXPECT_LT(frame.left(), 300);
    const QRect typed = Inked(Drawn(Text("Hg"), true));
    EXPECT_GT(typed.width(), frame.width());
    EXPECT_TRUE(typed.contains(Inked(Drawn(Text("Hg")))));
}

namespace {

QImage Lifted(int width, int height) {
    QImage image(width, height, QImage::Format_RGBA8888);
    image.fill(QColor(0, 120, 90, 255));
    image.setPixelColor(0, 0, QColor(255, 0, 0, 255));
    return image;
}

QImage Transformed(const Stroke& stroke, const QImage& lifted) {
    QImage image = EmptyLayer(Qt::transparent);
    QPainter painter(&image);
    DrawUtil::DrawTransform(painter, stroke, lifted);
    return image;
}

} // namespace

TEST(TransformStroke, LandsOnTheSelection) {
    struct Case {
        QRect selection;
        float rotation;
        double scaleX;
        double scaleY;
        bool pasted;
        QRect expected;
    };
    const Case cases[] = {
        {{100, 200, 31, 21}, 0, 1, 1, false, {105, 193, 31, 21}},    // odd extents
        {{-7, -12, 30, 22}, 0, 1, 1, false, {0, 0, 28, 3}},          // partly outside
        {{100, 200, 30, 20}, 0, 1, 1, false, {105, 193, 30, 20}},    // even ones
        {{100, 200, 31, 21}, 0, -1, 1, false, {105, 193, 31, 21}},   // flipped
        {{100, 200, 31, 21}, 90, 1, 1, false, {110, 188, 21, 31}},   // on its side
        {{100, 200, 30, 20}, 0, 2, 3, false, {90, 173, 60, 60}},     // enlarged about its middle
        {{100, 200, 30, 20}, 90, 2, 1, false, {110, 173, 20, 60}},   // along its own axis, then turned
        {{100, 200, 30, 20}, 45, 3, 3, true, {105, 193, 30, 20}},    // pasted: as it is
        {{-10, -20, 31, 21}, 0, 1, 1, false, {0, 0, 26, 0}},         // out at the top
        {{100, 200, 30, 20}, 0, 0, 1, false, {}},                    // no extent
        {{500, 500, 30, 20}, 0, 200, 0.5, false, {0, 498, 1024, 10}} // larger than any image of its own
    };
    for (const Case& c : cases) {
        Stroke stroke;
        stroke.tool = ToolType::Transform;
        stroke.selection = c.selection;
        stroke.offsetX = 5;
        stroke.offsetY = -7;
        stroke.rotation = c.rotation;
        stroke.scaleX = c.scaleX;
        stroke.scaleY = c.scaleY;
        stroke.pasted = c.pasted;
        const QRect inked = Inked(Transformed(stroke, Lifted(c.selection.width(), c.selection.height())));
        EXPECT_EQ(inked, c.expected.intersected(QRect(0, 0, 1024, 1024)))
            << "selection " << c.selection.left() << " rotation " << c.rotation << " scale " << c.scaleX
            << " got " << inked.x() << ' ' << inked.y() << ' ' << inked.width() << ' ' << inked.height();
    }
}

TEST(TransformStroke, WildValuesNeitherHangNorOverflow) {
    Stroke stroke;
    stroke.selection.setCoords(-(1 << 30), -2147483647, 1 << 30, 2147483647);
    stroke.offsetX = 2147483647;
    for (const double scale : {1.0, 1e9, 1e300, std::numeric_limits<double>::infinity()}) {
        stroke.scaleX = stroke.scaleY = scale;
        stroke.rotation = scale > 1e9 ? std::numeric_limits<float>::quiet_NaN() : 33.0f;
        Transformed(stroke, Lifted(30, 20));
        Transformed(stroke, QImage());
    }
    stroke = Stroke();
    stroke.selection = QRect(500, 500, 30, 20);
    stroke.scaleX = stroke.scaleY = 1e5;
    EXPECT_EQ(AlphaAt(Transformed(stroke, Lifted(30, 20)), 3, 1000), 255);
}
