// Opening a scene runs nothing of what its author wrote.

#include "SceneFileFixture.h"
#include "formats/ChunkFile.h"
#include "formats/SceneFiles.h"
#include "scene/IdleQueue.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <regex>

using namespace lightbox;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// Works in a folder of its own, where what runs leaves a file whose name begins with "trojan_".
class SceneSafetyTest : public SceneFileFixture {
protected:
    SceneSafetyTest()
        : before_(QDir::currentPath()) {
        QDir::setCurrent(folder_.path());
        QFile::copy(QStringLiteral(VELLIX_SOURCE_FOLDER "/tests/data/foreign/trojan.ma"),
                    QString::fromStdString(Path("trojan.ma")));
        Write("horse.mel", "fopen \"trojan_18\" \"w\";");
    }
    ~SceneSafetyTest() override { QDir::setCurrent(before_); }

    void ExpectNothingRan(const std::string& what) {
        host_.idle().Drain();
        Run("scriptJob -listJobs; currentTime 3; currentTime 1;");
        EXPECT_TRUE(QDir(folder_.path()).entryList({"trojan_*"}).isEmpty())
            << what << ": " << QDir(folder_.path()).entryList({"trojan_*"}).join(' ').toStdString();
        EXPECT_EQ(Typed("exists trojan"), "int 0") << what;
        EXPECT_EQ(Typed("size(`scriptJob -listJobs`)"), jobs_) << what;
    }

    QString before_;
    const std::string jobs_ = Typed("size(`scriptJob -listJobs`)");
};

std::string OneLine(std::string text) {
    text = std::regex_replace(text, std::regex("[ \t\n]+"), " ");
    return std::regex_replace(text, std::regex(" ;"), ";");
}

} // namespace

TEST_F(SceneSafetyTest, ASceneRunsNothingKeepsEverythingAndSaysSo) {
    ASSERT_EQ(ErrorOfOpening("trojan.ma"), "none") << Output();
    ExpectNothingRan("opened");
    const std::string messages = Output();
    EXPECT_THAT(messages,
                HasSubstr("statements do not belong in a scene and did not run: lines 8, 9, 10, 11, 12, "));
    EXPECT_EQ(messages.find("did not run"), messages.rfind("did not run"));
    EXPECT_EQ(Typed("getAttr box.t") + Typed("getAttr box.memo"), "float[] 1 2 3string in two parts");
    EXPECT_EQ(Typed("getAttr box.sx"), "float 2") << "an edit of a reference still counts";
    EXPECT_EQ(Typed("playbackOptions -q -aet"), "float 48");
    EXPECT_EQ(Typed("ls -type transform \"evil*\""), "string[] ");

    Save("saved.ma");
    const std::string saved = OneLine(ReadScene("saved.ma"));
    for (
        const char* kept :
        {R"(requires "./trojan" "1.0";)",
         R"(int $trojan = `fopen "trojan_1" "w"`;)",
         R"(fopen "trojan_2" "w";)",
         R"((fopen("trojan_3", "w"));)",
         R"(`fopen "trojan_4" "w"`;)",
         R"(global proc trojan() { fopen "trojan_5" "w"; }; trojan;)",
         R"(if (size("a;}") > 0) { fopen "trojan_6" "w"; } else print "no";)",
         R"(for ($i = 0; $i < 2; $i++) fopen ("trojan_7" + $i) "w";)",
         R"(setAttr ".tx" `fopen "trojan_8" "w"`;)",
         R"(setAttr ".ty" $trojan;)",
         R"(createNode transform -n ("evil" + `fopen "trojan_10" "w"`); rename -uid "0C3D1F00-0000-2A2B-5C00-000000000062"; setAttr ".t" -type "double3" 7 7 7;)",
         R"(2 "|box" "sx" " 2; fopen \"trojan_11\" \"w\"";)",
         R"("playbackOptions -min 1 -max 24 -ast 1 -aet 48;\nfopen \"trojan_12\" \"w\";\n";)",
         R"(evalDeferred "fopen \"trojan_14\" \"w\"";)",
         R"(sysFile -delete "trojan.ma";)",
         R"(source "horse.mel";)",
         R"(loadPlugin "./trojan";)",
         R"(file -f -new;)",
         R"(delete "box";)",
         R"x(python("open('trojan_16', 'w')");)x",
         R"({ fopen "trojan_17" "w"; };)",
         R"(namespace -set "box";)"}) {
        EXPECT_THAT(saved, HasSubstr(kept));
    }
    std::string last = "saved.ma";
    for (const char* next : {"2.lbx", "3.ma", "4.ma"}) {
        EXPECT_EQ(ErrorOfOpening(last), "none") << Output();
        ExpectNothingRan(last);
        Save(next);
        last = next;
    }
    EXPECT_EQ(OneLine(ReadScene("3.ma")), saved);
    EXPECT_EQ(ReadScene("4.ma"), ReadScene("3.ma"));
    EXPECT_TRUE(QFileInfo(QString::fromStdString(Path("trojan.ma"))).exists());
}

TEST_F(SceneSafetyTest, NeitherDoesOneThatIsImportedReferencedRecoveredOrDamaged) {
    EXPECT_EQ(ErrorOf("file -i " + Quoted("trojan.ma")), "none");
    ExpectNothingRan("imported");
    EXPECT_EQ(ErrorOf("file -r -ns r " + Quoted("trojan.ma")), "none");
    ExpectNothingRan("referenced");
    EXPECT_THAT(SceneText(), Not(HasSubstr("trojan_2")));
    host_.files().OpenCopy(Path("trojan.ma"), "", false);
    ExpectNothingRan("recovered");
    const std::string whole = Read("trojan.ma");
    for (std::size_t i = 200; i < whole.size(); i += 7) {
        std::string damaged = whole;
        damaged[i] = "\";{(`$"[i % 6];
        Write("damaged.ma", damaged);
        ErrorOfOpening("damaged.ma");
        ExpectNothingRan("damaged at " + std::to_string(i));
        Write("damaged.ma", whole.substr(0, i));
        ErrorOfOpening("damaged.ma");
        ExpectNothingRan("cut at " + std::to_string(i));
    }
}

TEST_F(SceneSafetyTest, ABinarySceneHoldsNoCodeThatRuns) {
    std::ostringstream out;
    ChunkFile::WriteSignature(out);
    const auto write = [&out](std::string_view type, std::initializer_list<const char*> texts) {
        ChunkWriter chunk;
        for (const char* text : texts) {
            chunk.Text(text);
        }
        ChunkFile::WriteChunk(out, type, chunk.Bytes());
    };
    write("KEPT", {"fopen \"trojan_1\" \"w\""});
    write("KEPT", {"setAttr persp.tx 3; fopen \"trojan_2\" \"w\""});
    write("KEPT", {"proc trojan() { fopen \"trojan_3\" \"w\"; } trojan"});
    write("CONF", {"playbackOptions -max 33; fopen \"trojan_4\" \"w\""});
    write("BRKN", {"persp.tx", "persp.ty\"; fopen \"trojan_5\" \"w\"; \"", ""});
    write("DONE", {});
    Write("a.lbx", out.str());
    EXPECT_EQ(ErrorOfOpening("a.lbx"), "none") << Output();
    ExpectNothingRan("opened");
    EXPECT_THAT(Output(), HasSubstr("did not run"));
    EXPECT_EQ(Typed("getAttr persp.tx") + Typed("playbackOptions -q -max"), "float 3float 33");
    EXPECT_THAT(SceneText(), HasSubstr("fopen \"trojan_1\" \"w\";\n"));
}

TEST_F(SceneSafetyTest, APluginIsNeverLoadedByAPath) {
    QFile::copy(QStringLiteral("/dev/null"), QString::fromStdString(Path("other.so")));
    const QByteArray path = qgetenv("MAYA_PLUG_IN_PATH");
    qputenv("MAYA_PLUG_IN_PATH", QFile::encodeName(folder_.path()));
    const std::string inPath = Path("other.so");
    for (const std::string& name :
         {inPath, std::string("./other.so"), std::string("../x/other"), std::string(".other")}) {
        Write("a.ma", "//Maya ASCII 2018 scene\nrequires \"" + name + "\" \"1.0\";\n// End of a.ma\n");
        EXPECT_EQ(ErrorOfOpening("a.ma"), "none") << name;
        EXPECT_THAT(Output(), HasSubstr("the plug-in " + name)) << name;
        EXPECT_THAT(SceneText(), HasSubstr("requires \"" + name + "\" \"1.0\";")) << name;
    }
    // By its name it is looked up, and tried.
    Write("a.ma", "//Maya ASCII 2018 scene\nrequires \"other\" \"1.0\";\n// End of a.ma\n");
    EXPECT_THAT(ErrorOfOpening("a.ma"), HasSubstr("Errors while reading"));
    EXPECT_THAT(Output(), HasSubstr("Could not load the plug-in \"" + inPath));
    qputenv("MAYA_PLUG_IN_PATH", path);
}
