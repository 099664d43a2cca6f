// Flipping and rolling by command lines, as keys run them: what is seen, what never changes, and what ends
// it.
#include "node/Flipping.h"

#include "core/Frame.h"
#include "core/LightTable.h"
#include "host/Settings.h"
#include "paint/Stroke.h"
#include "plugin/commands/CommandFixture.h"
#include "scene/Timeline.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QImage>
#include <QPainter>

#include <functional>
#include <set>

namespace vellix {
namespace {

class FlippingTest : public CommandFixture {
protected:
    // Keys at 1, 3, 5, 7 and 9, the third of which is shown. Each has a square at its own place.
    void SetUp() override {
        Settings::WriteUserConfig();
        CommandFixture::SetUp();
        Mel("playbackOptions -min 1 -max 10; qmVellixLayer -add -n Rough -ls 0 persp");
        for (int key = 0; key < 5; ++key) {
            auto frame = std::make_unique<Frame>(MTime(1 + 2 * key, MTime::uiUnit()));
            QImage image(1024, 1024, QImage::Format_RGBA8888);
            image.fill(Qt::transparent);
            QPainter(&image).fillRect(100 * key, 0, 90, 90, QColor(255, 10 * key, 3, 200));
            frame->SetImage(image);
            Layers().GetActiveLayer("persp")->InsertFrame(frame.release());
        }
        Mel("currentTime 6; file -modified false");
    }
    void TearDown() override {
        Flipping::Stop();
        Settings::ReadUserConfig();
        CommandFixture::TearDown();
    }

    static LayerManager& Layers() { return *Node().GetLayerManager(); }
    static bool IsFlipped() { return Layers().GetLightTable().IsFlipped(); }
    /// The number of the key whose square is seen alone; -1 for none, -2 for several.
    static int SeenKey() {
        const QImage& image = *Node().GetFinalImage("persp");
        int seen = -1;
        for (int key = 0; key < 5; ++key) {
            if (image.pixelColor(100 * key + 45, 45).alpha() > 0) {
                seen = seen == -1 ? key : -2;
            }
        }
        return seen;
    }
    static bool Until(const std::function<bool()>& holds, int milliseconds = 10000) {
        QElapsedTimer timer;
        timer.start();
        while (!holds() && timer.elapsed() < milliseconds) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        return holds();
    }
};

TEST_F(FlippingTest, ShowsTheDrawingThatIsExportedAndChangesNothing) {
    Mel("global int $times = 0; scriptJob -event timeChanged \"global int $times; $times++\"");
    Mel("qmVellixUtil -e -gp 1; qmVellixUtil -e -gn 1; qmVellixUtil -e -pinDrawing 1");
    const QImage before = Node().GetFinalImage("persp")->copy();
    EXPECT_EQ(SeenKey(), -2) << "with its ghosts";
    const QString drawing = Drawing();
    const std::string undo = Mel("undoInfo -q -undoName").AsString();
    const struct {
        int steps;
        int key;
    } rows[] = {{-1, 1}, {1, 3}, {-2, 0}, {-9, 0}, {9, 4}};
    for (const auto& row : rows) {
        Mel(QString("qmVellixUtil -flip %1").arg(row.steps));
        EXPECT_EQ(SeenKey(), row.key) << row.steps;
        const QString path = folder_.filePath("frame.png");
        Mel(QString("qmVellixExport -file \"%1\" -st %2 -et %2 -c persp").arg(path).arg(1 + 2 * row.key));
        EXPECT_TRUE(IsFlipped()) << "an export changes nothing";
        EXPECT_EQ(*Node().GetFinalImage("persp"), QImage(path).convertToFormat(QImage::Format_RGBA8888));
        Mel("qmVellixUtil -flip 0");
        EXPECT_EQ(*Node().GetFinalImage("persp"), before);
    }
    Mel("qmVellixUtil -roll 1");
    std::set<int> seen;
    EXPECT_TRUE(Until([&] {
        seen.insert(SeenKey());
        return seen.size() == 5;
    })) << "two drawings on each side";
    EXPECT_EQ(seen, (std::set<int>{0, 1, 2, 3, 4}));
    Mel("qmVellixUtil -roll 0");
    EXPECT_EQ(*Node().GetFinalImage("persp"), before);

    EXPECT_EQ(Mel("currentTime -q").AsFloat(), 6.0);
    EXPECT_EQ(Mel("$times = $times").AsInt(), 0) << "nothing has noticed a time";
    EXPECT_EQ(Mel("undoInfo -q -undoName").AsString(), undo);
    EXPECT_EQ(Mel("file -q -modified").AsInt(), 0);
    EXPECT_EQ(Drawing(), drawing);
    Mel("scriptJob -killAll");
}

TEST_F(FlippingTest, RollsAsFastAndFarAsIsSet) {
    Mel("qmVellixUtil -e -rollCount 1; qmVellixUtil -e -rollRate 30; qmVellixUtil -roll 1");
    EXPECT_EQ(SeenKey(), 1) << "at once, and the previous first";
    QList<int> seen = {1};
    EXPECT_TRUE(Until([&] {
        if (SeenKey() != seen.last()) {
            seen.append(SeenKey());
        }
        return seen.size() == 9;
    }));
    // A slow machine may miss one; back and forth it goes by single drawings.
    for (int i = 1; i < seen.size(); ++i) {
        EXPECT_TRUE(seen[i] >= 1 && seen[i] <= 3);
    }
    EXPECT_TRUE(seen.contains(3));
    Mel("qmVellixUtil -flip 1");
    EXPECT_EQ(SeenKey(), 3);
    EXPECT_FALSE(Until([] { return SeenKey() != 3; }, 200)) << "a flip ends the roll";
}

TEST_F(FlippingTest, EndsWithWhateverChangesTheDrawing) {
    const struct {
        const char* line;
        int key; // seen afterwards
    } rows[] = {
        {"currentTime 8", 3},
        {"currentTime 6", 2},
        {"qmVellixFrame -stepForward", 3},
        {"undo", 2},
        {"redo", 3},
        {"undo", 2},
        {"currentTime 6; qmVellixFrame -insert", -1},
        {"undo", 2},
        {"qmVellixLayer -ev 0 0 persp", -1},
        {"undo", 2},
        {"qmVellixLayer -add -n Second -ls 0 persp", 2},
        {"undo", 2},
        {"setToolTo selectSuperContext", 2},
    };
    for (const char* begin : {"-flip -1", "-roll 1"}) {
        Mel("currentTime 6; qmVellixUtil -e -rollRate 30");
        for (const auto& row : rows) {
            const Layer& active = *Layers().GetActiveLayer("persp");
            if (active.IsVisible() && active.FrameCount() > 0) {
                Mel(QString("qmVellixUtil ") + begin);
                EXPECT_TRUE(IsFlipped()) << row.line;
            }
            SeenKey();
            Mel(row.line);
            EXPECT_FALSE(IsFlipped()) << row.line;
            EXPECT_EQ(SeenKey(), row.key) << row.line;
            EXPECT_FALSE(Until([&] { return IsFlipped(); }, 100)) << "it rolls on after " << row.line;
        }
    }
}

TEST_F(FlippingTest, EndsWithItsSceneAndItsNode) {
    Mel("qmVellixUtil -flip -1");
    EXPECT_EQ(SeenKey(), 1);
    Mel("delete `listRelatives -parent (\"" + Node().GetPath() + "\")`");
    EXPECT_EQ(BaseNode::GetMaster(), nullptr);
    Mel("qmVellixUtil -flip 0"); // the key is released
    Mel("undo");
    EXPECT_EQ(SeenKey(), 2) << "not as it was when the node went";

    Mel("qmVellixUtil -e -rollRate 30; qmVellixUtil -roll 1");
    Mel("file -f -new");
    EXPECT_FALSE(Until([] { return BaseNode::GetMaster() != nullptr; }, 200));
    ExpectRefusal("qmVellixUtil -flip 1", "There is no drawing in the scene.");
}

TEST_F(FlippingTest, NothingOfTheLightTableIsInTheFile) {
    const auto saved = [this](const char* name) {
        Mel(QString("file -rename \"%1\"; file -save -type mayaAscii").arg(folder_.filePath(name)));
        QFile file(folder_.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QList<QByteArray> lines = file.readAll().split('\n');
        while (!lines.isEmpty() && lines.first().startsWith("//")) {
            lines.removeFirst(); // the name and the date
        }
        return lines;
    };
    const QList<QByteArray> plain = saved("plain.ma");
    Mel("qmVellixUtil -e -pinDrawing 1; qmVellixUtil -e -markLayer 1; qmVellixUtil -flip -1");
    EXPECT_EQ(saved("plain.ma"), plain);
    EXPECT_TRUE(IsFlipped()) << "saving does not disturb it";
}

TEST_F(FlippingTest, IsRefusedWhileADrawingIsBeingDrawn) {
    Mel("currentTime 5");
    Stroke* const stroke = Node().GetActiveStroke("persp", false);
    ASSERT_NE(stroke, nullptr);
    stroke->tool = ToolType::Text;
    Refused("qmVellixUtil -flip -1");
    Refused("qmVellixUtil -roll 1");
    EXPECT_EQ(Warnings().size(), 1);
    EXPECT_FALSE(IsFlipped());

    // A transform waits, and goes on when the drawing is seen again.
    stroke->tool = ToolType::Transform;
    Mel("qmVellixUtil -flip -1");
    EXPECT_EQ(SeenKey(), 1);
    Mel("qmVellixUtil -flip 0");
    EXPECT_TRUE(Node().HasActiveStroke());
    Node().CancelActiveStroke();
    EXPECT_EQ(SeenKey(), 2);

    Mel("qmVellixUtil -flip -1");
    EXPECT_EQ(Node().GetActiveStroke("persp", false)->points.size(), 0);
    EXPECT_FALSE(IsFlipped()) << "a stroke is drawn on what is seen";
    EXPECT_EQ(Layers().GetStrokeDrawing().frame,
              Layers().GetActiveLayer("persp")->GetCurrentFrame()->GetId());
    Node().CancelActiveStroke();

    Mel("qmVellixLayer -ev 0 0 persp");
    Refused("qmVellixUtil -flip 1");
    EXPECT_EQ(Warnings(), QStringList("There is nothing to flip: the layer is hidden or has no drawings."));
}

TEST_F(FlippingTest, EndsWhenTheReleaseMightNotArrive) {
    for (const QEvent::Type type :
         {QEvent::ApplicationDeactivate, QEvent::WindowDeactivate, QEvent::MouseButtonPress,
          QEvent::MouseButtonDblClick, QEvent::TabletPress, QEvent::TouchBegin}) {
        Mel("qmVellixUtil -flip -1");
        QEvent event(type);
        QCoreApplication::sendEvent(QCoreApplication::instance(), &event);
        EXPECT_FALSE(IsFlipped()) << type;
        EXPECT_EQ(SeenKey(), 2) << type;
    }
}

TEST_F(FlippingTest, PinsAndMarksAreOfTheActiveLayer) {
    const auto answer = [this](const char* flag) { return Mel(QString("qmVellixUtil -q ") + flag).AsInt(); };
    EXPECT_EQ(answer("-pinDrawing"), 0);
    Mel("qmVellixUtil -e -pinDrawing -1");
    EXPECT_EQ(answer("-pinDrawing"), 1);
    Mel("currentTime 9");
    EXPECT_EQ(answer("-pinDrawing"), 0);
    EXPECT_EQ(SeenKey(), -2);
    Mel("qmVellixUtil -e -pinDrawing 1; qmVellixUtil -unpinAll; currentTime 6");
    EXPECT_EQ(answer("-pinDrawing"), 0);

    // A deleted drawing is no pin, and is one again after undo.
    Mel("currentTime 1; qmVellixUtil -e -pinDrawing 1; qmVellixFrame -delete; currentTime 6");
    EXPECT_EQ(SeenKey(), 2);
    Mel("undo; undo; currentTime 6");
    EXPECT_EQ(SeenKey(), -2);
    Mel("qmVellixUtil -unpinAll");

    EXPECT_EQ(answer("-markLayer"), 0);
    Mel("qmVellixUtil -e -markLayer 1");
    EXPECT_EQ(answer("-markLayer"), 1);
    Mel("qmVellixLayer -add -n Second -ls 0 persp");
    EXPECT_EQ(answer("-markLayer"), 0);
    ExpectRefusal("qmVellixUtil -e -pinDrawing 1",
                  "There is no drawing to pin: the active layer shows none now.");
    Mel("qmVellixLayer -e -active 0 persp; qmVellixUtil -e -markLayer -1");
    EXPECT_EQ(answer("-markLayer"), 0);
    const std::string undo = Mel("undoInfo -q -undoName").AsString();
    Mel("qmVellixLayer -em 1 1 persp");
    EXPECT_EQ(Mel("qmVellixLayer -qm 1 persp").AsInt(), 1);
    EXPECT_EQ(Mel("qmVellixLayer -qm 0 persp").AsInt(), 0);
    EXPECT_EQ(Mel("undoInfo -q -undoName").AsString(), undo) << "it is only seen";
    Mel("qmVellixLayer -em 0 1 persp");
    EXPECT_EQ(Mel("qmVellixLayer -qm 1 persp").AsInt(), 0);
    ExpectRefusal("qmVellixLayer -em 1 7 persp", "Layer does not exist for camera (index): persp (7)");
}

} // namespace
} // namespace vellix
