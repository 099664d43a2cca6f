#include "host/panels/DialogManager.h"
#include "plugin/core/DocumentTest.h"

#include <QWidget>

#include <gmock/gmock.h>

namespace vellix {
namespace {

using ::testing::ElementsAre;

class LayerManagerTest : public DocumentTest {
protected:
    const QString other_ = QString::fromUtf8("Kamera \xe2\x84\x96 \"\xe7\x94\xbb\"\\\n");

    QStringList Names(const QString& of) const {
        QStringList names;
        for (const Layer* layer : manager_.GetLayers(of)) {
            names.append(layer->GetName() + (layer->IsActive() ? "*" : ""));
        }
        return names;
    }
    void AddLayers(const QString& to, const QStringList& names) {
        for (const QString& name : names) {
            manager_.InsertLayer(to, -1, name);
        }
    }
};

TEST_F(LayerManagerTest, NamesLayersUniquely) {
    const struct {
        const char *asked, *given;
    } cases[] = {{"", "Layer"},  {"", "Layer 1"},    {"Layer", "Layer 2"},
                 {"Sky", "Sky"}, {"Sky", "Layer 3"}, {"sky", "sky"}};
    for (const auto& c : cases) {
        const QString& to = manager_.TotalLayerCount() % 2 == 0 ? camera_ : other_;
        const int index = manager_.InsertLayer(to, -1, QString(c.asked));
        EXPECT_EQ(manager_.GetLayerName(to, index), QString(c.given));
    }
    EXPECT_EQ(manager_.GetUniqueLayerName(QString::fromUtf8("\xf0\x9f\x8e\xa8")),
              QString::fromUtf8("\xf0\x9f\x8e\xa8"));
    manager_.SetLayerName(camera_, 0, "Sky");
    EXPECT_EQ(manager_.GetLayerName(camera_, 0), QString("Sky")) << "renaming is the user's own affair";
}

TEST_F(LayerManagerTest, InsertsWhereAskedAndActivatesTheFirst) {
    Settings::defaultLayerState = 1;
    EXPECT_EQ(manager_.InsertLayer(camera_, 700, "A"), 0);
    EXPECT_EQ(manager_.GetLayerState(camera_, 0), LayerState::Static);
    EXPECT_EQ(manager_.GetActiveCamera(), camera_);
    EXPECT_EQ(manager_.InsertLayer(camera_, 0, "B"), 0);
    EXPECT_EQ(manager_.InsertLayer(camera_, 2000000000, "C"), 2);
    EXPECT_EQ(manager_.InsertLayer(camera_, -2000000000, "D"), 3);
    EXPECT_EQ(manager_.InsertLayer(camera_, 1, static_cast<Layer*>(nullptr)), -1);
    EXPECT_EQ(Names(camera_), (QStringList{"B", "A*", "C", "D"}));
    manager_.InsertLayer(other_, -1, "E");
    EXPECT_EQ(manager_.GetActiveCamera(), other_);
    EXPECT_EQ(manager_.GetPreviousActiveCamera(), camera_);
    EXPECT_EQ(manager_.TotalLayerCount(), 5);
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
        manager_.RemoveAllLayers(camera_, old);
        qDeleteAll(old);
        AddLayers(camera_, {"A", "B", "C", "D"});
        manager_.SetActiveLayer(camera_, c.active, true);
        Layer* removed = manager_.RemoveLayer(camera_, c.removed).release();
        EXPECT_EQ(Names(camera_), c.left);
        EXPECT_EQ(manager_.InsertLayer(camera_, c.removed, removed), c.removed);
        EXPECT_EQ(manager_.GetActiveLayerIndex(camera_), c.active) << "it comes back as it went";
        EXPECT_EQ(manager_.GetLayer(camera_, c.removed), removed);
    }
}

TEST_F(LayerManagerTest, ACameraKeepsItsPlaceWithoutItsLastLayer) {
    AddLayers(camera_, {"A"});
    EXPECT_NE(manager_.GetFlattenedImage(camera_), nullptr);
    std::unique_ptr<Layer> removed = manager_.RemoveLayer(camera_, 0);
    EXPECT_EQ(manager_.GetCameras(), QStringList{camera_});
    EXPECT_EQ(manager_.Clone()->GetCameras(), QStringList{camera_});
    EXPECT_EQ(manager_.GetFlattenedImage(camera_), nullptr);
    EXPECT_EQ(manager_.GetActiveLayer(camera_), nullptr);
    manager_.InsertLayer(camera_, 0, removed.release());
    EXPECT_EQ(Names(camera_), QStringList{"A*"});
    EXPECT_NE(manager_.GetFlattenedImage(camera_), nullptr);

    AddLayers(camera_, {"B", "C"});
    manager_.SetActiveLayer(camera_, 1, true);
    QList<Layer*> all;
    manager_.RemoveAllLayers(camera_, all);
    EXPECT_EQ(manager_.GetFlattenedImage(camera_), nullptr);
    for (int i = 0; i < all.size(); ++i) {
        EXPECT_EQ(manager_.InsertLayer(camera_, i, all[i]), i);
    }
    EXPECT_EQ(Names(camera_), (QStringList{"A", "B*", "C"}));
    manager_.DeleteAllLayers(true);
    EXPECT_EQ(manager_.TotalLayerCount(), 0);
    EXPECT_EQ(manager_.GetFlattenedImage(camera_), nullptr);
}

TEST_F(LayerManagerTest, MovesLayersWithinACamera) {
    AddLayers(camera_, {"A", "B", "C", "D"});
    EXPECT_EQ(manager_.MoveLayer(camera_, 0, 2), 2);
    EXPECT_EQ(Names(camera_), (QStringList{"B", "C", "A*", "D"}));
    EXPECT_EQ(manager_.MoveLayer(camera_, 2, 0), 0);
    EXPECT_EQ(Names(camera_), (QStringList{"A*", "B", "C", "D"}));
    for (const int bad : {-1, 4, 2000000000}) {
        EXPECT_EQ(manager_.MoveLayer(camera_, bad, 0), -1);
        EXPECT_EQ(manager_.MoveLayer(camera_, 0, bad), -1);
    }
    EXPECT_EQ(manager_.MoveLayer("nowhere", 0, 0), -1);
}

TEST_F(LayerManagerTest, MovesLayersToAnotherCamera) {
    AddLayers(camera_, {"A", "B", "C"});
    manager_.SetActiveLayer(camera_, 1, true);
    EXPECT_EQ(manager_.MoveLayer(camera_, 1, other_, -1), 0);
    EXPECT_EQ(Names(camera_), (QStringList{"A*", "C"}));
    EXPECT_EQ(Names(other_), QStringList{"B*"});
    EXPECT_EQ(manager_.GetActiveCamera(), other_) << "the first layer of a camera makes it active";
    EXPECT_EQ(manager_.MoveLayer(camera_, 0, other_, 0), 0);
    EXPECT_EQ(Names(other_), (QStringList{"A", "B*"}));
    EXPECT_EQ(Names(camera_), QStringList{"C*"});
    EXPECT_EQ(manager_.MoveLayer(camera_, 0, other_, 99), 2);
    EXPECT_EQ(manager_.GetFlattenedImage(camera_), nullptr);
    EXPECT_EQ(manager_.MoveLayer(camera_, 0, other_, 0), -1);
    EXPECT_EQ(manager_.MoveLayer(other_, 2, camera_, 0), 0) << "the way back";
    EXPECT_EQ(Names(camera_), QStringList{"C*"});
    EXPECT_TRUE(manager_.MasterCacheUpdateRequired(camera_));
    EXPECT_TRUE(manager_.MasterCacheUpdateRequired(other_));
}

TEST_F(LayerManagerTest, RefusesIndexesThatAreNone) {
    AddLayers(camera_, {"A", "B"});
    EXPECT_FALSE(manager_.SetActiveLayer(camera_, 5, true));
    EXPECT_THAT(Messages(), ElementsAre("Invalid layer index: 5"));
    EXPECT_EQ(Names(camera_), (QStringList{"A*", "B"}));
    for (const QString& of : {camera_, other_, QString()}) {
        for (const int index : {-2, 2, 2147483647, -2147483647 - 1}) {
            EXPECT_EQ(manager_.GetLayer(of, index), nullptr);
            EXPECT_EQ(manager_.RemoveLayer(of, index), nullptr);
            EXPECT_EQ(manager_.GetLayerName(of, index), QString());
            manager_.SetLayerVisible(of, index, false);
            manager_.SetLayerOpacity(of, index, 0.5f);
            manager_.ForceCacheUpdate(of, index);
        }
    }
    EXPECT_TRUE(manager_.SetActiveLayer(camera_, -1, false));
    EXPECT_EQ(manager_.GetActiveLayer(camera_), nullptr);
    EXPECT_EQ(manager_.AddFrame(camera_), -1);
    EXPECT_EQ(manager_.InsertFrame(camera_, new Frame(At(1))), -1);
    EXPECT_FALSE(manager_.CanDraw(camera_));
    EXPECT_EQ(manager_.GetCameras(), QStringList{camera_}) << "asking makes no camera";
    EXPECT_FALSE(manager_.CacheUpdateRequired(other_));
}

TEST_F(LayerManagerTest, FollowsThePlaybackTime) {
    Layer* drawnOn = AddLayer(camera_, {1, 5});
    Layer* second = AddLayer(camera_, {1, 5});
    Layer* elsewhere = AddLayer(other_, {1, 5});
    manager_.SetActiveCamera(camera_);
    const auto indexes = [&] {
        return QList<int>{drawnOn->GetCurrentFrameIndex(), second->GetCurrentFrameIndex(),
                          elsewhere->GetCurrentFrameIndex()};
    };
    manager_.OnPlaybackTimeChanged(7, true);
    EXPECT_EQ(indexes(), (QList<int>{0, 1, 1}));
    manager_.OnPlaybackTimeChanged(7, false);
    EXPECT_EQ(indexes(), (QList<int>{1, 1, 1}));
    EXPECT_EQ(manager_.GetFrame(), 7);
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
    AddLayers(camera_, {"A"});
    EXPECT_EQ(panel.fills, 0) << "not the master yet";
    manager_.MakeMaster();
    AddLayers(camera_, {"B"});
    AddLayers(other_, {"C"});
    manager_.SetLayerVisible(camera_, 1, false);
    manager_.SetLayerState(other_, 0, LayerState::Locked);
    QStringList rows;
    for (const LayerManagerRow& row : panel.rows) {
        rows.append(QString("%1/%2/%3/%4").arg(row.camera, row.name).arg(row.visible).arg(int(row.state)));
    }
    EXPECT_EQ(rows, (QStringList{other_ + "/C/1/2", "persp/A/1/0", "persp/B/0/0"}));
    EXPECT_EQ(panel.activeCamera, other_);
    EXPECT_EQ(panel.activeIndex, 0);
    manager_.SetActiveLayer(camera_, 1, true);
    EXPECT_EQ(panel.activeCamera, camera_);
    EXPECT_EQ(panel.activeIndex, 1);
    DialogManager::Shutdown();
}

} // namespace
} // namespace vellix
