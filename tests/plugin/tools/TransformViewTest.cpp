#include "paint/Stroke.h"
#include "plugin/tools/TransformFixture.h"

#include <maya/M3dView.h>
#include <maya/MPoint.h>

namespace vellix {
namespace {

/// What the tool shows, and how it gets along with what the view shows.
class TransformViewTest : public TransformFixture {
protected:
    /// What is on the screen, drawn anew only where the view itself means to.
    QImage Seen() {
        Settle(40);
        return View().grabFramebuffer().convertToFormat(QImage::Format_RGB32);
    }
    /// The pixels that differ: the rectangle that they lie in, and how many they are.
    static std::pair<QRect, int> Difference(const QImage& a, const QImage& b) {
        QRect box;
        int count = 0;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                if (a.pixel(x, y) != b.pixel(x, y)) {
                    box |= QRect(x, y, 1, 1);
                    ++count;
                }
            }
        }
        return {box, count};
    }
    /// An outline, one pixel wide, and nothing else.
    void ExpectOutline(const QImage& with, const QImage& without, const QRect& around) {
        const auto [box, count] = Difference(with, without);
        EXPECT_LE((box.topLeft() - around.topLeft()).manhattanLength(), 2);
        EXPECT_LE((box.bottomRight() - around.bottomRight()).manhattanLength(), 2);
        EXPECT_NEAR(count, 2 * (box.width() + box.height()) - 4, 4) << "corners apart";
    }
    /// Where a pixel of the image is seen in the active view, from its top left.
    QPoint OnView(const QPoint& pixel) {
        M3dView view = M3dView::active3dView();
        Node().UpdateOverlayValues(view);
        const MPoint point = Node().TexCoordsToScreenCoords(pixel);
        return {static_cast<int>(point.x), View().height() - 1 - static_cast<int>(point.y)};
    }
    void DragOnView(const QPoint& from, const QPoint& to, Qt::MouseButton button = Qt::LeftButton) {
        const QPoint shift = InView({0, 0});
        Drag(from - shift, to - shift, button);
    }
    /// The rectangle of all pixels of the colour; none if there are none.
    static QRect Coloured(const QImage& image, const std::function<bool(QRgb)>& test) {
        QRect box;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (test(image.pixel(x, y))) {
                    box |= QRect(x, y, 1, 1);
                }
            }
        }
        return box;
    }
};

TEST_F(TransformViewTest, AFrameWaitsForWhatElseComesWithADrag) {
    Begin();
    Draw(composite::TransparentImage());
    Press({300, 400});
    Move({320, 420});
    Settle(40);
    const unsigned before = View().FrameCount();
    Move({330, 430});
    Move({340, 440});
    QCoreApplication::sendPostedEvents(); // all that is due at once
    EXPECT_EQ(View().FrameCount(), before);
    View().Refresh(false);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(View().FrameCount(), before + 1) << "what others want is drawn at once, the drag with it";
    Settle(40);
    EXPECT_EQ(View().FrameCount(), before + 1);

    Move({350, 450});
    Settle(40);
    EXPECT_EQ(View().FrameCount(), before + 2) << "and a drag alone soon";
    Release({399, 459});
}

TEST_F(TransformViewTest, TheSelectionIsOutlinedUntilItEnds) {
    Begin();
    Draw(composite::TransparentImage());
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        SCOPED_TRACE(int(renderer));
        Use(renderer);
        const QImage plain = Seen();
        Press({300, 400});
        Move({320, 500});
        Move({399, 459});
        const QRect around(InView({300, 400}), InView({399, 459}));
        ExpectOutline(Seen(), plain, around);
        Release({399, 459});
        ExpectOutline(Seen(), plain, around);
        ExpectOutline(Grab(), plain, around);
        Key(Qt::Key_Return);
        ExpectOutline(Seen(), plain, around);
        Drag({100, 300}, {160, 280});
        ExpectOutline(Seen(), plain, around.translated(60, -20));
        ExpectOutline(Grab(), plain, around.translated(60, -20));
        Key(Qt::Key_Return);
        EXPECT_EQ(Seen(), plain);

        Select(QUARTERS);
        ExpectOutline(Seen(), plain, around);
        Select(QUARTERS.translated(50, 50));
        ExpectOutline(Seen(), plain, around.translated(50, 50));
        Run("setToolTo moveSuperContext");
        EXPECT_EQ(Seen(), plain);
        Activate();
        EXPECT_EQ(Seen(), plain);
        Select(QRect(500, 500, 1, 1));
        EXPECT_EQ(Seen(), plain) << "a click selects nothing";
        Key(Qt::Key_Backspace);
    }
}

// While it is dragged, the tool draws the outline as well, a pixel to the left of the node's.
TEST_F(TransformViewTest, TheNodesOutlineLiesAPixelToTheRight) {
    Begin();
    Draw(composite::TransparentImage());
    const QImage plain = Seen();
    const auto columns = [&](const QRect& around) {
        const QImage seen = Seen();
        QList<int> columns;
        for (int x = 0; x < seen.width(); ++x) {
            if (seen.pixel(x, around.center().y()) != plain.pixel(x, around.center().y())) {
                columns.append(x);
            }
        }
        return columns;
    };
    const QRect around(InView(QUARTERS.topLeft()), InView(QUARTERS.bottomRight()));
    const int left = around.left() + 60;
    const int right = around.right() + 60;
    Select(QUARTERS);
    Key(Qt::Key_Return);
    Press({100, 300});
    Move({160, 280});
    EXPECT_EQ(columns(around.translated(60, -20)), QList<int>({left, left + 1, right, right + 1}));
    Release({160, 280});
    EXPECT_EQ(columns(around.translated(60, -20)), QList<int>({left + 1, right + 1}));
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Seen(), plain);
}

// What a legacy viewport shows is undone by drawing it twice, whatever is below.
TEST_F(TransformViewTest, TheOutlineIsSeenOnEveryColour) {
    Begin(Renderer::Legacy);
    for (const QColor& color : {QColor(Qt::black), QColor(Qt::white), QColor(128, 128, 128)}) {
        QImage image = composite::TransparentImage();
        image.fill(color);
        Draw(image);
        const QImage plain = Grab();
        Press({300, 400});
        Move({399, 459});
        const QImage with = Seen();
        const QPoint at = InView({350, 400});
        int contrast = 0;
        for (int y = at.y() - 2; y <= at.y() + 2; ++y) {
            contrast =
                std::max(contrast, std::abs(qGreen(with.pixel(at.x(), y)) - qGreen(plain.pixel(at.x(), y))));
        }
        EXPECT_GE(contrast, 100) << color.name().toStdString();
        Release({399, 459});
        Key(Qt::Key_Backspace);
        EXPECT_EQ(Seen(), plain);
    }
}

TEST_F(TransformViewTest, KnowsWhereTheDrawingIsInEveryKindOfView) {
    Begin();
    Run("qmVellixLayer -add -ls 0 front; currentTime 1; lookThru modelPanel4 front; qmVellixFrame -insert");
    const auto isPart = [](QRgb pixel) {
        return pixel == qRgb(0, 255, 0) || pixel == qRgb(0, 0, 255) || pixel == qRgb(255, 255, 0);
    };
    for (const QString camera : {"persp", "front"}) {
        for (const double zoom : {0.0, 0.5, 1.7}) {
            SCOPED_TRACE(::testing::Message() << camera.toStdString() << " " << zoom);
            Run("lookThru modelPanel4 " + camera.toStdString());
            Draw(composite::TransparentImage(), camera);
            Run(QString("setAttr %1Shape.panZoomEnabled %2; setAttr %1Shape.zoom %3;"
                        "setAttr %1Shape.horizontalPan -0.1; setAttr %1Shape.verticalPan 0.05")
                    .arg(camera)
                    .arg(zoom > 0.0)
                    .arg(zoom > 0.0 ? zoom : 1.0)
                    .toStdString());
            Rest();
            // Without what is beside the quarters.
            Draw(Picture().copy(0, 0, 500, 1024).copy(0, 0, 1024, 1024), camera);
            DragOnView(OnView({295, 395}), OnView({404, 464}));
            Key(Qt::Key_Return);
            const Stroke* stroke = Node().HasActiveStroke() ? Node().GetActiveStroke(camera, false) : nullptr;
            ASSERT_NE(stroke, nullptr);
            const QRect region = stroke->selection;
            EXPECT_LE((region.topLeft() - QPoint(295, 395)).manhattanLength(), 4);
            EXPECT_LE((region.bottomRight() - QPoint(404, 464)).manhattanLength(), 4);
            DragOnView(OnView({400, 500}), OnView({440, 520}));
            EXPECT_NEAR(stroke->offsetX, 40, 2);
            EXPECT_NEAR(stroke->offsetY, 20, 2);
            const QPoint offset(stroke->offsetX, stroke->offsetY);

            // The outline surrounds what it is the outline of, also after the view has moved under it.
            const auto expectAround = [&] {
                const QImage seen = Grab();
                const QRect outline = Coloured(seen, [](QRgb pixel) { return pixel == qRgb(255, 0, 0); });
                const QRect part(OnView(region.topLeft() + offset), OnView(region.bottomRight() + offset));
                EXPECT_LE((outline.topLeft() - part.topLeft()).manhattanLength(), 5);
                EXPECT_LE((outline.bottomRight() - part.bottomRight()).manhattanLength(), 5);
                const QRect seenPart = Coloured(seen, isPart);
                EXPECT_FALSE(seenPart.isEmpty());
                EXPECT_TRUE(outline.contains(seenPart));
            };
            expectAround();
            if (zoom > 0.0) {
                Run(QString("setAttr %1Shape.zoom 0.8; setAttr %1Shape.horizontalPan 0")
                        .arg(camera)
                        .toStdString());
                expectAround();
                DragOnView(OnView({100, 500}), OnView({100, 500}));
                EXPECT_LE((QPoint(stroke->offsetX, stroke->offsetY) - offset).manhattanLength(), 2);
                expectAround();
            }
            Key(Qt::Key_Return);
            const QRect moved = Coloured(Current(camera), [](QRgb pixel) { return qAlpha(pixel) > 0; });
            EXPECT_LE((moved.topLeft() - QUARTERS.topLeft() - offset).manhattanLength(), 3);
            EXPECT_EQ(moved.size(), QUARTERS.size());
            Run("undo");
            Run(QString("setAttr %1Shape.panZoomEnabled 0").arg(camera).toStdString());
        }
    }
}

} // namespace
} // namespace vellix
