#include "plugin/commands/CommandFixture.h"

namespace vellix {
namespace {

class LayerCommandTest : public CommandFixture {
protected:
    // persp: A, B, C with B active; top: X, Y with Y active; persp is the active camera.
    void SetUp() override {
        CommandFixture::SetUp();
        for (const char* line : {"-n X -ls 0 top", "-n Y -ls 1 top", "-n A -ls 0 persp", "-n B -ls 1 persp",
                                 "-n C -ls 2 persp"}) {
            Mel(QString("qmVellixLayer -add ") + line);
        }
        Mel("qmVellixLayer -e -active 1 persp");
        for (const char* camera : {"persp", "top"}) {
            for (int time : {1, 3}) {
                Node().AddFrame(camera, MTime(time, MTime::uiUnit()));
            }
        }
    }
};

TEST_F(LayerCommandTest, EveryChangeIsUndoneExactly) {
    for (const char* line : {
             "-add -n \"New one\" -ls 2 persp",
             "-add -ls 7 top",
             "-add -n First -ls 0 side",
             "-insert 1 -n Between -ls 1 persp",
             "-delete 0 persp",
             "-delete 1 persp",
             "-delete 2 persp",
             "-delete 1 top",
             "-deleteAll persp",
             "-deleteAll top",
             "-move 0 2 persp",
             "-move 1 0 persp",
             "-newCamera top -move 1 0 persp",
             "-newCamera top -move 0 -1 persp",
             "-newCamera side -move 1 0 persp",
             "-newCamera persp -move 1 2 top",
             "-moveAll top persp",
             "-moveAll side persp",
             "-moveAll persp top",
             "-e -active 0 persp",
             "-e -active 0 top",
             "-editName \"Ärmel \\\"2\\\"\" 1 persp",
             "-ev 0 2 persp",
             "-eo 0.25 0 top",
             "-es 2 0 persp",
         }) {
        ExpectUndoable(QString("qmVellixLayer ") + line);
    }
}

// A view makes its camera active without an undo step.
TEST_F(LayerCommandTest, RedoMakesActiveWhatTheFirstRunDid) {
    for (const char* line : {"-moveAll top persp", "-newCamera top -move 1 0 persp", "-delete 1 persp",
                             "-insert 1 -n Between -ls 1 persp", "-move 0 2 persp"}) {
        SCOPED_TRACE(line);
        Mel(QString("qmVellixLayer ") + line);
        const QString after = Drawing();
        Mel("undo");
        Node().GetLayerManager()->SetActiveCamera("top");
        Mel("redo");
        EXPECT_EQ(Drawing().toStdString(), after.toStdString());
        Mel("undo");
        Node().GetLayerManager()->SetActiveCamera("persp");
    }
}

TEST_F(LayerCommandTest, MoveAllKeepsTheOrder) {
    Mel("qmVellixLayer -moveAll top persp");
    EXPECT_EQ(LayerNames("top"), QStringList({"X", "Y", "A", "B", "C"}));
    EXPECT_EQ(LayerNames("persp"), QStringList());
    EXPECT_EQ(Node().GetActiveCamera(), "top");
    EXPECT_EQ(Node().GetActiveLayerIndex("top"), 3);
}

TEST_F(LayerCommandTest, MovingTheActiveLayerTakesTheEyeAlong) {
    EXPECT_EQ(Mel("qmVellixLayer -newCamera top -move 1 0 persp").AsInt(), 0);
    EXPECT_EQ(LayerNames("top"), QStringList({"B", "X", "Y"}));
    EXPECT_EQ(Node().GetActiveCamera(), "top");
    EXPECT_EQ(Node().GetActiveLayerIndex("top"), 0);
}

TEST_F(LayerCommandTest, UndoGivesTheSameLayerBack) {
    const Layer* const layer = Node().GetLayer("persp", 1);
    Mel("qmVellixLayer -delete 1 persp");
    EXPECT_EQ(Node().GetActiveLayerIndex("persp"), 0);
    Mel("undo");
    EXPECT_EQ(Node().GetLayer("persp", 1), layer);
    Mel("redo; undo; qmVellixLayer -delete 1 persp; flushUndo"); // what the queue drops is deleted with it
}

TEST_F(LayerCommandTest, AnswersWithoutChangingAnything) {
    const QString before = Drawing();
    EXPECT_EQ(Mel("qmVellixLayer -count persp").AsInt(), 3);
    EXPECT_EQ(Mel("qmVellixLayer -count side").AsInt(), 0);
    EXPECT_EQ(Mel("qmVellixLayer -q -active persp").AsInt(), 1);
    EXPECT_EQ(Mel("qmVellixLayer -q -active side").AsInt(), -1);
    EXPECT_EQ(Mel("qmVellixLayer -qn 2 persp").AsString(), "C");
    EXPECT_EQ(Mel("qmVellixLayer -queryName 2 persp").AsString(), "C");
    EXPECT_EQ(Mel("qmVellixLayer -qv 0 persp").AsInt(), 1);
    EXPECT_EQ(Mel("qmVellixLayer -qo 0 persp").AsFloat(), 1.0);
    EXPECT_EQ(Mel("qmVellixLayer -qs 2 persp").AsInt(), 2);
    Mel("qmVellixLayer -importTavlo \"a.tvl\" \"a\" persp");
    EXPECT_EQ(Drawing(), before);
    Mel("undo"); // reaches past all of them, to the last change of SetUp
    EXPECT_EQ(Node().GetActiveLayerIndex("persp"), 2);
}

// A layer that is asked for without its state is made, and the command fails all the same.
TEST_F(LayerCommandTest, TheStateBelongsToANewLayer) {
    EXPECT_TRUE(Refused("qmVellixLayer -add -n Stateless persp").isEmpty());
    EXPECT_EQ(LayerNames("persp"), QStringList({"A", "B", "C", "Stateless"}));
    EXPECT_EQ(Node().GetActiveLayerIndex("persp"), 1);
}

TEST_F(LayerCommandTest, RefusesWithOneClearMessage) {
    const struct {
        const char* line;
        const char* message;
    } cases[] = {
        {"-count", "Camera not specified"},
        {"-count nowhere", "Camera does not exist: nowhere"},
        {"-e -count persp", "Invalid edit parameter"},
        {"-q -count persp", "Invalid query parameter"},
        {"persp", "Invalid command parameters"},
        {"-name N persp", "Invalid command parameters"},
        {"-active 1 persp", "Invalid command parameters"},
        {"-e -active 1 persp", ""}, // active already
        {"-e -active 9 persp", "Invalid layer index: 9"},
        {"-delete 3 persp", ""},
        {"-move 3 0 persp", ""},
        {"-move 0 99 persp", ""},
        {"-moveAll nowhere persp", "Camera does not exist: nowhere"},
        {"-moveAll persp persp", "Invalid command parameters"},
        {"-newCamera nowhere -move 0 0 persp", "Camera does not exist: nowhere"},
        {"-qn 3 persp", "Layer does not exist for camera (index): persp (3)"},
        {"-en N 3 persp", "Layer does not exist for camera (index): persp (3)"},
        {"-ev 0 3 persp", "Layer does not exist for camera (index): persp (3)"},
        {"-eo 0 0 side", "Layer does not exist for camera (index): side (0)"},
        {"-es 3 9 persp", "Invalid state value: 3"},
        {"-es 2 9 persp", "Layer does not exist for camera (index): persp (9)"},
    };
    for (const auto& c : cases) {
        ExpectRefusal(QString("qmVellixLayer ") + c.line, c.message);
    }
    Mel("file -f -new");
    ExpectRefusal("qmVellixLayer -count persp", "Node not found");
    ExpectRefusal("qmVellixLayer -e -count persp", "Node not found");
    ExpectRefusal("qmVellixLayer -add -ls 0 persp", "Failed to add layer. Node does not exist.");
    ExpectRefusal("qmVellixLayer -insert 0 persp", "Failed to insert layer. Node does not exist.");
}

} // namespace
} // namespace vellix
