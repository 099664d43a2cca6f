// Drawings in scene files: damaged ones, and what stays of them without the plug-in.

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/FrameTime.h"
#include "host/entry/PluginMain.h"
#include "node/BaseNode.h"
#include "plugin/PluginTest.h"
#include "plugin/node/LayerDataText.h"
#include "scene/PluginLoader.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace vellix {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class DrawingFilesTest : public PluginTest {
protected:
    DrawingFilesTest() {
        Run("qmVellixNode -c persp");
        FillSmallDrawing(*BaseNode::GetMaster()->GetLayerManager());
        drawn_ = Describe(*BaseNode::GetMaster()->GetLayerManager());
    }

    QString Path(const char* name) const { return folder_.filePath(name); }
    bool Save(const char* name) {
        return Run("file -rename \"" + Path(name).toStdString() + "\"; file -save");
    }
    bool Open(const char* name) { return Run("file -force -open \"" + Path(name).toStdString() + "\""); }
    QByteArray Read(const char* name) const {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return file.readAll();
    }
    void Write(const char* name, const QByteArray& bytes) const {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    /// The drawing as it is now; empty without one.
    static std::string Drawing() {
        BaseNode* node = BaseNode::GetMaster();
        return node ? Describe(*node->GetLayerManager()) : std::string();
    }

    QTemporaryDir folder_;
    std::string drawn_;
};

} // namespace

TEST_F(DrawingFilesTest, BothFormatsHoldTheSameDrawing) {
    for (const char* name : {"a.ma", "b.lbx", "c.ma"}) {
        ASSERT_TRUE(Save(name));
        ASSERT_TRUE(Open(name)) << name;
        EXPECT_EQ(Drawing(), drawn_) << name;
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(DrawingFilesTest, ADrawingThatIsCutOffLeavesAnErrorAndAScene) {
    for (const char* name : {"whole.ma", "whole.lbx"}) {
        ASSERT_TRUE(Save(name));
        const QByteArray whole = Read(name);
        const int begin = std::max(0, whole.indexOf("createNode qmVellix"));
        for (int cut = begin; cut < whole.size() - 1; cut += 97) {
            Write(name, whole.left(cut));
            Messages();
            const bool opened = Open(name);
            EXPECT_THAT(Messages(), Not(IsEmpty())) << name << " cut at " << cut;
            // An edit and a drawing still work, whatever was read.
            EXPECT_TRUE(Run("setAttr persp.tx 3; if (!`qmVellixNode -exists`) qmVellixNode -l -c persp"))
                << name << " cut at " << cut << (opened ? " opened" : "");
            EXPECT_NE(BaseNode::GetMaster(), nullptr) << name << " cut at " << cut;
            Messages();
        }
        Write(name, whole);
        ASSERT_TRUE(Open(name));
        EXPECT_EQ(Drawing(), drawn_);
    }
}

TEST_F(DrawingFilesTest, DamagedTokensGiveTheirMessageAndKeepTheRestOfTheScene) {
    struct Case {
        const char* from;
        const char* to;
        const char* message;
    };
    ASSERT_TRUE(Save("a.ma"));
    const QByteArray whole = Read("a.ma");
    for (const Case& test :
         {Case{"\"qmLayerData\" 1 1", "\"qmLayerData\" 0 1", "Invalid version"},
          Case{"\"qmLayerData\" 1 1", "\"qmLayerData\" 1 \"x\"", "Failed to get master (1)"},
          Case{"\"89504e47", "\"00504e47", "Failed to load draw data"},
          Case{"\"89504e47", "\"zz", "Failed to load draw data"}}) {
        QByteArray damaged = whole;
        const int at = damaged.indexOf(test.from, damaged.indexOf("\".ld\""));
        ASSERT_GE(at, 0) << test.from;
        Write("bad.ma", damaged.replace(at, static_cast<int>(strlen(test.from)), test.to) +
                            "createNode transform -n \"after\";\n");
        Messages();
        Open("bad.ma");
        EXPECT_THAT(Messages(), ::testing::Contains(HasSubstr(test.message))) << test.to;
        EXPECT_EQ(Ask("objExists after"), "1") << test.to;
    }
}

TEST_F(DrawingFilesTest, NoDrawingVanishesAfterAChangeOfTheTimeUnit) {
    LayerManager& drawing = *BaseNode::GetMaster()->GetLayerManager();
    const int index = drawing.InsertLayer(PERSP, -1, QStringLiteral("Ones"));
    for (int time = 1; time <= 24; ++time) {
        drawing.GetLayer(PERSP, index)->AddFrame(FromWholeFrames(time));
    }
    ASSERT_TRUE(Run("currentUnit -time \"12fps\""));
    ASSERT_TRUE(Save("half.ma"));
    ASSERT_TRUE(Save("half.lbx"));
    for (const char* name : {"half.ma", "half.lbx"}) {
        Messages();
        ASSERT_TRUE(Open(name)) << name;
        EXPECT_THAT(Messages(), ::testing::Contains(HasSubstr("Layer Ones: 22 of its drawings"))) << name;
        const Layer* layer = BaseNode::GetMaster()->GetLayer(PERSP, index);
        ASSERT_EQ(layer->FrameCount(), 24) << name;
        for (int i = 1; i < layer->FrameCount(); ++i) {
            EXPECT_GT(layer->GetFrame(i)->GetTimeValue(), layer->GetFrame(i - 1)->GetTimeValue()) << name;
        }
    }
}

TEST_F(DrawingFilesTest, DrawingsOutliveAnUnloadedPlugin) {
    lightbox::PluginManager& plugins = Plugins();
    ASSERT_TRUE(Save("a.ma"));
    EXPECT_FALSE(Run("unloadPlugin vellix2"));
    EXPECT_THAT(Messages(), ::testing::ElementsAre(HasSubstr("still in use")));
    ASSERT_TRUE(Run("unloadPlugin -force vellix2"));
    ASSERT_TRUE(Save("forced.ma"));
    ASSERT_TRUE(Save("forced.lbx"));
    // The plug-in's library lies beside the tests; it stays out of this.
    plugins.SetLoadsOnDemand(false);
    ASSERT_TRUE(Open("a.ma"));
    ASSERT_TRUE(Save("read.lbx"));
    plugins.SetLoadsOnDemand(true);
    plugins.LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    for (const char* name : {"forced.ma", "forced.lbx", "read.lbx"}) {
        Messages();
        ASSERT_TRUE(Open(name)) << name;
        EXPECT_EQ(Drawing(), drawn_) << name;
        EXPECT_EQ(Ask("getAttr -lock vellixShape.localPositionX"), "1") << name;
        EXPECT_THAT(Messages(), IsEmpty()) << name;
    }
}

} // namespace vellix
