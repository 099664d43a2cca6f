// Scene files that are read with errors, and what saving does then.

#include "SceneFileFixture.h"
#include "formats/ChunkFile.h"
#include "formats/SceneFiles.h"
#include "scene/Scene.h"

#include <gmock/gmock.h>

using namespace lightbox;
using ::testing::HasSubstr;

namespace {

const char* const HEAD = "//Maya ASCII 2018 scene\n//Name: a.ma\n";
const char* const END = "// End of a.ma\n";

class SceneFaultsTest : public SceneFileFixture {
protected:
    ~SceneFaultsTest() override { notes::SetReadingTrouble(notes::Trouble::None); }

    /// Writes a scene file that is read with one fault.
    std::string WriteFaulty(const std::string& name) {
        std::string bytes =
            std::string(HEAD) + "createNode transform -n \"box\";\n\tsetAttr \".tx\" \"far\";\n" + END;
        Write(name, bytes);
        return bytes;
    }
    void ExpectRefused(const std::string& line, const std::string& what) {
        EXPECT_THAT(ErrorOf(line), HasSubstr("was read with errors; saving would lose")) << what;
    }
};

} // namespace

TEST_F(SceneFaultsTest, EveryErrorShownWhileReadingGuardsTheFile) {
    struct Case {
        const char* what;
        std::string statements;
        notes::Trouble trouble;
        const char* lost; ///< named by the refused save; null for a file without faults
    };
    const std::string note = "createNode notebook -n \"book\";\n\tsetAttr \".pg\" -type \"notes\" ";
    const Case cases[] = {
        {"nothing", note + "1 \"a\";\n", notes::Trouble::None, nullptr},
        {"the plug-in shows an error", note + "1 \"a\";\n", notes::Trouble::Complains, "A note is blurred"},
        {"the plug-in has no memory", note + "1 \"a\";\n", notes::Trouble::NoMemory,
         "could not be read completely"},
        {"the plug-in fails", note + "2 \"a\";\n", notes::Trouble::None, "could not be read completely"},
        {"a statement is refused", "setAttr persp.tx \"x\";\n", notes::Trouble::None,
         "line 3.1: A number was"},
        {"a script catches the error", "catch(`delete \"nobody\"`);\n", notes::Trouble::None, nullptr},
    };
    for (const Case& c : cases) {
        const std::string bytes = HEAD + c.statements + END;
        Write("a.ma", bytes);
        notes::SetReadingTrouble(c.trouble);
        EXPECT_EQ(ErrorOfOpening("a.ma") == "none", c.lost == nullptr) << c.what;
        notes::SetReadingTrouble(notes::Trouble::None);
        if (!c.lost) {
            EXPECT_EQ(ErrorOf("file -save"), "none") << c.what;
            continue;
        }
        ExpectRefused("file -save", c.what);
        EXPECT_THAT(ErrorOf("file -save"), HasSubstr(c.lost)) << c.what;
        EXPECT_EQ(Read("a.ma"), bytes) << c.what;
    }
}

TEST_F(SceneFaultsTest, ABinaryValueThatIsNotReadWholeGuardsTheFile) {
    Run("createNode notebook -n first; setAttr first.pg -type notes 2 a b; createNode transform -n last");
    Save("a.lbx");
    const std::string bytes = Read("a.lbx");
    for (const notes::Trouble trouble : {notes::Trouble::NoMemory, notes::Trouble::Complains}) {
        notes::SetReadingTrouble(trouble);
        EXPECT_THAT(ErrorOfOpening("a.lbx"), HasSubstr("Errors while reading"));
        notes::SetReadingTrouble(notes::Trouble::None);
        EXPECT_EQ(Typed("objExists last"), "int 1") << "the rest is read";
        EXPECT_THAT(SceneText(), HasSubstr("\"a\"")) << "and what the plug-in had read";
        ExpectRefused("file -save", "");
        EXPECT_EQ(Read("a.lbx"), bytes);
    }
}

TEST_F(SceneFaultsTest, OnlyTheFileWithFaultsIsGuardedUnderWhateverName) {
    const std::string damaged = WriteFaulty("a.ma");
    EXPECT_NE(ErrorOfOpening("a.ma"), "none");
    ExpectRefused("file -save", "");
    Save("b.ma");
    EXPECT_EQ(ErrorOf("setAttr box.ty 2; file -save"), "none");
    ExpectRefused("file -rename " + Quoted("a.ma") + "; file -save", "renamed back");
    ExpectRefused("file -exportAll " + Quoted("a.ma"), "exported");
    ExpectRefused("select box; file -exportSelected " + Quoted("a.ma"), "exported in part");
    ASSERT_TRUE(QFile::link(QString::fromStdString(Path("a.ma")), QString::fromStdString(Path("link.ma"))));
    ExpectRefused("file -rename " + Quoted("link.ma") + "; file -save", "by a link");
    EXPECT_EQ(Read("a.ma"), damaged);

    EXPECT_EQ(ErrorOf("file -rename " + Quoted("a.ma") + "; file -force -save; file -save"), "none");
    EXPECT_EQ(ErrorOfOpening("a.ma"), "none");
    EXPECT_EQ(Typed("getAttr box.ty"), "float 2");
    WriteFaulty("a.ma");
    EXPECT_NE(ErrorOfOpening("a.ma"), "none");
    EXPECT_EQ(ErrorOf("file -force -new; file -rename " + Quoted("a.ma") + "; file -save"), "none")
        << "another scene is not asked about";
}

TEST_F(SceneFaultsTest, AnImportOrAReferenceWithFaultsLeavesTheSceneItselfWhole) {
    WriteFaulty("part.ma");
    Save("own.ma");
    EXPECT_THAT(ErrorOf("file -import " + Quoted("part.ma")), HasSubstr("Errors while reading"));
    EXPECT_EQ(ErrorOf("file -save"), "none");
    ExpectRefused("file -rename " + Quoted("part.ma") + "; file -save", "the imported file");
    // Read again, now whole: nothing is wrong with that, but the scene still has the part from before.
    Write("part.ma", std::string(HEAD) + "createNode transform -n \"whole\";\n" + END);
    EXPECT_EQ(ErrorOf("file -import " + Quoted("part.ma")), "none");
    ExpectRefused("file -rename " + Quoted("part.ma") + "; file -save", "what was imported first");

    WriteFaulty("part.ma");
    Run("file -force -new");
    Output();
    EXPECT_EQ(ErrorOf("file -reference -namespace p " + Quoted("part.ma")), "none");
    EXPECT_THAT(Output(), HasSubstr("A number was expected"));
    Save("own.ma");
    EXPECT_EQ(ErrorOfOpening("own.ma"), "none");
    EXPECT_THAT(Output(), HasSubstr("A number was expected"));
    EXPECT_EQ(ErrorOf("file -save"), "none");
    ExpectRefused("file -exportAll " + Quoted("part.ma"), "the referenced file");
}

TEST_F(SceneFaultsTest, AnExceptionWhileReadingLeavesTheHostAsItWas) {
    Run("namespace -add props; namespace -set props");
    const std::string bytes = WriteFaulty("a.ma");
    const Output::Sink sink = host_.output().SetSink([](Output::Kind kind, const std::string&) {
        if (kind == Output::Kind::Error) {
            throw std::runtime_error("the sink is full");
        }
    });
    for (const char* operation : {"file -import ", "file -force -open "}) {
        EXPECT_THAT(ErrorOf(operation + Quoted("a.ma")), HasSubstr("the sink is full"));
        if (operation[6] == 'i') {
            EXPECT_EQ(Typed("namespaceInfo -currentNamespace"), "string props");
        }
    }
    host_.output().SetSink(sink);
    ExpectRefused("file -save", "");
    EXPECT_EQ(Read("a.ma"), bytes);
}

TEST_F(SceneFaultsTest, BinaryValuesOfMissingNodesAreKept) {
    ChunkWriter chunk;
    chunk.Text(":nowhere");
    chunk.Count(0);
    chunk.Count(2);
    for (const auto& [path, type] : {std::pair("pg", "notes"), std::pair("xy", "sketches")}) {
        chunk.Text(path);
        for (int flag = 0; flag < 3; ++flag) {
            chunk.Byte(0);
        }
        chunk.Text(type);
        chunk.Byte(4);
        chunk.Text("\x03one");
    }
    chunk.Count(0);
    chunk.Count(0);
    std::ostringstream out;
    ChunkFile::WriteSignature(out);
    ChunkFile::WriteChunk(out, "DFLT", chunk.Bytes());
    ChunkFile::WriteChunk(out, "DONE", {});
    Write("a.lbx", out.str());
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(ErrorOfOpening("a.lbx"), "none");
        EXPECT_EQ(ErrorOf("file -save"), "none");
        const std::string bytes = Read("a.lbx");
        EXPECT_THAT(bytes, HasSubstr("setAttr \".pg\" -type \"notes\" 1\n\t\t\"one\""))
            << "the plug-in can write it";
        EXPECT_THAT(bytes, HasSubstr(std::string("sketches\x04\0\0\0\0\0\0\0\x03one", 20)));
    }
    EXPECT_THAT(ErrorOf("file -exportAll " + Quoted("a.ma")), HasSubstr("data of type \"sketches\""));
}

TEST_F(SceneFaultsTest, DataBelowACompoundOutlivesItsPlugin) {
    Run("createNode transform -n top; addAttr -ln shelf -at compound -nc 2 top;"
        "addAttr -ln book -dt notes -p shelf top; addAttr -ln height -at \"double\" -p shelf top;"
        "setAttr top.book -type notes 1 \"kept\"; setAttr top.height 4; connectAttr persp.tx top.ty;"
        "connectAttr persp.ty top.height");
    const std::string before = SceneText();
    EXPECT_THAT(ErrorOf("unloadPlugin notes"), HasSubstr("still in use"));
    Run("unloadPlugin -force notes");
    Save("a.ma");
    Save("a.lbx");
    LoadNotes();
    EXPECT_EQ(ErrorOfOpening("a.ma"), "none");
    EXPECT_EQ(SceneText(), before);
    EXPECT_EQ(ErrorOfOpening("a.lbx"), "none") << Output();
    EXPECT_EQ(Typed("getAttr top.height"), "float 21");
    Run("disconnectAttr persp.ty top.height");
    EXPECT_EQ(Typed("getAttr top.height"), "float 4");
    Run("connectAttr persp.ty top.height");
    EXPECT_EQ(SceneText(), before);
}
