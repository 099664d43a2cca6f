// Commands in the middle of a stroke, a text and a transform, each with its end, the way back and the way
// there again.
#include "faults/InterleavingWalk.h"

namespace vellix {
namespace {

class MiddleOfThingsTest : public InterleavingWalk {
protected:
    static constexpr unsigned PERSP = 1; ///< see CameraAt
    static constexpr unsigned WALK_A = 11;

    static Step Do(const char* action, std::array<unsigned, 4> numbers = {}) {
        return {ActionNamed(action), numbers};
    }
};

TEST_F(MiddleOfThingsTest, NothingIsLostOrHalfDone) {
    // The numbers are those of the actions; see InterleavingWalkActions.
    const std::vector<Step> commands = {
        Do("frame", {0, PERSP}),        // delete
        Do("frame", {1, PERSP}),        // cut
        Do("frame", {4, PERSP}),        // paste
        Do("frame", {6, PERSP}),        // clear
        Do("frame", {8, PERSP, 0, 3}),  // hold two frames longer
        Do("frame", {8, PERSP, 1, 2}),  // hold one frame
        Do("frame", {9, PERSP, 6, 0}),  // move the key of frame 1 to 3
        Do("frame", {9, PERSP, 24, 0}), // move the keys of frames 1 to 3
        Do("frame", {11, PERSP}),       // insert
        Do("frame", {10, PERSP}),       // duplicate
        Do("import", {PERSP, 0, 1}),    // over the key of frame 1
        Do("import", {PERSP, 2, 1}),    // at frame 3
        Do("stack", {0, PERSP, 0}),     // delete the layer
        Do("stack", {2, PERSP, 0}),     // delete all layers
        Do("stack", {3, PERSP, 0, 2}),  // move it up
        Do("stack", {5, PERSP, 0, WALK_A}),
        Do("stack", {6, PERSP, 0, WALK_A}),
        Do("stack", {7, PERSP, 1}),    // another active layer
        Do("stack", {8, PERSP, 0, 1}), // insert below it
        Do("camera", {1, PERSP, 2}),   // rename the camera
        Do("undo", {1}),
    };
    const std::vector<std::vector<Step>> begins = {
        {Do("a drawing tool", {3}), Do("press", {100, 100, 1}), Do("drag", {20, 30})},
        {Do("a drawing tool", {9}), Do("press", {100, 100, 1}), Do("drag", {20, 30})},
        {Do("a drawing tool", {0}), Do("press", {100, 100, 1}), Do("release"), Do("type", {3})},
        {Do("transform the whole", {7})},
    };
    for (std::size_t begin = 0; begin < begins.size(); ++begin) {
        for (const unsigned frame : {0U, 2U}) { // one with a drawing, one without a key
            for (std::size_t command = 0; command < commands.size(); ++command) {
                std::vector<Step> way = {Do("replay", {PERSP, 0, 10, 20}), Do("replay", {PERSP, 4, 300, 20}),
                                         Do("stack", {9, PERSP, 1}),       Do("stack", {7, PERSP, 0}),
                                         Do("frame", {2, PERSP}),          Do("time", {frame})};
                way.insert(way.end(), begins[begin].begin(), begins[begin].end());
                way.push_back(commands[command]);
                way.push_back(begin == 3 ? Do("key", {3}) : begin == 2 ? Do("key", {0}) : Do("release"));
                way.push_back(Do("undo", {0, 3}));
                way.push_back(Do("redo", {0, 3}));
                const Outcome outcome = Walk(way);
                std::string said;
                for (const std::string& step : outcome.said) {
                    said += "  " + step + "\n";
                }
                EXPECT_EQ(outcome.fault, "") << said;
            }
        }
    }
}

} // namespace
} // namespace vellix
