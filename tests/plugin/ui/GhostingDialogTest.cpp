#include "plugin/ui/DialogFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeySequenceEdit>
#include <QSpinBox>

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GhostingDialogTest : public DialogFixture {
protected:
    QWidget* OpenDialog() {
        QWidget* dialog = Open("-ghostingSettings", "Ghosting Settings");
        Lines();
        return dialog;
    }
    void SetColor(const char* control, const char* rgb) {
        Run(std::string("colorSliderGrp -e -rgbValue ") + rgb + " " + control);
    }
};

} // namespace

TEST_F(GhostingDialogTest, OkIssuesTheFiveSettingsInTheirOrder) {
    QWidget* dialog = OpenDialog();
    EXPECT_GE(dialog->width(), 300);
    Click(dialog, "OK");
    EXPECT_THAT(Lines(),
                ElementsAre("qmVellixUtil -e -ghostPreviousCount 3", "qmVellixUtil -e -ghostNextCount 3",
                            "qmVellixUtil -e -ghostColorOverride 0",
                            "qmVellixUtil -e -ghostColorPrevious 0 128 0",
                            "qmVellixUtil -e -ghostColorNext 128 0 0"));
    EXPECT_EQ(FindWindow("Ghosting Settings"), nullptr);

    // Opened again it finds its controls' names free.
    dialog = OpenDialog();
    auto* previous = Find<QSpinBox>(dialog, "Number of earlier");
    auto* next = Find<QSpinBox>(dialog, "Number of later");
    previous->setValue(12);
    EXPECT_EQ(previous->value(), 9);
    next->setValue(0);
    EXPECT_EQ(next->value(), 1);
    Click(dialog, "Enable Color Override");
    SetColor("qmGhostPrevOverrideColorBtn", "1 0.5 0");
    SetColor("qmGhostNextOverrideColorBtn", "0 0.2 1");
    QTest::keyClick(dialog, Qt::Key_Return);
    Settle(10);
    EXPECT_THAT(Lines(),
                ElementsAre("qmVellixUtil -e -ghostPreviousCount 9", "qmVellixUtil -e -ghostNextCount 1",
                            "qmVellixUtil -e -ghostColorOverride 1",
                            "qmVellixUtil -e -ghostColorPrevious 255 128 0",
                            "qmVellixUtil -e -ghostColorNext 0 51 255"));
    EXPECT_EQ(Settings::ghostColorOverrideNext, QColor(0, 51, 255));
}

TEST_F(GhostingDialogTest, OfTheLightTableOnlyWhatChangedIsSet) {
    QWidget* dialog = OpenDialog();
    Find<QComboBox>(dialog, "Layers whose")->setCurrentText("All Visible Layers");
    Find<QSpinBox>(dialog, "How strongly")->setValue(40);
    SetColor("qmPinnedColorBtn", "0 0.2 1");
    auto* const next = Find<QKeySequenceEdit>(dialog, "Show the next");
    next->setFocus();
    for (const Qt::Key key : {Qt::Key_F6, Qt::Key_F7}) { // the last one counts
        QTest::keyClick(next, key, Qt::ControlModifier);
    }
    Find<QSpinBox>(dialog, "Drawings rolled in")->setValue(12);
    Click(dialog, "Flip All Layers");
    Click(dialog, "OK");
    std::vector<std::string> lines = Lines();
    lines.erase(lines.begin(), lines.begin() + 5);
    EXPECT_THAT(lines, ElementsAre("qmVellixUtil -e -ghostLayers 2", "qmVellixUtil -e -otherLayersOpacity 40",
                                   "qmVellixUtil -e -pinnedColor 0 51 255",
                                   "qmVellixUtil -e -flipNextKey \"Ctrl+F7\"", "qmVellixUtil -e -rollRate 12",
                                   "qmVellixUtil -e -flipAllLayers 1"));
    EXPECT_EQ(Ask("hotkey -q -k \"F7\" -ctl -name"), "qmVxFlipNext");
    EXPECT_EQ(Ask("hotkey -q -k \"F7\" -ctl -releaseName"), "qmVxFlipNextEnd");

    dialog = OpenDialog();
    Click(dialog, "No key: Show the next");
    Click(dialog, "OK");
    EXPECT_THAT(Lines(), Contains("qmVellixUtil -e -flipNextKey \"\""));
    EXPECT_EQ(Ask("hotkey -q -k \"F7\" -ctl -name"), "");
    Settings::ghostLayers = 0;
    Settings::otherLayersOpacity = 100;
    Settings::pinnedColor = QColor(0, 0, 128);
    Settings::rollRate = 8;
    Settings::flipAllLayers = false;
}

TEST_F(GhostingDialogTest, CancelChangesNothing) {
    QWidget* dialog = OpenDialog();
    Find<QSpinBox>(dialog, "Number of earlier")->setValue(7);
    Click(dialog, "Enable Color Override");
    SetColor("qmGhostPrevOverrideColorBtn", "1 1 1");
    Click(dialog, "Cancel");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_EQ(Settings::ghostPrevCount, 3);
    EXPECT_FALSE(Settings::ghostColorOverride);
    EXPECT_EQ(Settings::ghostColorOverridePrev, QColor(0, 128, 0));
}

TEST_F(GhostingDialogTest, AHostWithoutTheControlsKeepsTheColors) {
    Run("window myWindow; columnLayout; colorSliderGrp qmGhostPrevOverrideColorBtn");
    Run("text qmGhostNextOverrideColorBtn");
    QWidget* dialog = OpenDialog();
    Click(dialog, "OK");
    Settle();
    EXPECT_EQ(Settings::ghostColorOverrideNext, QColor(128, 0, 0));
    Run("deleteUI myWindow");
}

TEST_F(GhostingDialogTest, AskedForTwiceItIsOneDialog) {
    OpenDialog();
    OpenDialog();
    int count = 0;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        count += window->isVisible() && window->windowTitle() == "Ghosting Settings" ? 1 : 0;
    }
    EXPECT_EQ(count, 1);
}

} // namespace vellix
