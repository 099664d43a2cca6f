// What the draw tool does besides strokes of the mouse: the pen's own samples, presets, and taking a colour.
#include "plugin/tools/DrawToolFixture.h"
#include "scene/UndoQueue.h"

#include <QTabletEvent>

#include <cmath>

namespace vellix {

namespace {

class PenAndPresetsTest : public DrawToolFixture {
protected:
    PenAndPresetsTest() { Run("qmVellixUtil -pencilTool"); }
    ~PenAndPresetsTest() override {
        Settings::lineStyle = LineStyle();
        Settings::presetKeys = false;
        Settings::brushPresets = BrushPreset::Defaults();
        for (const ToolType tool : {ToolType::Pencil, ToolType::Brush, ToolType::Eraser}) {
            Settings::SetPenPressure(tool, PenPressure());
        }
        Settings::pencilTabletEnabled = false;
    }

    /// Lets the tablet tell of its pen, at a place of the view.
    void SendPen(QEvent::Type type, const QPointF& at, double pressure, unsigned long time) {
        const QPointF onScreen = at + QPointF(View().mapToGlobal(QPoint(0, 0)));
        auto* const event =
            new QTabletEvent(type, at, onScreen, QTabletEvent::Stylus, QTabletEvent::Pen, pressure, 0, 0, 0.0,
                             0.0, 0, Qt::NoModifier, 7, Qt::LeftButton, Qt::LeftButton);
        event->setTimestamp(time);
        QCoreApplication::postEvent(&View(), event);
        Settle(5);
    }
    std::string Options(ToolType tool) {
        const ToolType before = std::exchange(Settings::activeTool, tool);
        std::string text = Settings::GetBrush().ToText().toStdString();
        Settings::activeTool = before;
        return text;
    }
};

} // namespace

TEST_F(PenAndPresetsTest, CurvesTakeThePensOwnPlaces) {
    Settings::lineStyle.smoothCurves = true;
    const auto at = [](int i) { return QPointF(200.0 + 8.3 * i, 300.0 + 0.35 * i); };
    SendPen(QEvent::TabletPress, at(0), 1.0, 1000);
    Press(at(0).toPoint());
    MoveTo({400, 200}); // not where the pen is
    unsigned long time = 1000;
    for (int i = 1; i <= 40; ++i) {
        SendPen(QEvent::TabletMove, at(i), 1.0, time += 8);
        // Between two periods: not for the line.
        SendPen(QEvent::TabletMove, at(i) + QPointF(0.0, 90.0), 1.0, time + 3);
    }
    SendPen(QEvent::TabletRelease, at(41), 0.0, time + 5);
    MoveTo(at(41).toPoint());
    Release();
    const QImage drawing = Drawing();
    int rows = 0;
    double error = 0.0;
    int columns = 0;
    for (int x = 215; x < 520; ++x) {
        double sum = 0.0;
        double weight = 0.0;
        for (int y = 0; y < drawing.height(); ++y) {
            const int alpha = drawing.pixelColor(x, y).alpha();
            sum += alpha * y;
            weight += alpha;
            rows += alpha > 0;
        }
        ASSERT_GT(weight, 0.0) << x;
        // The view is 576 pixels high, in the middle of the image's 1024.
        error += std::pow(sum / weight - (0.35 * (x - 200.0) / 8.3 + 300.0 + 224.0), 2);
        ++columns;
    }
    EXPECT_LE(rows, columns * 9) << "one line of six pixels";
    EXPECT_LE(std::sqrt(error / columns), 2.5);
    EXPECT_GT(drawing.pixelColor(int(at(41).x()), int(at(41).y()) + 224).alpha(), 0)
        << "where the pen was lifted";
}

TEST_F(PenAndPresetsTest, APenThatTellsNothingDrawsWithThePointer) {
    for (const bool smoothCurves : {false, true}) {
        Run("qmVellixFrame -clear");
        Settings::lineStyle.smoothCurves = smoothCurves;
        SendPen(QEvent::TabletPress, {200, 300}, 1.0, 1000);
        Press({200, 300});
        for (int i = 1; i <= 20; ++i) {
            MoveTo({200 + 10 * i, 300});
            Settle(12);
        }
        Release();
        SendPen(QEvent::TabletRelease, {400, 300}, 0.0, 2000);
        EXPECT_GT(Drawing().pixelColor(300, 523).alpha(), 0);
        EXPECT_GT(Drawing().pixelColor(smoothCurves ? 400 : 385, 523).alpha(), 0);
    }
    // Of a short click it leaves a dot.
    Run("qmVellixFrame -clear");
    SendPen(QEvent::TabletPress, {200, 300}, 1.0, 3000);
    MoveTo({200, 300});
    Settle(20);
    input_.Press();
    input_.Release();
    Settle(60);
    EXPECT_GT(Drawing().pixelColor(200, 523).alpha(), 0);
    SendPen(QEvent::TabletRelease, {200, 300}, 0.0, 3100);
}

TEST_F(PenAndPresetsTest, PressureSetsTheSizeOfTheStroke) {
    PenPressure pressure;
    pressure.setsSize = true;
    pressure.size = {10, 50, 50};
    Settings::SetPenPressure(ToolType::Pencil, pressure);
    Settings::pencilSize = 40;
    SendPen(QEvent::TabletPress, {200, 300}, 0.4, 1000);
    PressAndWait({200, 300});
    for (int i = 1; i <= 30; ++i) {
        SendPen(QEvent::TabletMove, {200.0 + 15 * i, 300.0}, i < 15 ? 0.2 : 0.9, 1000 + 10 * i);
        MoveAndWait({200 + 15 * i, 300});
    }
    Release();
    SendPen(QEvent::TabletRelease, {650, 300}, 0.0, 2000);
    const auto thickness = [drawing = Drawing()](int x) {
        int count = 0;
        for (int y = 0; y < drawing.height(); ++y) {
            count += drawing.pixelColor(x, y).alpha() > 127;
        }
        return count;
    };
    EXPECT_NEAR(thickness(350), 40 * 0.28, 2);
    EXPECT_NEAR(thickness(600), 40 * 0.98, 3);
    EXPECT_EQ(Drawing().pixelColor(350, 523).alpha(), 255) << "the opacity stays";
}

TEST_F(PenAndPresetsTest, APresetLeavesTheStrokeAndTheTextInProgressAlone) {
    Run("qmVellixUtil -pencilOptions 12 100 0");
    PressAndWait({200, 300});
    MoveAndWait({260, 300});
    Run("qmVellixUtil -preset 9"); // an eraser
    EXPECT_EQ(Settings::activeTool, ToolType::Eraser);
    ASSERT_NE(ActiveStroke(), nullptr);
    MoveAndWait({320, 300});
    MoveAndWait({380, 300});
    EXPECT_EQ(ActiveStroke()->tool, ToolType::Pencil);
    EXPECT_EQ(ActiveStroke()->points.last().size, 12);
    Release();
    EXPECT_EQ(ActiveStroke(), nullptr);
    EXPECT_GT(Drawing().pixelColor(300, 523).alpha(), 0);
    EXPECT_EQ(Options(ToolType::Eraser), "eraser 40 100 100 0 0 0 50 50 0 50 50 ");

    Settings::presetKeys = true;
    Run("qmVellixUtil -textTool; qmVellixUtil -textOptions 30 100 \"DejaVu Sans\"");
    PressAndWait({300, 200});
    Release();
    Type('a');
    Run("qmVellixUtil -preset 3");
    ASSERT_NE(ActiveStroke(), nullptr);
    Type('4');
    EXPECT_EQ(ActiveStroke()->text, "a4") << "the number keys type";
    EXPECT_EQ(Settings::activeTool, ToolType::Pencil);
    Press({700, 100}); // ends the text
    Release();
    int covered = 0;
    const QImage drawing = Drawing();
    for (int y = 350; y < 500; ++y) {
        for (int x = 280; x < 380; ++x) {
            covered += drawing.pixelColor(x, y).alpha() > 0;
        }
    }
    EXPECT_GT(covered, 100);
}

TEST_F(PenAndPresetsTest, TheNumberKeysChoosePresetsInViewsWhenAskedTo) {
    Run("qmVellixUtil -brushTool");
    MoveTo({300, 300});
    Settle(20);
    Type('3');
    EXPECT_EQ(Settings::activeTool, ToolType::Brush);
    Settings::presetKeys = true;
    Type('3');
    EXPECT_EQ(Settings::activeTool, ToolType::Pencil);
    EXPECT_EQ(Settings::pencilSize, BrushPreset::Defaults().at(2).size);
    EXPECT_TRUE(Settings::GetPenPressure(ToolType::Pencil).setsSize);
    Type('0');
    EXPECT_EQ(Settings::activeTool, ToolType::Eraser);
    EXPECT_EQ(Settings::eraserSize, BrushPreset::Defaults().at(9).size);
    Run("setToolTo selectSuperContext");
    Type('1');
    EXPECT_EQ(Settings::activeTool, ToolType::Eraser) << "only with the draw tool";
}

TEST_F(PenAndPresetsTest, WithIHeldAPressTakesTheColor) {
    const QColor blue = Settings::activeColor;
    Run("qmVellixUtil -pencilOptions 20 100 0");
    Drag({{300, 300}, {360, 300}, {420, 300}, {480, 300}});
    Run("qmVellixUtil -e -drawColor 250 10 10; qmVellixUtil -pencilOptions 20 40 0");
    Drag({{300, 400}, {360, 400}, {420, 400}, {480, 400}});
    const QImage before = Drawing();
    const auto edits = host_->undo().Names();
    const QColor red = Settings::activeColor;

    input_.PressKey('i');
    Settle(20);
    Press({700, 150}); // nothing is drawn there
    EXPECT_EQ(Settings::activeColor, red);
    Release();
    Press({360, 300});
    EXPECT_EQ(Settings::activeColor, blue);
    EXPECT_EQ(ActiveStroke(), nullptr);
    MoveTo({360, 400}); // dragged onto a faint line: its colour, at full strength
    EXPECT_TRUE(WaitFor([&] { return Settings::activeColor == red; }));
    MoveTo({700, 150});
    Settle(30);
    Release();
    EXPECT_EQ(Settings::activeColor, red);
    EXPECT_EQ(Drawing(), before);
    EXPECT_EQ(host_->undo().Names(), edits);

    input_.ReleaseKey('i');
    Settle(20);
    Drag({{300, 200}, {360, 200}, {420, 200}});
    EXPECT_NE(Drawing(), before);
}

} // namespace vellix
