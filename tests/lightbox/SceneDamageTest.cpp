// Scene files that are cut off, damaged or full of nonsense.

#include "SceneFileFixture.h"
#include "formats/ChunkFile.h"
#include "formats/SceneFiles.h"
#include "scene/Scene.h"

#include <gmock/gmock.h>
#include <regex>

using namespace lightbox;
using ::testing::HasSubstr;

namespace {

/// The CRC-32 of PNG, bit by bit.
std::uint32_t Crc(const std::string& bytes) {
    std::uint32_t rest = ~0u;
    for (const char byte : bytes) {
        rest ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest >> 1) ^ ((rest & 1) ? 0xedb88320u : 0);
        }
    }
    return ~rest;
}

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

TEST_F(SceneDamageTest, AWrongBitAnywhereIsPutRight) {
    BuildScene();
    Save("whole.lbx");
    const std::string text = SceneText();
    const std::string whole = Read("whole.lbx");
    const auto expectWhole = [&](const std::string& what) {
        EXPECT_THAT(ErrorOfOpening("flipped.lbx"), HasSubstr("Errors while reading")) << what;
        EXPECT_EQ(SceneText(), text) << what;
    };
    for (std::size_t bit = 0; bit < 8 * whole.size(); bit += bit < 600 ? 1 : 83) {
        std::string flipped = whole;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
        Write("flipped.lbx", flipped);
        expectWhole("bit " + std::to_string(bit));
    }
    // The first sector of the disk is gone: what stood in it is lost, but not the nodes behind it.
    Write("flipped.lbx", std::string(512, '\0') + whole.substr(512));
    EXPECT_THAT(ErrorOfOpening("flipped.lbx"), HasSubstr("Errors while reading"));
    EXPECT_EQ(Typed("ls keys book \"props:*\""), "string[] keys book props:cup");
}

TEST_F(SceneDamageTest, ADamagedBlockCostsOnlyWhatIsInIt) {
    // Three notebooks of 300 lines, which is several blocks each.
    std::string lines;
    for (int i = 0; i < 300; ++i) {
        lines += " \"line " + std::to_string(1000 + i) + " of the book\"";
    }
    for (const char* name : {"first", "second", "third"}) {
        Run(std::string("createNode notebook -n ") + name + "; setAttr " + name + ".lpx 4; setAttr " + name +
            ".pg -type notes 300" + lines);
    }
    Save("books.lbx");
    const std::string text = SceneText();
    const std::string whole = Read("books.lbx");
    const auto book = [&](const std::string& from, const std::string& name) {
        const std::size_t begin = from.find("createNode notebook -n \"" + name);
        return begin == std::string::npos ? "none"
                                          : from.substr(begin, from.find("createNode", begin + 1) - begin);
    };
    const std::size_t second = whole.find("second", whole.find("NODE", whole.find("third of") + 1));
    const std::size_t node = whole.rfind("NODE", whole.find("second"));
    ASSERT_NE(second, std::string::npos);
    const auto overwritten = [&](std::size_t at, std::size_t count) {
        return std::string(whole).replace(at, count, count, '\xee');
    };
    struct Case {
        const char* what;
        std::string bytes;
        bool isSecondThere;
        int linesAtLeast; ///< of the second book
    };
    const Case cases[] = {
        {"the middle of a value", overwritten(node + 4000, 100), true, 170},
        {"a header", overwritten(node, 12), false, 0},
        {"bytes are missing", std::string(whole).erase(node + 4000, 1000), true, 170},
        {"the checksums of the blocks", overwritten(node + 16, 8), true, 300},
    };
    for (const Case& c : cases) {
        Write("bad.lbx", c.bytes);
        EXPECT_THAT(ErrorOfOpening("bad.lbx"), HasSubstr("Errors while reading")) << c.what;
        const std::string now = SceneText();
        EXPECT_EQ(book(now, "first"), book(text, "first")) << c.what;
        EXPECT_EQ(book(now, "third"), book(text, "third")) << c.what;
        EXPECT_EQ(book(now, "second") != "none", c.isSecondThere) << c.what;
        int lines = 0;
        for (int i = 0; i < 300; ++i) {
            lines += book(now, "second").find(std::to_string(1000 + i)) != std::string::npos ? 1 : 0;
        }
        EXPECT_GE(lines, c.linesAtLeast) << c.what;
    }
}

TEST_F(SceneDamageTest, FilesOfVersion1AreReadWholeOrDamaged) {
    BuildScene();
    Save("new.lbx");
    const std::string text = SceneText();
    std::string bytes = Read("new.lbx");
    std::string old = "\x89LBX\r\n\x1a\n";
    std::vector<std::size_t> positions;
    ChunkFile file(bytes, [](const std::string& fault) { ADD_FAILURE() << fault; });
    while (const auto chunk = file.Next()) {
        positions.push_back(old.size());
        ChunkWriter length;
        length.Length(chunk->content.size());
        ChunkWriter sum;
        sum.Count(Crc(std::string(chunk->type) + std::string(chunk->content)));
        old += std::string(chunk->type) + length.Bytes() + std::string(chunk->content) + sum.Bytes();
    }
    Write("old.lbx", old);
    EXPECT_EQ(ErrorOfOpening("old.lbx"), "none");
    EXPECT_EQ(SceneText(), text);
    for (std::size_t bit = 64; bit < 8 * old.size(); bit += 61) {
        std::string flipped = old;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
        OpenDamaged("old.lbx", flipped, "bit " + std::to_string(bit));
        EXPECT_NE(ErrorOfOpening("old.lbx"), "none") << bit;
        EXPECT_EQ(SceneText(), text) << bit;
    }
    const std::size_t middle = positions[positions.size() / 2];
    OpenDamaged("old.lbx", std::string(old).replace(middle, 24, 24, '\xee'), "garbage");
    EXPECT_EQ(Typed("ls upper \"props:*\""), "string[] upper props:cup") << "what is before and behind";
    for (std::size_t cut = 8; cut < old.size(); cut += 101) {
        OpenDamaged("old.lbx", old.substr(0, cut), "cut at " + std::to_string(cut));
    }
}

TEST_F(SceneDamageTest, AWrongBitInAQuotationMarkCostsNothing) {
    const std::string head = "//Maya ASCII 2018 scene\n//Name: bad.ma\ncreateNode notebook -n \"book\";\n"
                             "\tsetAttr \".lpy\" 7;\n";
    const std::string value =
        "\tsetAttr \".pg\" -type \"notes\" 4 \"one a2b\"\n\t\t\"two \\\"b\"\n\t\t\"222\"\n"
        "\t\t\"four\";\n";
    const std::string tail = "createNode transform -n \"last\";\n// End of bad.ma\n";
    Write("bad.ma", head + value + tail);
    EXPECT_EQ(ErrorOfOpening("bad.ma"), "none");
    const auto nodes = [this] {
        return std::regex_replace(SceneText(), std::regex("\trename -uid .*\n"), "");
    };
    const std::string text = nodes();
    ASSERT_THAT(text, HasSubstr("\"four\" ;"));
    const auto open = [&](const std::string& damaged) {
        Write("bad.ma", head + damaged + tail);
        EXPECT_THAT(ErrorOfOpening("bad.ma"), HasSubstr("Errors while reading")) << damaged;
        EXPECT_THAT(ErrorOf("file -save"), HasSubstr("saving would lose")) << damaged;
        EXPECT_EQ(Read("bad.ma"), head + damaged + tail);
    };
    // A mark became another character.
    for (std::size_t at = value.find('"'); at != std::string::npos; at = value.find('"', at + 1)) {
        for (int bit = 0; bit < 8 && value[at - 1] != '\\'; ++bit) {
            std::string damaged = value;
            damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit);
            open(damaged);
            EXPECT_EQ(nodes(), text) << damaged;
        }
    }
    // Another character became a mark: the line may be wrong, the ones behind it are not.
    for (const char letter : {'2', 'b'}) {
        for (std::size_t at = value.find(letter); at != std::string::npos; at = value.find(letter, at + 1)) {
            std::string damaged = value;
            damaged[at] = '"';
            open(damaged);
            EXPECT_THAT(SceneText(), HasSubstr("\"four\" ;")) << damaged;
        }
    }
    // Two lines are too much to guess.
    std::string damaged = value;
    for (const char* mark : {"\"two", "\"four"}) {
        damaged[damaged.find(mark)] = '#';
    }
    open(damaged);
    EXPECT_THAT(SceneText(), HasSubstr("\n\t\t\"one a2b\"\n"));
}

TEST_F(SceneDamageTest, AWrongBitInTheWordOfAStatementCostsNothing) {
    const std::string text = "//Maya ASCII 2018 scene\n//Name: bad.ma\ncreateNode notebook -n \"first\";\n"
                             "\tsetAttr \".pg\" -type \"notes\" 1 \"one\";\n"
                             "createNode notebook -n \"second\";\n"
                             "\trename -uid \"0C3D1F00-0000-2A2B-5C00-000000000071\";\n"
                             "\taddAttr -ci true -sn \"memo\" -ln \"memo\" -dt \"string\";\n"
                             "\tsetAttr \".pg\" -type \"notes\" 2 \"two\"\n\t\t\"three\";\n"
                             "connectAttr \"first.lpx\" \"second.lpy\";\n"
                             "disconnectAttr \"first.lpx\" \"second.lpy\";\n"
                             "select -ne :time1;\n\tsetAttr \".o\" 7;\n// End of bad.ma\n";
    Write("bad.ma", text);
    EXPECT_EQ(ErrorOfOpening("bad.ma"), "none");
    const auto nodes = [this] {
        return std::regex_replace(
            SceneText(), std::regex("\trename -uid \"(?!0C3D1F00).*\n|createNode transform.*\n"), "");
    };
    const std::string whole = nodes();
    for (const char* word :
         {"createNode notebook -n \"second", "rename", "addAttr", "setAttr \".pg\" -type \"notes\" 2",
          "connectAttr", "disconnectAttr", "select"}) {
        const std::size_t begin = text.find(word);
        const std::size_t last = text.find(' ', begin) - 1;
        for (const std::size_t at : {begin, begin + 1, last}) {
            for (int bit = 0; bit < 8; ++bit) {
                std::string damaged = text;
                damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit);
                Write("bad.ma", damaged);
                const std::string what = damaged.substr(begin, 14) + " " + std::to_string(at - begin);
                EXPECT_THAT(ErrorOfOpening("bad.ma"), HasSubstr("Errors while reading")) << what;
                EXPECT_EQ(nodes(), whole) << what;
            }
        }
    }
}

TEST_F(SceneDamageTest, OfACutStatementThePluginGetsWhatIsComplete) {
    const std::string head =
        "//Maya ASCII 2018 scene\n//Name: cut.ma\ncreateNode transform -n \"group\";\n"
        "\tsetAttr \".t\" -type \"double3\" 1 2 3;\ncreateNode notebook -n \"book\" -p \"group\";\n";
    struct Case {
        const char* rest;
        const char* written; ///< a part of the scene's text
        const char* error;   ///< a part of the messages
        const char* after = "";
    };
    const Case cases[] = {
        {"\tsetAttr \".pg\" -type \"notes\" 3 \"one\"\n\t\t\"two\"\n\t\t\"thr", "2\n\t\t\"one\"\n\t\t\"two\"",
         "line 8.3: Syntax error: the string has no closing quote"},
        {"\tsetAttr \".pg\" -type \"notes\" 3 \"one\"\n\t\t\"two\"", "2\n\t\t\"one\"\n\t\t\"two\"",
         "the file is cut off"},
        {"\tsetAttr \".pg\" -type \"notes\" 1 \"one\";\n", "1\n\t\t\"one\"", "the file is cut off"},
        {"\tsetAttr \".t\" -type \"notes\" 1 \"one\"", "-type \"double3\" 1 2 3", "the file is cut off"},
        {"\tsetAttr \".lpx\" 12", "createNode notebook -n \"book\"", "The value of '.lpx' is damaged"},
        // Behind a statement that is not MEL, reading goes on.
        {"\tsetAttr \".pg\" -type \"notes\" 3 \"one\"\n\t\t\"two\"\n\t\t{three\";\n\tsetAttr \".lpy\" 7;\n",
         "2\n\t\t\"one\"\n\t\t\"two\"", "could not be read completely", "\".lp\" -type \"double3\" 0 7 0"},
        {"\tsetAttr \".lpx\" 1{5;\n\tsetAttr \".lpy\" 7;\n", "\".lp\" -type \"double3\" 0 7 0",
         "is damaged or cut off"},
        // What belongs to a node that is not made does not go to the node before.
        {"createNode transform -n \"below;\n\tsetAttr \".lpy\" 7;\ncreateNode transform -n \"last\";\n",
         "createNode notebook -n \"book\" -p \"group\";\n\trename -uid",
         "There is no node that this belongs to", "createNode transform -n \"last\""},
        {"createNode transform -n \"below\" -p;\n\tsetAttr \".lpy\" 7;\ncreateNode transform -n \"last\";\n",
         "createNode notebook -n \"book\" -p \"group\";\n\trename -uid",
         "There is no node that this belongs to", "createNode transform -n \"last\""},
    };
    for (const Case& c : cases) {
        Write("cut.ma", head + c.rest);
        EXPECT_THAT(ErrorOfOpening("cut.ma"), HasSubstr("Errors while reading")) << c.rest;
        EXPECT_THAT(Output(), HasSubstr(c.error)) << c.rest;
        EXPECT_THAT(ErrorOf("file -save"), HasSubstr("saving would lose")) << c.rest;
        EXPECT_EQ(Read("cut.ma"), head + c.rest);
        const std::string text = SceneText();
        EXPECT_THAT(text, HasSubstr(c.written)) << c.rest;
        EXPECT_THAT(text, HasSubstr(c.after)) << c.rest;
        const bool hasSeven = text.find("0 7 0") != std::string::npos;
        EXPECT_EQ(hasSeven, (std::string(c.after) + c.written).find("0 7 0") != std::string::npos) << c.rest;
    }
}
