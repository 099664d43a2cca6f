// Menus: of scripts, of the main window, and that of the plug-in.

#include "ControlsFixture.h"
#include "app/PluginManager.h"
#include "controls/ControlMenu.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/entry/PluginMain.h"
#include "paint/ToolType.h"
#include "scene/IdleQueue.h"

#include <QAction>
#include <QMenuBar>
#include <QStringList>
#include <QTest>
#include <QToolButton>

#include <algorithm>

namespace {

class MenusTest : public ControlsFixture {
protected:
    QAction& Action(const std::string& name) { return *Controls().Named(name).Action(); }
    /// The labels of a menu's items, dividers as "-".
    static std::string Labels(const QMenu& menu) {
        QStringList labels;
        for (const QAction* const action : menu.actions()) {
            labels << (action->isSeparator() ? QStringLiteral("-") : action->text());
        }
        return labels.join(",").toStdString();
    }
    QMenu* MenuTitled(const QString& title) {
        for (QAction* const action : Window().menuBar()->actions()) {
            if (action->text() == title && action->menu()) {
                return action->menu();
            }
        }
        return nullptr;
    }
};

TEST_F(MenusTest, ItemsDoWhatTheySay) {
    Run("global int $count; setParent $gMainWindow; menu -label \"M\" -tearOff true m; "
        "menuItem -label \"Plain\" -keyEquivalent \"k\" -ctrlModifier true -command \"$count += 1\" plain; "
        "menuItem -checkBox 1 -command \"$count = 10 * (1 + #1)\" check; menuItem -divider true; "
        "menuItem -subMenu true -label \"S\" sub; radioMenuItemCollection; menuItem -radioButton 1 one; "
        "menuItem -radioButton 0 two; menuItem -checkBox 0 three; setParent -menu ..; menuItem -label "
        "\"Last\" last; "
        "menuItem -optionBox true -command \"$count = 99\" box");
    EXPECT_EQ(Labels(*MenuTitled("M")), "Plain,check,-,S,Last,box");
    EXPECT_TRUE(MenuTitled("M")->isTearOffEnabled());
    EXPECT_EQ(Action("plain").shortcut(), QKeySequence("Ctrl+K"));
    Action("plain").trigger();
    Action("check").trigger();
    EXPECT_EQ(host_->interpreter().GetGlobal("count").AsInt(), 10);
    Action("two").trigger();
    EXPECT_EQ(Shown("menuItem -q -radioButton one"), "0");
    EXPECT_EQ(Shown("menuItem -q -radioButton two"), "1");
    Run("menuItem -e -radioButton on one; menuItem -e -checkBox on three");
    EXPECT_EQ(Shown("menuItem -q -radioButton two"), "0");
    EXPECT_EQ(Shown("menuItem -q -checkBox three"), "1");
    EXPECT_EQ(Shown("menuItem -q -isRadioButton three"), "0");
    EXPECT_EQ(lightbox::ControlMenu::OptionBoxOf(Action("last")), &Action("box"));
    EXPECT_EQ(Shown("menu -q -numberOfItems m"), "6");
    Run("menu -e -deleteAllItems m");
    EXPECT_EQ(Shown("menu -q -numberOfItems m"), "0");
    Run("deleteUI -menu m");
    Settle(1);
    EXPECT_EQ(MenuTitled("M"), nullptr);
}

TEST_F(MenusTest, AnOptionBoxTakesTheClicksOnItsSquare) {
    Show();
    Run("global string $hit; window -menuBar true w; columnLayout; menu -label \"M\" m; "
        "menuItem -label \"A long enough label\" -command \"$hit = \\\"item\\\"\" item; "
        "menuItem -optionBox true -command \"$hit = \\\"box\\\"\" box; showWindow w");
    Settle();
    auto& menu = dynamic_cast<lightbox::ControlMenu&>(*Controls().Named("m").Menu());
    const auto click = [&](const QPoint& where) {
        menu.popup(Window().mapToGlobal(QPoint(200, 200)));
        Settle();
        QTest::mouseMove(&menu, where);
        QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier, where);
        Settle();
    };
    menu.popup(Window().mapToGlobal(QPoint(200, 200)));
    Settle();
    const QPoint square = menu.OptionBoxRect(Action("item")).center();
    const QPoint text = menu.actionGeometry(&Action("item")).topLeft() + QPoint(20, 8);
    menu.close();
    click(square);
    EXPECT_EQ(host_->interpreter().GetGlobal("hit").AsString(), "box");
    click(text);
    EXPECT_EQ(host_->interpreter().GetGlobal("hit").AsString(), "item");
}

TEST_F(MenusTest, MenuSetsSwitchTheMenuBar) {
    Run("setParent $gMainWindow; menuSet -cms \"animationMenuSet\"; string $m = `menu -label \"Anim\" anim`; "
        "menuSet -am $m; menu -label \"Always\" always");
    EXPECT_TRUE(Action("anim").isVisible());
    Run("setMenuMode \"modelingMenuSet\"");
    EXPECT_FALSE(Action("anim").isVisible());
    EXPECT_TRUE(Action("always").isVisible());
    Run("setMenuMode \"animationMenuSet\"");
    EXPECT_TRUE(Action("anim").isVisible());
    EXPECT_EQ(Shown("menuSet -q -menuArray"), "anim");
    Run("deleteUI -menu anim");
    EXPECT_EQ(Shown("menuSet -q -numberOfMenus"), "0");
}

TEST_F(MenusTest, TheEditMenuNamesWhatItUndoes) {
    Run("createNode transform -n made");
    Q_EMIT MenuTitled("Edit")->aboutToShow();
    EXPECT_EQ(Shown("menuItem -q -label lightboxUndoItem"), "Undo createNode");
    EXPECT_EQ(Shown("menuItem -q -enable lightboxRedoItem"), "0");
    Action("lightboxUndoItem").trigger();
    EXPECT_EQ(Shown("objExists made"), "0");
    Q_EMIT MenuTitled("Edit")->aboutToShow();
    EXPECT_EQ(Shown("menuItem -q -label lightboxRedoItem"), "Redo createNode");
    Q_EMIT MenuTitled("Edit")->aboutToHide();
    Show();
    QTest::keyClick(&Window(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Shown("objExists made"), "1");
    QTest::keyClick(&Window(), Qt::Key_Z);
    EXPECT_EQ(Shown("objExists made"), "0");
}

TEST_F(MenusTest, TheRecentFilesAreOffered) {
    Run("optionVar -rm RecentFilesList; optionVar -sva RecentFilesList \"/a/old.ma\" -sva RecentFilesList "
        "\"/a/new \\\"1\\\".ma\"");
    auto* const recent = Controls().Named("lightboxRecentMenu").Menu();
    Q_EMIT recent->aboutToShow();
    Q_EMIT recent->aboutToShow();
    EXPECT_EQ(Labels(*recent), "/a/new \"1\".ma,/a/old.ma");
}

TEST_F(MenusTest, CutAndPasteMoveNodes) {
    Run("createNode transform -n thing; setAttr thing.tx 4");
    Run("CutSelected");
    EXPECT_EQ(Shown("objExists thing"), "0");
    Run("PasteSelected");
    EXPECT_EQ(Number("thing.tx"), 4.0);
    Run("PasteSelected");
    EXPECT_EQ(Shown("ls -sl"), "pasted__thing");
}

TEST_F(MenusTest, WhatPluginsOfferIsShownUntilTheyTakeItBack) {
    const auto shelf = [this] {
        QStringList labels;
        for (const lightbox::Control* const part : Controls().Named("lightboxShelf").Children()) {
            const auto* const button = qobject_cast<QToolButton*>(part->Widget());
            labels << (button ? button->text() : QStringLiteral("-"));
        }
        return labels.join(",").toStdString();
    };
    const std::string plainMenu = Labels(*MenuTitled("File"));
    const std::string plainShelf = shelf();
    for (const char* const button : {"Old", "Note"}) {
        Run(std::string(
                "addPluginActions(\"notes\", {\"fileMenu\", \"Print\", \"\", \"On paper\", \"polyCube\", "
                "\"shelf\", \"") +
            button + "\", \"\", \"\", \"polySphere\"})");
    }
    Run("addPluginActions(\"other\", {\"drop.txt\", \"Read\", \"\", \"\", \"readText\"})");
    EXPECT_NE(Labels(*MenuTitled("File")).find("Reference...,Print,-,Quit"), std::string::npos);
    EXPECT_EQ(shelf(), "Note,-," + plainShelf) << "what was offered before has gone";
    Run("removePluginActions \"notes\"");
    EXPECT_EQ(Labels(*MenuTitled("File")), plainMenu);
    EXPECT_EQ(shelf(), plainShelf);
    EXPECT_EQ(Run("lightboxActions \"drop.txt\"").Strings().at(3), "readText") << "another plug-in's";
}

TEST_F(MenusTest, ThePluginsMenuFollowsItsSettings) {
    const std::size_t before = Controls().All().size();
    const auto menus = Window().findChildren<QMenu*>().size();
    for (int round = 0; round < 20; ++round) {
        host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        host_->idle().Drain();
        QMenu* const menu = MenuTitled("VX2");
        ASSERT_NE(menu, nullptr);
        EXPECT_TRUE(menu->menuAction()->isVisible());
        ASSERT_TRUE(vellix::MayaUtil::UpdateMainMenu());
        const auto isOn = [this](const char* item) {
            return Shown(std::string("menuItem -q -checkBox $gQmVx") + item) == "1";
        };
        vellix::Settings::activeTool = vellix::ToolType::Arrow;
        vellix::Settings::ghostPrev = round % 2 == 0;
        vellix::Settings::timelineFrameDisplay = 2;
        ASSERT_TRUE(vellix::MayaUtil::UpdateMainMenu());
        EXPECT_TRUE(isOn("ArrowToolMenuItem"));
        EXPECT_FALSE(isOn("PencilToolMenuItem"));
        EXPECT_EQ(isOn("GhostPrevMenuItem"), round % 2 == 0);
        EXPECT_TRUE(isOn("DisplayTimelineFramesNeverItem"));
        EXPECT_FALSE(isOn("DisplayTimelineFramesAlwaysItem"));
        host_->plugins().Unload("vellix2", true);
        Settle(5);
        EXPECT_EQ(MenuTitled("VX2"), nullptr);
    }
    EXPECT_EQ(Controls().All().size(), before);
    EXPECT_EQ(Window().findChildren<QMenu*>().size(), menus);
}

} // namespace
