// A stroke belongs to the drawing on which it began, whatever happens until it ends.
#include "core/Frame.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/Stroke.h"
#include "plugin/commands/CommandFixture.h"
#include "plugin/paint/PngBytes.h"

#include <QMap>

#include <gmock/gmock.h>
#include <map>

namespace vellix {
namespace {

/// persp has the layers A, with drawings at 1 and 5, and B, with one at 1. front has C, and side has none.
class StrokeTargetTest : public CommandFixture {
protected:
    void SetUp() override {
        CommandFixture::SetUp();
        Settings::defaultLayerState = 0;
        Mel("playbackOptions -min 1 -max 12");
        for (const char* layer : {"front/C/1", "persp/A/1", "persp/A/5", "persp/B/1"}) {
            const QStringList parts = QString(layer).split('/');
            if (!LayerNames(parts[0]).contains(parts[1])) {
                Mel(QString("qmVellixLayer -add -n %1 -ls 0 %2").arg(parts[1], parts[0]));
            }
            Mel("currentTime " + parts[2]);
            DrawStroke(parts[0], 100 + 50 * parts[2].toInt());
        }
        Mel("qmVellixLayer -e -active 0 persp");
    }

    struct Pressed {
        QString camera;
        int layer = -1;
        bool frameAdded = false;
    };
    /// Begins a stroke as a press does, and draws.
    Pressed Press(const QString& camera, int y) {
        Pressed pressed{camera};
        EXPECT_TRUE(Node().PrepareForDraw(camera, pressed.layer, pressed.frameAdded));
        Stroke* const stroke = Node().GetActiveStroke(camera, false);
        stroke->tool = ToolType::Pencil;
        stroke->points = {{20, 1.0f, 1.0f, QPoint(100, y)}, {20, 1.0f, 1.0f, QPoint(300, y)}};
        stroke->changed = true;
        Node().GetFinalImage(camera);
        return pressed;
    }
    /// Ends the stroke as a release does. Returns whether it was committed.
    static bool Release(const Pressed& pressed) {
        const LayerPlace place = Node().FindLayer(Node().GetLayerManager()->GetStrokeDrawing().layer);
        const bool isCommitted =
            Node().MayCommitStroke() && MayaUtil::PushStroke(place.camera, pressed.layer, pressed.frameAdded);
        Node().CancelActiveStroke();
        return isCommitted;
    }
    /// Commits the stroke; undo has to give the drawing `before`, and redo what the stroke made.
    void ExpectUndoableRelease(const Pressed& pressed, const QString& before) {
        EXPECT_TRUE(Release(pressed));
        const QString after = Drawing();
        Mel("undo");
        EXPECT_EQ(Drawing().toStdString(), before.toStdString());
        Mel("redo");
        EXPECT_EQ(Drawing().toStdString(), after.toStdString());
    }
    /// Without the active camera, which a press changes with no undo step.
    static QString Layers() { return Drawing().section('\n', 1); }
    /// A place in the undo queue always shows the same drawing.
    static void ExpectSame(std::map<int, QString>& seen, int place) {
        const QString now = Layers();
        EXPECT_EQ(now.toStdString(), seen.emplace(place, now).first->second.toStdString()) << place;
    }
    void DrawStroke(const QString& camera, int y) {
        const Pressed pressed = Press(camera, y);
        EXPECT_TRUE(Release(pressed));
    }

    /// The pictures, by "camera/layer/time".
    static QMap<QString, QImage> Pictures() {
        QMap<QString, QImage> pictures;
        const auto layers = Node().GetLayerManager();
        for (const QString& camera : layers->GetCameras()) {
            for (const Layer* layer : layers->GetLayers(camera)) {
                for (int i = 0; i < layer->FrameCount(); ++i) {
                    const QString place = QString("%1/%2/%3")
                                              .arg(camera, layer->GetName())
                                              .arg(layer->GetFrame(i)->GetTimeValue());
                    pictures[place] = layer->GetFrame(i)->PeekImage();
                }
            }
        }
        return pictures;
    }
    /// The places whose pictures differ.
    static QStringList Changed(const QMap<QString, QImage>& before, const QMap<QString, QImage>& after) {
        QStringList changed;
        for (const QString& place : before.keys() + after.keys()) {
            if (before.contains(place) != after.contains(place) || before[place] != after[place]) {
                changed.append(place);
            }
        }
        changed.removeDuplicates();
        return changed;
    }
};

} // namespace

TEST_F(StrokeTargetTest, GoesIntoTheDrawingItBeganOn) {
    const struct {
        const char* camera;
        int time;
        const char* meanwhile;
        const char* drawing;
    } rows[] = {
        {"persp", 1, "currentTime 5", "persp/A/1"},
        {"persp", 3, "currentTime 5", "persp/A/3"},
        {"persp", 3, "currentTime 1", "persp/A/3"},
        {"persp", 1, "qmVellixLayer -e -active 1 persp", "persp/A/1"},
        {"persp", 3, "currentTime 5; qmVellixLayer -e -active 1 persp", "persp/A/3"},
        {"persp", 1, "qmVellixLayer -e -active 0 front; currentTime 7", "persp/A/1"},
        {"persp", 3, "qmVellixLayer -add -n D -ls 0 persp", "persp/A/3"},
        {"persp", 3, "qmVellixLayer -ins 0 -ls 0 persp", "persp/A/3"},
        {"persp", 1, "qmVellixLayer -mv 0 1 persp", "persp/A/1"},
        {"persp", 3, "qmVellixLayer -nc front -mv 0 0 persp", "front/A/3"},
        {"persp", 5, "qmVellixFrame -move 4 5 6; currentTime 1", "persp/A/9"},
        {"persp", 1, "qmVellixLayer -en Renamed 0 persp", "persp/Renamed/1"},
        {"side", 3, "currentTime 5; qmVellixLayer -e -active 1 persp", "side/Layer/3"},
        {"side", 3, "qmVellixLayer -e -active 0 front", "side/Layer/3"},
        {"side", 3, "qmVellixFrame -clear side", "side/Layer/3"},
        {"persp", 3, "qmVellixFrame -clear persp", "persp/A/3"},
        {"persp", 3, "qmVellixFrame -delete persp", "persp/A/3"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.camera << " at " << row.time << ": " << row.meanwhile);
        Mel(QString("currentTime %1").arg(row.time));
        const QString before = Drawing();
        const Pressed pressed = Press(row.camera, 700);
        Mel(row.meanwhile);
        const QMap<QString, QImage> pictures = Pictures();
        EXPECT_TRUE(Release(pressed));
        EXPECT_THAT(Changed(pictures, Pictures()), ::testing::ElementsAre(QString(row.drawing)));
        const QString after = Drawing();

        Mel("undo");
        QStringList undone = Changed(pictures, Pictures());
        EXPECT_EQ(undone, pressed.frameAdded ? QStringList(row.drawing) : QStringList());
        Mel("redo");
        EXPECT_EQ(Drawing().toStdString(), after.toStdString());
        Mel("undo");
        if (pressed.frameAdded) {
            EXPECT_FALSE(Pictures().contains(row.drawing)) << "the key goes with the stroke";
        }
        // Each statement of the line is a step.
        for (int i = 0; i <= QString(row.meanwhile).count(';'); ++i) {
            Mel("undo");
        }
        // A layer that a press added is not there any more to be the active one.
        const auto compared = [&row](const QString& drawing) {
            const int begin = row.camera == std::string("side") ? drawing.indexOf('\n') : 0;
            return drawing.mid(begin).toStdString();
        };
        EXPECT_EQ(compared(Drawing()), compared(before));
    }
}

TEST_F(StrokeTargetTest, IsDroppedWithWhatItsPressAdded) {
    const QString gone = "The stroke was dropped: the drawing it began on is gone.";
    const struct {
        const char* camera;
        int time;
        const char* meanwhile;
        QString message;
    } rows[] = {
        {"persp", 1, "qmVellixLayer -es 2 0 persp", "The stroke was dropped: the layer \"A\" is locked."},
        {"persp", 3, "qmVellixLayer -es 2 0 persp", "The stroke was dropped: the layer \"A\" is locked."},
        {"persp", 3, "qmVellixLayer -ev 0 0 persp; currentTime 5",
         "The stroke was dropped: the layer \"A\" is not visible."},
        {"persp", 1, "qmVellixLayer -delete 0 persp", gone},
        {"persp", 3, "qmVellixLayer -delete 0 persp", gone},
        {"persp", 3, "qmVellixLayer -deleteAll persp", gone},
        {"persp", 5, "qmVellixFrame -delete", gone},
        {"persp", 5, "qmVellixFrame -cut; currentTime 1", gone},
        {"side", 3, "qmVellixLayer -es 2 0 side", "The stroke was dropped: the layer \"Layer\" is locked."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.camera << " at " << row.time << ": " << row.meanwhile);
        const int statements = QString(row.meanwhile).count(';') + 1;
        Mel(QString("currentTime %1").arg(row.time));
        const QString before = Drawing();
        QString expected = before;
        const bool layerIsAdded = Node().LayerCount(row.camera) == 0;
        if (!layerIsAdded) {
            Mel(row.meanwhile); // without a stroke
            expected = Drawing();
            for (int i = 0; i < statements; ++i) {
                Mel("undo");
            }
            ASSERT_EQ(Drawing().toStdString(), before.toStdString());
        }
        const Pressed pressed = Press(row.camera, 700);
        Mel(row.meanwhile);
        EXPECT_FALSE(Release(pressed));
        EXPECT_EQ(Messages(), QStringList(row.message));
        EXPECT_EQ(Drawing().toStdString(), expected.toStdString());
        EXPECT_FALSE(Node().HasActiveStroke());
        if (!layerIsAdded) {
            for (int i = 0; i < statements; ++i) {
                Mel("undo");
            }
            EXPECT_EQ(Drawing().toStdString(), before.toStdString());
        }
    }
}

// What undo brings back has more right to its time than the empty key of a press.
TEST_F(StrokeTargetTest, UndoUnderTheStrokeBringsBackEverything) {
    Mel("currentTime 5");
    const QString whole = Drawing();
    Mel("qmVellixFrame -cut");
    const Pressed pressed = Press("persp", 700);
    EXPECT_TRUE(pressed.frameAdded);
    Mel("undo");
    EXPECT_EQ(Drawing().toStdString(), whole.toStdString());
    EXPECT_FALSE(Release(pressed));
    EXPECT_EQ(Drawing().toStdString(), whole.toStdString());

    Mel("currentTime 3; qmVellixLayer -add -n D -ls 0 persp");
    const QString added = Drawing();
    const Pressed second = Press("persp", 700);
    Mel("undo");
    EXPECT_FALSE(Release(second));
    Mel("redo");
    EXPECT_EQ(Drawing().toStdString(), added.toStdString());
}

// A frame that lands on the key of a press would take the drawing from under the stroke.
TEST_F(StrokeTargetTest, NoFrameIsPutUnderTheStroke) {
    const struct {
        int time;
        const char* line;
        const char* message;
    } rows[] = {
        {3, "qmVellixFrame -move 2 1 1", "Move Failed. A frame already exists at time 3"},
        {3, "qmVellixFrame -move 2 1 5", "Move Failed. A frame already exists at time 3"},
        {2, "timeControl -e -rangeArray 1 2 $gPlayBackSlider; qmVellixFrame -retime 1",
         "Retime Failed. A stroke is being drawn at time 2. Finish it first."},
        {3, "timeControl -e -rangeArray 3 4 $gPlayBackSlider; qmVellixFrame -paste",
         "Paste Failed. A stroke is being drawn at time 3. Finish it first."},
        {3, "qmVellixFrame -duplicate", "A frame already exists at the current time."},
    };
    Mel("currentTime 5; qmVellixFrame -copy");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        Mel(QString("currentTime %1").arg(row.time));
        const QString before = Drawing();
        const Pressed pressed = Press("persp", 700);
        EXPECT_TRUE(pressed.frameAdded);
        const QString during = Drawing();
        EXPECT_EQ(Refused(row.line), QStringList(row.message));
        EXPECT_EQ(Drawing().toStdString(), during.toStdString());
        ExpectUndoableRelease(pressed, before);
        Mel("undo");
    }
}

TEST_F(StrokeTargetTest, APlaceThatTheCameraHadIsLeftToIt) {
    Mel("currentTime 3");
    for (const bool hadPlace : {false, true}) {
        if (hadPlace) {
            Mel("qmVellixLayer -add -ls 0 side; qmVellixLayer -deleteAll side;"
                "qmVellixLayer -e -active 0 persp");
        }
        const QString before = Drawing();
        EXPECT_EQ(before.contains("side has no layers"), hadPlace);
        DrawStroke("side", 200);
        const QString after = Drawing();
        for (int round = 0; round < 2; ++round) {
            Mel("undo");
            EXPECT_EQ(Drawing().toStdString(), before.toStdString());
            Mel("redo");
            EXPECT_EQ(Drawing().toStdString(), after.toStdString());
        }
        Mel("undo");
        Press("side", 400);
        Node().CancelActiveStroke();
        EXPECT_EQ(Drawing().toStdString(), before.toStdString());
    }
}

// The press gives the camera a place, which goes with its layer: what comes there meanwhile has its own.
TEST_F(StrokeTargetTest, WhatComesToTheCameraOfAPressLeavesNoPlaceBehind) {
    Mel("camera -n other; currentTime 3");
    const QStringList lines = {
        "qmVellixLayer -add -n D -ls 0 side",
        "qmVellixLayer -nc side -mv 0 1 persp",
        "qmVellixLayer -moveAll side front",
        "qmVellixLayer -nc front -mv 0 -1 side",
        "qmVellixLayer -moveAll other1 side",
        "qmVellixLayer -add -n D -ls 0 side; qmVellixLayer -del 1 side; qmVellixLayer -add -n E -ls 0 side",
        ("qmVellixLayer -moveAll other1 side; qmVellixLayer -moveAll side front;"
         "qmVellixLayer -moveAll front other1"),
        "rename other1 aside; qmVellixLayer -moveAll aside side; rename aside third",
        "qmVellixLayer -nc other1 -mv 0 -1 side; rename other1 aside; qmVellixLayer -add -ls 0 aside",
    };
    for (const bool isKept : {true, false}) {
        for (const QString& line : lines) {
            SCOPED_TRACE(::testing::Message() << line.toStdString() << (isKept ? "" : ", dropped"));
            const QString before = Layers();
            const Pressed pressed = Press("side", 700);
            for (const QString& one : line.split(';')) {
                Mel(one);
            }
            if (isKept) {
                EXPECT_TRUE(Release(pressed));
            } else {
                Node().CancelActiveStroke();
            }
            const int steps = line.count(';') + (isKept ? 2 : 1);
            std::map<int, QString> seen{{0, Layers()}};
            for (int round = 0; round < 3; ++round) {
                for (int i = 1; i <= steps; ++i) {
                    Mel("undo");
                    ExpectSame(seen, i);
                }
                EXPECT_EQ(Layers().toStdString(), before.toStdString());
                for (int i = steps - 1; i >= 0; --i) {
                    Mel("redo");
                    ExpectSame(seen, i);
                }
            }
            for (int i = 1; i <= steps; ++i) {
                Mel("undo");
            }
        }
    }
}

// What is active may change while a stroke is drawn on a layer that its press has added.
TEST_F(StrokeTargetTest, UndoLeavesActiveWhatARedoInMidStrokeMadeActive) {
    Mel("currentTime 3; qmVellixLayer -add -n D -ls 0 front; qmVellixLayer -add -n E -ls 0 persp");
    for (const char* const first : {"qmVellixLayer -e -active 0 persp", "qmVellixLayer -e -active 1 persp",
                                    "qmVellixLayer -e -active 0 front",
                                    "qmVellixLayer -add -ls 0 side; qmVellixLayer -deleteAll side"}) {
        for (const char* const line :
             {"qmVellixLayer -moveAll persp front", "qmVellixLayer -moveAll front persp",
              "qmVellixLayer -deleteAll persp", "qmVellixLayer -move 0 1 persp",
              "qmVellixLayer -nc front -mv 0 0 persp", "qmVellixLayer -del 0 persp"}) {
            SCOPED_TRACE(std::string(first) + "; " + line);
            Mel(first);
            const QString before = Layers();
            Mel(line);
            const QString done = Layers();
            Mel("undo");
            const Pressed pressed = Press("side", 700);
            Mel("redo");
            EXPECT_TRUE(Release(pressed));
            Mel("undo");
            EXPECT_EQ(Layers().toStdString(), done.toStdString());
            Mel("undo");
            EXPECT_EQ(Layers().toStdString(), before.toStdString());
        }
    }
}

// What is put back goes where it belongs, though the camera and its layers have changed unrecorded.
TEST_F(StrokeTargetTest, RedoFindsThePlaceOfTheLayerThatThePressAdded) {
    Mel("createNode transform -n shot; createNode camera -n shotShape -p shot; currentTime 3");
    DrawStroke("shot", 700);
    const LayerId added = Node().GetLayer("shot", 0)->GetId();
    Mel("undo");
    EXPECT_EQ(Node().FindLayer(added).layer, nullptr);
    Mel("undoInfo -stateWithoutFlush 0; rename shot hero; undoInfo -stateWithoutFlush 1");
    Refused("qmVellixLayer -ins 0 -n Extra hero");
    Mel("redo");
    EXPECT_EQ(Messages(), QStringList());
    const LayerPlace place = Node().FindLayer(added);
    EXPECT_EQ(place.camera, "hero");
    EXPECT_EQ(place.index, 0); // nothing was below it
    EXPECT_EQ(Node().GetActiveCamera(), "hero");
    EXPECT_EQ(Node().LayerCount("shot"), 0);
    Mel("undo; redo");
    EXPECT_EQ(Node().FindLayer(added).camera, "hero");
}

TEST_F(StrokeTargetTest, UndoAndRedoOfManyStrokesActOnTheSameObjects) {
    QStringList states{Drawing()};
    const auto state = [&] { states.append(Drawing()); };
    Mel("currentTime 3");
    states[0] = Drawing();
    DrawStroke("side", 200);
    state();
    const LayerId layer = Node().GetLayer("side", 0)->GetId();
    const FrameId frame = Node().GetLayer("side", 0)->GetFrame(0)->GetId();
    Mel("qmVellixLayer -en \"Clean up\" 0 side");
    state();
    DrawStroke("side", 300);
    state();
    Mel("qmVellixLayer -ins 0 -ls 0 side");
    state();
    DrawStroke("side", 400);
    state();
    for (int round = 0; round < 2; ++round) {
        for (int i = states.size() - 2; i >= 0; --i) {
            Mel("undo");
            EXPECT_EQ(Drawing().toStdString(), states[i].toStdString()) << i;
        }
        for (int i = 1; i < states.size(); ++i) {
            Mel("redo");
            EXPECT_EQ(Drawing().toStdString(), states[i].toStdString()) << i;
        }
    }
    const LayerPlace place = Node().FindLayer(layer);
    ASSERT_NE(place.layer, nullptr);
    EXPECT_NE(place.layer->FindFrame(frame), nullptr);
}

TEST_F(StrokeTargetTest, ALayerWhoseStepIsUndoneUnderAStrokeGoesWithTheStroke) {
    for (const bool isKept : {true, false}) {
        SCOPED_TRACE(isKept ? "kept" : "dropped");
        Mel("currentTime 3");
        const QString before = Drawing();
        DrawStroke("side", 200);
        const QString first = Drawing();
        Mel("currentTime 5");
        const Pressed pressed = Press("side", 400);
        Mel("undo; undo");
        EXPECT_EQ(Pictures().keys().filter("side/"), QStringList("side/Layer/5")) << "the stroke goes on";
        if (isKept) {
            ExpectUndoableRelease(pressed, before);
        } else {
            Node().CancelActiveStroke();
            EXPECT_EQ(Drawing().toStdString(), before.toStdString());
            Mel("redo");
            EXPECT_EQ(Drawing().toStdString(), first.toStdString());
        }
        Mel("undo");
        EXPECT_EQ(Drawing().toStdString(), before.toStdString());
    }
}

TEST_F(StrokeTargetTest, UndoAndRedoWithoutTheDrawingSaySoAndChangeNothing) {
    const auto layers = Node().GetLayerManager();
    Mel("currentTime 3");
    DrawStroke("persp", 700);
    std::unique_ptr<Layer> taken = layers->RemoveLayer("persp", 0);
    QString before = Drawing();
    Mel("undo");
    EXPECT_EQ(Messages(), QStringList("The stroke cannot be undone: its drawing is gone."));
    EXPECT_EQ(Drawing().toStdString(), before.toStdString());

    layers->InsertLayer("persp", 0, taken.release());
    Mel("currentTime 7");
    DrawStroke("persp", 700);
    Mel("undo");
    auto other = std::make_unique<Frame>(MTime(7, MTime::uiUnit()));
    other->SetImage(Pictures()["front/C/1"]);
    layers->GetLayer("persp", 0)->InsertFrame(other.release());
    before = Drawing();
    Mel("redo");
    EXPECT_EQ(Messages(), QStringList("The stroke cannot be redone: its drawing is gone, or another one has "
                                      "taken its place."));
    EXPECT_EQ(Drawing().toStdString(), before.toStdString());
}

// A script that ends the stroke in progress does not know what the press added.
TEST_F(StrokeTargetTest, AScriptThatCommitsThePressIsUndoneWithWhatItAdded) {
    for (const char* const camera : {"persp", "side"}) {
        SCOPED_TRACE(camera);
        Mel("currentTime 3");
        const QString before = Drawing();
        const Pressed pressed = Press(camera, 700);
        EXPECT_TRUE(pressed.frameAdded);
        Mel(QString("qmVellixStroke ") + camera);
        const QString after = Drawing();
        EXPECT_FALSE(Node().HasActiveStroke());
        for (int round = 0; round < 2; ++round) {
            Mel("undo");
            EXPECT_EQ(Drawing().toStdString(), before.toStdString());
            Mel("redo");
            EXPECT_EQ(Drawing().toStdString(), after.toStdString());
        }
        Mel("undo");
    }
}

TEST_F(StrokeTargetTest, AScriptThatSaysThePressKeyedAnOldDrawingTakesNothingAway) {
    Mel("createNode transform -n shot; createNode camera -n shotShape -p shot; currentTime 5");
    DrawStroke("shot", 300); // its layer has this drawing and no other
    for (const char* const flags : {"-frameAdded", "-layerAdded 1", "-frameAdded -layerAdded 1"}) {
        SCOPED_TRACE(flags);
        const QString before = Drawing();
        EXPECT_FALSE(Press("shot", 700).frameAdded);
        Mel(QString("qmVellixStroke %1 shot").arg(flags));
        const QString after = Drawing();
        EXPECT_NE(after.toStdString(), before.toStdString());
        for (int round = 0; round < 2; ++round) {
            Mel("undo");
            EXPECT_EQ(Drawing().toStdString(), before.toStdString());
            Mel("redo");
            EXPECT_EQ(Drawing().toStdString(), after.toStdString());
        }
        Mel("undo");
    }
}

TEST_F(StrokeTargetTest, AStrokeOnAPictureThatDoesNotDecodeIsDropped) {
    Mel("currentTime 3");
    EXPECT_TRUE(Press("persp", 700).frameAdded);
    Frame& frame = *Node().GetLayer("persp", 0)->GetCurrentFrame();
    frame.SetPackedImage(png_bytes::NotInflating());
    const QString before = Drawing();
    for (const char* const flags : {"", "-frameAdded"}) {
        EXPECT_EQ(Refused(QString("qmVellixStroke %1 persp").arg(flags)),
                  QStringList("The stroke was dropped: the picture that it began on cannot be decoded."));
        EXPECT_FALSE(Node().HasActiveStroke());
        EXPECT_EQ(Drawing().toStdString(), before.toStdString());
        Node().GetActiveStroke("persp", true)->tool = ToolType::Rectangle; // as a script may begin one
    }
    Node().CancelActiveStroke();
    EXPECT_EQ(frame.GetPackedImage(), png_bytes::NotInflating());
}

TEST_F(StrokeTargetTest, ARefusedPressAddsNothing) {
    Mel("currentTime 3");
    const QString before = Drawing();
    Settings::defaultLayerState = 2;
    int layer = -1;
    bool frameAdded = false;
    EXPECT_FALSE(Node().PrepareForDraw("side", layer, frameAdded));
    EXPECT_EQ(Messages(), QStringList("Active layer is locked."));
    EXPECT_EQ(layer, -1);
    EXPECT_EQ(Drawing().toStdString(), before.toStdString());
    Settings::defaultLayerState = 0;

    EXPECT_FALSE(Node().PrepareForDraw("nowhere", layer, frameAdded));
    EXPECT_EQ(Messages(), QStringList({"Active layer is locked.", "Camera does not exist: nowhere"}));
    EXPECT_EQ(Drawing().toStdString(), before.toStdString());

    // A static layer that has not followed the time finds its frame's time taken.
    Mel("qmVellixLayer -es 1 0 persp");
    Settings::insertDefaultStaticFrame = true;
    const int time = Settings::defaultStaticFrameTime;
    Settings::defaultStaticFrameTime = 1;
    Node().GetLayer("persp", 0)->UpdateCurrentFrameIndex(-5000);
    EXPECT_FALSE(Node().PrepareForDraw("persp", layer, frameAdded));
    EXPECT_FALSE(frameAdded);
    EXPECT_EQ(Messages(), QStringList("A frame cannot be added at the current time."));
    Settings::defaultStaticFrameTime = time;
}

// A press that is dropped takes no drawing with it that has got into its key or layer meanwhile.
TEST_F(StrokeTargetTest, WhatWasDrawnMeanwhileStays) {
    Mel("currentTime 3");
    Pressed pressed = Press("persp", 700);
    const auto layers = Node().GetLayerManager();
    Layer* const layer = layers->GetActiveLayer("persp");
    layer->GetCurrentFrame()->SetImage(Pictures()["front/C/1"]);
    Node().CancelActiveStroke();
    EXPECT_EQ(Pictures().value("persp/A/3"), Pictures().value("front/C/1"));
}

// It would stay, known to no undo step, when the stroke is undone.
TEST_F(StrokeTargetTest, NoFrameComesToTheLayerOfAPress) {
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(folder_.filePath("red.png")));
    Mel("currentTime 5; qmVellixFrame -copy; currentTime 3");
    const QString before = Drawing();
    const Pressed pressed = Press("side", 700);
    const QString name = LayerNames("side").value(0);
    const QString during = Drawing();
    const QString finish = "The stroke that made the layer is still being drawn. Finish it first.";
    Mel("undoInfo -stateWithoutFlush 0; currentTime 8; undoInfo -stateWithoutFlush 1");
    for (const char* const flag : {"-insert", "-paste", "-duplicate"}) {
        SCOPED_TRACE(flag);
        EXPECT_EQ(Refused(QString("qmVellixFrame %1 side").arg(flag)), QStringList(finish));
    }
    const QString path = folder_.filePath("red.png");
    EXPECT_EQ(
        Refused(
            QString("qmVellixImport -camera side -layer \"%1\" -startTime 8 -file \"%2\"").arg(name, path)),
        QStringList(QString("Cannot import \"%1\": the stroke that made the layer \"%2\" is still "
                            "being drawn; finish it first. Nothing was changed.")
                        .arg(path, name)));
    Mel("undoInfo -stateWithoutFlush 0; currentTime 3; undoInfo -stateWithoutFlush 1");
    EXPECT_EQ(Drawing().toStdString(), during.toStdString());
    ExpectUndoableRelease(pressed, before);
}

TEST_F(StrokeTargetTest, ALayerThatIsDeletedUnderItsOwnPressGoesWithTheStroke) {
    Mel("createNode transform -n shot; createNode camera -n shotShape -p shot");
    const QString before = Drawing();
    for (const char* const line : {"qmVellixLayer -delete 0 side", "qmVellixLayer -deleteAll side"}) {
        SCOPED_TRACE(line);
        Pressed pressed = Press("side", 300);
        ASSERT_EQ(LayerNames("side").size(), 1);
        Mel(line);
        EXPECT_FALSE(Release(pressed));
        EXPECT_EQ(Drawing().toStdString(), before.toStdString()) << "with the place and the active camera";
        for (int round = 0; round < 2; ++round) {
            Mel("undo");
            EXPECT_EQ(Drawing().toStdString(), before.toStdString()) << "no step made the layer";
            Mel("redo");
            EXPECT_EQ(Drawing().toStdString(), before.toStdString());
        }
        Mel("undo");
        // While the stroke lasts, undo brings its layer back, and the stroke takes it along.
        pressed = Press("side", 300);
        Mel(line);
        Mel("undo");
        EXPECT_EQ(LayerNames("side").size(), 1);
        EXPECT_FALSE(Release(pressed));
        EXPECT_EQ(Drawing().toStdString(), before.toStdString());
    }
    const Pressed pressed = Press("shot", 300);
    Mel("rename shot hero; qmVellixLayer -delete 0 hero");
    EXPECT_FALSE(Release(pressed));
    EXPECT_EQ(Drawing().toStdString(), before.toStdString()) << "the camera has got another name";
}

} // namespace vellix
