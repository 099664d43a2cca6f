// Scene files that are cut off, damaged or full of nonsense.

#include "SceneFileFixture.h"
#include "formats/ChunkFile.h"
#include "formats/SceneFiles.h"
#include "scene/Scene.h"

#include <gmock/gmock.h>

using namespace lightbox;
using ::testing::HasSubstr;

namespace {

class SceneDamageTest : public SceneFileFixture {
protected:
    /// Opens damaged bytes: that is an error or goes well, and the scene that is there after it can be worked
    /// with.
    void OpenDamaged(const std::string& name, const std::string& bytes, const std::string& what) {
        Write(name, bytes);
        Run("file -f -new; createNode transform -n \"before\";");
        Output();
        const std::string error = ErrorOfOpening(name);
        if (error.find("not a scene") != std::string::npos) {
            EXPECT_EQ(Typed("objExists before"), "int 1") << what;
        } else {
            EXPECT_EQ(Typed("objExists before"), "int 0") << what;
            EXPECT_EQ(error == "none", Output().find("// Error") == std::string::npos) << what;
        }
        EXPECT_EQ(ErrorOf("camera; currentTime 3; delete `ls -type transform \"camera*\"`;"), "none") << what;
        EXPECT_THAT(SceneText(), HasSubstr("createNode camera -s -n \"perspShape\" -p \"persp\";")) << what;
    }
};

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

} // namespace

TEST_F(SceneDamageTest, AsciiCutAnywhere) {
    BuildScene();
    Save("whole.ma");
    const std::string whole = Read("whole.ma");
    std::set<std::size_t> cuts;
    for (std::size_t i = 0; i < whole.size(); i += 97) {
        cuts.insert(i);
    }
    const std::size_t interesting = whole.find("createNode notebook");
    for (std::size_t i = interesting; i < whole.size(); ++i) {
        if (std::isspace(static_cast<unsigned char>(whole[i])) || whole[i] == ';' || whole[i] == '"') {
            cuts.insert(i);
        }
    }
    for (const std::size_t cut : cuts) {
        OpenDamaged("cut.ma", whole.substr(0, cut), "cut at " + std::to_string(cut));
    }
}

TEST_F(SceneDamageTest, AsciiChangedAnywhere) {
    BuildScene();
    Save("whole.ma");
    const std::string whole = Read("whole.ma");
    const std::string pieces = std::string("\"\\;{`-9\n\xff") + '\0';
    for (std::size_t i = 0; i < whole.size(); i += 29) {
        std::string changed = whole;
        changed[i] = pieces[(i / 29) % pieces.size()];
        OpenDamaged("changed.ma", changed, "changed at " + std::to_string(i));
    }
}

TEST_F(SceneDamageTest, BinaryCutOrChangedAnywhere) {
    BuildScene();
    Save("whole.lbx");
    const std::string whole = Read("whole.lbx");
    // Lengths and counts of the first chunks, byte for byte.
    for (std::size_t i = 0; i < 160; ++i) {
        OpenDamaged("cut.lbx", whole.substr(0, i), "cut at " + std::to_string(i));
    }
    for (std::size_t i = 0; i < whole.size(); i += 61) {
        OpenDamaged("cut.lbx", whole.substr(0, i), "cut at " + std::to_string(i));
        std::string changed = whole;
        changed[i] = static_cast<char>(changed[i] ^ 0x41);
        OpenDamaged("changed.lbx", changed, "changed at " + std::to_string(i));
    }
    OpenDamaged("long.lbx", whole + "more", "bytes behind the end");
}

TEST_F(SceneDamageTest, BinaryNonsenseWithGoodChecksums) {
    const auto file = [](std::string_view type, const ChunkWriter& content) {
        std::ostringstream out;
        ChunkFile::WriteSignature(out);
        ChunkFile::WriteChunk(out, type, content.Bytes());
        ChunkFile::WriteChunk(out, "DONE", {});
        return out.str();
    };
    ChunkWriter huge;
    huge.Length(0xffffffffffffffffULL);
    ChunkWriter counts;
    for (const char* text : {"transform", "a", ""}) {
        counts.Text(text);
    }
    counts.Byte(0);
    counts.Text("uid");
    counts.Count(0);
    counts.Count(2000000000);
    ChunkWriter path;
    for (const char* text : {"transform", "a", "b|c|d"}) {
        path.Text(text);
    }
    ChunkWriter unknown;
    unknown.Text("?");
    for (const auto& [type, content] :
         {std::pair("NODE", huge), std::pair("NODE", counts), std::pair("NODE", path),
          std::pair("INFO", huge), std::pair("REFR", huge), std::pair("EDIT", counts)}) {
        Write("bad.lbx", file(type, content));
        EXPECT_THAT(ErrorOfOpening("bad.lbx"), HasSubstr("Errors while reading")) << type;
        EXPECT_THAT(Output(), HasSubstr("// Error: file: " + Path("bad.lbx"))) << type;
    }
    Write("later.lbx", file("NEW!", unknown));
    EXPECT_EQ(ErrorOfOpening("later.lbx"), "none");
    EXPECT_THAT(Output(), HasSubstr("Unknown chunk 'NEW!'"));
}

TEST_F(SceneDamageTest, AsciiFaultsAreErrorsWithTheirPlaceAndTheRestIsRead) {
    struct Case {
        const char* statement;
        const char* message;
    };
    const Case cases[] = {
        {"setAttr \".lpx\" \"far\";", "line 3.2: A number was expected"},
        {"setAttr \".lp\" -type \"double3\" 1 2;", "takes 3 values; 2 were given"},
        {"setAttr -s 2000000000 \".w[0:1999999999]\" 1 2;", "longer than the values given"},
        {"setAttr \".d\" -type \"doubleArray\" 2000000000 1 2;", "does not match the count before them"},
        {"setAttr \".d\" -type \"stringArray\" -1 \"a\";", "does not match the count before them"},
        {"setAttr \".lp[\" 1;", "Syntax error in the attribute"},
        {"setAttr \".w[-1]\" 1;", "Syntax error in the attribute"},
        {"setAttr \".w[99999999999999]\" 1;", "Syntax error in the attribute"},
        {"setAttr \".pg\" -type \"notes\" 3 \"only one\";", "could not be read completely"},
        {"setAttr \".pg\" -type \"notes\" 2000000000 \"only one\";", "Invalid note"},
        {"createNode transform -n \"below\" -p \"nobody\";", "No object matches name: nobody"},
        {"createNode transform -n \"below\" -p \"time1\";", "cannot be a parent"},
        {"addAttr -ln \"bad name\" -at \"double\";", "invalid characters"},
        {"addAttr -ln \"tall\" -at \"compound\" -nc 2000000000;", "number of children"},
        {"currentUnit -t \"fortnight\";", "Unknown time unit"},
        {"setAttr;", "No attribute was specified"},
        {"createNode;", "Not enough objects"},
    };
    for (const Case& c : cases) {
        Write("bad.ma",
              std::string("//Maya ASCII 2018 scene\ncreateNode notebook -n \"book\"; addAttr -ln w -m; "
                          "addAttr -ln d -dt doubleArray;\n\t") +
                  c.statement + "\ncreateNode transform -n \"after\";\n// End of bad.ma\n");
        EXPECT_THAT(ErrorOfOpening("bad.ma"), HasSubstr("Errors while reading")) << c.statement;
        const std::string output = Output();
        EXPECT_THAT(output, HasSubstr("// Error: ")) << c.statement;
        EXPECT_THAT(output, HasSubstr(c.message)) << c.statement;
        EXPECT_EQ(Typed("objExists after"), "int 1") << c.statement;
    }
}

TEST_F(SceneDamageTest, AFileThatIsNoSceneCostsNothing) {
    BuildScene();
    Save("good.ma");
    Run("setAttr persp.tx 5");
    const std::string before = SceneText();
    Write("empty.ma", "");
    Write("text.ma", "createNode transform;");
    Write("picture.lbx", "\x89PNG\r\n\x1a\n0000");
    for (const char* name : {"none.ma", "empty.ma", "text.ma", "picture.lbx", "."}) {
        EXPECT_NE(ErrorOfOpening(name), "none") << name;
        EXPECT_EQ(SceneText(), before) << name;
        EXPECT_EQ(Typed("file -q -sn"), "string " + Path("good.ma")) << name;
        EXPECT_EQ(Typed("file -q -modified"), "int 1") << name;
    }
    Run("undo");
    EXPECT_EQ(Typed("getAttr persp.tx"), "float 1");
}

TEST_F(SceneDamageTest, AFileReadWithFaultsIsNotOverwrittenByChance) {
    BuildScene();
    Save("a.ma");
    const std::string damaged = Replaced(Read("a.ma"), "\"double3\" 1 -2.25", "\"double3\" 1 \"x\"");
    Write("a.ma", damaged);
    EXPECT_NE(ErrorOfOpening("a.ma"), "none");
    EXPECT_EQ(Typed("getAttr \"upper.mode\""), "int 6");
    EXPECT_THAT(ErrorOf("file -save"), HasSubstr("saving would lose"));
    EXPECT_EQ(Read("a.ma"), damaged);
    Save("b.ma");
    EXPECT_EQ(ErrorOfOpening("b.ma"), "none");
    EXPECT_NE(ErrorOfOpening("a.ma"), "none");
    EXPECT_EQ(ErrorOf("file -f -save; file -save"), "none");
}
