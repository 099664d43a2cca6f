// currentTime, playbackOptions, currentUnit, play, timeControl, undoInfo and what comes with them.

#include "SceneCommandFixture.h"

namespace {

class TimeAndUndoCommandsTest : public SceneCommandFixture {};

TEST_F(TimeAndUndoCommandsTest, TimeInSteps) {
    const Question steps[] = {
        {"currentTime 5", "float 5"},
        {"currentTime -e 5.5; currentTime -q", "float 5.5"},
        {"currentTime \"soon\"", "error: A time was expected, not \"soon\"."},
        {"playbackOptions -min 5 -max 40; playbackOptions -q -min", "float 5"},
        {"playbackOptions -min 300 -max 400; playbackOptions -q -aet", "float 400"},
        {"playbackOptions -ast 5 -aet 40; playbackOptions -q -max", "float 40"},
        {"catch(`playbackOptions -min 50 -max 40`); playbackOptions -q -max", "float 120"},
        {"playbackOptions -q -fps", "float 24"},
        {"currentUnit -t pal; currentUnit -q -t", "string pal"},
        {"currentUnit -t ntscf; currentTimeUnitToFPS", "float 60"},
        {"currentUnit -t \"23.976fps\"; float $f = currentTimeUnitToFPS()", "float 23.97602398"},
        {"currentTimeUnitToFPS 2", "error: Wrong number of arguments on call to currentTimeUnitToFPS."},
        {"currentUnit -t \"2 a week\"", "error: Unknown time unit: 2 a week"},
        {"currentUnit -l m", "error: Lengths are in centimeters; the unit 'm' is not supported."},
        {"currentUnit -q -l -f", "string centimeter"},
        {"play; play -q -st", "int 1"},
        {"play; play -st off; play -q -st", "int 0"},
        {"play -f 0; play -q -f", "int 0"},
        {"timeControl -q -rangeArray $gPlayBackSlider", "float[] 1 2"},
        {"currentTime 9; timeControl -q -rangeArray $gPlayBackSlider", "float[] 9 10"},
        {"timeControl -e -rangeArray 3 8 $gPlayBackSlider; timeControl -q -rangeArray $gPlayBackSlider",
         "float[] 3 8"},
        {"timeControl -e -rangeArray 3 8 $gPlayBackSlider; timeControl -q -range $gPlayBackSlider",
         "string \"3:8\""},
        {"timeControl -e -hlr 3 8 $gPlayBackSlider; timeControl -e -rv 0; timeControl -q -rangeVisible",
         "int 0"},
        {"timeControl -e -rangeArray 8 3 $gPlayBackSlider",
         "error: The end of a highlighted range must come after its start."},
        {"currentTime -u off \"7\"; currentTime -q", "float 7"},
        {"currentTime -3; currentTime", "float -3"},
        {"playbackOptions -ps 2 -by 0.5; playbackOptions -q -ps", "float 2"},
        {"playbackOptions -by 0.5; playbackOptions -q -by", "float 0.5"},
        {"playbackOptions -q -ast", "float 1"},
        {"currentUnit -t ntsc -ua off; playbackOptions -q -fps", "float 30"},
        {"currentUnit -l centimeter -a degree; currentUnit -q -a", "string deg"},
        {"timeControl -ex x", "int 0"},
    };
    ExpectSteps("", steps);
}

TEST_F(TimeAndUndoCommandsTest, ImpossibleTimesChangeNothing) {
    const Refusal refusals[] = {
        {"", "playbackOptions -min 50 -max 40", "The end of a time range must not lie before its start."},
        {"", "playbackOptions -ast 5 -aet 90 -min 50 -max 40",
         "The end of a time range must not lie before its start."},
        {"", "playbackOptions -min 5 -by 0", "Playback must go by more than 0 frames."},
        {"", "playbackOptions -max 9 -ps -1", "The playback speed must not be less than 0."},
        {"", "playbackOptions -q", "Nothing was asked for."},
        {"", "playbackOptions -by 2 -loop twice",
         "-loop takes \"once\", \"continuous\" or \"oscillate\", not \"twice\"."},
        {"", "playbackOptions -loop once -mps -1", "The playback speed must not be less than 0."},
        {"", "currentUnit -t pal -l m", "Lengths are in centimeters; the unit 'm' is not supported."},
        {"", "currentUnit -t pal -a rad", "Angles are in degrees; the unit 'rad' is not supported."},
        {"", "currentUnit -t pal -ua on",
         "Frames keep their numbers in another time unit; -updateAnimation cannot be on."},
        {"", "currentTime soon", "A time was expected, not \"soon\"."},
        {"", "play -wat", "Invalid flag '-wat'"},
        {"", "timeControl -q x", "Nothing was asked for."},
    };
    ExpectRefusals(refusals);
}

TEST_F(TimeAndUndoCommandsTest, TheQueueAnswersAndIsBounded) {
    const Question rows[] = {
        {"setAttr persp.tx 1; undoInfo -q -un", "string setAttr"},
        {"setAttr persp.tx 1; undo; undoInfo -q -rn", "string setAttr"},
        {"undoInfo -ock -cn \"two\"; setAttr persp.tx 1; setAttr persp.ty 1; undoInfo -cck; undo; getAttr "
         "persp.tx",
         "float 28"},
        {"undoInfo -st 0; setAttr persp.tx 1; undoInfo -q -st", "int 0"},
        {"undoInfo -st 1; setAttr persp.tx 1; flushUndo; undoInfo -q -uqe", "int 1"},
        {"undoInfo -in 0 -l 1; setAttr persp.tx 1; setAttr persp.ty 1; undo; undo; getAttr persp.tx",
         "float 1"},
        {"setAttr persp.tx 1; select persp; undoInfo -q -pq", "string[] setAttr select"},
        {"undoInfo -q -in", "int 1"},
        {"undoInfo -l 7; undoInfo -q -l", "int 7"},
        {"undoInfo -in 0 -l 3; undoInfo -in 1; undoInfo -q -l", "int 0"},
        {"undoInfo -swf 0; setAttr persp.tx 1; undoInfo -swf 1; undoInfo -q -uqe", "int 1"},
        {"setAttr persp.tx 1; undoInfo -swf 0; setAttr persp.ty 1; undoInfo -swf 1; undo; getAttr persp.tx",
         "float 28"},
        {"setAttr persp.tx 1; undo; undoInfo -q -rqe", "int 0"},
        {"undo; undoInfo -q -un", "string "},
        {"redo", "string "},
        {"undoInfo -cck; setAttr persp.tx 1; undo", "string setAttr"},
        {"undoInfo -q", "error: Nothing was asked for."},
        {"undoInfo -l -4", "error: Flag '-l' must be passed an unsigned int argument"},
    };
    for (const Question& row : rows) {
        Begin("undoInfo -st 1; undoInfo -in 1");
        EXPECT_EQ(Answer(row.command), row.result) << row.command;
    }
    Run("undoInfo -st 1; undoInfo -in 1");
}

TEST_F(TimeAndUndoCommandsTest, AFailedCommandLeavesTheQueueAsItWas) {
    const char* const locked = "createNode transform -n a; createNode transform -n b; setAttr -l on b.ty";
    for (const char* how : {"", "undoInfo -swf 0;"}) {
        SCOPED_TRACE(how);
        const std::string before = Begin(locked);
        Run("setAttr a.tz 5; undo");
        Run(how);
        EXPECT_NE(Answer("move 1 2 3 a b"), "void");
        EXPECT_EQ(DumpScene(host_), before);
        Run("undoInfo -swf 1");
        // What could be redone before it still can.
        EXPECT_EQ(Answer("redo; getAttr a.tz"), "float 5");
    }
    // Edits of the commands around it stand.
    Begin(locked);
    EXPECT_EQ(Answer("setAttr a.tz 5; catch(`move 1 2 3 a b`); setAttr a.ty 6; getAttr a.t"),
              "float[] 0 6 5");
    // A command that a procedure runs goes back alone; the procedure is one step.
    Begin(locked);
    Run("proc both() { setAttr a.tz 5; catch(`move 1 2 3 a b`); setAttr a.ty 6; } both();");
    EXPECT_EQ(Answer("getAttr a.t"), "float[] 0 6 5");
    EXPECT_EQ(Answer("undo; getAttr a.t"), "float[] 0 0 0");
    EXPECT_EQ(Answer("redo; getAttr a.t"), "float[] 0 6 5");
}

} // namespace
