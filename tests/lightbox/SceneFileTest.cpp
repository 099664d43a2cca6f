#include "SceneDump.h"
#include "SceneFileFixture.h"
#include "faults/DiskFault.h"
#include "formats/SceneFiles.h"
#include "scene/EventBus.h"
#include "scene/Scene.h"
#include "scene/ScopeExit.h"
#include "scene/UndoQueue.h"
#include "text/Quoted.h"

#include <maya/MFileIO.h>

#include <gmock/gmock.h>
#include <regex>

using namespace lightbox;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class SceneFileTest : public SceneFileFixture {};

const char* const FOREIGN_SCENE = R"(//Maya ASCII 2018 scene
//Codeset: UTF-8
requires maya "2018";
requires -nodeType "sparkle" "glitter" "3.1";
requires "stereoCamera" "10.0";
currentUnit -l centimeter -a degree -t film;
fileInfo "application" "maya";
fileInfo "artist" "me";
createNode transform -s -n "persp";
	rename -uid "11111111-0000-0000-0000-000000000001";
	setAttr ".t" -type "double3" 9 8 7 ;
createNode muscle -n "hip";
	addAttr -ci true -sn "liw" -ln "lockInfluenceWeights" -min 0 -max 1 -at "bool";
	setAttr ".liw" yes;
	setAttr ".jo" -type "double3" 0 0 90 ;
	setAttr ".t" -type "double3" 0 5 0 ;
createNode muscle -n "knee" -p "hip";
	setAttr ".radi" 0.5;
createNode transform -n "box";
	setAttr ".futureAttribute" -type "string" "kept; \"as\" it is";
	setAttr -l on -k off ".t" -type "double3" 1 2 3 ;
createNode subdiv -n "boxShape" -p "box";
	setAttr -k off ".v";
	setAttr ".uvst[0].uvsn" -type "string" "map1";
	setAttr -s 4 ".uvst[0].uvsp[0:3]" -type "float2" 0 0 1 0 0 1 1 1;
	setAttr ".ed" -type "dataPolyComponent" Index_Data Edge 0 ;
createNode sparkle -n "sparkle1";
	setAttr ".amt" -type "sparkleData" 3 "one" -2.5 {"x"};
select -ne :initialShadingGroup;
	setAttr ".ro" yes;
connectAttr "boxShape.iog" ":initialShadingGroup.dsm" -na;
connectAttr "sparkle1.out" "box.futureIn";
connectAttr "hip.tx" "box.rx";
relationship "link" ":lightLinker1" ":initialShadingGroup.message" ":defaultLightSet.message";
// End of foreign.ma
)";

/// What of that file has no meaning here, as it has to stand in every saved scene.
const char* const KEPT[] = {
    "requires -nodeType \"sparkle\" \"glitter\" \"3.1\";\n",
    "requires \"stereoCamera\" \"10.0\";\n",
    "createNode muscle -n \"hip\";\n",
    "\tsetAttr \".jo\" -type \"double3\" 0 0 90 ;\n",
    "createNode muscle -n \"knee\" -p \"hip\";\n",
    "\tsetAttr \".radi\" 0.5;\n",
    "\tsetAttr \".futureAttribute\" -type \"string\" \"kept; \\\"as\\\" it is\";\n",
    "createNode subdiv -n \"boxShape\" -p \"box\";\n",
    "\tsetAttr -s 4 \".uvst[0].uvsp[0:3]\" -type \"float2\" 0 0 1 0 0 1 1 1;\n",
    "\tsetAttr \".ed\" -type \"dataPolyComponent\" Index_Data Edge 0 ;\n",
    "\tsetAttr \".amt\" -type \"sparkleData\" 3 \"one\" -2.5 {\"x\"};\n",
    "select -ne :initialShadingGroup;\n\tsetAttr \".ro\" yes;\n",
    "connectAttr \"boxShape.iog\" \":initialShadingGroup.dsm\" -na;\n",
    "connectAttr \"sparkle1.out\" \"box.futureIn\";\n",
    R"(relationship "link" ":lightLinker1" ":initialShadingGroup.message" ":defaultLightSet.message";)",
};

/// Statements may be spaced differently at their end, which has no meaning.
std::string Squeezed(const std::string& text) {
    return std::regex_replace(text, std::regex(" +;\n"), ";\n");
}

} // namespace

TEST_F(SceneFileTest, EverythingComesBackFromBothFormats) {
    BuildScene();
    Save("a.ma");
    const std::string written = ReadScene("a.ma");
    for (const char* line :
         {"requires -nodeType \"notebook\" -dataType \"notes\" \"notes\" \"1.5\";\n",
          "currentUnit -l centimeter -a degree -t ntsc;\n",
          "fileInfo \"shot\" \"010 \\\"final\\\"\";\n",
          "createNode transform -s -n \"persp\";\n",
          "createNode transform -n \"same\" -p \"upper\";\n",
          "createNode locator -n \"mark\" -p \"|same\";\n",
          "\tsetAttr \".t\" -type \"double3\" 1 -2.25 0.0000001 ;\n",
          "\tsetAttr \".v\" no;\n",
          "\tsetAttr -l on -k off \".sx\" 3;\n",
          "\tsetAttr -cb on \".ro\" 2;\n",
          "\taddAttr -ci true -k on -sn \"mode\" -ln \"mode\" -dv 5 -en \"off:slow=5:fast\" -at \"enum\";\n",
          "\taddAttr -ci true -sn \"tintR\" -ln \"tintR\" -p \"tint\" -at \"float\";\n",
          "\tsetAttr \".note\" -type \"string\" \"a \\\"b\\\"\\\\\\n\\tc é 鉛筆\";\n",
          "\tsetAttr -s 3 \".weights[2:4]\" 1 2 3 ;\n",
          "\tsetAttr \".weights[9]\" 0;\n",
          "\tsetAttr \".names\" -type \"stringArray\" 2 \"-k\" \"\" ;\n",
          "\tsetAttr \".pg\" -type \"notes\" 2\n\t\t\"first\"\n\t\t\"-second\" ;\n",
          "\tlockNode -l 1 ;\n",
          "select -ne :time1;\n\tsetAttr \".o\" 12.5;\n",
          "connectAttr \":time1.o\" \"keys.i\";\n"}) {
        EXPECT_THAT(written, HasSubstr(line));
    }
    EXPECT_EQ(ErrorOfOpening("a.ma"), "none");
    EXPECT_EQ(SceneText(), written);
    Save("b.lbx");
    EXPECT_EQ(ErrorOfOpening("b.lbx"), "none");
    EXPECT_EQ(SceneText(), written);
    EXPECT_EQ(Typed("getAttr upper.note"), "string a \"b\"\\\n\tc é 鉛筆");
    EXPECT_EQ(Typed("playbackOptions -q -max") + Typed("playbackOptions -q -aet"), "float 48float 96");
    EXPECT_EQ(Typed("lockNode -q -l \"props:cup\""), "int[] 1");
    EXPECT_EQ(Typed("ls -sl"), "string[] ");
    EXPECT_EQ(Output(), "");
}

TEST_F(SceneFileTest, UnknownContentIsKeptReportedOnceAndWrittenBack) {
    Write("foreign.ma", FOREIGN_SCENE);
    EXPECT_EQ(ErrorOfOpening("foreign.ma"), "none");
    EXPECT_EQ(messages_.size(), 1U) << "a summary";
    const std::string messages = Log();
    for (const char* part : {"line 4: The plug-in \"glitter\"", "line 12: Unrecognized node type 'muscle'",
                             "Unrecognized node type 'subdiv'", "Unrecognized node type 'sparkle'",
                             "futureAttribute", "The statement 'relationship'"}) {
        const std::size_t first = messages.find(part);
        ASSERT_NE(first, std::string::npos) << part << " in " << messages;
        EXPECT_EQ(messages.find(part, first + 1), std::string::npos) << part;
    }
    // What is known is no less known for it.
    EXPECT_EQ(Typed("getAttr persp.t"), "float[] 9 8 7");
    EXPECT_EQ(Typed("getAttr hip.ty"), "float 5");
    EXPECT_EQ(Typed("getAttr hip.liw"), "int 1");
    EXPECT_EQ(Typed("getAttr -l box.t"), "int 1");
    EXPECT_EQ(Typed("isConnected hip.tx box.rx"), "int 1");
    EXPECT_EQ(Typed("fileInfo -q artist"), "string[] me");
    for (const char* name : {"b.ma", "c.lbx", "d.ma"}) {
        Save(name);
        EXPECT_EQ(ErrorOfOpening(name), "none") << name;
    }
    Save("e.ma");
    for (const char* kept : KEPT) {
        EXPECT_THAT(Squeezed(ReadScene("b.ma")), HasSubstr(Squeezed(kept)));
    }
    EXPECT_EQ(ReadScene("e.ma"), ReadScene("b.ma"));
    // Kept connections and settings follow their node, and go with it.
    Run("rename sparkle1 star; delete box;");
    const std::string edited = SceneText();
    EXPECT_THAT(edited, HasSubstr("createNode sparkle -n \"star\";"));
    EXPECT_THAT(edited, Not(HasSubstr("futureIn")));
    Run("undo");
    EXPECT_THAT(SceneText(), HasSubstr("connectAttr \"star.out\" \"box.futureIn\";"));
}

TEST_F(SceneFileTest, PluginContentOutlivesItsPlugin) {
    Run("createNode notebook -n book; setAttr book.pg -type notes 2 \"one\" \"two\"; setAttr book.lpy 3;"
        "addAttr -ln extra -dt notes persp; setAttr persp.extra -type notes 1 \"three\";"
        "connectAttr book.lpx persp.tx; createNode transform -n below -p `listRelatives -p book`;");
    Save("with.ma");
    Save("with.lbx");
    const std::string with = ReadScene("with.ma");
    EXPECT_THAT(ErrorOf("unloadPlugin notes"), HasSubstr("still in use: 2 of the scene's nodes"));
    Run("unloadPlugin -force notes");
    EXPECT_EQ(notes::ValueCount() + notes::NodeCount(), 0);
    EXPECT_EQ(Typed("objExists book"), "int 1");
    EXPECT_NE(ErrorOf("getAttr book.lpx"), "none") << "the attribute is not known any more";
    const std::string without = SceneText();
    EXPECT_THAT(without, HasSubstr("\tsetAttr \".pg\" -type \"notes\" 2\n\t\t\"one\"\n\t\t\"two\" ;\n"));
    EXPECT_THAT(without, HasSubstr("connectAttr \"book.lpx\" \"persp.tx\";"));
    Save("without.ma");
    // Nor does a scene that is read without the plug-in lose it.
    for (const char* name : {"with.ma", "with.lbx", "without.ma"}) {
        Output();
        EXPECT_EQ(ErrorOfOpening(name), "none") << name;
        EXPECT_THAT(Output(), HasSubstr("the plug-in notes")) << name;
        Save(std::string("kept_") + (name[4] == '.' ? name + 4 : "out.ma") + ".lbx");
    }
    EXPECT_EQ(ErrorOfOpening("with.lbx"), "none");
    EXPECT_THAT(ErrorOf("file -rename " + Quoted("no.ma") + "; file -save"), HasSubstr("only its plug-in"));
    LoadNotes();
    for (const char* name : {"kept_.ma.lbx", "kept_.lbx.lbx", "kept_out.ma.lbx"}) {
        Output();
        EXPECT_EQ(ErrorOfOpening(name), "none") << name;
        EXPECT_EQ(SceneText(), with) << name;
    }
    Run("file -f -new; flushUndo");
    EXPECT_EQ(notes::ValueCount() + notes::NodeCount(), 0);
}

TEST_F(SceneFileTest, ACompoundWithAChildOfAnUnknownTypeComesBack) {
    Run("createNode transform -n box; addAttr -ln pile -at compound -nc 3 box; addAttr -ln above -at double "
        "-p pile "
        "box; addAttr -ln scrawl -dt notes -p pile box; addAttr -ln below -at double -p pile box;"
        "setAttr box.above 4; setAttr box.scrawl -type notes 1 \"one\"; setAttr box.below 5;");
    Save("with.ma");
    Save("with.lbx");
    const std::string with = ReadScene("with.ma");
    Run("file -f -new; unloadPlugin notes");
    std::vector<std::string> kept;
    for (const char* name : {"with.ma", "with.lbx"}) {
        std::string last = name;
        for (const char* suffix : {".a.lbx", ".b.lbx", ".c.ma"}) {
            EXPECT_EQ(ErrorOfOpening(last), "none") << last;
            EXPECT_EQ(Typed("getAttr box.pile.above"), "float 4") << last;
            EXPECT_EQ(Typed("getAttr box.below"), "float 5") << last;
            EXPECT_EQ(Typed("attributeQuery -node box -listChildren pile"), "string[] above scrawl below")
                << last;
            last = std::string(name) + suffix;
            if (name == std::string("with.lbx") && suffix == std::string(".c.ma")) {
                break; // the value is in the binary form
            }
            Save(last);
            kept.push_back(last);
        }
    }
    LoadNotes();
    for (const std::string& name : kept) {
        EXPECT_EQ(ErrorOfOpening(name), "none") << name;
        EXPECT_EQ(SceneText(), with) << name;
    }
}

TEST_F(SceneFileTest, SavingReplacesTheFileOnlyWhenTheNewOneIsWhole) {
    BuildScene();
    for (const char* name : {"a.ma", "a.lbx"}) {
        Save(name);
        const std::string before = Read(name);
        notes::SetWritingFails(true);
        Run("setAttr persp.tx 77");
        EXPECT_THAT(ErrorOf("file -save"), HasSubstr("\"pg\", of type \"notes\", could not be written"))
            << name;
        notes::SetWritingFails(false);
        EXPECT_EQ(Read(name), before);
        EXPECT_EQ(Typed("file -q -modified"), "int 1");
    }
    EXPECT_THAT(ErrorOf("file -rename " + Quoted("nowhere/a.ma") + "; file -save"),
                HasSubstr("Could not write"));
    EXPECT_NE(ErrorOf("file -rename \"\""), "none");
    EXPECT_NE(ErrorOf("file -rename " + lightbox::Quoted(folder_.path().toStdString())), "none");
    EXPECT_THAT(ErrorOf("file -save -type \"mayaBinary\""), HasSubstr("cannot be written as \"mayaBinary\""));
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files).size(), 2) << "nothing half written is left";
}

TEST_F(SceneFileTest, AFullDiskCostsNeitherTheFileNorTheSceneItsName) {
    BuildScene();
    for (const char* name : {"a.ma", "a.lbx"}) {
        Save(name);
        const std::string before = Read(name);
        const std::string format = Typed("file -q -type");
        Run("setAttr persp.tx " + std::to_string(before.size()));
        for (const int bytes : {0, 600, static_cast<int>(before.size()) / 2}) {
            const DiskFault fault = DiskFault::Full(folder_.path(), bytes);
            const std::string other = name == std::string("a.ma") ? "b.lbx" : "b.ma";
            for (const std::string& line :
                 {std::string("file -save"), "file -save -type mayaAscii -rename " + Quoted(other),
                  "file -exportAll " + Quoted(other)}) {
                EXPECT_THAT(ErrorOf(line), HasSubstr("No space left on device")) << line;
                EXPECT_EQ(Typed("file -q -modified"), "int 1") << line;
                EXPECT_EQ(Typed("file -q -sceneName"), "string " + Path(name)) << line;
                EXPECT_EQ(Typed("file -q -type"), format) << line;
            }
        }
        EXPECT_EQ(Read(name), before);
        EXPECT_EQ(ErrorOf("file -save"), "none");
        EXPECT_TRUE(Read(name) != before) << name;
    }
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

TEST_F(SceneFileTest, ModifiedFollowsEditsUndoAndSaving) {
    const auto modified = [this] { return Typed("file -q -modified"); };
    EXPECT_EQ(modified(), "int 0");
    Run("createNode transform -n a");
    EXPECT_EQ(modified(), "int 1");
    Run("undo");
    EXPECT_EQ(modified(), "int 0");
    Run("redo");
    EXPECT_EQ(ErrorOf("file -new"), "line 1.1: Unsaved changes.");
    EXPECT_EQ(ErrorOf("file -open " + Quoted("a.ma")), "line 1.1: Unsaved changes.");
    EXPECT_EQ(Typed("objExists a"), "int 1");
    Save("a.ma");
    EXPECT_EQ(modified(), "int 0");
    Run("undo");
    EXPECT_EQ(modified(), "int 1");
    Run("redo");
    EXPECT_EQ(modified(), "int 0");
    for (const char* line : {"undoInfo -state off; setAttr a.tx 4; undoInfo -state on",
                             "fileInfo shot \"010\"", "fileInfo shot \"020\"", "fileInfo -remove shot"}) {
        Run(std::string("file -modified 0; ") + line);
        EXPECT_EQ(modified(), "int 1") << line;
    }
    Run("file -modified 0; fileInfo -query; fileInfo -remove shot");
    EXPECT_EQ(modified(), "int 0") << "nothing changed";
    Run("file -modified 0; file -new");
    EXPECT_EQ(modified(), "int 0");
    EXPECT_EQ(Typed("file -q -sceneName"), "string ");
    Run("file -modified 1");
    EXPECT_EQ(modified(), "int 1");
    Run("undo");
    EXPECT_THAT(Output(), HasSubstr("no more commands to undo")) << "the queue belongs to one scene";
}

TEST_F(SceneFileTest, NamesFormatsAndQueries) {
    struct Case {
        const char* mel;
        const char* result;
    };
    const QString before = QDir::currentPath();
    const ScopeExit goBack([&before] { QDir::setCurrent(before); });
    QDir::setCurrent(folder_.path());
    const std::string folder = QDir::currentPath().toStdString() + "/";
    for (const Case& c :
         {Case{"file -rename \"shot\"", "string @shot.ma"}, Case{"file -q -sn -shn", "string shot.ma"},
          Case{"file -rename \"shot.lbx\"; file -q -type", "string[] lightboxBinary"},
          Case{"file -rename \"plate.0101\"", "string @plate.0101.lbx"},
          Case{"file -type \"mayaAscii\"; file -rename \"x.v2\"; file -save", "string @x.v2.ma"},
          Case{"file -q -exists \"x.v2.ma\"", "int 1"}, Case{"file -q -exists \"y.ma\"", "int 0"},
          Case{"file -q -expandName \"x.v2\"", "string @x.v2.ma"},
          Case{"file -q -location", "string @x.v2.ma"}, Case{"file -q -list", "string[] @x.v2.ma"},
          Case{"file -open \"x.v2\"", "string @x.v2.ma"}}) {
        const std::string expected = std::regex_replace(c.result, std::regex("@"), folder);
        EXPECT_EQ(Typed(c.mel), expected) << c.mel;
    }
}

TEST_F(SceneFileTest, OperationsTellWhatTheyDoWhileTheyRun) {
    Write("part.ma", "//Maya ASCII 2018 scene\ncreateNode transform -n \"part\";\n// End of part.ma\n");
    std::string log;
    const auto flags = [] {
        return std::string(MFileIO::isOpeningFile() ? "o" : "") + (MFileIO::isNewingFile() ? "n" : "") +
               (MFileIO::isImportingFile() ? "i" : "") + (MFileIO::isReferencingFile() ? "r" : "") +
               (MFileIO::isReadingFile() ? "R" : "") + (MFileIO::isWritingFile() ? "W" : "");
    };
    std::vector<EventBus::Id> ids;
    for (const char* name : {"PreFileNewOrOpened", "NewSceneOpened", "SceneOpened", "PreSceneSaved",
                             "SceneSaved", "SceneImported", "PostSceneRead"}) {
        ids.push_back(
            host_.events().AddCallback(name, [&, name] { log += std::string(name) + flags() + " "; }));
    }
    for (const char* name : {"readingFile", "writingFile", "newing"}) {
        ids.push_back(host_.events().AddConditionCallback(
            name, [&, name](bool state) { log += state ? "[" + std::string(name) + flags() : "] "; }));
    }
    const auto logged = [&](const std::string& mel) {
        log.clear();
        Run(mel);
        return log;
    };
    EXPECT_EQ(logged("file -f -new"), "PreFileNewOrOpened [newingn] NewSceneOpened ");
    EXPECT_EQ(logged("file -rename " + Quoted("a.ma") + "; file -save"),
              "PreSceneSaved [writingFileW] SceneSaved ");
    EXPECT_EQ(logged("file -f -open " + Quoted("part.ma")),
              "PreFileNewOrOpened [readingFileoR] PostSceneRead SceneOpened ");
    EXPECT_EQ(logged("file -i " + Quoted("part.ma")), "[readingFileiR] SceneImported ");
    Run("file -f -new");
    EXPECT_EQ(logged("file -r -ns p " + Quoted("part.ma")), "[readingFilerR] ");
    EXPECT_EQ(logged("catch(`file -f -open " + Quoted("none.ma") + "`)"), "") << "nothing happened";
    for (const auto id : ids) {
        host_.events().Remove(id);
    }
}

TEST_F(SceneFileTest, StatementsInAnImportedFileMeanItsOwnNodes) {
    Write("part.ma",
          "//Maya ASCII 2018 scene\ncreateNode transform -n \"top\";\ncreateNode transform -n \"prop\";\n"
          "setAttr \"prop.ty\" 3;\nparent \"prop\" \"top\";\nrename \"prop\" \"thing\";\n"
          "connectAttr \"top.tx\" \"top.ty\";\ndisconnectAttr \"top.tx\" \"top.ty\";\n// End of part.ma\n");
    Run("createNode transform -n top; createNode transform -n prop; setAttr prop.ty 50;");
    EXPECT_EQ(ErrorOf("file -i " + Quoted("part.ma")), "none") << Output();
    EXPECT_EQ(Typed("getAttr prop.ty") + Typed("listRelatives -p prop"), "float 50string[] ");
    EXPECT_EQ(Typed("getAttr \"part_top|thing.ty\""), "float 3");
    EXPECT_EQ(Typed("isConnected part_top.tx part_top.ty"), "int 0");
}

TEST_F(SceneFileTest, ImportMergesAndResolvesClashes) {
    Run("createNode transform -n hero; createNode transform -n prop; createNode transform -n hand -p hero;"
        "setAttr prop.tx 5; connectAttr prop.tx hero.ty; setAttr persp.tx 99; setAttr hero|hand.tz 4;");
    Save("part.ma");
    Run("file -f -new; createNode transform -n prop; setAttr persp.tx 1; setAttr prop.tz 8; currentTime 7;");
    Run("file -i " + Quoted("part.ma"));
    EXPECT_EQ(Typed("ls \"hero\" \"hand\" \"prop\" \"part_prop\""), "string[] hero hand prop part_prop");
    EXPECT_EQ(Typed("isConnected part_prop.tx hero.ty"), "int 1");
    EXPECT_EQ(Typed("getAttr part_prop.tx") + Typed("getAttr prop.tz"), "float 5float 8");
    EXPECT_EQ(Typed("getAttr persp.tx"), "float 1") << "the scene's own cameras stay as they are";
    EXPECT_EQ(Typed("currentTime -q"), "float 7");
    Run("file -i -ns \"in\" " + Quoted("part.ma"));
    EXPECT_EQ(Typed("getAttr \"in:hero|in:hand.tz\""), "float 4");
    EXPECT_EQ(Typed("isConnected in:prop.tx in:hero.ty"), "int 1");
    EXPECT_EQ(Typed("file -i -rnn -ns \"again\" " + Quoted("part.ma")),
              "string[] |again:hero |again:hero|again:hand |again:prop");
    EXPECT_EQ(Typed("size(stringArrayRemoveDuplicates(`ls -uid`)) - size(`ls`)"), "int 0")
        << "identities differ";
    EXPECT_EQ(Typed("file -q -modified"), "int 1");
    Run("undo; undo");
    EXPECT_EQ(Typed("getAttr prop.tz"), "float 0") << "what was done before can still be undone";
    EXPECT_EQ(Typed("objExists \"again:hero\""), "int 1");
    EXPECT_THAT(ErrorOf("file -i " + Quoted("none.ma")), HasSubstr("File not found"));
}
