// Plug-ins as others write them, compiled against the headers alone and loaded as libraries.

#include "MelFixture.h"
#include "text/Quoted.h"

#include <string>

namespace {

class ForeignPluginTest : public MelFixture {
protected:
    void Load(const std::string& name) {
        Run("loadPlugin " + lightbox::Quoted(std::string(TEST_PLUGIN_FOLDER) + "/" + name + ".so"));
    }
};

TEST_F(ForeignPluginTest, ArgumentsAreReadByType) {
    Load("ArgumentsPlugin");
    const struct {
        const char* arguments;
        const char* answer; ///< the value, the index behind it, and whether reading failed
    } rows[] = {
        {"bool on", "1 @2"},
        {"bool maybe", "0 @2 failed"},
        {"int 2.9", "2 @2"},
        {"unsigned 3000000000", "3000000000 @2"},
        {"unsigned -1", "7 @2 failed"},
        {"short 32767", "32767 @2"},
        {"short 32768", "-7 @2 failed"},
        {"float 0.5", "0.5 @2"},
        {"double \"0.25\"", "0.25 @2"},
        {"double", "-7 @2 failed"},
        {"time 2sec", "48 @2"},
        {"angle 90", "90 @2"},
        {"angle 180deg", "180 @2"},
        {"angle 60min", "1 @2"},
        {"angle 2cm", "-7 @2 failed"},
        {"distance 3", "3 @2"},
        {"distance 2in", "5.08 @2"},
        {"distance 1m", "100 @2"},
        {"distance wide", "-7 @2 failed"},
        {"vector 1 2 3 4", "[1, 2, 3] @4"},
        {"vector <<1, 2, 3>>", "[1, 2, 3] @4"},
        {"vector 1 2", "[-7, 0, 0] @3 failed"},
        {"vector 1 b 3", "[-7, 0, 0] @4 failed"},
        {"plane 1 2 3", "[1, 2, 0] @3"},
        {"point 1 2 3 4", "[1, 2, 3, 1] @4"},
        {"homogeneous 1 2 3 4", "[1, 2, 3, 4] @5"},
        {"ints 1 2 3 -f 4", "[1, 2, 3] @4"},
        {"ints 1 x", "[-7] @3 failed"},
        {"doubles {0.5, 1.5}", "[0.5, 1.5] @3"},
        {"strings a b", "[a, b] @3"},
        {"vectors 1 2 3 4 5 6", "[[1, 2, 3], [4, 5, 6]] @7"},
        {"vectors 1 2 3 4", "[[-7, 0, 0]] @5 failed"},
        {"points 1 2 3 -f", "[[1, 2, 3, 1]] @4"},
        {"matrix 1 0 0 0 0 1 0 0 0 0 1 0 5 6 7",
         "[[1, 0, 0, 0], [0, 1, 0, 0], [0, 0, 1, 0], [0, 0, 0, 1]] @16 failed"},
        {"built", "180 39.3701 1 [1, 2, 3] [1, 2, 3, 1] -51ab -51ab @1"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Typed(std::string("typedArguments ") + row.arguments), std::string("string ") + row.answer)
            << row.arguments;
    }
    EXPECT_EQ(
        Typed("string $r = `typedArguments matrix 1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1`; match(\"5, 6, 7\", $r)"),
        "string 5, 6, 7");
    Run("unloadPlugin ArgumentsPlugin");
    EXPECT_NE(ErrorOf("typedArguments int 1"), "none");
}

TEST_F(ForeignPluginTest, ALocatorThatDrawsWithOpenGlIsLoaded) {
    Load("LocatorPlugin");
    EXPECT_EQ(Typed("createNode arrowLocator -n arrow; nodeType arrow"), "string arrowLocator");
    EXPECT_NE(ErrorOf("unloadPlugin LocatorPlugin"), "none");
    Run("delete arrow; unloadPlugin LocatorPlugin");
}

} // namespace
