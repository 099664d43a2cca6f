#include "host/panels/DialogManager.h"
#include "plugin/core/DocumentTest.h"

#include <QWidget>

#include <gmock/gmock.h>

namespace vellix {
namespace {

using ::testing::ElementsAre;

class LayerManagerTest : public DocumentTest {
protected:
    const QString other = QString::fromUtf8("Kamera \xe2\x84\x96 \"\xe7\x94\xbb\"\\\n");

    QStringList Names(const QString& of) const {
        QStringList names;
        for (const Layer* layer : manager.GetLayers(of)) {
            names.append(layer->GetName() + (layer->IsActive() ? "*" : ""));
        }
        return names;
    }
    void AddLayers(const QString& to, const QStringList& names) {
        for (const QString& name : names) {
            manager.InsertLayer(to, -1, name);
        }
    }
};

TEST_F(LayerManagerTest, NamesLayersUniquely) {
    const struct {
        const char *asked, *given;
    } cases[] = {{"", "Layer"},  {"", "Layer 1"},    {"Layer", "Layer 2"},
                 {"Sky", "Sky"}, {"Sky", "Layer 3"}, {"sky", "sky"}};
    for (const auto& c : cases) {
        const QString& to = manager.TotalLayerCount() % 2 == 0 ? camera : other;
        const int index = manager.InsertLayer(to, -1, QString(c.asked));
        EXPECT_EQ(manager.GetLayerName(to, index), QString(c.given));
    }
    EXPECT_EQ(manager.GetUniqueLayerName(QString::fromUtf8("\xf0\x9f\x8e\xa8")),
              QString::fromUtf8("\xf0\x9f\x8e\xa8"));
    manager.SetLayerName(camera, 0, "Sky");
    EXPECT_EQ(manager.GetLayerName(camera, 0), QString("Sky")) << "renaming is the user's own affair";
}

TEST_F(LayerManagerTest, InsertsWhereAskedAndActivatesTheFirst) {
    Settings::defaultLayerState = 1;
    EXPECT_EQ(manager.InsertLayer(camera, 700, "A"), 0);
    EXPECT_EQ(manager.GetLayerState(camera, 0), LayerState::Static);
    EXPECT_EQ(manager.GetActiveCamera(), camera);
    EXPECT_EQ(manager.InsertLayer(camera, 0, "B"), 0);
    EXPECT_EQ(manager.InsertLayer(camera, 2000000000, "C"), 2);
    EXPECT_EQ(manager.InsertLayer(camera, -2000000000, "D"), 3);
    EXPECT_EQ(manager.InsertLayer(camera, 1, static_cast<Layer*>(nullptr)), -1);
    EXPECT_EQ(Names(camera), (QStringList{"B", "A*", "C", "D"}));
    manager.InsertLayer(other, -1, "E");
    EXPECT_EQ(manager.GetActiveCamera(), other);
    EXPECT_EQ(manager.GetPreviousActiveCamera(), camera);
    EXPECT_EQ(manager.TotalLayerCount(), 5);
}

TEST_F(LayerManagerTest, PassesTheActiveFlagOnWhenALayerGoes) {
    const struct {
        int active, removed;
        QStringList left;
    } cases[] = {
        {2, 2, {"A", "B*", "D"}},
        {0, 0, {"B*", "C", "D"}},
        {1, 3, {"A", "B*", "C"}},
        {3, 0, {"B", "C", "D*"}},
    };
    for (const auto& c : cases) {
        QList<Layer*> old;
        manager.RemoveAllLayers(camera, old);
        qDeleteAll(old);
        AddLayers(camera, {"A", "B", "C", "D"});
        manager.SetActiveLayer(camera, c.active, true);
        Layer* removed = manager.RemoveLayer(camera, c.removed).release();
        EXPECT_EQ(Names(camera), c.left);
        EXPECT_EQ(manager.InsertLayer(camera, c.removed, removed), c.removed);
        EXPECT_EQ(manager.GetActiveLayerIndex(camera), c.active) << "it comes back as it went";
        EXPECT_EQ(manager.GetLayer(camera, c.removed), removed);
    }
}

TEST_F(LayerManagerTest, ForgetsACameraWithItsLastLayer) {
    AddLayers(camera, {"A"});
    EXPECT_NE(manager.GetFlattenedImage(camera), nullptr);
    std::unique_ptr<Layer> removed = manager.RemoveLayer(camera, 0);
    EXPECT_EQ(manager.GetFlattenedImage(camera), nullptr);
    EXPECT_EQ(manager.GetActiveLayer(camera), nullptr);
    manager.InsertLayer(camera, 0, removed.release());
    EXPECT_EQ(Names(camera), QStringList{"A*"});
    EXPECT_NE(manager.GetFlattenedImage(camera), nullptr);

    AddLayers(camera, {"B", "C"});
    manager.SetActiveLayer(camera, 1, true);
    QList<Layer*> all;
    manager.RemoveAllLayers(camera, all);
    EXPECT_EQ(manager.GetFlattenedImage(camera), nullptr);
    for (int i = 0; i < all.size(); ++i) {
        EXPECT_EQ(manager.InsertLayer(camera, i, all[i]), i);
    }
    EXPECT_EQ(Names(camera), (QStringList{"A", "B*", "C"}));
    manager.DeleteAllLayers(true);
    EXPECT_EQ(manager.TotalLayerCount(), 0);
    EXPECT_EQ(manager.GetFlattenedImage(camera), nullptr);
}

TEST_F(LayerManagerTest, MovesLayersWithinACamera) {
    AddLayers(camera, {"A", "B", "C", "D"});
    EXPECT_EQ(manager.MoveLayer(camera, 0, 2), 2);
    EXPECT_EQ(Names(camera), (QStringList{"B", "C", "A*", "D"}));
    EXPECT_EQ(manager.MoveLayer(camera, 2, 0), 0);
    EXPECT_EQ(Names(camera), (QStringList{"A*", "B", "C", "D"}));
    for (const int bad : {-1, 4, 2000000000}) {
        EXPECT_EQ(manager.MoveLayer(camera, bad, 0), -1);
        EXPECT_EQ(manager.MoveLayer(camera, 0, bad), -1);
    }
    EXPECT_EQ(manager.MoveLayer("nowhere", 0, 0), -1);
}

TEST_F(LayerManagerTest, MovesLayersToAnotherCamera) {
    AddLayers(camera, {"A", "B", "C"});
    manager.SetActiveLayer(camera, 1, true);
    EXPECT_EQ(manager.MoveLayer(camera, 1, other, -1), 0);
    EXPECT_EQ(Names(camera), (QStringList{"A*", "C"}));
    EXPECT_EQ(Names(other), QStringList{"B*"});
    EXPECT_EQ(manager.GetActiveCamera(), other) << "the first layer of a camera makes it active";
    EXPECT_EQ(manager.MoveLayer(camera, 0, other, 0), 0);
    EXPECT_EQ(Names(other), (QStringList{"A", "B*"}));
    EXPECT_EQ(Names(camera), QStringList{"C*"});
    EXPECT_EQ(manager.MoveLayer(camera, 0, other, 99), 2);
    EXPECT_EQ(manager.GetFlattenedImage(camera), nullptr);
    EXPECT_EQ(manager.MoveLayer(camera, 0, other, 0), -1);
    EXPECT_EQ(manager.MoveLayer(other, 2, camera, 0), 0) << "the way back";
    EXPECT_EQ(Names(camera), QStringList{"C*"});
    EXPECT_TRUE(manager.MasterCacheUpdateRequired(camera));
    EXPECT_TRUE(manager.MasterCacheUpdateRequired(other));
}

TEST_F(LayerManagerTest, RefusesIndexesThatAreNone) {
    AddLayers(camera, {"A", "B"});
    EXPECT_FALSE(manager.SetActiveLayer(camera, 5, true));
    EXPECT_THAT(Messages(), ElementsAre("Invalid layer index: 5"));
    EXPECT_EQ(Names(camera), (QStringList{"A*", "B"}));
    for (const QString& of : {camera, other, QString()}) {
        for (const int index : {-2, 2, 2147483647, -2147483647 - 1}) {
            EXPECT_EQ(manager.GetLayer(of, index), nullptr);
            EXPECT_EQ(manager.RemoveLayer(of, index), nullptr);
            EXPECT_EQ(manager.GetLayerName(of, index), QString());
            manager.SetLayerVisible(of, index, false);
            manager.SetLayerOpacity(of, index, 0.5f);
            manager.ForceCacheUpdate(of, index);
        }
    }
    EXPECT_TRUE(manager.SetActiveLayer(camera, -1, false));
    EXPECT_EQ(manager.GetActiveLayer(camera), nullptr);
    EXPECT_EQ(manager.AddFrame(camera), -1);
    EXPECT_EQ(manager.InsertFrame(camera, new Frame(At(1))), -1);
    EXPECT_FALSE(manager.CanDraw(camera));
    EXPECT_EQ(manager.GetCameras(), QStringList{camera}) << "asking makes no camera";
    EXPECT_FALSE(manager.CacheUpdateRequired(other));
}

TEST_F(LayerManagerTest, FollowsThePlaybackTime) {
    Layer* drawnOn = AddLayer(camera, {1, 5});
    Layer* second = AddLayer(camera, {1, 5});
    Layer* elsewhere = AddLayer(other, {1, 5});
    manager.SetActiveCamera(camera);
    const auto indexes = [&] {
        return QList<int>{drawnOn->GetCurrentFrameIndex(), second->GetCurrentFrameIndex(),
                          elsewhere->GetCurrentFrameIndex()};
    };
    manager.OnPlaybackTimeChanged(7, true);
    EXPECT_EQ(indexes(), (QList<int>{0, 1, 1}));
    manager.OnPlaybackTimeChanged(7, false);
    EXPECT_EQ(indexes(), (QList<int>{1, 1, 1}));
    EXPECT_EQ(manager.GetFrame(), 7);
}

/// Keeps what the panel was told last.
class FakePanel : public QWidget, public LayerManagerPanel {
public:
    void Clear() override {}
    void Fill(const QList<LayerManagerRow>& newRows, const QString& newCamera, int newIndex) override {
        ++fills;
        rows = newRows;
        activeCamera = newCamera;
        activeIndex = newIndex;
    }

    int fills = 0;
    QList<LayerManagerRow> rows;
    QString activeCamera;
    int activeIndex = -2;
};

TEST_F(LayerManagerTest, FillsThePanelOfTheMaster) {
    DialogManager::RegisterPanel(DialogManager::Panel::LayerManager,
                                 [](QWidget*) { return std::make_unique<FakePanel>(); });
    const auto& panel = dynamic_cast<const FakePanel&>(*DialogManager::GetLayerMangerDialog());
    AddLayers(camera, {"A"});
    EXPECT_EQ(panel.fills, 0) << "not the master yet";
    manager.MakeMaster();
    AddLayers(camera, {"B"});
    AddLayers(other, {"C"});
    manager.SetLayerVisible(camera, 1, false);
    manager.SetLayerState(other, 0, LayerState::Locked);
    QStringList rows;
    for (const LayerManagerRow& row : panel.rows) {
        rows.append(QString("%1/%2/%3/%4").arg(row.camera, row.name).arg(row.visible).arg(int(row.state)));
    }
    EXPECT_EQ(rows, (QStringList{other + "/C/1/2", "persp/A/1/0", "persp/B/0/0"}));
    EXPECT_EQ(panel.activeCamera, other);
    EXPECT_EQ(panel.activeIndex, 0);
    manager.SetActiveLayer(camera, 1, true);
    EXPECT_EQ(panel.activeCamera, camera);
    EXPECT_EQ(panel.activeIndex, 1);
    DialogManager::Shutdown();
}

} // namespace
} // namespace vellix
