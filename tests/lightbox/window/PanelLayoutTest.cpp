#include "WindowFixture.h"

#include <QSplitter>
#include <QTest>

#include <gmock/gmock.h>

using lightbox::PanelLayout;
using testing::ElementsAre;
using Arrangement = PanelLayout::Arrangement;

class PanelLayoutTest : public WindowFixture {
protected:
    std::vector<std::string> Shown() {
        std::vector<std::string> names;
        for (lightbox::ViewportPanel* panel : Window().Panels().All()) {
            if (panel->isVisible()) {
                names.push_back(panel->Name());
            }
        }
        return names;
    }
};

TEST_F(PanelLayoutTest, ArrangementsShowTheActivePanelAndItsNeighbours) {
    Show();
    struct Row {
        const char* active;
        Arrangement arrangement;
        std::vector<std::string> shown;
    };
    // Names in the order in which the panels were made: top, persp, front, side.
    const Row rows[] = {
        {"modelPanel4", Arrangement::Single, {"modelPanel4"}},
        {"modelPanel4", Arrangement::TwoSideBySide, {"modelPanel1", "modelPanel4"}},
        {"modelPanel4", Arrangement::TwoStacked, {"modelPanel4", "modelPanel2"}},
        {"modelPanel3", Arrangement::TwoSideBySide, {"modelPanel3", "modelPanel2"}},
        {"modelPanel1", Arrangement::TwoStacked, {"modelPanel1", "modelPanel3"}},
        {"modelPanel2", Arrangement::Four, {"modelPanel1", "modelPanel4", "modelPanel3", "modelPanel2"}},
        {"modelPanel2", Arrangement::Single, {"modelPanel2"}},
    };
    for (const Row& row : rows) {
        Window().Panels().SetActive(Panel(row.active));
        Window().Layout().Arrange(row.arrangement);
        EXPECT_EQ(Shown(), row.shown) << row.active << " " << static_cast<int>(row.arrangement);
    }
}

TEST_F(PanelLayoutTest, TheFourPanelsLookThroughTheStartUpCamerasAndStandInFourCorners) {
    Show();
    Window().Layout().Arrange(Arrangement::Four);
    Settle();
    const auto camera = [&](const char* panel) { return View(panel).Camera()->Parent()->Name(); };
    EXPECT_EQ(camera("modelPanel1"), "top");
    EXPECT_EQ(camera("modelPanel2"), "side");
    EXPECT_EQ(camera("modelPanel3"), "front");
    EXPECT_EQ(camera("modelPanel4"), "persp");
    const auto at = [&](const char* panel) { return Panel(panel).mapTo(&Window(), QPoint()); };
    EXPECT_TRUE(WaitFor([&] { return at("modelPanel4").x() == at("modelPanel2").x(); }));
    EXPECT_LT(at("modelPanel1").x(), at("modelPanel4").x());
    EXPECT_EQ(at("modelPanel1").y(), at("modelPanel4").y());
    EXPECT_LT(at("modelPanel1").y(), at("modelPanel3").y());
}

TEST_F(PanelLayoutTest, SpaceShowsThePanelUnderThePointerAloneAndThenAllAgain) {
    Show();
    Window().Layout().Arrange(Arrangement::Four);
    Settle();
    QCursor::setPos(View("modelPanel3").mapToGlobal(View("modelPanel3").rect().center()));
    Settle();
    QTest::keyClick(&View("modelPanel3"), Qt::Key_Space);
    EXPECT_THAT(Shown(), ElementsAre("modelPanel3"));
    QTest::keyClick(&View("modelPanel3"), Qt::Key_Space);
    EXPECT_EQ(Shown().size(), 4u);
}

TEST_F(PanelLayoutTest, ArrangementSizesAndActivePanelComeBackInTheNextSession) {
    Show();
    Window().Panels().SetActive(Panel("modelPanel3"));
    Window().Layout().Arrange(Arrangement::Four);
    auto* const row = qobject_cast<QSplitter*>(Panel("modelPanel1").parentWidget());
    row->setSizes({300, 700});
    Settle();
    const int width = Panel("modelPanel1").width();
    Window().SaveState();
    Restart();
    Window().RestoreState();
    Window().show();
    Settle();
    EXPECT_EQ(Window().Layout().Current(), Arrangement::Four);
    EXPECT_EQ(Window().Panels().Active()->Name(), "modelPanel3");
    EXPECT_NEAR(Panel("modelPanel1").width(), width, 3);
    EXPECT_NEAR(Panel("modelPanel3").width(), width, 3);
}

TEST_F(PanelLayoutTest, RefusesAStateThatItDidNotWrite) {
    Window().Layout().Arrange(Arrangement::TwoStacked);
    const QByteArray good = Window().Layout().Save();
    QByteArray damaged = good;
    damaged[4] = 99;
    for (const QByteArray& state : {QByteArray(), QByteArray("nonsense"), good.left(10), damaged}) {
        EXPECT_FALSE(Window().Layout().Restore(state)) << state.toHex().constData();
        EXPECT_EQ(Window().Layout().Current(), Arrangement::TwoStacked);
    }
    EXPECT_TRUE(Window().Layout().Restore(good));
}

TEST_F(PanelLayoutTest, PanelsOfOtherWindowsJoinTheListAndLeaveIt) {
    Show();
    auto floating = std::make_unique<QWidget>();
    EXPECT_NE(Window().Panels().Create("modelPanel4", floating.get()).Name(), "modelPanel4");
    lightbox::ViewportPanel& panel = Window().Panels().Create("floatingPanel", floating.get());
    EXPECT_EQ(host_->ui()->Views().size(), 6u);
    Window().Panels().SetActive(panel);
    EXPECT_EQ(host_->ui()->ActiveView()->PanelName(), "floatingPanel");
    floating.reset();
    EXPECT_EQ(host_->ui()->Views().size(), 4u);
    ASSERT_NE(host_->ui()->ActiveView(), nullptr);
    EXPECT_EQ(host_->ui()->ActiveView()->PanelName(), "modelPanel4") << "which is seen";
    EXPECT_EQ(Window().Panels().Find("floatingPanel"), nullptr);
}
