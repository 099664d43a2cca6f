#include "ui/RetimingDialog.h"

#include "node/BaseNode.h"
#include "plugin/ui/DialogFixture.h"

#include <QCheckBox>

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::ElementsAre;

class RetimingDialogTest : public DialogFixture {
protected:
    RetimingDialogTest() { Settings::retimeMoveToNextFrame = false; }

    RetimingDialog& Panel() { return dynamic_cast<RetimingDialog&>(*Open("-retimingTool", "Retiming Tool")); }
    static QCheckBox& MoveToNext(const QWidget& panel) { return *panel.findChild<QCheckBox*>(); }
};

} // namespace

TEST_F(RetimingDialogTest, EveryButtonRetimes) {
    RetimingDialog& panel = Panel();
    const ExecutedLines lines;
    for (const char* const button : {"1f", "3f", "7f", "-2f", "-1f", "+1f", "+2f"}) {
        Click(&panel, button);
    }
    MoveToNext(panel).click();
    Click(&panel, "2f");
    Click(&panel, "-1f");
    EXPECT_THAT(lines.Lines(),
                ElementsAre("qmVellixFrame -retime 1", "qmVellixFrame -retime 3", "qmVellixFrame -retime 7",
                            "qmVellixFrame -relative -retime -2", "qmVellixFrame -relative -retime -1",
                            "qmVellixFrame -relative -retime 1", "qmVellixFrame -relative -retime 2",
                            "qmVellixFrame -moveToNext -retime 2",
                            "qmVellixFrame -relative -moveToNext -retime -1"));
}

TEST_F(RetimingDialogTest, ARowOfPressesRetimesDrawingByDrawing) {
    Run("qmVellixNode -l -f -c persp; currentTime 5; qmVellixFrame -insert; currentTime 9;"
        "qmVellixFrame -insert; currentTime 1");
    RetimingDialog& panel = Panel();
    MoveToNext(panel).click();
    Click(&panel, "2f");
    Click(&panel, "+1f");
    EXPECT_EQ(Ask("currentTime -q"), "8");
    QList<int> times;
    BaseNode::GetMaster()->GetFrameTimes(QStringLiteral("persp"), times);
    EXPECT_EQ(times, QList<int>({1, 3, 8}));
    EXPECT_THAT(messages_, ElementsAre());
}

TEST_F(RetimingDialogTest, TheSwitchOutlivesThePanelAndTheProgram) {
    MoveToNext(Panel()).click();
    Panel().close();
    EXPECT_TRUE(MoveToNext(Panel()).isChecked());
    Restart();
    Settings::retimeMoveToNextFrame = false;
    Load();
    Show();
    EXPECT_TRUE(MoveToNext(Panel()).isChecked());
}

} // namespace vellix
