// file, fileInfo, loadPlugin, unloadPlugin and pluginInfo as a script sees them.

#include "SceneFileFixture.h"
#include "text/Quoted.h"

#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

class FileCommandsTest : public SceneFileFixture {
protected:
    struct Case {
        std::string mel;
        std::string answer; ///< typed, or "error: " and a part of the message
    };
    void Expect(const std::vector<Case>& cases) {
        for (const Case& c : cases) {
            std::string answer;
            try {
                answer = Typed(c.mel);
            } catch (const lightbox::mel::Error& error) {
                answer = std::string("error: ") + error.what();
            }
            if (c.answer.compare(0, 7, "error: ") == 0) {
                EXPECT_THAT(answer, HasSubstr(c.answer)) << c.mel;
            } else {
                EXPECT_EQ(answer, c.answer) << c.mel;
            }
        }
    }
};

TEST_F(FileCommandsTest, QueriesOfTheScene) {
    Expect({{"file -q -sn", "string "},
            {"file -q -exn", "string unknown"},
            {"file -q -l", "string[] "},
            {"file -q -mf", "int 0"},
            {"createNode transform -n a; file -q -amf", "int 1"},
            {"file -mf 0; file -q -mf", "int 0"},
            {"file -q -typ", "string[] mayaAscii"},
            {"file -rename " + Quoted("one.ma") + "; file -save", "string " + Path("one.ma")},
            {"file -q -sn", "string " + Path("one.ma")},
            {"file -q -sn -shn", "string one.ma"},
            {"file -q -loc", "string " + Path("one.ma")},
            {"file -q -l", "string[] " + Path("one.ma")},
            {"file -q -ex " + Quoted("one.ma"), "int 1"},
            {"file -q -ex " + Quoted("none.ma"), "int 0"},
            {"file -q -typ " + Quoted("x.lbx"), "string[] lightboxBinary"},
            {"file -q -r", "string[] "},
            {"file -q", "error: Nothing was asked for."},
            {"file -q -ex", "error: No file name specified."},
            {"file -q -rfn " + Quoted("one.ma"), "error: There is no reference"},
            {"file -q -dr " + Quoted("one.ma"), "error: There is no reference"},
            {"file -typ \"fbx\"", "error: Scenes cannot be written as \"fbx\""},
            {"setAttr persp.tx 1; file -new", "error: "},
            {"file -open " + Quoted("one.ma"), "error: "},
            {"file -f -open", "error: No file name specified."},
            {"select -cl; file -es " + Quoted("part.ma"), "error: Nothing is selected to export."},
            {"file -f -new; file -q -sn", "string "}});
}

TEST_F(FileCommandsTest, WhatIsExportedKeepsItsHistoryKeysAndMaterial) {
    Run("polyCube -w 2 -n box; polySphere -n other; "
        "shadingNode -asShader lambert -n paint; sets -renderable true -noSurfaceShader true -empty -n "
        "paintSG; "
        "connectAttr paint.outColor paintSG.surfaceShader; sets -e -forceElement paintSG box other; "
        "setKeyframe -t 1 -v 5 box.tx; select box;");
    Run("file -f -es " + Quoted("part.ma") + "; file -f -es " + Quoted("part.lbx"));
    for (const char* const file : {"part.ma", "part.lbx"}) {
        Run("file -f -new; file -import " + Quoted(file));
        Expect({{"objExists other", "int 0"},
                {"connectionInfo -sfd boxShape.inMesh", "string polyCube1.output"},
                {"getAttr polyCube1.width", "float 2"},
                {"getAttr box.tx", "float 5"},
                {"connectionInfo -sfd paintSG.surfaceShader", "string paint.outColor"},
                {"sets -q paintSG", "string[] boxShape"}});
    }
}

TEST_F(FileCommandsTest, WhatIsImportedJoinsTheMembersThatASetHas) {
    Run("polyCube -n box; file -f -es " + Quoted("part.ma") + "; file -f -es " + Quoted("part.lbx"));
    Run("file -f -new; polySphere -n other");
    Run("file -import " + Quoted("part.ma") + "; file -import " + Quoted("part.lbx"));
    Expect({{"sets -q initialShadingGroup", "string[] otherShape boxShape part_boxShape"}});
}

TEST_F(FileCommandsTest, ImportsGoWhereTheyShall) {
    Run("createNode transform -n a; file -rename " + Quoted("part.ma") + "; file -save; file -f -new;");
    const std::string import = "file -import -iv -pmt off -op \"v=0;\" -pr ";
    Expect({{import + "-ns n " + Quoted("part.ma") + "; ls \"*:a\"", "string[] n:a"},
            {import + "-mnc on -ns n " + Quoted("part.ma") + "; ls \"*:a*\"", "string[] n:a n:a1"},
            {import + "-ra true -mnc off -ns n " + Quoted("part.ma") + "; ls \"*:a\"", "string[] n1:a n:a"},
            {import + "-mnc off -ns \":\" " + Quoted("part.ma") + "; objExists a", "int 1"},
            {"size(`" + import + "-rnn -ns m " + Quoted("part.ma") + "`)", "int 1"},
            {import + "-ra true " + Quoted("part.ma"), "error: -renameAll needs a namespace"},
            {import + "-rpr \"x\" " + Quoted("part.ma"), "error: Prefixes are not supported"},
            {"file -import " + Quoted("none.ma"), "error: "}});
}

TEST_F(FileCommandsTest, ASceneFileRunsNoFileOperations) {
    Write("bad.ma", "//Maya ASCII 2018 scene\ncreateNode transform -n \"a\";\nfile -f -new;\n"
                    "file -save;\ncreateNode transform -n \"b\";\n// End of bad.ma\n");
    EXPECT_EQ(ErrorOfOpening("bad.ma"), "none");
    EXPECT_THAT(Output(), HasSubstr("2 statements do not belong in a scene and did not run: lines 3, 4."));
    EXPECT_EQ(Typed("ls a b"), "string[] a b");
}

TEST_F(FileCommandsTest, FileInfoIsKept) {
    Expect({{"fileInfo \"shot\" \"010\"; fileInfo \"take\" \"2\"; fileInfo -q", "string[] shot 010 take 2"},
            {"fileInfo \"shot\" \"020\"; fileInfo -q shot", "string[] 020"},
            {"fileInfo -rm shot; fileInfo -q", "string[] take 2"},
            {"fileInfo -q shot", "string[] "},
            {"fileInfo shot", "error: A keyword and a value have to be given."},
            {"file -f -new; fileInfo -q", "string[] "}});
}

TEST_F(FileCommandsTest, PluginsAreLoadedNamedAndUnloaded) {
    Expect({{"pluginInfo -q -ls", "string[] notes"},
            {"pluginInfo -q -l notes", "int 1"},
            {"pluginInfo -q -r nosuch", "int 0"},
            {"pluginInfo -q -n notes", "string notes"},
            {"pluginInfo -q -c notes", "string[] turnPage"},
            {"pluginInfo -q -t notes", "string[] "},
            {"pluginInfo -q -a notes", "int 0"},
            {"pluginInfo -q -l", "error: No plug-in was specified."},
            {"pluginInfo -q notes", "error: Nothing was asked for."},
            {"pluginInfo -q -v nosuch", "error: Plug-in, \"nosuch\", is not loaded."},
            {"pluginInfo -l notes", "error: Plug-ins can only be queried (-q)."},
            {"pluginInfo -e -a on notes", "error: Invalid flag '-e'"},
            {"loadPlugin notes", "string[] notes"},
            {"loadPlugin -qt notes", "string[] notes"},
            {"loadPlugin -n other notes", "error: Invalid flag '-n'"},
            {"loadPlugin", "error: Not enough objects or values."},
            {"loadPlugin nosuch", "error: Plug-in, \"nosuch\", was not found"},
            {"loadPlugin " + Quoted("none.so"), "error: Plug-in, \""},
            {"unloadPlugin nosuch", "error: Plug-in, \"nosuch\", is not loaded."},
            {"createNode notebook -n book; unloadPlugin notes",
             "error: Plug-in, \"notes\", cannot be unloaded because it is still in use"},
            {"unloadPlugin notes nosuch",
             "error: Plug-in, \"notes\", cannot be unloaded because it is still in use"},
            {"delete book; unloadPlugin notes", "string[] notes"},
            {"pluginInfo -q -ls", "string[] "},
            {"whatIs turnPage", "string Unknown"},
            {"quit -abort", "error: Invalid flag '-abort'"}});
    EXPECT_THAT(Output(), HasSubstr("Plug-in, \"notes\", is already loaded. Skipping load."));
    LoadNotes();
}

} // namespace
