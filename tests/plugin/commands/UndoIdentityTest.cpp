// Undo and redo act on the layers and frames of the first run, whatever happened around them.

#include "core/Frame.h"
#include "host/Settings.h"
#include "paint/DrawUtil.h"
#include "plugin/commands/CommandFixture.h"

#include <QImage>
#include <QRegularExpression>

#include <map>

namespace vellix {
namespace {

class UndoIdentityTest : public CommandFixture {
protected:
    // persp: A, B, C with B active; top: X, Y with Y active; persp is the active camera.
    void SetUp() override {
        CommandFixture::SetUp();
        for (const char* line : {"-n X -ls 0 top", "-n Y -ls 1 top", "-n A -ls 0 persp", "-n B -ls 0 persp",
                                 "-n C -ls 1 persp"}) {
            Mel(QString("qmVellixLayer -add ") + line);
        }
        Mel("qmVellixLayer -e -active 1 persp");
        int shade = 0;
        for (const char* camera : {"persp", "top"}) {
            for (Layer* layer : Node().GetLayers(camera)) {
                for (int time : {1, 3, 4}) {
                    auto frame = std::make_unique<Frame>(MTime(time, MTime::uiUnit()));
                    frame->SetPackedImage(Picture(++shade));
                    layer->InsertFrame(frame.release());
                }
            }
        }
        Mel("timeControl -e -rangeArray 3 6 $gPlayBackSlider; qmVellixFrame -copy; currentTime 3");
    }

    /// Encoded once, since every case draws them anew.
    static QByteArray Picture(int shade) {
        static std::map<int, QByteArray> pictures;
        QByteArray& png = pictures[shade];
        if (png.isEmpty()) {
            QImage image(Settings::FINAL_IMAGE_WIDTH, Settings::FINAL_IMAGE_WIDTH, QImage::Format_RGBA8888);
            image.fill(QColor(shade, 0, 0));
            DrawUtil::PackPngBuffer(image, png);
        }
        return png;
    }

    /// The drawing without the layers called Extra. A camera's first layer makes it the active one, and
    /// itself the camera's active layer; so what is active counts only if Extra was not the first.
    static QString DrawingWithoutExtra(const QString& extraOn) {
        QStringList kept;
        for (const QString& line : Drawing().split('\n')) {
            if (!line.contains("/Extra ") && line != extraOn + " has no layers") {
                kept.append(line);
            }
        }
        const bool isFirst = extraOn == "side";
        return isFirst ? kept.mid(1).join('\n').remove(QRegularExpression(" active [01]")) : kept.join('\n');
    }

    /// A command that fails as it should, and adds a layer below all others.
    void InsertRefused(const char* camera) {
        EXPECT_EQ(Refused(QString("qmVellixLayer -ins 0 -n Extra ") + camera), QStringList());
        EXPECT_EQ(LayerNames(camera).first(), "Extra");
    }

    void WithoutUndo(const QString& line) {
        Mel("undoInfo -stateWithoutFlush 0");
        Mel(line);
        Mel("undoInfo -stateWithoutFlush 1");
    }
};

const char* const EDITS[] = {
    "qmVellixLayer -add -n New -ls 2 persp",
    "qmVellixLayer -add -n New -ls 0 side",
    "qmVellixLayer -insert 1 -n New -ls 1 persp",
    "qmVellixLayer -delete 0 persp",
    "qmVellixLayer -delete 1 persp",
    "qmVellixLayer -delete 2 persp",
    "qmVellixLayer -deleteAll persp",
    "qmVellixLayer -move 0 2 persp",
    "qmVellixLayer -move 2 0 persp",
    "qmVellixLayer -newCamera top -move 1 1 persp",
    "qmVellixLayer -newCamera side -move 0 -1 persp",
    "qmVellixLayer -moveAll top persp",
    "qmVellixLayer -moveAll side persp",
    "qmVellixLayer -moveAll persp top",
    "qmVellixLayer -e -active 2 persp",
    "qmVellixLayer -e -active 0 top",
    "qmVellixLayer -editName Other 1 persp",
    "qmVellixLayer -ev 0 2 persp",
    "qmVellixLayer -eo 0.25 0 top",
    "qmVellixLayer -es 2 0 persp",
    "qmVellixFrame -insert",
    "qmVellixFrame -insert side",
    "qmVellixFrame -delete",
    "qmVellixFrame -cut",
    "qmVellixFrame -paste",
    "qmVellixFrame -clear top",
    "qmVellixFrame -move 5 3 4",
    "qmVellixFrame -retime 7",
};

TEST_F(UndoIdentityTest, ARefusedInsertBetweenLeavesTheWayBack) {
    for (const char* line : EDITS) {
        for (const char* camera : {"persp", "top", "side"}) {
            SCOPED_TRACE(QString("%1, then a layer below %2").arg(line, camera).toStdString());
            SetUp();
            const QString before = DrawingWithoutExtra(camera);
            Mel(line);
            const QString after = DrawingWithoutExtra(camera);
            InsertRefused(camera);
            for (int round = 0; round < 2; ++round) {
                Mel("undo");
                EXPECT_EQ(Messages(), QStringList());
                EXPECT_EQ(DrawingWithoutExtra(camera).toStdString(), before.toStdString());
                EXPECT_GE(Node().GetActiveLayerIndex(camera), 0);
                Mel("redo");
                EXPECT_EQ(Messages(), QStringList());
                EXPECT_EQ(DrawingWithoutExtra(camera).toStdString(), after.toStdString());
                EXPECT_GE(Node().GetActiveLayerIndex(camera), 0);
            }
        }
    }
}

// The camera was empty when the step was made, so the step does not know which layer is active there.
TEST_F(UndoIdentityTest, ALayerThatCameToAnEmptyCameraStaysActive) {
    for (const char* line : {"qmVellixLayer -moveAll top side", "qmVellixLayer -deleteAll side"}) {
        SetUp();
        Mel(line);
        InsertRefused("side");
        const auto layers = [] {
            return Drawing().section('\n', 1).toStdString();
        }; // all but the active camera
        const std::string before = layers();
        for (const char* step : {"undo", "redo", "undo"}) {
            Mel(step);
            EXPECT_EQ(Node().GetActiveLayerIndex("side"), 0) << line << ", " << step;
        }
        Mel("redo");
        EXPECT_EQ(layers(), before) << line;
    }
}

TEST_F(UndoIdentityTest, WhatIsGoneIsSaidAndNothingChanges) {
    const struct {
        const char* line;
        const char* unrecorded; ///< takes away what undo needs
        const char* message;
    } cases[] = {
        {"qmVellixLayer -add -n New -ls 0 persp", "qmVellixLayer -delete 3 persp",
         "Cannot undo: the layer no longer exists"},
        {"qmVellixLayer -move 0 2 persp", "qmVellixLayer -delete 2 persp",
         "Cannot undo: the layer no longer exists"},
        {"qmVellixLayer -moveAll top persp", "qmVellixLayer -newCamera side -move 2 0 top",
         "Cannot undo: the layer \"A\" is no longer on the camera top"},
        {"qmVellixLayer -editName Other 1 persp", "qmVellixLayer -delete 1 persp",
         "Cannot undo: the layer no longer exists"},
        {"qmVellixFrame -insert", "qmVellixLayer -delete 1 persp", "Cannot undo: the layer no longer exists"},
        {"qmVellixFrame -insert", "qmVellixFrame -delete",
         "Cannot undo: a frame of the layer \"B\" no longer exists"},
        {"qmVellixFrame -delete", "qmVellixFrame -insert", "Cannot undo: a frame already exists at time 3"},
        {"qmVellixFrame -move 5 3 4", "qmVellixFrame -insert",
         "Cannot undo: a frame already exists at time 3"},
        {"qmVellixFrame -retime 7", "qmVellixFrame -delete",
         "Cannot undo: a frame of the layer \"B\" no longer exists"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.line) + ", " + c.unrecorded);
        SetUp();
        Mel(c.line);
        WithoutUndo(c.unrecorded);
        Mel("file -modified 0");
        const QString before = Drawing();
        Mel("undo");
        EXPECT_EQ(Messages(), QStringList(c.message));
        EXPECT_EQ(Drawing().toStdString(), before.toStdString());
        EXPECT_TRUE(Mel("file -q -modified").AsInt()); // the host's queue went on all the same
        Mel("redo");                                   // which has nothing to do
        EXPECT_EQ(Messages(), QStringList());
        EXPECT_EQ(Drawing().toStdString(), before.toStdString());
    }
}

TEST_F(UndoIdentityTest, AnUndoThatFailedCanBeTriedAgain) {
    Mel("qmVellixFrame -delete");
    WithoutUndo("qmVellixFrame -insert");
    Mel("undo");
    EXPECT_EQ(Messages().size(), 1);
    WithoutUndo("qmVellixFrame -delete");
    Mel("redo; undo");
    EXPECT_EQ(Node().GetActiveLayer("persp")->FrameCount(), 3);
}

// A redo that made new objects would leave the later commands without theirs.
TEST_F(UndoIdentityTest, LaterCommandsFindWhatRedoBrings) {
    ExpectUndoableChain({
        "qmVellixLayer -add -n New -ls 0 persp",
        "qmVellixFrame -insert persp",
        "qmVellixFrame -move 10 3 4 persp",
        "qmVellixLayer -editName Newer 3 persp",
        "qmVellixLayer -newCamera side -move 3 0 persp",
        "qmVellixFrame -insert side",
        "qmVellixFrame -clear side",
        "qmVellixFrame -retime 3 side",
        "qmVellixLayer -insert 0 -n Base -ls 1 side",
        "qmVellixLayer -moveAll persp side",
        "qmVellixLayer -delete 3 persp",
        "qmVellixFrame -insert front",
        "qmVellixFrame -paste top",
        "qmVellixLayer -deleteAll persp",
    });
}

// The empty frame of a press goes with the stroke, so undo cannot count on it.
TEST_F(UndoIdentityTest, AFrameOfAnUnfinishedPressIsInNoStep) {
    for (const char* line : {"qmVellixFrame -move 5 3 9", "qmVellixFrame -retime 7", "qmVellixFrame -delete",
                             "qmVellixFrame -clear", "qmVellixFrame -paste"}) {
        SetUp();
        const QString before = Drawing();
        Layer& layer = *Node().GetActiveLayer("persp");
        layer.SetProvisionalFrame(layer.GetFrame(layer.AddFrame(MTime(5, MTime::uiUnit())))->GetId());
        Mel(line);
        layer.DropProvisionalFrame();
        Mel("undo");
        EXPECT_EQ(Messages(), QStringList()) << line;
        EXPECT_EQ(Drawing().toStdString(), before.toStdString()) << line;
    }
}

TEST_F(UndoIdentityTest, ARefusedInsertIsUnsaved) {
    Mel("file -modified 0");
    ExpectRefusal("qmVellixLayer -delete 9 persp", "");
    EXPECT_FALSE(Mel("file -q -modified").AsInt());
    InsertRefused("persp");
    EXPECT_TRUE(Mel("file -q -modified").AsInt());
}

} // namespace
} // namespace vellix
