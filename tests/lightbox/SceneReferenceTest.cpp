#include "SceneFileFixture.h"
#include "formats/SceneFiles.h"
#include "scene/Scene.h"
#include "text/Quoted.h"

#include <gmock/gmock.h>

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class SceneReferenceTest : public SceneFileFixture {
protected:
    SceneReferenceTest() {
        Run("createNode transform -n hero; createNode transform -n hand -p hero; setAttr hand.tx 5;"
            "setAttr -l on hero.sx; createNode notebook -n book; setAttr book.pg -type notes 1 \"r\";"
            "connectAttr hand.tx hero.ty; addAttr -ln grip -at double hand; setAttr hand.grip 2;");
        Save("hero.ma");
        Run("file -f -new");
    }
};

} // namespace

TEST_F(SceneReferenceTest, NodesAreReadAgainAndOnlyEditsAreWritten) {
    Run("file -r -ns \"h\" " + Quoted("hero.ma") + "; createNode transform -n own -p \"h:hand\";");
    EXPECT_EQ(Typed("getAttr \"h:hand.grip\""), "float 2");
    EXPECT_EQ(Typed("referenceQuery -inr \"h:hand\"") + Typed("referenceQuery -inr own"), "int 1int 0");
    EXPECT_EQ(Typed("file -q -r"), "string[] " + Path("hero.ma"));
    EXPECT_EQ(Typed("file -q -rfn " + Quoted("hero.ma")), "string hRN");
    EXPECT_EQ(Typed("ls -rn"), "string[] h:book h:hand h:hero h:transform1");
    for (const char* mel : {"delete \"h:hand\"", "rename \"h:hand\" paw"}) {
        EXPECT_NE(ErrorOf(mel), "none") << mel;
    }
    Run("connectAttr own.tx \"h:hero.tz\";");
    Save("shot.ma");
    const std::string untouched = ReadScene("shot.ma");
    EXPECT_THAT(untouched,
                HasSubstr("file -r -ns \"h\" -dr 1 -rfn \"hRN\" -typ \"mayaAscii\" \"" + Path("hero.ma")));
    EXPECT_THAT(untouched, Not(HasSubstr("createNode transform -n \"h:")));
    EXPECT_THAT(untouched, Not(HasSubstr("select -ne \"h:"))) << "nothing was changed about the reference";

    Run("setAttr \"h:hand.tx\" 9; setAttr \"h:hand.grip\" 0; setAttr -l off \"h:hero.sx\";"
        "addAttr -ln mood -dt \"string\" \"h:hero\"; setAttr \"h:hero.mood\" -type \"string\" \"glad\";"
        "disconnectAttr \"h:hand.tx\" \"h:hero.ty\"; setAttr \"h:book.pg\" -type notes 1 \"changed\";");
    for (const char* name : {"shot.ma", "shot.lbx", "shot2.ma"}) {
        Save(name);
        Output();
        EXPECT_EQ(ErrorOfOpening(name), "none") << name << Output();
        EXPECT_EQ(Typed("getAttr \"h:hand.tx\"") + Typed("getAttr \"h:hand.grip\"") +
                      Typed("getAttr \"h:hero.mood\""),
                  "float 9float 0string glad")
            << name;
        EXPECT_EQ(Typed("getAttr -l \"h:hero.sx\""), "int 0") << name;
        EXPECT_EQ(Typed("isConnected \"h:hand.tx\" \"h:hero.ty\""), "int 0") << name;
        EXPECT_EQ(Typed("isConnected own.tx \"h:hero.tz\""), "int 1") << name;
        EXPECT_EQ(Typed("ls -l own"), "string[] |h:hero|h:hand|own") << name;
        EXPECT_EQ(Typed("ls \"h:*\""), "string[] h:book h:hand h:hero h:transform1") << name;
    }
    Save("last.ma");
    EXPECT_EQ(ReadScene("last.ma"), ReadScene("shot2.ma"));
    EXPECT_THAT(ReadScene("last.ma"), HasSubstr("\tsetAttr \".pg\" -type \"notes\" 1\n\t\t\"changed\" ;\n"));
}

TEST_F(SceneReferenceTest, AMissingFileIsSaidAndNothingIsLost) {
    Run("file -r -ns \"h\" " + Quoted("hero.ma") +
        "; createNode transform -n own; setAttr own.tx 3;"
        "connectAttr own.tx \"h:hero.tz\"; setAttr \"h:hand.tx\" 9;");
    for (const char* name : {"shot.ma", "shot.lbx"}) {
        Save(name);
        ASSERT_TRUE(QFile::rename(folder_.filePath("hero.ma"), folder_.filePath("away.ma")));
        Output();
        EXPECT_EQ(ErrorOfOpening(name), "none") << "the scene itself is whole";
        EXPECT_THAT(Output(), HasSubstr("The referenced file is missing: " + Path("hero.ma"))) << name;
        EXPECT_EQ(Typed("getAttr own.tx"), "float 3") << name;
        EXPECT_EQ(Typed("referenceQuery -isLoaded hRN"), "int 0") << name;
        const std::string copy = std::string("copy_of_") + name;
        Save(copy);
        ASSERT_TRUE(QFile::rename(folder_.filePath("away.ma"), folder_.filePath("hero.ma")));
        EXPECT_EQ(ErrorOfOpening(copy), "none");
        EXPECT_EQ(Typed("getAttr \"h:hand.tx\"") + Typed("isConnected own.tx \"h:hero.tz\""), "float 9int 1")
            << name;
    }
}

TEST_F(SceneReferenceTest, LoadingUnloadingRemovingAndNesting) {
    EXPECT_THAT(ErrorOf("file -r " + Quoted("none.ma")), HasSubstr("Reference file not found"));
    Run("file -r -ns \"h\" " + Quoted("hero.ma") + "; file -r -ns \"h\" " + Quoted("hero.ma"));
    EXPECT_EQ(Typed("objExists \"h:hero\"") + Typed("objExists \"h1:hero\""), "int 1int 1");
    Run("createNode transform -n own -p \"h:hand\"; file -unloadReference hRN");
    EXPECT_EQ(Typed("objExists \"h:hero\"") + Typed("ls -l own"), "int 0string[] |own");
    Save("deferred.ma");
    EXPECT_EQ(ErrorOfOpening("deferred.ma"), "none");
    EXPECT_EQ(Typed("objExists \"h:hero\"") + Typed("objExists \"h1:hero\""), "int 0int 1");
    Run("file -loadReference hRN");
    EXPECT_EQ(Typed("getAttr \"h:hand.grip\""), "float 2");
    Run("file -rr -rfn h1RN");
    EXPECT_EQ(Typed("objExists \"h1:hero\"") + Typed("file -q -r"), "int 0string[] " + Path("hero.ma"));
    Run("file -importReference -rfn hRN; delete \"h:book\"");
    EXPECT_EQ(Typed("file -q -r"), "string[] ");
    Save("local.ma");
    EXPECT_THAT(ReadScene("local.ma"), HasSubstr("createNode transform -n \"h:hand\" -p \"h:hero\";"));

    Run("file -f -new; file -r -ns \"h\" " + Quoted("hero.ma"));
    Save("middle.ma");
    Run("file -f -new; file -r -ns \"m\" " + Quoted("middle.ma"));
    EXPECT_EQ(Typed("getAttr \"m:h:hand.grip\""), "float 2");
    Save("outer.ma");
    EXPECT_THAT(ReadScene("outer.ma"), Not(HasSubstr("hero.ma")))
        << "the inner reference is the middle file's";
    EXPECT_EQ(ErrorOfOpening("outer.ma"), "none");
    EXPECT_EQ(Typed("getAttr \"m:h:hand.grip\""), "float 2");
    Run("file -rr " + Quoted("middle.ma"));
    EXPECT_EQ(Typed("objExists \"m:h:hand\""), "int 0");

    Write("self.ma", "//Maya ASCII 2018 scene\nfile -r -ns \"s\" -rfn \"sRN\" -typ \"mayaAscii\" " +
                         Quoted("self.ma") + ";\ncreateNode transform -n \"x\";\n// End of self.ma\n");
    EXPECT_NE(ErrorOfOpening("self.ma"), "none");
    EXPECT_THAT(Output(), HasSubstr("references itself"));
    EXPECT_EQ(Typed("ls x"), "string[] x");
}
