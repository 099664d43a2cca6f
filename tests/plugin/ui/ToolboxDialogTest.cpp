#include "host/panels/DialogManager.h"
#include "plugin/ui/DialogFixture.h"
#include "ui/FlatButton.h"
#include "ui/IconButton.h"
#include "ui/NumberSlider.h"

#include <QColorDialog>
#include <QInputDialog>
#include <QMenu>
#include <QSlider>
#include <QSpinBox>
#include <QStringList>
#include <QTimer>

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ToolboxDialogTest : public DialogFixture {
protected:
    ToolboxDialogTest() {
        Run("qmVellixNode -l -f -c persp");
        Settle();
        toolbox_ = Open("-toolbox", "Toolbox");
        Lines();
    }
    ~ToolboxDialogTest() override {
        Settings::toolboxDrawToolContextMenu = Settings::toolboxGhostingContextMenu = true;
    }

    bool IsOn(const char* button) { return FindButton(toolbox_, QString::fromLatin1(button))->isChecked(); }
    std::vector<std::string> OnTools() {
        std::vector<std::string> on;
        for (const char* name :
             {"Pencil", "Brush", "Eraser", "Text", "Line", "Arrow", "Ellipse", "Rectangle", "Transform"}) {
            if (FindButton(toolbox_, QString::fromLatin1(name) + ':')->isChecked()) {
                on.emplace_back(name);
            }
        }
        return on;
    }
    void RightClick(const char* button) {
        QWidget* target = FindButton(toolbox_, QString::fromLatin1(button));
        QContextMenuEvent event(QContextMenuEvent::Mouse, target->rect().center(),
                                target->mapToGlobal(target->rect().center()));
        QApplication::sendEvent(target, &event);
        Settle(20);
    }
    /// Chooses an item of the menu that the action opens, and answers the menu's texts.
    QStringList InMenu(const char* choice, const std::function<void()>& action) {
        QStringList texts;
        QTimer::singleShot(50, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            QAction* chosen = nullptr;
            for (QAction* item : menu->actions()) {
                texts.append(item->isSeparator() ? QString("-")
                                                 : item->text() + (item->isChecked() ? " on" : ""));
                chosen = item->text() == choice ? item : chosen;
            }
            menu->close();
            if (chosen) {
                chosen->trigger();
            }
        });
        action();
        Settle(100);
        return texts;
    }
    static void SetColorInChooser(const QColor& color) {
        auto* chooser = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(chooser, nullptr);
        chooser->setCurrentColor(color);
        chooser->accept();
        Settle();
    }

    QWidget* toolbox_ = nullptr;
};

} // namespace

TEST_F(ToolboxDialogTest, EachButtonIssuesItsLine) {
    const struct {
        const char* button;
        const char* line;
    } rows[] = {{"Pencil:", "qmVellixUtil -pencilTool"},
                {"Brush:", "qmVellixUtil -brushTool"},
                {"Eraser:", "qmVellixUtil -eraserTool"},
                {"Text:", "qmVellixUtil -textTool"},
                {"Line:", "qmVellixUtil -lineTool"},
                {"Arrow:", "qmVellixUtil -arrowTool"},
                {"Ellipse:", "qmVellixUtil -ellipseTool"},
                {"Rectangle:", "qmVellixUtil -rectangleTool"},
                {"Transform:", "evalDeferred(\"qmVellixUtil -transform\")"},
                {"Tool options", "qmVellixUtil -toolOptions"},
                {"Color palette", "qmVellixUtil -colorPalette"},
                {"Insert", "qmVellixFrame -insert"},
                {"Duplicate", "qmVellixFrame -duplicate"},
                {"Delete", "qmVellixFrame -delete"},
                {"Step back", "qmVellixFrame -stepBack"},
                {"Step forward", "qmVellixFrame -stepForward"},
                {"Show the drawings before", "qmVellixUtil -e -ghostPrevious 1"},
                {"Show the drawings before", "qmVellixUtil -e -ghostPrevious 0"},
                {"Show the drawings after", "qmVellixUtil -e -ghostNext 1"},
                {"New layer", "qmVellixUtil -newLayer"}};
    for (const auto& row : rows) {
        QTest::mouseClick(FindButton(toolbox_, row.button), Qt::LeftButton);
        const std::vector<std::string> lines = Lines();
        ASSERT_FALSE(lines.empty()) << row.button;
        EXPECT_EQ(lines.front(), row.line);
        Settle(20);
        Lines();
    }
    FindWindow("New Layer")->close();
}

TEST_F(ToolboxDialogTest, MarksTheToolInUseWhoeverTookIt) {
    Run("qmVellixUtil -draw");
    Settle();
    EXPECT_THAT(OnTools(), ElementsAre("Brush"));
    Click(toolbox_, "Arrow:");
    EXPECT_THAT(OnTools(), ElementsAre("Arrow"));
    Click(toolbox_, "Arrow:"); // once more leaves it on
    EXPECT_THAT(OnTools(), ElementsAre("Arrow"));
    Run("qmVellixUtil -textTool");
    EXPECT_THAT(OnTools(), ElementsAre("Text"));
    EXPECT_EQ(Settings::activeTool, ToolType::Text);
    // While the host's own tools are on, a drag draws nothing.
    Run("setToolTo selectSuperContext");
    EXPECT_THAT(OnTools(), IsEmpty());
    Run("qmVellixUtil -draw");
    Settle();
    EXPECT_THAT(OnTools(), ElementsAre("Text"));
}

TEST_F(ToolboxDialogTest, PresetsAreChosenAndSaved) {
    Click(toolbox_, "Preset 4: ");
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -preset 4"));
    EXPECT_THAT(OnTools(), ElementsAre("Pencil"));
    EXPECT_EQ(Settings::pencilSize, BrushPreset::Defaults().at(3).size);
    // The number keys, also where a button has the focus; in a number they type.
    QWidget* const button = FindButton(toolbox_, "Rectangle:");
    QTest::keyClick(button, Qt::Key_5);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -preset 5"));
    QTest::keyClick(button, Qt::Key_0, Qt::KeypadModifier);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -preset 10"));
    QTest::keyClick(button, Qt::Key_5, Qt::ControlModifier);
    EXPECT_THAT(Lines(), IsEmpty());
    auto* const number = Find<QSpinBox>(toolbox_, "Size of");
    number->setFocus();
    QTest::keyClick(number, Qt::Key_2);
    EXPECT_THAT(Lines(), ::testing::Not(Contains("qmVellixUtil -preset 2")));

    Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 55 44 33 0");
    const QImage before = FindButton(toolbox_, "Preset 7: ")->grab().toImage();
    QTimer::singleShot(300, [] {
        auto* const dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->setTextValue("Chalk");
        dialog->accept();
    });
    Lines();
    EXPECT_EQ(InMenu("Save Tool Here...", [this] { RightClick("Preset 7: "); }),
              QStringList({"Save Tool Here...", "-", "Number Keys in Views"}));
    EXPECT_TRUE(WaitFor([] { return Settings::brushPresets[6].name == "Chalk"; }));
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -savePreset 7 \"Chalk\""));
    EXPECT_NE(FindButton(toolbox_, "Preset 7: Chalk")->grab().toImage(), before) << "a picture of the stroke";
    InMenu("Number Keys in Views", [this] { RightClick("Preset 1: "); });
    EXPECT_TRUE(Settings::presetKeys);
    Settings::presetKeys = false;
    Settings::brushPresets = BrushPreset::Defaults();
    for (const ToolType tool : {ToolType::Pencil, ToolType::Brush, ToolType::Eraser}) {
        Settings::SetPenPressure(tool, PenPressure());
    }
    Run("qmVellixUtil -eraserOptions 40 100 100 0; qmVellixUtil -pencilOptions 6 100 0");
}

TEST_F(ToolboxDialogTest, ShowsGhostsAndColorAsTheyAreSet) {
    Run("qmVellixUtil -e -ghostPrevious 1");
    EXPECT_TRUE(IsOn("Show the drawings before"));
    Run("qmVellixUtil -e -ghostNext -1; qmVellixUtil -e -ghostPrevious -1");
    EXPECT_FALSE(IsOn("Show the drawings before"));
    EXPECT_TRUE(IsOn("Show the drawings after"));
    Run("qmVellixUtil -e -drawColor 12 34 56");
    EXPECT_EQ(DialogManager::GetToolboxColor(), QColor(12, 34, 56));
}

TEST_F(ToolboxDialogTest, TheColorFieldAsksForTheColorToDrawWith) {
    auto* field = toolbox_->findChild<QWidget*>("port");
    ASSERT_NE(field, nullptr);
    QTest::mouseDClick(field, Qt::LeftButton);
    Settle();
    SetColorInChooser(QColor(200, 100, 50));
    EXPECT_EQ(Settings::activeColor, QColor(200, 100, 50));
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -e -drawColor 200 100 50"));
    // The keyboard opens it too, and cancelling changes nothing.
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Space);
    Settle();
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
    Settle();
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(ToolboxDialogTest, QuickOptionsAreThoseOfTheActiveTool) {
    auto* size = Find<QSpinBox>(toolbox_, "Size");
    auto* opacity = Find<QSpinBox>(toolbox_, "Opacity");
    size->setFocus();
    size->selectAll();
    QTest::keyClicks(size, "45");
    EXPECT_THAT(Lines(), IsEmpty()) << "a number counts when it is complete";
    QTest::keyClick(size, Qt::Key_Return);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -brushOptions 45 100 100 1"));
    EXPECT_TRUE(toolbox_->isVisible());
    QTest::keyClick(opacity, Qt::Key_Down);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -brushOptions 45 99 100 1"));
    Run("qmVellixUtil -lineOptions 33 44; qmVellixUtil -lineTool");
    EXPECT_EQ(size->value(), 33);
    EXPECT_EQ(size->maximum(), Settings::MAX_LINE_SIZE);
    EXPECT_EQ(opacity->value(), 44);
}

TEST_F(ToolboxDialogTest, WhatIsBeingTypedOutlivesARefresh) {
    toolbox_->activateWindow();
    auto* size = Find<QSpinBox>(toolbox_, "Size");
    size->setFocus();
    size->selectAll();
    QTest::keyClicks(size, "7");
    Run("qmVellixUtil -e -ghostPrevious 1; qmVellixUtil -e -drawColor 1 2 3");
    EXPECT_EQ(size->text(), "7 px");
    EXPECT_TRUE(size == toolbox_->focusWidget());
    QTest::keyClick(size, Qt::Key_Return);
    EXPECT_EQ(Settings::brushSize, 7);
}

TEST_F(ToolboxDialogTest, ARightClickOpensWhatThePreferencesAllow) {
    RightClick("Line:");
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -lineTool", "qmVellixUtil -toolOptions"));
    EXPECT_NE(FindWindow("Tool Options"), nullptr);
    Settings::toolboxDrawToolContextMenu = false;
    RightClick("Pencil:");
    EXPECT_THAT(Lines(), IsEmpty());

    const auto rightClick = [this] { RightClick("Show the drawings after"); };
    const QStringList lightTable = {"-", "Pin Drawing", "Unpin All Drawings", "-", "Mark Layer"};
    EXPECT_EQ(InMenu("Ghost Previous", rightClick),
              QStringList({"Ghost Previous", "Ghost Next", "-", "Settings..."}) + lightTable);
    EXPECT_THAT(Lines(), Contains("qmVellixUtil -e -ghostPrevious 1"));
    EXPECT_EQ(InMenu("Settings...", rightClick),
              QStringList({"Ghost Previous on", "Ghost Next", "-", "Settings..."}) + lightTable);
    EXPECT_THAT(Lines(), Contains("qmVellixUtil -ghostingSettings"));
    ASSERT_NE(FindWindow("Ghosting Settings"), nullptr);
    FindWindow("Ghosting Settings")->close();
    Settle();
    Settings::toolboxGhostingContextMenu = false;
    RightClick("Show the drawings after");
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(ToolboxDialogTest, GoesWithThePluginAndComesAgain) {
    Open("-ghostingSettings", "Ghosting Settings");
    Run("file -force -new");
    host_->plugins().Unload("vellix2", true);
    EXPECT_EQ(FindWindow("Toolbox"), nullptr);
    EXPECT_EQ(FindWindow("Ghosting Settings"), nullptr);
    Settle();
    Run("setToolTo selectSuperContext"); // nobody listens any more
    Load();
    toolbox_ = Open("-toolbox", "Toolbox");
    Run("qmVellixUtil -e -drawColor 1 2 3");
    EXPECT_EQ(DialogManager::GetToolboxColor(), QColor(1, 2, 3));
}

} // namespace vellix
