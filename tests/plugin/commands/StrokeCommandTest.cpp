#include "core/Frame.h"
#include "core/Layer.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"
#include "plugin/PluginTest.h"

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

const QString TOP = QStringLiteral("top");

class StrokeCommandTest : public PluginTest {
protected:
    StrokeCommandTest() {
        Run("qmVellixNode");
        node_ = BaseNode::GetMaster();
        MayaUtil::SetPlaybackTime(10);
    }

    /// Draws as the draw tool does, and pushes the stroke.
    bool Draw(const QString& camera, int y) {
        int layer = -1;
        bool frameAdded = false;
        if (!node_->PrepareForDraw(camera, layer, frameAdded)) {
            return false;
        }
        Stroke* stroke = node_->GetActiveStroke(camera, false);
        stroke->tool = ToolType::Pencil;
        stroke->points.append({20, 1.0f, 100.0f, QPoint(100, y)});
        stroke->points.append({20, 1.0f, 100.0f, QPoint(300, y)});
        stroke->changed = true;
        node_->GetFinalImage(camera); // what the view shows is what is committed
        return MayaUtil::PushStroke(camera, layer, frameAdded);
    }
    QImage Image(const QString& camera, int frame) const {
        return node_->GetActiveLayer(camera)->GetFrame(frame)->PeekImage();
    }
    static bool Covered(const QImage& image, int y) { return image.pixelColor(200, y).alpha() > 0; }

    BaseNode* node_;
};

} // namespace

TEST_F(StrokeCommandTest, UndoTakesTheLayerOfItsPressWhateverCameBelowIt) {
    ASSERT_TRUE(Draw(TOP, 100));
    EXPECT_FALSE(Run("qmVellixLayer -ins 0 -n Extra top")); // refused, but its layer stays
    Messages();
    const auto names = [&] {
        QStringList list;
        for (const Layer* const layer : node_->GetLayers(TOP)) {
            list.append(layer->GetName());
        }
        return list;
    };
    ASSERT_EQ(names().size(), 2);
    const QString drawn = names().last();
    ASSERT_TRUE(Run("undo"));
    EXPECT_EQ(names(), QStringList("Extra"));
    ASSERT_TRUE(Run("redo"));
    EXPECT_EQ(names(), QStringList({"Extra", drawn}));
    EXPECT_TRUE(Covered(node_->GetLayer(TOP, 1)->GetFrame(0)->PeekImage(), 100));
}

TEST_F(StrokeCommandTest, UndoLeavesALayerThatGotMoreSinceItsPress) {
    ASSERT_TRUE(Draw(PERSP, 100));
    const QImage picture = Image(PERSP, 0);
    int layer = -1;
    bool frameAdded = false;
    ASSERT_TRUE(node_->PrepareForDraw(TOP, layer, frameAdded));
    Stroke* const stroke = node_->GetActiveStroke(TOP, false);
    stroke->tool = ToolType::Pencil;
    stroke->points.append({20, 1.0f, 100.0f, QPoint(100, 400)});
    stroke->points.append({20, 1.0f, 100.0f, QPoint(300, 400)});
    MayaUtil::SetPlaybackTime(20);
    // No command does this before the stroke ends.
    node_->AddFrame(TOP, MTime(20, MTime::uiUnit()));
    Layer& pressed = *node_->GetLayer(TOP, 0);
    pressed.GetFrame(pressed.FindFrameIndex(20))->SetImage(picture);
    ASSERT_TRUE(MayaUtil::PushStroke(TOP, layer, frameAdded));
    ASSERT_TRUE(Run("undo"));
    ASSERT_EQ(node_->LayerCount(TOP), 1);
    ASSERT_EQ(node_->GetLayer(TOP, 0)->FrameCount(), 1);
    EXPECT_TRUE(Covered(node_->GetLayer(TOP, 0)->GetFrame(0)->PeekImage(), 100));
    ASSERT_TRUE(Run("redo"));
    ASSERT_EQ(node_->GetLayer(TOP, 0)->FrameCount(), 2);
    EXPECT_TRUE(Covered(node_->GetLayer(TOP, 0)->GetFrame(0)->PeekImage(), 400));
}

TEST_F(StrokeCommandTest, UndoAndRedoExchangeTheImage) {
    ASSERT_TRUE(Draw(PERSP, 100));
    ASSERT_TRUE(Draw(PERSP, 400));
    const QImage both = Image(PERSP, 0);
    EXPECT_TRUE(Covered(both, 100) && Covered(both, 400));
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(Run("undo"));
        EXPECT_TRUE(Covered(Image(PERSP, 0), 100));
        EXPECT_FALSE(Covered(Image(PERSP, 0), 400));
        ASSERT_TRUE(Run("redo"));
        EXPECT_EQ(Image(PERSP, 0), both);
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

// So many strokes over the whole drawing that the first ones are squeezed.
TEST_F(StrokeCommandTest, ALongQueueLeadsBackExactly) {
    QList<QImage> pictures;
    for (int i = 0; i < 24; ++i) {
        int layer = -1;
        bool frameAdded = false;
        ASSERT_TRUE(node_->PrepareForDraw(PERSP, layer, frameAdded));
        Stroke* stroke = node_->GetActiveStroke(PERSP, false);
        stroke->tool = ToolType::Pencil;
        stroke->color = QColor::fromHsv(i * 15, 200, 200);
        for (int line = 0; line <= 16; ++line) {
            stroke->points.append({100, 0.3f, 100.0f, QPoint(line % 2 * 1023, line * 64)});
        }
        ASSERT_TRUE(MayaUtil::PushStroke(PERSP, layer, frameAdded));
        pictures.append(Image(PERSP, 0).copy());
    }
    for (int round = 0; round < 2; ++round) {
        for (int i = 22; i >= 0; --i) {
            ASSERT_TRUE(Run("undo"));
            ASSERT_EQ(Image(PERSP, 0), pictures[i]) << i;
        }
        for (int i = 1; i < 24; ++i) {
            ASSERT_TRUE(Run("redo"));
            ASSERT_EQ(Image(PERSP, 0), pictures[i]) << i;
        }
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(StrokeCommandTest, UndoReturnsToTheCameraThatWasActive) {
    ASSERT_TRUE(Draw(PERSP, 100));
    ASSERT_TRUE(Draw(TOP, 100));
    EXPECT_EQ(node_->GetActiveCamera(), TOP);
    const QImage drawn = Image(TOP, 0);

    ASSERT_TRUE(Run("undo"));
    EXPECT_EQ(node_->LayerCount(TOP), 0);
    EXPECT_EQ(node_->GetActiveCamera(), PERSP);
    EXPECT_EQ(node_->GetActiveLayerIndex(PERSP), 0);

    ASSERT_TRUE(Run("redo"));
    EXPECT_EQ(node_->GetActiveCamera(), TOP);
    ASSERT_EQ(node_->LayerCount(TOP), 1);
    EXPECT_EQ(node_->GetActiveLayer(TOP)->GetFrame(0)->GetTimeValue(), 10);
    EXPECT_EQ(Image(TOP, 0), drawn);

    ASSERT_TRUE(Run("undo; undo"));
    EXPECT_EQ(node_->TotalLayerCount(), 0);
}

TEST_F(StrokeCommandTest, UndoFindsItsFrameAtAnyTime) {
    ASSERT_TRUE(Draw(PERSP, 100));
    MayaUtil::SetPlaybackTime(20);
    ASSERT_TRUE(Draw(PERSP, 400));
    ASSERT_TRUE(Draw(PERSP, 600));
    const QImage first = Image(PERSP, 0);
    const QImage second = Image(PERSP, 1);
    MayaUtil::SetPlaybackTime(12);
    ASSERT_TRUE(Run("undo"));
    EXPECT_EQ(Image(PERSP, 0), first);
    EXPECT_FALSE(Covered(Image(PERSP, 1), 600));
    EXPECT_TRUE(Covered(Image(PERSP, 1), 400));
    EXPECT_EQ(node_->GetActiveLayer(PERSP)->GetCurrentFrameIndex(), 0);
    ASSERT_TRUE(Run("redo"));
    EXPECT_EQ(Image(PERSP, 1), second);
    ASSERT_TRUE(Run("undo; undo"));
    EXPECT_EQ(node_->GetActiveLayer(PERSP)->FrameCount(), 1);
    EXPECT_EQ(Image(PERSP, 0), first);
}

TEST_F(StrokeCommandTest, AStaticLayersFrameIsKeyedAtTheDefaultTime) {
    node_->InsertLayer(PERSP, -1, QStringLiteral("Set"));
    node_->SetLayerState(PERSP, 0, LayerState::Static);
    ASSERT_TRUE(Draw(PERSP, 100));
    const Layer* layer = node_->GetActiveLayer(PERSP);
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(layer->FrameCount(), 1);
        EXPECT_EQ(layer->GetFrame(0)->GetTimeValue(), Settings::DEFAULT_STATIC_FRAME_TIME);
        EXPECT_TRUE(Covered(Image(PERSP, 0), 100));
        ASSERT_TRUE(Run("undo"));
        EXPECT_EQ(layer->FrameCount(), 0);
        ASSERT_TRUE(Run("redo"));
    }
}

TEST_F(StrokeCommandTest, Misuse) {
    EXPECT_FALSE(Run("qmVellixStroke"));
    EXPECT_THAT(Messages(), Contains("Camera not specified"));
    EXPECT_FALSE(Run("qmVellixStroke nobody"));
    EXPECT_THAT(Messages(), Contains("Camera does not exist: nobody"));
    EXPECT_FALSE(Run("qmVellixStroke persp")); // no layer
    ASSERT_TRUE(Draw(PERSP, 100));
    EXPECT_FALSE(Run("qmVellixStroke persp")); // no stroke
    EXPECT_FALSE(Run("qmVellixStroke -fa top"));
    const QImage drawn = Image(PERSP, 0);
    EXPECT_TRUE(Covered(drawn, 100));
    Run("undo"); // the failed ones left nothing to undo
    EXPECT_EQ(node_->TotalLayerCount(), 0);

    Run("file -force -new");
    EXPECT_FALSE(Run("qmVellixStroke persp"));
}

} // namespace vellix
