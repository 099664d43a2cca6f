#include "core/Frame.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/ToolType.h"
#include "plugin/commands/ChangeCounter.h"
#include "plugin/commands/CommandFixture.h"

#include <QColor>

namespace vellix {
namespace {

QByteArray StrokeText(int frame, const char* tool, const char* samples, const char* more = "") {
    return QString(
               R"({"frame": %1, "tool": "%2", "size": 12, "opacity": 80, "hardness": 100, "color": [200, 30, 10],
                      %3 "samples": [%4]})")
        .arg(frame)
        .arg(tool, more, samples)
        .toUtf8();
}

const char* const ACROSS = "[100, 300, 0.5, 0], [150, 300, 0.5, 8], [200, 300, 0.5, 16], [250, 300, 0.5, 24]";

class ReplayCommandTest : public CommandFixture {
protected:
    void SetUp() override {
        CommandFixture::SetUp();
        Mel("qmVellixLayer -add -n Rough -ls 0 persp");
    }

    QString Recording(const QList<QByteArray>& strokes) const {
        return WriteFile("recording.json",
                         R"({"format": "vellix-strokes", "version": 1, "size": 1024, "strokes": [)" +
                             strokes.join(",") + "]}");
    }
    QString Line(const QList<QByteArray>& strokes, const char* more = "-camera persp") const {
        return QString("qmVellixReplay -file \"%1\" %2").arg(Recording(strokes), more);
    }
    static QColor PixelAt(int frame, int x, int y) {
        const auto layers = Node().GetLayerManager();
        return layers->ComposeFrame("persp", frame, false).pixelColor(x, y);
    }
};

TEST_F(ReplayCommandTest, DrawsEachStrokeAtItsFrameAndLeavesTheRestAlone) {
    Mel("currentTime 2.5");
    Settings::activeTool = ToolType::Arrow;
    Settings::activeColor = Qt::magenta;
    EXPECT_EQ(Mel(Line({StrokeText(3, "pencil", ACROSS), StrokeText(1, "line", ACROSS)}, "-frameOffset 10"))
                  .AsInt(),
              2);
    QList<int> times;
    Node().GetFrameTimes("persp", times);
    EXPECT_EQ(times, QList<int>({11, 13}));
    EXPECT_EQ(PixelAt(13, 175, 300), QColor(200, 30, 10, 204));
    EXPECT_EQ(PixelAt(11, 175, 300), QColor(200, 30, 10, 204));
    EXPECT_EQ(PixelAt(13, 300, 300).alpha(), 0);
    EXPECT_EQ(MayaUtil::GetPlaybackTime().as(MTime::uiUnit()), 2.5);
    EXPECT_EQ(Settings::activeTool, ToolType::Arrow);
    EXPECT_EQ(Settings::activeColor, QColor(Qt::magenta));
}

TEST_F(ReplayCommandTest, IsTakenBackAndBroughtBackWhole) {
    const QList<QByteArray> strokes = {StrokeText(1, "brush", ACROSS), StrokeText(5, "pencil", ACROSS),
                                       StrokeText(1, "eraser", "[150, 300, 1, 0]"),
                                       StrokeText(5, "ellipse", ACROSS)};
    ExpectUndoable(Line(strokes)); // on keys of its own
    Mel(Line({StrokeText(1, "rectangle", "[10, 10, 1, 0], [500, 500, 1, 8]")}));
    ExpectUndoable(Line(strokes)); // over a drawing that was there
    Mel("qmVellixLayer -es 1 0 persp; currentTime 3");
    ExpectUndoable(Line(strokes)); // on a static layer, all strokes on one picture
    Mel("qmVellixLayer -deleteAll persp; currentTime 1");
    ExpectUndoable(Line(strokes)); // with a first layer of its own
    Mel("file -f -new");
    EXPECT_EQ(Drawing(), "no node");
    ExpectUndoable(Line(strokes)); // with the node as well
}

TEST_F(ReplayCommandTest, AllStrokesTogetherRefreshOnce) {
    QList<QByteArray> strokes;
    for (int frame = 1; frame <= 20; ++frame) {
        strokes.append(StrokeText(frame, "pencil", ACROSS));
    }
    ChangeCounter counter;
    for (const QString& line : {Line(strokes), QString("undo"), QString("redo")}) {
        Mel(line);
        EXPECT_EQ(counter.Take(), 1) << line.toStdString();
    }
}

// The pen's first touch is reported twice, a pixel apart, so that a click shows.
TEST_F(ReplayCommandTest, AClickLeavesADot) {
    for (const char* tool : {"pencil", "brush", "eraser"}) {
        Mel(Line({StrokeText(1, "rectangle", "[500, 500, 1, 0], [510, 500, 1, 8]")}));
        const bool erases = QString(tool) == "eraser";
        const int before = PixelAt(1, 500, 500).alpha();
        Mel(Line({StrokeText(1, tool, erases ? "[500, 500, 1, 0]" : "[300, 300, 1, 0]")}));
        EXPECT_TRUE(erases ? PixelAt(1, 500, 500).alpha() < before : PixelAt(1, 300, 300).alpha() > 100)
            << tool;
        Mel("undo; undo");
    }
    // A shape's anchor is where the pen came down, its end where it was last.
    Mel(Line({StrokeText(1, "line", "[100, 100, 1, 0], [700, 900, 1, 8], [100, 200, 1, 16]")}));
    EXPECT_GT(PixelAt(1, 100, 150).alpha(), 150);
    EXPECT_EQ(PixelAt(1, 400, 500).alpha(), 0);
}

TEST_F(ReplayCommandTest, TheLineFollowsThePenAsTheRecordingSays) {
    const char* const bend = "[300, 300, 1, 0], [400, 300, 1, 8], [470, 370, 1, 16], [470, 470, 1, 24]";
    Settings::lineStyle.smoothCurves = true; // what the user has chosen does not count
    Mel(Line({StrokeText(1, "pencil", bend)}));
    Settings::lineStyle.smoothCurves = false;
    EXPECT_EQ(PixelAt(1, 470, 470).alpha(), 0) << "a plain line lags behind";
    EXPECT_EQ(PixelAt(1, 440, 329).alpha(), 0);
    Mel("undo");
    Mel(Line({StrokeText(1, "pencil", bend, "\"smoothCurves\": true, \"stabiliser\": 0,")}));
    EXPECT_EQ(PixelAt(1, 470, 470).alpha(), 204);
    EXPECT_EQ(PixelAt(1, 440, 329).alpha(), 204) << "outside the chord from (400, 300) to (470, 370)";
    Mel("undo");
    Mel(Line({StrokeText(1, "pencil", bend, "\"stabiliser\": 100,")}));
    EXPECT_EQ(PixelAt(1, 470, 470).alpha(), 204) << "the brush catches up";
    EXPECT_EQ(PixelAt(1, 470, 370).alpha(), 0);
    Mel("undo");
    for (const char* fault : {"\"smoothCurves\": 1,", "\"stabiliser\": 101,", "\"stabiliser\": true,"}) {
        EXPECT_EQ(Refused(Line({StrokeText(1, "pencil", bend, fault)})).size(), 1) << fault;
    }
}

TEST_F(ReplayCommandTest, PressureCountsWhereItIsSwitchedOn) {
    const QByteArray light = StrokeText(
        1, "pencil", "[100, 300, 0.25, 0], [200, 300, 0.25, 8], [300, 300, 0, 16], [400, 300, 0, 24]");
    Mel(Line({light}));
    EXPECT_EQ(PixelAt(1, 150, 300).alpha(), 204);
    Mel("undo");
    Settings::pencilTabletEnabled = true;
    Mel(Line({light}));
    Settings::pencilTabletEnabled = false;
    EXPECT_EQ(PixelAt(1, 150, 300).alpha(), 51);
    EXPECT_EQ(PixelAt(1, 270, 300).alpha(), 51); // a reading of nothing keeps the last one
}

TEST_F(ReplayCommandTest, PressureDoesWhatTheRecordingSays) {
    const auto stroke = [](const char* fields) {
        return StrokeText(1, "pencil",
                          "[100, 300, 0.5, 0], [200, 300, 0.5, 8], [300, 300, 0.5, 16], [400, 300, 0.5, 24]",
                          fields);
    };
    const auto drawn = [&](const char* fields) {
        Mel(Line({stroke(fields)}));
        int width = 0;
        for (int y = 250; y < 350; ++y) {
            width += PixelAt(1, 170, y).alpha() > 0;
        }
        const int alpha = PixelAt(1, 170, 300).alpha();
        Mel("undo");
        return QString("%1 px, %2").arg(width).arg(alpha).toStdString();
    };
    Mel("qmVellixUtil -e -psp 1 0 50 10"); // what the user has chosen does not count
    const std::string plain = drawn("");
    Mel("qmVellixUtil -e -psp 0 0 50 50");
    EXPECT_EQ(plain, "13 px, 204");
    EXPECT_EQ(drawn(R"("pressureToSize": true,)"), "7 px, 204");
    EXPECT_EQ(drawn(R"("pressureToSize": true, "sizeCurve": [50, 50, 50],)"), "9 px, 204");
    EXPECT_EQ(drawn(R"("pressureToOpacity": true,)"), "13 px, 102");
    EXPECT_EQ(drawn(R"("pressureToOpacity": true, "opacityCurve": [0, 50, 25],)"), "13 px, 51");
    Settings::pencilTabletEnabled = true;
    EXPECT_EQ(drawn(R"("pressureToOpacity": false,)"), plain);
    Settings::pencilTabletEnabled = false;
    for (const char* fault :
         {"\"pressureToSize\": 1,", "\"sizeCurve\": [0, 50],", "\"opacityCurve\": [0, 4, 50],",
          "\"sizeCurve\": [0.5, 50, 50],", "\"pressureToOpacity\": \"yes\","}) {
        EXPECT_EQ(Refused(Line({stroke(fault)})).size(), 1) << fault;
    }
}

TEST_F(ReplayCommandTest, WritesText) {
    Mel(Line({StrokeText(1, "text", "[200, 200, 1, 0], [300, 300, 1, 8]",
                         R"("text": "MMM", "font": "DejaVu Sans",)")}));
    const QImage image = Node().GetLayerManager()->ComposeFrame("persp", 1, false);
    int covered = 0;
    for (int y = 0; y < 1024; ++y) {
        for (int x = 0; x < 1024; ++x) {
            covered += image.pixelColor(x, y).alpha() > 100;
        }
    }
    EXPECT_GT(covered, 60);
    EXPECT_LT(covered, 5000); // no frame around it, and nothing else
}

// A stroke that is refused ends the replay, and what was drawn before it is taken back.
TEST_F(ReplayCommandTest, DrawsAllOrNothing) {
    const QList<QByteArray> strokes = {StrokeText(5, "pencil", ACROSS), StrokeText(1, "pencil", ACROSS)};
    const struct {
        const char* prepare;
        const char* reason;
        int stroke;
        int frame;
    } cases[] = {
        {"qmVellixLayer -es 2 0 persp", "Active layer is locked.", 1, 5},
        {"qmVellixLayer -es 0 0 persp; qmVellixLayer -ev 0 0 persp", "Active layer is not visible.", 1, 5},
        {"qmVellixLayer -ev 1 0 persp; qmVellixLayer -es 1 0 persp",
         "Static layer: A frame is required at or before the current time.", 2, 1},
    };
    Settings::defaultStaticFrameTime = 3;
    for (const auto& c : cases) {
        Mel(c.prepare);
        const QString file = Recording(strokes);
        ExpectRefusal(Line(strokes),
                      QString("%1\nCannot replay \"%2\": stroke %3 (frame %4) could not be drawn. "
                              "Nothing was changed.")
                          .arg(c.reason, file)
                          .arg(c.stroke)
                          .arg(c.frame));
    }
    Settings::defaultStaticFrameTime = Settings::DEFAULT_STATIC_FRAME_TIME;
    // The layer and the node that a replay makes for itself are taken back too.
    Settings::automaticallyAddFirstLayer = false;
    Mel("file -f -new");
    EXPECT_EQ(Refused(Line(strokes)).first(), "A layer does not exist for the current camera");
    EXPECT_EQ(Drawing(), "no node");
    Settings::automaticallyAddFirstLayer = true;
}

TEST_F(ReplayCommandTest, SaysWhatIsWrong) {
    const QString broken = Recording({StrokeText(1, "pencil", ACROSS), StrokeText(2, "crayon", ACROSS)});
    ExpectRefusal(
        QString("qmVellixReplay -camera persp -file \"%1\"").arg(broken),
        QString("Cannot replay \"%1\": stroke 2: \"tool\" must be pencil, brush, eraser, text, line, arrow, "
                "ellipse or rectangle")
            .arg(broken));
    ExpectRefusal("qmVellixReplay -camera persp -file \"/nowhere.json\"",
                  "Cannot replay \"/nowhere.json\": the file does not exist");
    ExpectRefusal("qmVellixReplay -camera persp", "No recording. Name one with -file.");
    const QList<QByteArray> good = {StrokeText(1, "pencil", ACROSS)};
    ExpectRefusal(Line(good, "-camera nowhere"), "Camera does not exist: nowhere");
    Mel("file -f -new");
    ExpectRefusal(Line(good, ""), "There is no active camera. Name one with -camera.");
    EXPECT_EQ(Mel(Line({})).AsInt(), 0); // nothing to draw, nothing made
    EXPECT_EQ(Drawing(), "no node");
}

} // namespace
} // namespace vellix
