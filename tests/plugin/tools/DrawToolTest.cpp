#include "host/MayaUtil.h"
#include "plugin/paint/PaintTesting.h"
#include "plugin/tools/DrawToolFixture.h"
#include "scene/UndoQueue.h"
#include "tools/ThreadManager.h"

#include <QDialog>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QTimer>

namespace vellix {

namespace {

using Renderer = lightbox::ViewOptions::Renderer;

class DrawToolTest : public DrawToolFixture {
protected:
    /// Where the input thread puts a point of the view, from its top left, in the drawing.
    QPoint Sampled(const QPoint& point, int shift = 1) {
        M3dView view = M3dView::active3dView();
        Node().UpdateOverlayValues(view);
        return Node().ScreenCoordsToTexCoords(QPoint(point.x() + shift, View().height() + 1 - point.y()));
    }
    /// The same points as a recording, drawn at the same time.
    void Replay(const char* tool, const QList<QPoint>& points, const QString& camera) {
        QJsonArray samples;
        for (const QPoint& point : points) {
            const QPoint at = Sampled(point);
            samples.append(QJsonArray{at.x(), at.y(), 1.0, samples.size() * 8});
        }
        const ToolType type = Settings::activeTool;
        const QColor color = Settings::activeColor;
        QJsonObject stroke{{"frame", 1},
                           {"tool", tool},
                           {"size", Settings::GetToolSize(type)},
                           {"opacity", Settings::GetToolOpacity(type)},
                           {"hardness", Settings::GetToolHardness(type)},
                           {"color", QJsonArray{color.red(), color.green(), color.blue()}},
                           {"samples", samples}};
        if (type == ToolType::Text) {
            stroke["text"] = "fast\nbm";
            stroke["font"] = Settings::textFontFamily;
        }
        const QJsonObject recording{
            {"format", "vellix-strokes"}, {"version", 1}, {"size", 1024}, {"strokes", QJsonArray{stroke}}};
        const QString path = prefs_.filePath("points.json");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(recording).toJson());
        file.close();
        Run(QString("qmVellixReplay -file \"%1\" -camera %2").arg(path, camera).toStdString());
    }
    /// The points by the pointer, and what text is then typed.
    void DrawByHand(const QList<QPoint>& points) {
        Drag(points);
        if (Settings::activeTool == ToolType::Text) {
            for (const char key : {'f', 'a', 's', 't', '\r', 'b', 'm', '\x1b'}) {
                Type(key < ' ' ? 0xff00U + static_cast<unsigned>(key) : static_cast<unsigned>(key));
            }
        }
    }
    static QList<QPoint> Zigzag(const QPoint& from) {
        QList<QPoint> points;
        for (int i = 0; i < 12; ++i) {
            points.append(from + QPoint(14 * i, i % 2 == 0 ? 4 * i : 30 + 4 * i));
        }
        return points;
    }
    /// Pixels, in full ones.
    static double CoverageOf(const QImage& image) {
        double sum = 0.0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                sum += qAlpha(image.pixel(x, y)) / 255.0;
            }
        }
        return sum;
    }
    std::size_t StrokesToUndo() { return host_->undo().Names().size(); }
};

} // namespace

// Every tool in perspective and orthographic views, with 2D pan and zoom, in both renderers. The first sample
// of a stroke lies one pixel beside: of the view by hand, of the image in a recording. With zoom the
// beginning of a freehand stroke differs so, as far as smoothing carries it.
TEST_F(DrawToolTest, DrawsWhatAReplayOfItsPointsDraws) {
    ASSERT_TRUE(input_.IsAvailable());
    constexpr int smoothed = 5;
    const struct {
        Renderer renderer;
        const char* camera;
        const char* panAndZoom;
    } views[] = {
        {Renderer::Viewport2, "persp", ""},
        {Renderer::Legacy, "persp", ".zoom 0.6; setAttr perspShape.hpn 0.2"},
        {Renderer::Viewport2, "front", ".zoom 1.5; setAttr frontShape.vpn -0.1"},
        {Renderer::Legacy, "front", ""},
    };
    const char* const tools[] = {"pencil", "brush", "eraser",  "text",
                                 "line",   "arrow", "ellipse", "rectangle"};
    for (const auto& view : views) {
        const bool isZoomed = *view.panAndZoom != '\0';
        Use(view.renderer);
        Run("file -force -new; setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1");
        Run(QString("qmVellixNode -l -f -c %1; lookThru modelPanel4 %1").arg(view.camera).toStdString());
        if (isZoomed) {
            Run(QString("setAttr %1Shape.panZoomEnabled 1; setAttr %1Shape%2")
                    .arg(view.camera, view.panAndZoom)
                    .toStdString());
        }
        Settle();
        // Something to erase, of another colour.
        const QColor color = Settings::activeColor;
        Settings::activeColor = QColor(200, 40, 20);
        Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 90 100 100 0");
        const QList<QPoint> points = Zigzag({300, 200});
        Replay("brush", {points.first() - QPoint(0, 10), points.last() - QPoint(0, 10)}, view.camera);
        Settings::activeColor = color;
        Run("qmVellixUtil -brushOptions 6 100 100 0; qmVellixUtil -textOptions 30 100 \"DejaVu Sans\"");
        const QImage before = Drawing(view.camera);
        for (const char* tool : tools) {
            SCOPED_TRACE(::testing::Message() << tool << " in " << view.camera << " " << view.panAndZoom);
            Run(std::string("qmVellixUtil -") + tool + "Tool; select -clear");
            DrawByHand(points);
            const QImage drawn = Drawing(view.camera);
            EXPECT_GT(Difference(drawn, before).width(), 40);
            Run("undo");
            EXPECT_EQ(Drawing(view.camera), before);
            Replay(tool, points, view.camera);
            QRect difference = Difference(drawn, Drawing(view.camera));
            if (isZoomed && Settings::activeTool <= ToolType::Eraser) {
                const QRect beginning(Sampled(points[0]), Sampled(points[smoothed] + QPoint(0, 40)));
                difference = beginning.adjusted(-10, -10, 10, 10).contains(difference) ? QRect() : difference;
            }
            EXPECT_EQ(difference, QRect());
            Run("undo");
        }
    }
}

TEST_F(DrawToolTest, TheEraserTakesAwayAndUndoBringsBack) {
    Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 40 100 100 0");
    const QList<QPoint> line{{300, 200}, {340, 200}, {380, 200}, {420, 200}};
    Drag(line);
    const QImage before = Drawing();
    const QPoint middle = Sampled({360, 200});
    ASSERT_EQ(before.pixelColor(middle).alpha(), 255);
    Run("qmVellixUtil -eraserTool; qmVellixUtil -eraserOptions 40 100 100 0");
    Drag({{360, 150}, {360, 180}, {360, 210}, {360, 240}, {360, 270}, {360, 300}});
    const QImage after = Drawing();
    EXPECT_EQ(after.pixelColor(middle).alpha(), 0);
    EXPECT_EQ(after.pixelColor(Sampled({310, 200})), before.pixelColor(Sampled({310, 200})));
    Run("undo");
    EXPECT_EQ(Drawing(), before);
    Run("redo");
    EXPECT_EQ(Drawing(), after);
}

TEST_F(DrawToolTest, AClickMakesADotOfTwoPoints) {
    Run("qmVellixUtil -pencilTool");
    PressAndWait({400, 300});
    ASSERT_EQ(PointCount(), 2);
    EXPECT_EQ(ActiveStroke()->points[0].position, Sampled({400, 300}, 0));
    EXPECT_EQ(ActiveStroke()->points[1].position - ActiveStroke()->points[0].position, QPoint(1, 0));
    Settle(100);
    EXPECT_EQ(PointCount(), 2) << "a pointer that rests adds nothing";
    Release();
    EXPECT_GT(CoverageOf(Drawing()), 20.0);
}

// A tap, or a click while the main thread was busy: the release comes right after the press.
TEST_F(DrawToolTest, AClickMakesADotHoweverShort) {
    for (const char* tool : {"pencil", "brush", "line"}) {
        SCOPED_TRACE(tool);
        Run(std::string("qmVellixUtil -") + tool + "Tool; qmVellixFrame -clear");
        MoveTo({400, 300});
        Settle(20);
        input_.Press();
        input_.Release();
        Settle(50);
        EXPECT_GT(Drawing().pixelColor(Sampled({400, 300})).alpha(), 0);
    }
    Run("qmVellixUtil -textTool; qmVellixFrame -clear");
    MoveTo({500, 300});
    Settle(20);
    input_.Press();
    input_.Release();
    Type('w');
    Type(0xff1b);
    EXPECT_GT(CoverageOf(Drawing()), 5.0);
}

// The last sample comes after the last event of the mouse that could redraw the view.
TEST_F(DrawToolTest, WhereThePointerRestsIsShownBeforeTheRelease) {
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        Use(renderer);
        Run("qmVellixUtil -pencilTool");
        PressAndWait({200, 200});
        for (int i = 1; i <= 5; ++i) {
            MoveAndWait({200 + 40 * i, 200});
        }
        const QPoint end = ActiveStroke()->points.last().position;
        ASSERT_TRUE(WaitFor([&] { return !ActiveStroke()->changed; }));
        // The drawing begins (1024 - height) / 2 above the view.
        const QPoint inView(end.x(), end.y() - (1024 - View().height()) / 2);
        const QColor seen = View().grabFramebuffer().pixelColor(inView);
        EXPECT_GT(seen.blue(), 170);
        EXPECT_LT(seen.red(), 90);
        Release();
        Run("undo");
    }
}

// While a stroke grows only the part of the picture that it changes is drawn anew.
TEST_F(DrawToolTest, TheGrowingPictureIsThatOfAFrameDrawnWhole) {
    Run("polySphere -r 4; spaceLocator; select -cl; qmVellixUtil -e -gp 1");
    Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 40 60 20 0");
    Drag({{100, 100}, {500, 300}, {900, 100}});
    for (const char* zoom : {"1.0", "0.37", "2.6"}) {
        Run(std::string("setAttr perspShape.panZoomEnabled 1; setAttr perspShape.zoom ") + zoom);
        PressAndWait({300, 150});
        QImage last;
        for (int i = 1; i <= 12; ++i) {
            MoveAndWait({300 + 30 * i, 150 + (i % 3) * 100});
            ASSERT_TRUE(WaitFor([&] { return !ActiveStroke()->changed; }));
            const QImage grown = View().grabFramebuffer();
            View().BeginGl(); // for all that is known there is another picture now
            View().EndGl();
            EXPECT_EQ(grown, View().grabFramebuffer()) << "at point " << i << ", zoom " << zoom;
            EXPECT_NE(grown, last);
            last = grown;
        }
        Release();
    }
}

// While several views are shown, each that is drawn tells the node of its own size and place.
TEST_F(DrawToolTest, OtherViewsDoNotMoveTheStroke) {
    Window().Layout().Arrange(lightbox::PanelLayout::Arrangement::Four);
    ASSERT_TRUE(WaitFor([this] { return View("modelPanel2").isVisible() && View().width() < 700; }));
    Settle(200);
    Run("qmVellixUtil -pencilTool");
    const QSize size = View().size();
    const QPoint start(size.width() / 3, size.height() / 2);
    QList<QPoint> expected;
    PressAndWait(start);
    for (int i = 1; i <= 8; ++i) {
        MoveAndWait(start + QPoint(8 * i, 0));
        Run("qmVellixNode -rg"); // draws all
        Settle(20);
    }
    for (const StrokePoint& point : ActiveStroke()->points) {
        EXPECT_EQ(point.position.y(), Sampled(start).y());
    }
    EXPECT_LE(ActiveStroke()->points.last().position.x(), Sampled(start + QPoint(64, 0)).x());
    Release();
}

TEST_F(DrawToolTest, SamplesThatAreLateJoinNoStroke) {
    Run("qmVellixUtil -pencilTool");
    PressAndWait({200, 200});
    for (int i = 1; i <= 10; ++i) {
        MoveTo({200 + 20 * i, 200});
        QThread::msleep(12); // the main thread is busy, the samples wait
    }
    const int count = PointCount();
    ThreadManager::GetInstance()->DestroyInputThread();
    Settle(50);
    EXPECT_EQ(PointCount(), count);
    Release();
    PressAndWait({600, 300});
    for (const StrokePoint& point : ActiveStroke()->points) {
        EXPECT_GE(point.position.x(), Sampled({600, 300}, 0).x());
    }
    Release();
}

TEST_F(DrawToolTest, NothingIsLostWhileTheMainThreadIsBusy) {
    Run("qmVellixUtil -pencilTool");
    PressAndWait({200, 200});
    for (int i = 1; i <= 10; ++i) {
        MoveTo({200 + 20 * i, 200});
        QThread::msleep(30);
    }
    EXPECT_TRUE(WaitFor([] { return PointCount() >= 11; }));
    Release();
}

TEST_F(DrawToolTest, AStrokeThatIsInterruptedIsCommittedOnce) {
    const struct {
        const char* what;
        std::function<void()> interrupt;
    } rows[] = {
        {"another tool", [this] { Run("setToolTo selectSuperContext"); }},
        {"another drawing tool", [this] { Run("qmVellixUtil -lineTool"); }},
        {"the view is hidden", [this] { View().hide(); }},
        {"a dialog opens",
         [this] {
             QDialog dialog(&Window());
             QTimer::singleShot(100, &dialog, &QDialog::accept);
             dialog.exec();
         }},
        {"a release elsewhere",
         [this] {
             QMouseEvent move(QEvent::MouseMove, QPointF(400, 300), Qt::NoButton, Qt::NoButton,
                              Qt::NoModifier);
             QApplication::sendEvent(&View(), &move);
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 20 100 100 0");
        PressAndWait({300, 200});
        MoveAndWait({340, 200});
        const std::size_t before = StrokesToUndo();
        row.interrupt();
        Settle(50);
        EXPECT_FALSE(ThreadManager::GetInstance()->IsActive());
        EXPECT_EQ(ActiveStroke(), nullptr);
        EXPECT_GT(Drawing().pixelColor(Sampled({310, 200})).alpha(), 200);
        EXPECT_GT(StrokesToUndo(), before) << "it can be undone";
        const std::size_t committed = StrokesToUndo();
        View().show();
        Release();
        EXPECT_EQ(StrokesToUndo(), committed);
        Run("undo");
        EXPECT_EQ(Drawing().pixelColor(Sampled({310, 200})).alpha(), 0);
    }
}

// The hand that does not hold the pen is on the keys: the edit before goes, and the stroke goes on.
TEST_F(DrawToolTest, UndoByItsKeysInTheMiddleOfAStroke) {
    Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 20 100 100 0");
    const auto alphas = [this] {
        const QImage drawing = Drawing();
        return std::make_pair(drawing.pixelColor(Sampled({150, 100})).alpha(),
                              drawing.pixelColor(Sampled({310, 200})).alpha());
    };
    Drag({{100, 100}, {200, 100}});
    PressAndWait({300, 200});
    MoveAndWait({340, 200});
    constexpr unsigned control = 0xffe3;
    input_.PressKey(control);
    Type('z');
    input_.ReleaseKey(control);
    Settle(50);
    EXPECT_EQ(alphas(), std::make_pair(0, 0));
    ASSERT_NE(ActiveStroke(), nullptr);
    MoveAndWait({400, 200});
    Release();
    EXPECT_EQ(alphas(), std::make_pair(0, 255));
    Run("undo");
    EXPECT_EQ(alphas(), std::make_pair(0, 0));
    Run("redo");
    EXPECT_EQ(alphas(), std::make_pair(0, 255));
}

TEST_F(DrawToolTest, AnotherActiveWindowDoesNotEndAStroke) {
    Run("qmVellixUtil -brushTool");
    PressAndWait({300, 200});
    QWidget other;
    other.setGeometry(1400, 800, 100, 100);
    other.show();
    other.activateWindow();
    Settle(100);
    MoveAndWait({340, 200});
    EXPECT_TRUE(ThreadManager::GetInstance()->IsActive());
    Release();
    EXPECT_GT(Drawing().pixelColor(Sampled({310, 200})).alpha(), 200);
}

TEST_F(DrawToolTest, AStrokeWhoseSceneGoesGoesWithIt) {
    for (const char* line :
         {"file -force -new", "delete vellix", "qmVellixLayer -delete 0 persp", "undo; undo",
          "qmVellixStroke persp", "file -force -new; qmVellixNode -l -f -c persp"}) {
        SCOPED_TRACE(line);
        Run("file -force -new; qmVellixNode -l -f -c persp");
        Run("lookThru modelPanel4 persp; qmVellixUtil -pencilTool");
        Settle();
        PressAndWait({300, 200});
        MoveAndWait({340, 200});
        Run(line);
        for (int i = 0; i < 5; ++i) {
            MoveTo({350 + 20 * i, 220});
            Settle(20);
        }
        Release();
        EXPECT_FALSE(ThreadManager::GetInstance()->IsActive());
        // The next one is drawn as if nothing had been.
        Run("file -force -new; qmVellixNode -l -f -c persp");
        messages_.clear();
        Drag({{500, 300}, {540, 300}, {580, 300}});
        EXPECT_GT(Drawing().pixelColor(Sampled({510, 300})).alpha(), 200);
        EXPECT_EQ(Drawing().pixelColor(Sampled({345, 220})).alpha(), 0);
        EXPECT_TRUE(messages_.empty()) << messages_.front();
    }
}

TEST_F(DrawToolTest, TheToolGoesWithThePlugInInTheMiddleOfAStroke) {
    Run("qmVellixUtil -pencilTool");
    PressAndWait({300, 200});
    Run("file -force -new");
    session_.reset();
    EXPECT_NO_FATAL_FAILURE(host_.reset());
    input_.Release();
    EXPECT_FALSE(ThreadManager::GetInstance()->IsActive());
}

TEST_F(DrawToolTest, ThePlugInMayBeUnloadedInTheMiddleOfAStroke) {
    Run("qmVellixUtil -pencilTool");
    PressAndWait({300, 200});
    MoveAndWait({340, 200});
    host_->plugins().Unload("vellix2", true);
    EXPECT_FALSE(ThreadManager::GetInstance()->IsActive());
    MoveTo({380, 200});
    Settle();
    Release();
    host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    Run("file -force -new; qmVellixNode -l -f -c persp; qmVellixUtil -brushTool");
    Settle();
    Drag({{500, 300}, {540, 300}, {580, 300}});
    EXPECT_GT(CoverageOf(Drawing()), 50.0);
}

TEST_F(DrawToolTest, AStrokeInAWindowThatIsClosedIsCommitted) {
    Run("window floating; paneLayout; modelPanel -camera persp floatingPanel; showWindow floating");
    Settle(100);
    Run("qmVellixUtil -brushTool");
    const QPoint start = View("floatingPanel").mapToGlobal(View("floatingPanel").rect().center());
    input_.MoveTo(start);
    Settle(20);
    input_.Press();
    ASSERT_TRUE(WaitFor([] { return PointCount() >= 2; }));
    input_.MoveTo(start + QPoint(30, 0));
    ASSERT_TRUE(WaitFor([] { return PointCount() >= 3; }));
    const std::size_t before = StrokesToUndo();
    Run("deleteUI floating");
    Settle(100);
    EXPECT_FALSE(ThreadManager::GetInstance()->IsActive());
    EXPECT_EQ(ActiveStroke(), nullptr);
    EXPECT_GT(StrokesToUndo(), before);
    EXPECT_GT(CoverageOf(Drawing()), 50.0);
    Release();
    Drag({{500, 300}, {540, 300}, {580, 300}});
}

// What a press adds, a layer or a frame, goes with the stroke when it is undone.
TEST_F(DrawToolTest, AFirstStrokeBringsItsLayer) {
    Run("file -force -new; lookThru modelPanel4 persp; qmVellixUtil -pencilTool");
    Settle(100); // the node is made when the host is idle
    ASSERT_NE(BaseNode::GetMaster(), nullptr);
    EXPECT_EQ(Node().LayerCount("persp"), 0);
    Drag({{300, 200}, {340, 200}});
    EXPECT_EQ(Node().LayerCount("persp"), 1);
    Run("undo");
    EXPECT_EQ(Node().LayerCount("persp"), 0);
    Run("redo");
    EXPECT_EQ(Node().LayerCount("persp"), 1);

    Run("qmVellixLayer -es 2 0 persp");
    messages_.clear();
    Press({300, 300});
    Release();
    ASSERT_EQ(messages_.size(), 1U);
    EXPECT_NE(messages_[0].find("Active layer is locked."), std::string::npos);
}

// The tool has it made when the host is idle. Another tool, a press or a script may come before.
TEST_F(DrawToolTest, OneNodeIsMadeWhateverAsksForItFirst) {
    for (const bool isPressed : {false, true}) {
        Run("setToolTo selectSuperContext; file -force -new");
        Settle(100);
        ASSERT_EQ(BaseNode::GetMaster(), nullptr);
        messages_.clear();
        Run("qmVellixUtil -pencilTool; qmVellixUtil -brushTool");
        if (isPressed) {
            EXPECT_TRUE(MayaUtil::CreateNodeNow()); // as a press does
        }
        Settle(100);
        EXPECT_EQ(BaseNode::GetAll().size(), 1);
        for (const std::string& message : messages_) {
            EXPECT_EQ(message.find("already exists"), std::string::npos) << message;
        }
    }
}

TEST_F(DrawToolTest, TheMiddleButtonMakesTheViewsCameraTheActiveOne) {
    Run("qmVellixLayer -add -ls 0 front; qmVellixLayer -add -ls 0 persp; qmVellixUtil -draw");
    Settle();
    ASSERT_EQ(Node().GetActiveCamera(), "persp");
    const std::size_t before = StrokesToUndo();
    Press({300, 200}, 2);
    Release(2);
    EXPECT_EQ(StrokesToUndo(), before) << "it is active already";
    Run("lookThru modelPanel4 front");
    Press({300, 200}, 2);
    Release(2);
    EXPECT_EQ(Node().GetActiveCamera(), "front");
    Run("lookThru modelPanel4 side");
    Press({300, 200}, 2);
    Release(2);
    EXPECT_EQ(Node().GetActiveCamera(), "front") << "side has no layer";
}

} // namespace vellix
