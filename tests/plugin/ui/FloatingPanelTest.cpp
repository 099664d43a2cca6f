#include "ui/FloatingPanel.h"

#include "host/panels/DialogManager.h"
#include "plugin/ui/DialogFixture.h"

#include <QScreen>

namespace vellix {

TEST(FloatingPanelTest, AWindowIsMovedOntoItsScreen) {
    const QRect screen(100, 50, 1000, 800);
    const struct {
        QRect wanted;
        QPoint corner;
    } rows[] = {
        {{200, 100, 300, 200}, {200, 100}},  {{-400, 100, 300, 200}, {100, 100}},
        {{1000, 100, 300, 200}, {800, 100}}, {{200, 840, 300, 200}, {200, 650}},
        {{200, -90, 300, 200}, {200, 50}},   {{5000, 5000, 2000, 2000}, {100, 50}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FloatingPanel::MoveInto(row.wanted, screen).topLeft(), row.corner);
        EXPECT_EQ(FloatingPanel::MoveInto(row.wanted, screen).size(), row.wanted.size());
    }
}

namespace {

class PanelPlaceTest : public DialogFixture {
protected:
    FloatingPanel& Panel() { return dynamic_cast<FloatingPanel&>(*Open("-layerManager", "Layer Manager")); }
};

} // namespace

TEST_F(PanelPlaceTest, PanelsOpenWhereTheyWereLeft) {
    Panel().setGeometry(120, 140, 333, 444);
    Settle();
    Panel().close();
    EXPECT_EQ(Panel().geometry(), QRect(120, 140, 333, 444));
    // Left open, it is open, and where it was, at the next start too.
    Panel().setGeometry(150, 160, 340, 350);
    Open("-retimingTool", "Retiming Tool")->close();
    Settle();
    const auto restart = [&] {
        Restart();
        Load();
        Settle();
    };
    restart();
    QWidget* const panel = FindWindow(QStringLiteral("Layer Manager"));
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->geometry(), QRect(150, 160, 340, 350));
    EXPECT_EQ(FindWindow(QStringLiteral("Retiming Tool")), nullptr);
    EXPECT_TRUE(Window().isActiveWindow()) << "nobody asked for the panel just now";
    panel->close();
    restart();
    EXPECT_EQ(FindWindow(QStringLiteral("Layer Manager")), nullptr);
    EXPECT_EQ(Panel().geometry(), QRect(150, 160, 340, 350));
}

TEST_F(PanelPlaceTest, ALostPlaceIsFoundAgain) {
    const QRect screen = QApplication::primaryScreen()->availableGeometry();
    const auto isOnScreen = [&] { return screen.contains(Panel().frameGeometry()); };
    // Left on a screen that is gone, larger than the one that is there.
    Panel().setGeometry(9000, -4000, 3000, 2500);
    Settle();
    Panel().close();
    EXPECT_TRUE(isOnScreen());
    Panel().close();
    Settings::layerManagerGeometry = QByteArray("\x01\xd9\xd0\xcb not a place");
    EXPECT_TRUE(isOnScreen());
}

TEST_F(PanelPlaceTest, AtFirstPanelsLieBesideThePictureAndEachOther) {
    const auto checkPlaces = [&] {
        QList<QRect> places;
        for (const WindowRow& row : WINDOWS) {
            if (!row.isDialog) {
                const QWidget* const panel = Open(row.flag, row.title);
                ASSERT_NE(panel, nullptr);
                const QRect place = panel->frameGeometry();
                for (const QRect& other : places) {
                    EXPECT_FALSE(place.intersects(other)) << row.title;
                }
                EXPECT_FALSE(place.contains(Window().frameGeometry().center())) << row.title;
                places.append(place);
            }
        }
    };
    checkPlaces();
    for (const WindowRow& row : WINDOWS) {
        if (!row.isDialog) {
            FindWindow(QLatin1String(row.title))->move(200, 200);
        }
    }
    Settle();
    DialogManager::ResetPanels();
    Settle();
    checkPlaces();
}

} // namespace vellix
