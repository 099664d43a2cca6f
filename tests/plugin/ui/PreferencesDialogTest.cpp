#include "plugin/ui/DialogFixture.h"
#include "ui/FlatButton.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QListWidget>
#include <QRadioButton>
#include <QSettings>
#include <QSpinBox>
#include <QStackedWidget>

namespace vellix {

namespace {

struct SwitchRow {
    const char* label;
    bool* setting;
    const char* key;
    int page;
};

const SwitchRow SWITCHES[] = {
    {"Disable ghosting during playback", &Settings::disableGhostingDuringPlayback,
     "disableGhostingDuringPlayback", 0},
    {"Draw Tool viewport context menu", &Settings::drawToolContextMenu, "drawToolContextMenu", 0},
    {"Transform Tool viewport context menu", &Settings::transformToolContextMenu, "transformToolContextMenu",
     0},
    {"Timeline context menu", &Settings::timelineContextMenu, "timelineContextMenu", 0},
    {"Toolbox draw tool context menu", &Settings::toolboxDrawToolContextMenu, "toolboxDrawToolContextMenu",
     0},
    {"Toolbox ghosting context menu", &Settings::toolboxGhostingContextMenu, "toolboxGhostingContextMenu", 0},
    {"Timeline range move enabled", &Settings::timeControlRangeMoveEnabled, "timeControlRangeMoveEnabled", 0},
    {"Ignore 2D Pan/Zoom", &Settings::ignore2dPanZoom, "ignore2dPanZoom", 0},
    {"Show VX2 menu only  in Animation menu set (requires restart)", &Settings::showMainMenuInAnimationSet,
     "showMainMenuInAnimationSet", 0},
    {"Automatically add first layer on draw", &Settings::automaticallyAddFirstLayer,
     "automaticallyAddFirstLayer", 1},
    {"Always display new layer dialog", &Settings::alwaysDisplayNewLayerDialog, "alwaysDisplayNewLayerDialog",
     1},
    {"Insert default static frame", &Settings::insertDefaultStaticFrame, "insertDefaultStaticFrame", 1},
};

class PreferencesDialogTest : public DialogFixture {
protected:
    PreferencesDialogTest() {
        for (const SwitchRow& row : SWITCHES) {
            saved_.append(*row.setting);
        }
    }
    ~PreferencesDialogTest() override {
        int i = 0;
        for (const SwitchRow& row : SWITCHES) {
            *row.setting = saved_[i++];
        }
        Settings::defaultLayerState = 0;
        Settings::defaultStaticFrameTime = Settings::DEFAULT_STATIC_FRAME_TIME;
        Settings::timelineFrameColor = Settings::DEFAULT_TIMELINE_FRAME_COLOR;
    }
    QWidget* OpenDialog() { return Open("-preferences", "Preferences"); }
    QVariant Stored(const char* key) {
        return QSettings(Settings::GetUserConfigPath(), QSettings::IniFormat)
            .value(QString("preferences/") + key);
    }

private:
    QList<bool> saved_;
};

} // namespace

TEST_F(PreferencesDialogTest, EverySwitchGoesToItsSettingAndTheFile) {
    QWidget* dialog = OpenDialog();
    auto* pages = dialog->findChild<QListWidget*>();
    for (const SwitchRow& row : SWITCHES) {
        pages->setCurrentRow(row.page);
        Click(dialog, row.label);
    }
    pages->setCurrentRow(1);
    Click(dialog, "Static");
    auto* time = dialog->findChild<QSpinBox*>();
    time->selectAll();
    QTest::keyClicks(time, "-20");
    int i = 0;
    QList<bool> before;
    for (const SwitchRow& row : SWITCHES) {
        before.append(*row.setting);
    }
    Click(dialog, "OK");
    for (const SwitchRow& row : SWITCHES) {
        EXPECT_NE(*row.setting, before[i]) << row.label;
        EXPECT_EQ(Stored(row.key).toBool(), !before[i]) << row.label;
        ++i;
    }
    EXPECT_EQ(Settings::defaultLayerState, 1);
    EXPECT_EQ(Stored("defaultStaticFrameTime").toInt(), -20);

    // The dialog starts from the settings.
    dialog = OpenDialog();
    for (const SwitchRow& row : SWITCHES) {
        EXPECT_EQ(FindButton(dialog, row.label)->isChecked(), *row.setting) << row.label;
    }
    EXPECT_TRUE(FindButton(dialog, "Static")->isChecked());
    EXPECT_EQ(dialog->findChild<QSpinBox*>()->value(), -20);
}

TEST_F(PreferencesDialogTest, CancelKeepsAllButTheColorThatWasChosen) {
    QWidget* dialog = OpenDialog();
    const bool menu = Settings::timelineContextMenu;
    Click(dialog, "Timeline context menu");
    auto* color = Find<FlatButton>(dialog, "Choose the color");
    QTimer::singleShot(50, [] {
        auto* chooser = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(chooser, nullptr);
        EXPECT_EQ(chooser->windowTitle(), "Timeline Frame Color");
        EXPECT_TRUE(chooser->testOption(QColorDialog::DontUseNativeDialog));
        EXPECT_EQ(chooser->currentColor(), Settings::DEFAULT_TIMELINE_FRAME_COLOR);
        chooser->setCurrentColor(QColor(255, 200, 0));
        chooser->accept();
    });
    QTest::mouseClick(color, Qt::LeftButton);
    EXPECT_EQ(Settings::timelineFrameColor, QColor(255, 200, 0)) << "at once";
    Click(dialog, "Cancel");
    EXPECT_EQ(Settings::timelineFrameColor, QColor(255, 200, 0));
    EXPECT_EQ(Settings::timelineContextMenu, menu);
    EXPECT_FALSE(Stored("timelineFrameColor").isValid());

    dialog = OpenDialog();
    Click(dialog, "Default");
    EXPECT_EQ(Settings::timelineFrameColor, Settings::DEFAULT_TIMELINE_FRAME_COLOR);
    QTest::keyClick(dialog, Qt::Key_Escape);
}

TEST_F(PreferencesDialogTest, ThePagesAreChosenWithTheKeyboard) {
    QWidget* dialog = OpenDialog();
    auto* list = dialog->findChild<QListWidget*>();
    auto* stack = dialog->findChild<QStackedWidget*>();
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(stack->currentIndex(), 1);
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_EQ(stack->currentIndex(), 0);
}

// The view is drawn anew once for that switch, and for no other.
TEST_F(PreferencesDialogTest, OnlyTheTwoDimensionalPanChangesTheView) {
    Run("qmVellixNode -l -f -c persp");
    const auto pictures = [this](const char* label) {
        QWidget* dialog = OpenDialog();
        Click(dialog, label);
        Settle(200);
        const unsigned before = View().FrameCount();
        Click(dialog, "OK");
        Settle(200);
        return View().FrameCount() - before;
    };
    const unsigned others = pictures("Timeline range move enabled");
    EXPECT_GT(pictures("Ignore 2D Pan/Zoom"), others);
}

} // namespace vellix
