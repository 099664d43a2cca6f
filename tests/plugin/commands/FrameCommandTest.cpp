#include "core/Frame.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/DrawUtil.h"
#include "plugin/commands/CommandFixture.h"
#include "plugin/paint/PngBytes.h"

#include <QHash>
#include <QImage>

namespace vellix {
namespace {

class FrameCommandTest : public CommandFixture {
protected:
    void SetUp() override {
        CommandFixture::SetUp();
        Mel("qmVellixLayer -add -n Rough -ls 0 persp");
    }

    /// The times for which pictures were drawn, by their PNG bytes.
    static QHash<QByteArray, int>& DrawnFor() {
        static QHash<QByteArray, int> times;
        return times;
    }

    static QByteArray Picture(int time) {
        QByteArray png = DrawnFor().key(time);
        if (png.isEmpty()) {
            QImage image(Settings::FINAL_IMAGE_WIDTH, Settings::FINAL_IMAGE_WIDTH, QImage::Format_RGBA8888);
            image.fill(QColor(time, 0, 0));
            DrawUtil::PackPngBuffer(image, png);
            DrawnFor().insert(png, time);
        }
        return png;
    }

    /// Keys the active layer of persp anew.
    static void Key(const QString& times) {
        Layer& layer = *Node().GetActiveLayer("persp");
        layer.RemoveAllFrames();
        for (const QString& time : times.split(' ', Qt::SkipEmptyParts)) {
            auto frame = std::make_unique<Frame>(MTime(time.toInt(), MTime::uiUnit()));
            frame->SetPackedImage(Picture(time.toInt()));
            layer.InsertFrame(frame.release());
        }
    }

    /// The keys of persp's active layer; where the picture is not the one of that time, the time that it was
    /// drawn for stands behind, or - for an empty one.
    static QString Keys() {
        QStringList keys;
        for (const Frame* frame : Frames()) {
            const int time = frame->GetTimeValue();
            const auto drawn = DrawnFor().constFind(frame->GetPackedImage());
            QString key = QString::number(time);
            if (drawn == DrawnFor().constEnd()) {
                key += "=-";
            } else if (*drawn != time) {
                key += QString("=%1").arg(*drawn);
            }
            keys.append(key);
        }
        return keys.join(' ');
    }

    static QList<const Frame*> Frames() {
        QList<const Frame*> frames;
        const Layer& layer = *Node().GetActiveLayer("persp");
        for (int i = 0; i < layer.FrameCount(); ++i) {
            frames.append(layer.GetFrame(i));
        }
        return frames;
    }

    static QList<QByteArray> Bytes() {
        QList<QByteArray> bytes;
        for (const Frame* frame : Frames()) {
            bytes.append(frame->GetPackedImage());
        }
        return bytes;
    }

    static int Now() { return MayaUtil::GetPlaybackTimeValue(); }

    /// "10 15" highlights frames 10 to 14 of the time slider; nothing takes the highlight away.
    void Highlight(const QString& range) {
        Mel(range.isEmpty() ? QString("timeControl -e -rangeVisible 0 $gPlayBackSlider")
                            : QString("timeControl -e -rangeArray %1 $gPlayBackSlider").arg(range));
    }

    struct Edit {
        const char* keys;
        int time;
        const char* range;
        const char* flags;
        const char* result;
        int timeAfter;
    };

    void Check(const Edit& edit) {
        SCOPED_TRACE(QString("%1 on %2 at %3, %4")
                         .arg(edit.flags, edit.keys)
                         .arg(edit.time)
                         .arg(edit.range)
                         .toStdString());
        Key(edit.keys);
        Mel(QString("currentTime %1").arg(edit.time));
        Highlight(edit.range);
        const QString before = Drawing();
        const QList<const Frame*> frames = Frames();
        Mel(QString("qmVellixFrame ") + edit.flags);
        Highlight("400 500"); // the way back and forth goes by what was highlighted before
        for (int round = 0; round < 3; ++round) {
            EXPECT_EQ(Keys().toStdString(), edit.result);
            EXPECT_EQ(Now(), edit.timeAfter);
            const Layer& layer = *Node().GetActiveLayer("persp");
            EXPECT_EQ(layer.GetCurrentFrameIndex(), layer.FindFrameIndex(Now()));
            const QString after = Drawing();
            Mel("undo");
            EXPECT_EQ(Drawing().toStdString(), before.toStdString());
            EXPECT_EQ(Frames(), frames) << "other frames came back";
            EXPECT_EQ(Now(), edit.time);
            Mel("redo");
            EXPECT_EQ(Drawing().toStdString(), after.toStdString());
        }
    }
};

TEST_F(FrameCommandTest, KeysAndTheWayBack) {
    const Edit edits[] = {
        {"", 5, "", "-insert", "5=-", 5},
        {"1 5", 5, "", "-insert persp", "1 5", 5},
        {"12 15", 3, "10 15", "-ins", "10=- 11=- 12 13=- 14=- 15", 3},
        {"1", 3, "-2.9 1.9", "-insert", "-2=- -1=- 0=- 1", 3},
        {"1 9", 4, "", "-duplicate", "1 4=1 9", 4},
        {"1 9", 4, "5 9", "-dup persp", "1 4=1 9", 4},
        {"10 12 15", 1, "10 15", "-delete", "15", 1},
        {"1 5 9", 9, "", "-del", "1 5", 9},
        {"1 5 9", 8, "", "-delete", "1 5 9", 8},
        {"1 5 9", 9, "5 6", "-delete", "1 9", 9},
        {"1 5 9", 3, "1 9", "-cutFrame", "9", 3},
        {"1 5 9", 3, "1 6", "-clear", "1=- 5=- 9", 3},
        {"1 5 9", 3, "2 5", "-clr", "1 5 9", 3},
    };
    for (const Edit& edit : edits) {
        Check(edit);
    }
}

TEST_F(FrameCommandTest, StepsFromDrawingToDrawingAndRound) {
    const Edit edits[] = {
        {"1 5 9", 5, "", "-stepForward", "1 5 9", 9},
        {"1 5 9", 9, "", "-sf", "1 5 9", 1},
        {"1 5 9", 6, "", "-stepBack", "1 5 9", 5},
        {"1 5 9", 1, "", "-sb", "1 5 9", 9},
        {"4", 4, "", "-stepForward", "4", 4},
        {"4", 7, "", "-stepForward", "4", 4},
        {"", 7, "", "-stepBack", "", 7},
    };
    for (const Edit& edit : edits) {
        Check(edit);
    }
}

TEST_F(FrameCommandTest, RetimesHolds) {
    const Edit edits[] = {
        {"1 5 9", 5, "", "-retime 2", "1 5 7=9", 5},
        {"1 5 9", 5, "", "-retime 2 -relative", "1 5 11=9", 5},
        {"1 5 9", 5, "", "-moveToNext -retime 2", "1 5 7=9", 7},
        {"1 5 9", 5, "", "-retime 0", "1 5 6=9", 5},
        {"1 5 9", 5, "", "-ret -90 -rel -mvn persp", "1 5 6=9", 6},
        {"1 5 9", 7, "", "-retime 2", "1 5 7=9", 5},  // between two drawings the earlier one is meant
        {"1 5 9", 9, "", "-retime 2", "1 5 9", 9},    // the last one has no hold
        {"1 5 9", 12, "", "-mvn -ret 2", "1 5 9", 9}, //
        {"3 5 9", 1, "", "-retime 9", "3 5 9", 3},    // nothing is shown yet
        {"3 5 9", 1, "", "-retime 9 -mvn", "3 5 9", 3},
        {"1 5 9", 9, "1 2", "-retime 8 -mvn", "1 9=5 13=9", 9},
        {"1 5 9 20", 1, "1 9", "-retime 1", "1 2=5 3=9 14=20", 1},
        {"1 5 9 20", 1, "2 6", "-retime 1", "1 2=5 3=9 14=20", 1}, // an end between two goes on to the later
        {"1 5 9 20", 1, "5 20", "-ret 3 -rel", "1 5 12=9 26=20", 5},
        {"1 2 3 4", 1, "1 4", "-ret -1 -rel -mvn", "1 2 3 4", 2},
    };
    for (const Edit& edit : edits) {
        Check(edit);
    }
}

TEST_F(FrameCommandTest, MovesRangesWithTheirEnds) {
    const Edit edits[] = {
        {"5 6 7 8", 1, "", "-move 2 5 8", "7=5 8=6 9=7 10=8", 1},
        {"5 6 7 8", 1, "", "-move -3 5 8 persp", "2=5 3=6 4=7 5=8", 1},
        {"5 8", 1, "", "-mv 1 5 5", "6=5 8", 1},
        {"1 5 9", 9, "", "-move 20 1 5", "9 21=1 25=5", 9}, // over one that stays
        {"1 5 9", 9, "", "-move -20 5 9", "-15=5 -11=9 1", 9},
        {"1 5 9", 5, "", "-move 0 1 9", "1 5 9", 5},
        {"1 5 9", 5, "", "-move 3 9 1", "1 5 9", 5},
        {"1 5 9", 5, "1 9", "-move 3 6 8", "1 5 9", 5},
    };
    for (const Edit& edit : edits) {
        Check(edit);
    }
}

TEST_F(FrameCommandTest, ThePasteKeepsTheDistances) {
    Key("40 43 46");
    Highlight("40 47");
    Mel("qmVellixFrame -copy");
    const Edit edits[] = {
        {"1 23", 20, "", "-paste", "1 20=40 23=43 26=46", 20},
        {"1 23", 1, "20 21", "-pst persp", "1 20=40 23=43 26=46", 1},
        {"6", 0, "", "-paste", "0=40 3=43 6=46", 0},
    };
    for (const Edit& edit : edits) {
        Check(edit);
    }
    Key("1 2");
    Highlight("2 3");
    Mel("qmVellixFrame -cut; currentTime 8");
    Highlight("");
    Mel("qmVellixFrame -paste");
    EXPECT_EQ(Keys(), "1 8=2");
    Highlight("50 60"); // nothing there: the clipboard is empty then
    Mel("qmVellixFrame -copy; qmVellixFrame -paste");
    EXPECT_EQ(Keys(), "1 8=2");
    Mel("undo; undo; redo"); // pastes what it did, not what is on the clipboard now
    EXPECT_EQ(Keys(), "1 8=2");
}

TEST_F(FrameCommandTest, APictureThatDoesNotDecodeKeepsItsBytesThroughEdits) {
    Key("1");
    const QByteArray png = png_bytes::NotInflating();
    Node().GetActiveLayer("persp")->GetFrame(0)->SetPackedImage(png);
    Node().GetFinalImage("persp"); // finds the damage
    Mel("currentTime 4; qmVellixFrame -duplicate persp");
    EXPECT_EQ(Bytes(), (QList<QByteArray>{png, png}));
    Highlight("1 5");
    Mel("qmVellixFrame -cut persp");
    EXPECT_TRUE(Frames().isEmpty());
    Mel("currentTime 11; qmVellixFrame -paste persp");
    EXPECT_EQ(Bytes(), (QList<QByteArray>{png, png}));
    Mel("undo; undo; undo; undo"); // the step in time too
    EXPECT_EQ(Bytes(), (QList<QByteArray>{png}));
    Mel("redo; redo; redo; redo");
    EXPECT_EQ(Bytes(), (QList<QByteArray>{png, png}));
}

TEST_F(FrameCommandTest, CopyIsNoStepForUndo) {
    Key("1");
    Mel("currentTime 7; qmVellixFrame -copy; undo");
    EXPECT_EQ(Now(), 1);
}

TEST_F(FrameCommandTest, TheFirstKeyMakesALayer) {
    Settings::defaultLayerState = 0;
    ExpectUndoable("qmVellixFrame -insert top");
    Mel("qmVellixFrame -insert top; undo");
    Settings::defaultLayerState = 1;
    Mel("redo");
    EXPECT_EQ(Node().GetLayerState("top", 0), LayerState::Animated);
    EXPECT_EQ(Node().GetActiveCamera(), "top");
    EXPECT_EQ(Node().GetLayer("top", 0)->FrameCount(), 1);
    Settings::defaultLayerState = 0;

    Mel("file -f -new; qmVellixNode");
    ExpectUndoable("qmVellixFrame -insert side"); // leaves no camera active again
}

TEST_F(FrameCommandTest, TheSameFramesComeBackThroughOtherEdits) {
    Key("1 2 3 4 5 6");
    const QString before = Drawing();
    const QList<const Frame*> frames = Frames();
    const char* const lines[] = {"qmVellixFrame -move 10 3 5",  "qmVellixFrame -cut",
                                 "qmVellixFrame -paste",        "qmVellixLayer -delete 0 persp",
                                 "qmVellixFrame -insert persp", "qmVellixFrame -clear",
                                 "qmVellixFrame -retime 4"};
    const int count = int(std::size(lines));
    Highlight("1 4");
    for (const char* line : lines) {
        Mel(line);
    }
    const QString after = Drawing();
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < count; ++i) {
            Mel("undo");
        }
        EXPECT_EQ(Drawing().toStdString(), before.toStdString());
        EXPECT_EQ(Frames(), frames);
        for (int i = 0; i < count; ++i) {
            Mel("redo");
        }
        EXPECT_EQ(Drawing().toStdString(), after.toStdString());
    }
    Mel("undo; undo; undo; flushUndo"); // what the queue drops is deleted with it
}

// At half the rate two drawings may fall on one frame.
TEST_F(FrameCommandTest, DrawingsOfAnotherTimeUnitSurvive) {
    Key("1 2 3 4 6");
    const QList<const Frame*> frames = Frames();
    const struct {
        const char* line;
        int left;
    } cases[] = {{"-delete", 1}, {"-clear", 4}, {"-cut", 1}, {"-move 40 0 3", 5}, {"-retime 7", 5}};
    for (const auto& c : cases) {
        Mel("currentUnit -time \"12fps\"");
        Highlight("0 3");
        Mel(QString("qmVellixFrame ") + c.line);
        EXPECT_EQ(Frames().size(), c.left) << c.line;
        Mel("undo; currentUnit -time film");
        EXPECT_EQ(Keys(), "1 2 3 4 6") << c.line;
        EXPECT_EQ(Frames(), frames) << c.line;
    }
}

TEST_F(FrameCommandTest, ALockedLayerRefuses) {
    Key("1 5 9");
    Mel("qmVellixFrame -copy; currentTime 6; qmVellixLayer -editState 2 0 persp");
    const struct {
        const char* flag;
        const char* message;
    } cases[] = {
        {"-insert", "Cannot add frames to a locked layer"},
        {"-duplicate", "Cannot duplicate frames on a locked layer"},
        {"-delete", "Cannot remove frames from a locked layer"},
        {"-cutFrame", "Cannot cut frames from a locked layer"},
        {"-paste", "Cannot paste frames to a locked layer"},
    };
    for (const auto& c : cases) {
        ExpectRefusal(QString("qmVellixFrame ") + c.flag, c.message);
    }
    // Time and what is drawn already are not protected.
    Mel("qmVellixFrame -move 1 9 9; qmVellixFrame -retime 3; qmVellixFrame -clear; qmVellixFrame -stepBack");
    EXPECT_EQ(Keys(), "1 5=- 8=9");
    EXPECT_EQ(Now(), 1);
}

TEST_F(FrameCommandTest, OnAStaticLayerTheHeldDrawingCounts) {
    Key("1");
    Mel("currentTime 6; qmVellixLayer -editState 1 0 persp");
    ExpectRefusal("qmVellixFrame -duplicate", "A frame already exists at the current time.");
    Check({"1", 6, "", "-insert", "1 6=-", 6});
}

TEST_F(FrameCommandTest, RefusesWithOneClearMessage) {
    Key("1 5 9");
    const struct {
        int time;
        const char* range;
        const char* line;
        const char* message;
    } cases[] = {
        {5, "", "nowhere -insert", "Camera does not exist: nowhere"},
        {5, "", "", ""},
        {5, "", "-relative -moveToNext", ""},
        {5, "", "-duplicate", "A frame already exists at the current time."},
        {0, "", "-duplicate", ""},
        {5, "", "-duplicate side", ""},
        {5, "", "-retime 2 side", ""},
        {5, "", "-move 4 5 8", "Move Failed. A frame already exists at time 9"},
        {5, "", "-move -4 5 9", "Move Failed. A frame already exists at time 1"},
        {5, "", "-move 2147483647 1 9", "Move Failed. Time 2147483648 is out of range"},
        {5, "", "-relative -retime 2147483647", "Retime Failed. Time 2147483656 is out of range"},
        {5, "0 1000000000", "-insert", "Cannot insert more than 100000 frames"},
    };
    for (const auto& c : cases) {
        Mel(QString("currentTime %1").arg(c.time));
        Highlight(c.range);
        ExpectRefusal(QString("qmVellixFrame ") + c.line, c.message);
    }
    for (const char* line :
         {"-move 1 2", "-retime", "-retime soon", "-move 1 2 3.x", "-query -insert", "-st", "-unknown"}) {
        ExpectRefusal(QString("qmVellixFrame ") + line, "");
    }
}

TEST_F(FrameCommandTest, TheActiveCameraIsMeantUnlessOneIsNamed) {
    Mel("qmVellixLayer -add -ls 0 top; qmVellixFrame -insert; qmVellixFrame -insert persp");
    EXPECT_EQ(Node().GetLayer("top", 0)->FrameCount(), 1);
    EXPECT_EQ(Node().GetLayer("persp", 0)->FrameCount(), 1);
    EXPECT_EQ(Node().GetActiveCamera(), "top");

    Mel("file -f -new; qmVellixNode");
    ExpectRefusal("qmVellixFrame -insert", "Camera not specified");
    ExpectRefusal("qmVellixFrame -insert \"\"", "Camera not specified");
    Mel("file -f -new");
    ExpectRefusal("qmVellixFrame -stepForward", "Camera not specified");
    ExpectRefusal("qmVellixFrame -insert persp", "Failed to insert key. Node does not exist.");
    ExpectRefusal("qmVellixFrame -delete persp", "Node not found");
}

TEST_F(FrameCommandTest, TheUndoOfACopySaysWhenTheCopyIsGone) {
    Key("1");
    Mel("currentTime 4; qmVellixFrame -duplicate");
    Mel("undoInfo -stateWithoutFlush 0; qmVellixFrame -delete; undoInfo -stateWithoutFlush 1");
    Mel("undo");
    EXPECT_EQ(Messages(), QStringList("Failed to undo duplicate frame operation."));
    EXPECT_EQ(Keys(), "1");
}

} // namespace
} // namespace vellix
