// Where strokes begin and end: in a new scene, at the release, and when the view changes under the pointer.
#include "plugin/tools/DrawToolFixture.h"
#include "tools/EventClock.h"
#include "tools/LateSamples.h"
#include "viewport/PanelLayout.h"

#include <maya/M3dView.h>

#include <QApplication>
#include <QMouseEvent>
#include <QThread>

#include <atomic>
#include <thread>

namespace vellix {

namespace {

class StrokeEndsTest : public DrawToolFixture {
protected:
    /// The image pixel of a place in the view, as it is sampled.
    QPoint Sampled(const QPoint& point) {
        M3dView view = M3dView::active3dView();
        return ViewPlacement::For(view).ToImage(QPoint(point.x() + 1, View().height() + 1 - point.y()));
    }
    /// The pixels that were drawn on; empty if there are none.
    static QRect Ink(const QString& camera = "persp") {
        const QImage drawing = Drawing(camera);
        QRect ink;
        for (int y = 0; y < drawing.height(); ++y) {
            for (int x = 0; x < drawing.width(); ++x) {
                if (drawing.pixelColor(x, y).alpha() > 0) {
                    ink |= QRect(x, y, 1, 1);
                }
            }
        }
        return ink;
    }
    QImage Grab() { return View().grabFramebuffer().convertToFormat(QImage::Format_RGB32); }
    /// Moves as fast as a hand does, while the main thread is busy and learns of nothing.
    void MoveUnnoticed(const QPoint& from, const QPoint& to, int samples) {
        for (int i = 1; i <= samples; ++i) {
            MoveTo(from + (to - from) * i / samples);
            QThread::msleep(10);
        }
    }
};

} // namespace

TEST_F(StrokeEndsTest, AFastStrokeEndsAtTheRelease) {
    constexpr int size = 6;
    constexpr int step = 30; // between two samples
    for (const char* tool : {"line", "pencil", "brush", "rectangle"}) {
        // When the program learns of the release: at once, before the samples that wait, or after them.
        for (const char* learns : {"at once", "before", "after"}) {
            SCOPED_TRACE(::testing::Message() << tool << " " << learns);
            Run(std::string("qmVellixFrame -clear; qmVellixUtil -") + tool + "Tool");
            const QPoint start(200, 150);
            const QPoint end(800, 350);
            PressAndWait(start);
            MoveUnnoticed(start, end, (end.x() - start.x()) / step);
            if (learns == std::string("after")) {
                input_.Release();
                MoveUnnoticed(end, {850, 100}, 30);
            }
            if (learns == std::string("before")) { // into the air, while the view is being drawn
                MoveUnnoticed(end, {850, 100}, 8);
                QMouseEvent release(QEvent::MouseButtonRelease, end, OnScreen(end), Qt::LeftButton,
                                    Qt::NoButton, Qt::NoModifier);
                QApplication::sendEvent(&View(), &release);
            }
            input_.Release();
            Settle(60);
            const bool isFreehand = Settings::activeTool <= ToolType::Brush;
            // The mean of five samples, the newest weighing most, lags behind it by 4/3 of a step; more if
            // the samples were late.
            const int lag = isFreehand ? step * 4 : 0;
            const QPoint aim = Sampled(end);
            const QRect ink = Ink();
            EXPECT_GE(ink.right(), aim.x() - lag + size / 2 - 2);
            EXPECT_LE(ink.right(), aim.x() + size / 2 + 1);
            EXPECT_GE(ink.bottom(), aim.y() - lag * 200 / 600 + size / 2 - 3);
            EXPECT_LE(ink.bottom(), aim.y() + size / 2 + 1);
            EXPECT_GE(ink.top(), Sampled(start).y() - size / 2 - 1) << "what came after the release";
        }
    }
}

TEST_F(StrokeEndsTest, AStyledLineReachesThePenAndShowsItsString) {
    const auto redPixels = [](const QImage& seen) {
        int count = 0;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) {
                count += seen.pixel(x, y) == qRgb(255, 0, 0) ? 1 : 0;
            }
        }
        return count;
    };
    Run("qmVellixUtil -pencilTool");
    for (const auto renderer :
         {lightbox::ViewOptions::Renderer::Viewport2, lightbox::ViewOptions::Renderer::Legacy}) {
        Use(renderer);
        for (const int stabiliser : {0, 80}) {
            for (const bool smoothCurves : {false, true}) {
                if (stabiliser == 0 && !smoothCurves) {
                    continue;
                }
                SCOPED_TRACE(::testing::Message() << stabiliser << smoothCurves);
                Run("qmVellixFrame -clear");
                Settings::lineStyle.smoothCurves = smoothCurves;
                Settings::lineStyle.stabiliser = stabiliser;
                const QPoint end(700, 250);
                Press({200, 250});
                MoveUnnoticed({200, 250}, end, 20);
                Settle(60);
                EXPECT_EQ(redPixels(Grab()) > 60, stabiliser > 0) << "the string";
                if (stabiliser > 0) {
                    // The brush is as long behind the pen as the string is.
                    const QImage seen = Grab();
                    const auto inkAt = [&](int x) { return seen.pixelColor(x, 248).blue() > 200; };
                    EXPECT_FALSE(inkAt(end.x() - stabiliser + 6));
                }
                Release();
                Settle(60);
                const QPoint aim = Sampled(end);
                EXPECT_NEAR(Ink().right(), aim.x() + 3, 1);
                EXPECT_NEAR(Ink().center().y(), aim.y(), 2);
                EXPECT_EQ(redPixels(Grab()), 0) << "the string is gone";
                Run("undo; undo");
            }
        }
    }
    Settings::lineStyle = LineStyle();
}

TEST_F(StrokeEndsTest, AClickInAnyStyleLeavesADot) {
    Run("qmVellixUtil -pencilTool");
    for (const int style : {1, 2, 3}) {
        Run("qmVellixFrame -clear");
        Settings::lineStyle.smoothCurves = (style & 1) != 0;
        Settings::lineStyle.stabiliser = (style & 2) != 0 ? 50 : 0;
        MoveTo({300, 200});
        Settle(20);
        input_.Press();
        input_.Release();
        Settle(60);
        EXPECT_FALSE(Ink().isEmpty()) << style;
        EXPECT_LE(Ink().width(), 12) << style;
    }
    Settings::lineStyle = LineStyle();
}

// The hand draws while the program draws too.
TEST_F(StrokeEndsTest, EightFastLinesEndWhereTheHandLiftsThePen) {
    constexpr int step = 25;
    constexpr int size = 20;
    Run("qmVellixUtil -lineTool; qmVellixUtil -lineOptions 20 100");
    for (int line = 0; line < 8; ++line) {
        Run("qmVellixFrame -clear");
        const QPoint start(150, 60 + 50 * line);
        const QPoint end(900, 60 + 50 * line);
        const QPoint from = OnScreen(start);
        const QPoint to = OnScreen(end);
        std::atomic<bool> isDone(false);
        std::thread hand([&] {
            input_.MoveTo(from);
            QThread::msleep(30);
            input_.Press();
            QThread::msleep(20);
            const int count = (to.x() - from.x()) / step;
            for (int i = 1; i <= count; ++i) {
                input_.MoveTo(from + (to - from) * i / count);
                QThread::msleep(8);
            }
            input_.Release();
            isDone = true;
        });
        WaitFor([&] { return isDone.load(); });
        hand.join();
        Settle(60);
        EXPECT_NEAR(Ink().right(), Sampled(end).x() + size / 2.0, 1) << line;
    }
}

TEST(LateSamplesTest, ThePathIsCutWhereItPassesTheReleaseLast) {
    const QPoint last(0, 0);
    const struct {
        const char* what;
        QList<QPoint> late;
        QPoint release;
        int count;
    } rows[] = {
        {"none", {}, {0, 0}, 0},
        {"up to it", {{30, 0}, {60, 0}}, {60, 0}, 2},
        {"between two", {{30, 0}, {60, 0}, {90, 0}}, {75, 1}, 2},
        {"behind all", {{30, 0}, {60, 0}}, {80, 0}, 2},
        {"released at once", {{30, 0}, {60, 0}}, {0, 0}, 0},
        {"on into the air", {{30, 0}, {60, 0}, {70, 40}, {90, 90}}, {60, 0}, 2},
        {"a small circle, closed", {{20, 20}, {0, 40}, {-20, 20}, {0, 1}}, {0, 0}, 3},
        {"a circle, and on", {{20, 20}, {0, 40}, {-20, 20}, {0, 0}, {50, -50}}, {0, 0}, 4},
        {"wide of the chord", {{40, 0}, {40, 40}, {80, 40}}, {48, 30}, 2},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CountBeforeRelease(last, row.late, row.release), row.count) << row.what;
    }
}

TEST(LateSamplesTest, WhatWasDeliveredIsCutAtTheTimeAndPlaceOfTheRelease) {
    // There and back, through the place of the release, one sample each 10 ms.
    std::vector<DatedSample> way;
    for (int i = 0; i <= 20; ++i) {
        way.push_back({QPoint(i <= 10 ? 100 * i : 100 * (20 - i), 0), 1000 + 10 * i});
    }
    const struct {
        const char* what;
        QPoint release;
        qint64 time;
        int count;
    } rows[] = {
        {"on the way there", {700, 0}, 1070, 8},
        {"on the way back", {700, 0}, 1130, 14},
        {"between two samples", {750, 0}, 1075, 8},
        {"a time that is a little late", {700, 0}, 1090, 8},
        {"in time", {0, 0}, 1200, 21},
        {"at another place then", {700, 0}, 1190, 21},
        {"nobody knows when", {700, 0}, EventClock::UNKNOWN, 21},
        {"before the press", {700, 0}, 500, 21},
        {"at once", {0, 0}, 1000, 2},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CountBeforeRelease(way, row.release, row.time), row.count) << row.what;
    }
}

TEST_F(StrokeEndsTest, ThePenGoesOnInANewScene) {
    Run("qmVellixUtil -brushTool");
    Drag({{300, 200}, {340, 200}});
    Run("file -force -new; lookThru modelPanel4 persp");
    Settle(100);
    EXPECT_EQ(BaseNode::GetMaster(), nullptr) << "a new scene is empty";
    messages_.clear();
    Press({300, 200}); // the first press draws
    ASSERT_NE(BaseNode::GetMaster(), nullptr);
    ASSERT_TRUE(WaitFor([] { return PointCount() >= 2; }));
    MoveAndWait({340, 200});
    Release();
    const QImage drawn = Drawing();
    EXPECT_FALSE(Ink().isEmpty());
    EXPECT_TRUE(messages_.empty()) << messages_[0];
    Run("undo");
    EXPECT_EQ(Node().TotalLayerCount(), 0);
    Run("undo");
    EXPECT_EQ(BaseNode::GetMaster(), nullptr);
    Run("redo; redo");
    EXPECT_EQ(Drawing(), drawn);

    // The node that was deleted, or undone, is made anew too.
    Run("delete vellix");
    Press({300, 200});
    ASSERT_TRUE(WaitFor([] { return BaseNode::GetMaster() && PointCount() >= 2; }));
    Release();
    EXPECT_EQ(Node().TotalLayerCount(), 1);
}

TEST_F(StrokeEndsTest, AViewThatChangesEndsTheStroke) {
    using Arrangement = lightbox::PanelLayout::Arrangement;
    const struct {
        const char* what;
        std::function<void()> change;
    } rows[] = {
        {"a layout of four views", [this] { Window().Layout().Arrange(Arrangement::Four); }},
        {"the space bar", [this] { Type(' '); }},
        {"another camera", [this] { Run("lookThru modelPanel4 top"); }},
        {"a larger window", [this] { Window().resize(Window().size() + QSize(80, 60)); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Run("file -force -new; lookThru modelPanel4 persp; setAttr perspShape.filmFit 1; setAttr "
            "perspShape.overscan 1; qmVellixNode -l -f -c persp; qmVellixUtil -pencilTool");
        Settle(50);
        PressAndWait({300, 200});
        for (int i = 1; i <= 6; ++i) {
            MoveAndWait({300 + 20 * i, 200});
        }
        const QRect until(Sampled({300, 200}), Sampled({420, 200}));
        row.change();
        Settle(50);
        for (const QPoint& point : {QPoint(430, 260), QPoint(200, 300), QPoint(250, 100)}) {
            MoveTo(point);
            Settle(30);
        }
        Release();
        EXPECT_FALSE(Node().HasActiveStroke());
        EXPECT_TRUE(until.adjusted(-5, -5, 5, 5).contains(Ink())) << Ink().right() << " " << Ink().bottom();
        EXPECT_GT(Ink().width(), 80) << "what was drawn before stays";
        EXPECT_EQ(Node().TotalLayerCount(), 1);
        Window().Layout().Arrange(Arrangement::Single);
        Settle(100);
    }
}

TEST_F(StrokeEndsTest, ALockedVisibilityDoesNotStopTheRedrawing) {
    Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 40 100 100 0");
    Drag({{300, 200}, {340, 200}, {380, 200}, {420, 200}});
    Run("setAttr -lock true vellix.visibility; setAttr -lock true vellixShape.visibility");
    for (const auto renderer :
         {lightbox::ViewOptions::Renderer::Viewport2, lightbox::ViewOptions::Renderer::Legacy}) {
        Use(renderer);
        for (const char* line : {"qmVellixLayer -ev 0 0 persp", "qmVellixLayer -ev 1 0 persp"}) {
            Settle(50);
            const QColor before = View().grab().toImage().pixelColor(350, 200);
            const unsigned frames = View().FrameCount();
            Run(line);
            EXPECT_TRUE(WaitFor([&] { return View().FrameCount() > frames; })) << line;
            EXPECT_NE(View().grab().toImage().pixelColor(350, 200), before);
        }
    }
}

} // namespace vellix
