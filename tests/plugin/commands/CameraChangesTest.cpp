// Layers and cameras that are renamed, deleted, read from files.

#include "core/LayerManager.h"
#include "plugin/commands/CommandFixture.h"

#include <QImage>

namespace vellix {
namespace {

class CameraChangesTest : public CommandFixture {
protected:
    // shot: P, Q with P active; persp: A; shot is the active camera.
    void SetUp() override {
        CommandFixture::SetUp();
        MakeCamera("shot");
        for (const char* line : {"-n A -ls 0 persp", "-n P -ls 0 shot", "-n Q -ls 1 shot"}) {
            Mel(QString("qmVellixLayer -add ") + line);
        }
        Mel("qmVellixLayer -e -active 0 shot; qmVellixFrame -insert shot");
    }

    void MakeCamera(const QString& name) {
        Mel(QString("createNode transform -n %1; createNode camera -n %1Shape -p %1").arg(name));
    }

    static QStringList Cameras() { return Node().GetLayerManager()->GetCameras(); }
};

TEST_F(CameraChangesTest, LayersFollowTheNameBothWays) {
    const QStringList chains[] = {
        {"rename shot hero"},
        {"qmVellixLayer -add -n R -ls 0 shot", "qmVellixFrame -insert shot", "rename shot hero",
         "qmVellixLayer -delete 0 hero", "qmVellixLayer -add -n S -ls 0 hero",
         "qmVellixLayer -moveAll persp hero", "rename hero shot", "qmVellixFrame -insert shot",
         "rename shot hero"},
        {"rename shot \"ns:shot\"", "qmVellixLayer -deleteAll \"ns:shot\"", "rename \"ns:shot\" back"},
        // Names that are taken.
        {"delete shot", "qmVellixLayer -add -n O -ls 0 other", "rename other shot",
         "qmVellixLayer -add -n T -ls 0 shot", "rename shot later", "qmVellixLayer -moveAll persp shot1"},
        {"delete shot", "rename other shot", "qmVellixLayer -add -n T -ls 0 shot"},
        {"delete shot", "rename other shot", "rename shot gone"},
        {"rename other third", "rename shot other", "rename third shot", "qmVellixFrame -insert shot"},
        // Two cameras of one name have one stack.
        {"qmVellixLayer -add -n O -ls 0 other", "group -n g other", "rename \"g|other\" shot",
         "qmVellixLayer -add -n T -ls 0 shot", "rename \"g|shot\" alone", "rename shot \"last\""},
        {"group -n g other", "rename \"g|other\" shot", "rename \"|shot\" first", "rename \"g|shot\" second"},
        {"group -n g other", "rename shot other", "rename \"|other\" first", "rename \"g|other\" second"},
        {"group -n g other", "rename shot other", "qmVellixFrame -insert other", "rename \"g|other\" second"},
    };
    for (const QStringList& chain : chains) {
        SCOPED_TRACE(chain.join("; ").toStdString());
        SetUp();
        MakeCamera("other");
        ExpectUndoableChain(chain);
    }
}

TEST_F(CameraChangesTest, ARenameLeavesEverythingElse) {
    const QString before = Drawing();
    const Layer* const layer = Node().GetLayer("shot", 1);
    QImage* const image = Node().GetFinalImage("shot");
    Mel("rename shot show");
    EXPECT_EQ(Node().GetLayer("show", 1), layer);
    EXPECT_EQ(Drawing().toStdString(), QString(before).replace("shot", "show").toStdString());
    EXPECT_EQ(Node().GetFinalImage("show"), image);
    EXPECT_EQ(Node().GetFinalImage("shot"), nullptr);
    EXPECT_EQ(Mel("qmVellixNode -q -c").AsString(), "show");
    // A rename that no undo step knows of: undo and redo find the camera all the same.
    Mel("undo; undoInfo -stateWithoutFlush 0; rename shot star; undoInfo -stateWithoutFlush 1");
    Mel("undo; undo; undo; undo");
    EXPECT_EQ(Cameras(), QStringList("persp"));
    Mel("redo; redo; redo; redo");
    EXPECT_EQ(Drawing().toStdString(), QString(before).replace("shot", "star").toStdString());
}

TEST_F(CameraChangesTest, ARenamedCameraTakesLayersThatItFoundAlong) {
    Mel("qmVellixNode -refresh");
    MakeCamera("other");
    Mel("delete shot");
    const QString before = Drawing();
    Mel("rename other shot; qmVellixLayer -add -n T -ls 0 shot");
    const QString found = Drawing();
    Mel("rename shot other");
    EXPECT_EQ(LayerNames("other"), QStringList({"P", "Q", "T"}));
    EXPECT_EQ(Cameras(), QStringList({"other", "persp"}));
    Mel("undo");
    EXPECT_EQ(Drawing().toStdString(), found.toStdString());
    Mel("undo; undo");
    EXPECT_EQ(Drawing().toStdString(), before.toStdString());
    Mel("redo; redo; redo");
    EXPECT_EQ(LayerNames("other"), QStringList({"P", "Q", "T"}));
}

TEST_F(CameraChangesTest, ADeletedCameraLeavesItsLayers) {
    const QString before = Drawing();
    Mel("delete shot");
    EXPECT_EQ(Drawing(), before);
    Mel("undo; redo");
    EXPECT_EQ(Drawing(), before);
    const QString path = folder_.filePath("deleted.ma");
    Mel(QString("file -rename \"%1\"; file -save; file -f -open \"%1\"").arg(path));
    EXPECT_EQ(Drawing(), before);
    EXPECT_EQ(Mel("qmVellixLayer -count shot").AsInt(), 2);
    ExpectRefusal("qmVellixLayer -count nowhere", "Camera does not exist: nowhere");
    for (const char* line :
         {"qmVellixLayer -add -ls 0 shot", "qmVellixLayer -ins 0 -ls 0 shot",
          "qmVellixLayer -moveAll shot persp", "qmVellixLayer -newCamera shot -move 0 0 persp"}) {
        ExpectRefusal(line, "Camera does not exist: shot");
    }
    ExpectUndoable("qmVellixLayer -newCamera persp -move 1 0 shot");
    ExpectUndoable("qmVellixLayer -deleteAll shot");
    ExpectUndoable("qmVellixLayer -moveAll persp shot");
    Mel("qmVellixLayer -moveAll persp shot");
    EXPECT_EQ(LayerNames("persp"), QStringList({"A", "P", "Q"}));
    EXPECT_EQ(Cameras(), QStringList({"persp", "shot"}));
}

TEST_F(CameraChangesTest, NoLayerWithoutItsCamera) {
    Mel("qmVellixLayer -deleteAll shot; qmVellixNode -refresh; delete shot");
    ExpectRefusal("qmVellixFrame -insert shot", "Camera does not exist: shot");
    Mel("undo; undo; delete shot; qmVellixLayer -e -active 1 shot; qmVellixLayer -deleteAll shot");
    ExpectRefusal("qmVellixFrame -insert", "Camera does not exist: shot"); // it is still the active one
    Mel("file -f -new");
    ExpectRefusal("qmVellixNode -l -c nowhere", "Camera does not exist: nowhere");
}

TEST_F(CameraChangesTest, ARefreshWithoutAViewKeepsTheCamera) {
    Mel("qmVellixNode -refresh");
    EXPECT_EQ(Node().GetActiveCamera(), "shot");
}

// --- several drawing nodes --------------------------------------------------------------------------------

class SeveralDrawingsTest : public CameraChangesTest {
protected:
    static QStringList Masters() {
        QStringList names;
        for (const BaseNode* node : BaseNode::GetAll()) {
            if (node->IsMaster()) {
                names.append(node->GetPath());
            }
        }
        return names;
    }
    static BaseNode* Find(const QString& name) {
        for (BaseNode* node : BaseNode::GetAll()) {
            if (node->GetPath() == name) {
                return node;
            }
        }
        throw std::runtime_error("no drawing node " + name.toStdString());
    }
    bool IsShown(const QString& name) { return Mel(QString("getAttr %1.visibility").arg(name)).AsInt() != 0; }
};

TEST_F(SeveralDrawingsTest, ADuplicateHasItsOwnDrawing) {
    Mel("duplicate vellix");
    ASSERT_EQ(BaseNode::GetAll().size(), 2);
    const QString copy = BaseNode::GetAll()[1]->GetPath();
    EXPECT_EQ(Masters(), QStringList("vellix|vellixShape"));
    EXPECT_FALSE(IsShown(copy)); // it would be drawn over the same drawing
    const auto drawing = Find(copy)->GetLayerManager();
    EXPECT_NE(drawing, Node().GetLayerManager());
    EXPECT_EQ(drawing->GetCameras(), Cameras());
    EXPECT_EQ(drawing->GetLayer("shot", 0)->FrameCount(), 1);
    EXPECT_EQ(drawing->GetActiveLayerIndex("shot"), 0);
    Mel("qmVellixLayer -delete 0 shot");
    EXPECT_EQ(drawing->LayerCount("shot"), 2);
    Mel("undo; undo; redo");
    EXPECT_EQ(Find(copy)->GetLayerManager(), drawing);
    EXPECT_EQ(Masters(), QStringList("vellix|vellixShape"));
}

TEST_F(SeveralDrawingsTest, AnotherDrawingTakesOverFromADeletedMaster) {
    Mel("duplicate vellix");
    const QString copy = BaseNode::GetAll()[1]->GetPath();
    const QString before = Drawing();
    Mel("delete vellix");
    EXPECT_EQ(Warnings(),
              QStringList(QString("The drawing of \"%1\" is shown and edited now, instead of that "
                                  "of \"vellix|vellixShape\".")
                              .arg(copy)));
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(Masters(), QStringList("vellixShape"));
        EXPECT_TRUE(IsShown("vellix1|vellixShape"));
        EXPECT_EQ(Drawing(), before);
        Mel("undo");
        EXPECT_EQ(Masters(), QStringList("vellix|vellixShape"));
        EXPECT_FALSE(IsShown(copy));
        Mel("redo");
    }
    const QString path = folder_.filePath("copy.ma");
    Mel(QString("file -rename \"%1\"; file -save; file -f -open \"%1\"").arg(path));
    EXPECT_EQ(Masters(), QStringList("vellixShape"));
    EXPECT_EQ(Drawing(), before);
}

TEST_F(SeveralDrawingsTest, AnImportedDrawingKeepsItsCameras) {
    const QString path = folder_.filePath("file.ma");
    Mel(QString("file -rename \"%1\"; file -save").arg(path));
    const struct {
        const char* line;
        const char* prefix;
    } cases[] = {{"file -import \"%1\"", "file_"}, {"file -import -namespace \"ns\" \"%1\"", "ns:"}};
    for (const auto& c : cases) {
        Mel("file -f -new; playbackOptions -min 1 -max 4; qmVellixNode");
        MakeCamera("shot");
        Mel("qmVellixLayer -add -n Mine -ls 0 shot");
        const QString before = Drawing();
        Mel(QString(c.line).arg(path));
        EXPECT_EQ(Drawing(), before);
        EXPECT_EQ(Masters(), QStringList("vellixShape"));
        const auto imported = Find(c.prefix + QString("vellixShape"))->GetLayerManager();
        EXPECT_EQ(imported->GetCameras(), QStringList({c.prefix + QString("shot"), "persp"}));
        EXPECT_EQ(imported->GetActiveCamera(), c.prefix + QString("shot"));
        EXPECT_NE(imported, Node().GetLayerManager());
    }
    // Without a drawing in the scene, the imported one is the one to edit.
    Mel(QString("file -f -new; file -import \"%1\"").arg(path));
    EXPECT_EQ(Masters().size(), 1);
    EXPECT_EQ(LayerNames("shot"), QStringList({"P", "Q"}));
}

// Opening a scene has events of its own; see the tests of drawing nodes.
TEST_F(SeveralDrawingsTest, AReferencedDrawingFindsTheCamerasOfItsFile) {
    const QString path = folder_.filePath("set.ma");
    Mel(QString("file -rename \"%1\"; file -save; file -f -new; playbackOptions -min 1 -max 4").arg(path));
    Mel("qmVellixNode");
    MakeCamera("shot");
    Mel("qmVellixLayer -add -n Mine -ls 0 shot");
    const QString before = Drawing();
    Mel(QString("file -reference -namespace \"set\" \"%1\"").arg(path));
    const auto cameras = [] { return Find("set:vellixShape")->GetLayerManager()->GetCameras(); };
    EXPECT_EQ(cameras(), QStringList({"persp", "set:shot"}));
    Mel("file -unloadReference \"setRN\"; file -loadReference \"setRN\"");
    EXPECT_EQ(cameras(), QStringList({"persp", "set:shot"}));
    // The scene's own layers over a referenced camera stay when it goes, and are there when it comes back.
    Mel("qmVellixLayer -add -n Over -ls 0 \"set:shot\"");
    const QString over = Drawing();
    Mel("file -unloadReference \"setRN\"");
    EXPECT_EQ(Drawing().toStdString(), over.toStdString());
    ExpectUndoable("qmVellixLayer -moveAll shot \"set:shot\"");
    Mel("file -loadReference \"setRN\"");
    EXPECT_EQ(Drawing().toStdString(), over.toStdString());
    Mel("file -removeReference -referenceNode \"setRN\"");
    EXPECT_EQ(Drawing().toStdString(), over.toStdString());
    Mel("qmVellixLayer -deleteAll \"set:shot\"; qmVellixLayer -e -active 0 shot");
    EXPECT_EQ(Drawing().remove("set:shot has no layers\n").toStdString(), before.toStdString());
}

// --- time -------------------------------------------------------------------------------------------------

TEST_F(CameraChangesTest, ATimeUnitThatCoversDrawingsIsWarnedOf) {
    Mel("timeControl -e -rangeArray 1 25 $gPlayBackSlider; qmVellixFrame -insert shot");
    const QString before = Drawing();
    Mel("currentUnit -time \"48fps\"");
    EXPECT_EQ(Warnings(), QStringList());
    Mel("currentUnit -time film");
    Mel("currentUnit -time \"12fps\"");
    ASSERT_EQ(Warnings().size(), 1);
    EXPECT_TRUE(Warnings().first().startsWith("In the new time unit, 11 drawings are on a frame"));
    EXPECT_EQ(Node().GetLayer("shot", 0)->FrameCount(), 24);
    Mel("currentUnit -time film");
    EXPECT_EQ(Warnings(), QStringList());
    EXPECT_EQ(Drawing().toStdString(), before.toStdString());
}

TEST_F(CameraChangesTest, CutAndPasteKeepDrawingsOnOneFrame) {
    Mel("timeControl -e -rangeArray 1 5 $gPlayBackSlider; qmVellixFrame -insert shot");
    Mel("currentUnit -time \"12fps\"; timeControl -e -rangeArray 0 4 $gPlayBackSlider");
    Mel("qmVellixFrame -cut shot");
    EXPECT_EQ(Node().GetLayer("shot", 0)->FrameCount(), 0);
    Mel("qmVellixFrame -paste shot");
    EXPECT_EQ(Node().GetLayer("shot", 0)->FrameCount(), 4);
}

TEST_F(CameraChangesTest, ANodeWithoutDataSaysSoOnce) {
    const QString path = WriteFile("bare.ma", "//Maya ASCII 2018 scene\n"
                                              "requires \"vellix2\" \"2.0\";\n"
                                              "createNode transform -n \"bare\";\n"
                                              "createNode qmVellix -n \"bareShape\" -p \"bare\";\n");
    Mel(QString("file -f -open \"%1\"").arg(path));
    EXPECT_LE(Messages().size(), 1);
    for (int time = 2; time < 9; ++time) {
        Mel(QString("currentTime %1").arg(time));
        EXPECT_EQ(Messages(), QStringList());
    }
}

} // namespace
} // namespace vellix
