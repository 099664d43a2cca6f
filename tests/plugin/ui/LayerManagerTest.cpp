#include "core/Layer.h"
#include "node/BaseNode.h"
#include "plugin/ui/DialogFixture.h"
#include "ui/CameraLayerList.h"
#include "ui/LayerItem.h"
#include "ui/LayerManagerDialog.h"
#include "ui/PlainIconButton.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QStringList>

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// Three layers of persp, one of front; the middle one of persp is active.
class LayerManagerTest : public DialogFixture {
protected:
    LayerManagerTest() {
        Run("qmVellixNode -l -c persp -ln Rough; qmVellixLayer -add -n Ink -ls 0 persp;"
            "qmVellixLayer -add -n Sky -ls 1 persp; qmVellixLayer -add -n \"A & B\" -ls 0 front;"
            "qmVellixLayer -es 2 0 front; qmVellixLayer -e -active 1 persp");
    }

    LayerManagerDialog& Panel() {
        return dynamic_cast<LayerManagerDialog&>(*Open("-layerManager", "Layer Manager"));
    }
    static LayerItem& Item(const LayerManagerDialog& panel, const char* camera, int index) {
        for (LayerItem* const item : panel.findChildren<LayerItem*>()) {
            if (item->isVisible() && item->GetCamera() == QLatin1String(camera) &&
                item->GetIndex() == index) {
                return *item;
            }
        }
        throw std::runtime_error("no such row");
    }
    /// The names of all layers, sorted; Sky's own for what it may be called meanwhile.
    static QStringList Names() {
        QStringList names;
        const BaseNode* const node = BaseNode::GetMaster();
        for (const char* const camera : {"persp", "front"}) {
            for (const Layer* const layer : node ? node->GetLayers(camera) : QList<Layer*>()) {
                names.append(layer->GetName() == "Mine" ? "Sky" : layer->GetName());
            }
        }
        names.sort();
        return names;
    }
    static QAbstractButton* Toggle(const LayerItem& item, int which) {
        return item.findChildren<QAbstractButton*>().at(which);
    }
    static bool IsMarked(const LayerItem& item) {
        return item.palette().color(QPalette::Window) ==
               QApplication::palette().color(QPalette::Active, QPalette::Highlight);
    }
    /// Every row as it is read on the screen: "camera: name letters", a star for the active one.
    static std::vector<std::string> Shown(const LayerManagerDialog& panel) {
        std::vector<LayerItem*> items;
        for (LayerItem* const item : panel.findChildren<LayerItem*>()) {
            if (item->isVisible()) {
                items.push_back(item);
            }
        }
        std::sort(items.begin(), items.end(), [&](LayerItem* first, LayerItem* second) {
            return first->mapTo(&panel, QPoint()).y() < second->mapTo(&panel, QPoint()).y();
        });
        std::vector<std::string> rows;
        rows.reserve(items.size());
        for (const LayerItem* const item : items) {
            rows.push_back((item->GetCamera() + QStringLiteral(": ") + item->GetName() + QLatin1Char(' ') +
                            Toggle(*item, 0)->text() + Toggle(*item, 1)->text() +
                            (IsMarked(*item) ? QStringLiteral("*") : QString()))
                               .toStdString());
        }
        return rows;
    }
    void Menu(QWidget& widget, const QPoint& at = {5, 5}) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, widget.mapToGlobal(at));
        QApplication::sendEvent(&widget, &event);
    }
    static QStringList Texts(const QMenu& menu) {
        QStringList texts;
        for (const QAction* const action : menu.actions()) {
            texts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        }
        return texts;
    }
    static QMenu& PoppedUp() {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) {
            throw std::runtime_error("no menu");
        }
        return *menu;
    }
};

} // namespace

TEST_F(LayerManagerTest, ShowsTheTopmostLayerFirstAndFollowsWhatIsDoneElsewhere) {
    LayerManagerDialog& panel = Panel();
    const std::vector<std::string> start = {"front: A & B VL", "persp: Sky VS", "persp: Ink V*",
                                            "persp: Rough V"};
    EXPECT_EQ(Shown(panel), start);
    const struct {
        const char* line;
        std::vector<std::string> rows;
    } changes[] = {
        {"qmVellixLayer -ev 0 1 persp", {start[0], start[1], "persp: Ink *", start[3]}},
        {"qmVellixLayer -es 2 0 persp", {start[0], start[1], start[2], "persp: Rough VL"}},
        {"qmVellixLayer -en \"Lines\" 1 persp", {start[0], start[1], "persp: Lines V*", start[3]}},
        {"qmVellixLayer -e -active 0 front", {"front: A & B VL*", start[1], "persp: Ink V", start[3]}},
        {"qmVellixLayer -delete 1 persp", {start[0], start[1], "persp: Rough V*"}},
        {"qmVellixLayer -move 1 2 persp", {start[0], "persp: Ink V*", start[1], start[3]}},
        {"qmVellixLayer -insert -1 -ls 0 side",
         {start[0], "persp: Sky VS", "persp: Ink V", start[3], "side: Layer V*"}},
    };
    for (const auto& change : changes) {
        SCOPED_TRACE(change.line);
        Run(change.line);
        Settle();
        EXPECT_EQ(Shown(panel), change.rows);
        Run("undo");
        Settle();
        EXPECT_EQ(Shown(panel), start);
        Run("redo");
        Settle();
        EXPECT_EQ(Shown(panel), change.rows);
        Run("undo");
        Settle();
    }
    Run("file -force -new");
    Settle();
    EXPECT_THAT(Shown(panel), IsEmpty());
}

TEST_F(LayerManagerTest, EachClickIsItsCommandLine) {
    LayerManagerDialog& panel = Panel();
    const LayerItem& sky = Item(panel, "persp", 2);
    const LayerItem& locked = Item(panel, "front", 0);
    const ExecutedLines lines;
    Click(&Item(panel, "persp", 0));
    Click(Toggle(sky, 0));
    Click(Toggle(sky, 1));
    Click(Toggle(locked, 1));
    Click(Toggle(Item(panel, "persp", 1), 1));
    for (const char* const button : {"Move Up", "Move Down", "Delete Layer", "Refresh"}) {
        Click(&panel, button);
    }
    EXPECT_THAT(lines.Lines(),
                ElementsAre("qmVellixLayer -e -active 0 persp", "evalDeferred(\"qmVellixUtil -draw\")",
                            "qmVellixLayer -ev 0 2 persp", "qmVellixLayer -es 2 2 persp",
                            "qmVellixLayer -es 0 0 front", "qmVellixLayer -es 1 1 persp",
                            "qmVellixLayer -move 1 2 persp", "qmVellixLayer -move 1 0 persp",
                            "qmVellixLayer -delete 1 persp", "evalDeferred(\"qmVellixUtil -rlm\")"));
}

TEST_F(LayerManagerTest, FollowsTheDrawingThatComesAndGoesUnselected) {
    LayerManagerDialog& panel = Panel();
    const std::vector<std::string> start = Shown(panel);
    Run("select -clear");
    Settle();
    const std::string kept = "\"" + prefs_.path().toStdString() + "/kept.ma\"";
    const struct {
        std::string line;
        bool isThere;
    } steps[] = {{"delete vellix", false},
                 {"undo", true},
                 {"redo", false},
                 {"undo", true},
                 {"delete vellixShape", false},
                 {"undo", true},
                 {"file -rename " + kept + "; file -type \"mayaAscii\" -save", true},
                 {"file -force -new", false},
                 {"file -import " + kept, true},
                 {"file -force -new", false},
                 {"file -force -open " + kept, true}};
    for (const auto& step : steps) {
        SCOPED_TRACE(step.line);
        Run(step.line);
        const std::vector<std::string> wanted = step.isThere ? start : std::vector<std::string>();
        EXPECT_TRUE(WaitFor([&] { return Shown(panel) == wanted; }));
        Settle();
        EXPECT_EQ(Shown(panel), wanted);
    }
}

TEST_F(LayerManagerTest, ButtonsDoNothingAtTheEnds) {
    LayerManagerDialog& panel = Panel();
    const auto press = [&](const char* line, std::initializer_list<const char*> dimmed) {
        SCOPED_TRACE(line);
        Run(line);
        Settle();
        const ExecutedLines lines;
        for (const char* const name : {"Move Up", "Move Down", "Delete Layer"}) {
            auto* const button = qobject_cast<PlainIconButton*>(FindButton(&panel, QLatin1String(name)));
            const bool does = std::find_if(dimmed.begin(), dimmed.end(), [&](const char* other) {
                                  return std::string(other) == name;
                              }) == dimmed.end();
            const size_t before = lines.Lines().size();
            Click(button);
            EXPECT_EQ(button->IsDimmed(), !does) << name;
            EXPECT_EQ(lines.Lines().size() - before, does ? 1U : 0U) << name;
        }
    };
    press("qmVellixLayer -e -active 2 persp", {"Move Up"});
    press("qmVellixLayer -e -active 0 persp", {"Move Down"});
    press("file -force -new", {"Move Up", "Move Down", "Delete Layer"});
}

TEST_F(LayerManagerTest, MenusListTheOtherCamerasAndMoveThere) {
    LayerManagerDialog& panel = Panel();
    Menu(Item(panel, "front", 0));
    QMenu& menu = PoppedUp();
    EXPECT_EQ(Texts(menu), QStringList({"A && B...", "-", "Move layer to         ",
                                        "Move all layers to         ", "-", "Mark Layer"}));
    QMenu& cameras = *menu.actions().at(2)->menu();
    EXPECT_EQ(Texts(cameras), QStringList({"persp", "top", "side"}));
    {
        const ExecutedLines lines;
        cameras.actions().first()->trigger();
        EXPECT_THAT(lines.Lines(), ElementsAre("qmVellixLayer -newCamera persp -move 0 -1 front"));
    }
    menu.close();
    Menu(*Item(panel, "persp", 0).parentWidget());
    QMenu& all = PoppedUp();
    EXPECT_EQ(Texts(all), QStringList({"Move all layers to         "}));
    QMenu& others = *all.actions().first()->menu();
    EXPECT_EQ(Texts(others), QStringList({"top", "front", "side"}));
    {
        const ExecutedLines lines;
        others.actions().first()->trigger();
        EXPECT_THAT(lines.Lines(), ElementsAre("qmVellixLayer -moveAll top persp"));
    }
    all.close();
}

TEST_F(LayerManagerTest, AMenuActsOnItsLayerWhereverThatIsByThen) {
    LayerManagerDialog& panel = Panel();
    const struct {
        const char* meanwhile;
        int entry; ///< of the menu
        const char* line;
    } rows[] = {
        {"qmVellixLayer -move 1 0 persp", 2, "qmVellixLayer -newCamera front -move 0 -1 persp"},
        {"qmVellixLayer -delete 0 persp", 2, "qmVellixLayer -newCamera front -move 0 -1 persp"},
        {"qmVellixLayer -newCamera top -move 1 -1 persp", 2, "qmVellixLayer -newCamera front -move 0 -1 top"},
        {"qmVellixLayer -newCamera front -move 1 -1 persp", 2, nullptr},
        {"qmVellixLayer -delete 1 persp", 2, nullptr},
        {"rename persp hero", 2, "qmVellixLayer -newCamera front -move 1 -1 hero"},
        {"rename persp hero", 3, "qmVellixLayer -moveAll front hero"},
        {"rename front stage", 2, "qmVellixLayer -newCamera stage -move 1 -1 persp"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.meanwhile);
        Menu(Item(panel, "persp", 1));
        QMenu& menu = PoppedUp();
        QAction* front = nullptr;
        for (QAction* const camera : menu.actions().at(row.entry)->menu()->actions()) {
            front = camera->text() == "front" ? camera : front;
        }
        ASSERT_NE(front, nullptr);
        Run(row.meanwhile);
        messages_.clear();
        {
            const ExecutedLines lines;
            front->trigger();
            EXPECT_EQ(lines.Lines(),
                      row.line ? std::vector<std::string>{row.line} : std::vector<std::string>());
        }
        const bool isGone = std::string(row.meanwhile).find("-delete 1") != std::string::npos;
        EXPECT_EQ(std::count_if(messages_.begin(), messages_.end(),
                                [](const std::string& text) {
                                    return text.find("Layer does not exist.") != std::string::npos;
                                }),
                  isGone ? 1 : 0);
        menu.close();
        Run("undo");
        Settle();
    }
}

TEST_F(LayerManagerTest, RowsShowAndSetWhatIsMarkedForGhosts) {
    LayerManagerDialog& panel = Panel();
    const auto mark = [&panel](int index) { return Toggle(Item(panel, "persp", index), 2); };
    const auto marks = [&] {
        Settle();
        return (mark(2)->text() + '|' + mark(1)->text() + '|' + mark(0)->text()).toStdString();
    };
    EXPECT_EQ(marks(), "||");
    {
        const ExecutedLines lines;
        Click(mark(2));
        Click(mark(0));
        EXPECT_THAT(lines.Lines(), ElementsAre("qmVellixLayer -em 1 2 persp", "qmVellixLayer -em 1 0 persp"));
    }
    Click(mark(2)); // the lines above were only kept
    Click(mark(0));
    EXPECT_EQ(marks(), "G||G");
    Run("qmVellixUtil -e -markLayer 1; qmVellixLayer -em 0 0 persp");
    EXPECT_EQ(marks(), "G|G|") << "whoever marks";
    Run("qmVellixLayer -move 2 0 persp");
    EXPECT_EQ(marks(), "G||G") << "a mark goes with its layer";
    Menu(Item(panel, "persp", 0));
    QMenu& menu = PoppedUp();
    QAction* const action = menu.actions().last();
    EXPECT_EQ(action->text(), "Mark Layer");
    EXPECT_TRUE(action->isChecked());
    action->trigger();
    menu.close();
    EXPECT_EQ(marks(), "G||");
    Run("qmVellixLayer -delete 2 persp");
    Run("undo");
    EXPECT_EQ(marks(), "G||") << "as the layer that comes back";
    EXPECT_EQ(Ask("qmVellixLayer -qm 2 persp"), "1");
}

TEST_F(LayerManagerTest, ItsMenuTakesTheLayersOfAnotherDrawing) {
    LayerManagerDialog& panel = Panel();
    const std::vector<std::string> start = Shown(panel);
    Run("duplicate vellix");
    Menu(*Item(panel, "persp", 0).parentWidget());
    QMenu& menu = PoppedUp();
    ASSERT_EQ(Texts(menu), QStringList({"Move all layers to         ", "Take layers of"}));
    QMenu& drawings = *menu.actions().last()->menu();
    EXPECT_EQ(Texts(drawings), QStringList("vellix1|vellixShape"));
    drawings.actions().first()->trigger();
    menu.close();
    Settle();
    EXPECT_GT(Shown(panel).size(), start.size());
    EXPECT_EQ(Run("size(`ls -type qmVellix`)").AsInt(), 1);
    Run("undo");
    Settle();
    EXPECT_EQ(Shown(panel), start);
    EXPECT_EQ(Run("size(`ls -type qmVellix`)").AsInt(), 2);
}

TEST_F(LayerManagerTest, ADoubleClickOpensTheProperties) {
    LayerManagerDialog& panel = Panel();
    QTest::mouseDClick(&Item(panel, "persp", 2), Qt::LeftButton);
    Settle();
    QWidget* const dialog = FindWindow(QStringLiteral("Layer Properties"));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->parentWidget(), &panel);
    dialog->close();
}

TEST_F(LayerManagerTest, WhatIsClickedIsUndoneStepByStep) {
    LayerManagerDialog& panel = Panel();
    const std::vector<std::string> start = Shown(panel);
    Click(Toggle(Item(panel, "persp", 0), 0));
    Click(&panel, "Move Up");
    Click(&Item(panel, "front", 0));
    Click(&panel, "Delete Layer");
    Settle();
    EXPECT_THAT(Shown(panel), ElementsAre("persp: Ink V", "persp: Sky VS", "persp: Rough "));
    for (int i = 0; i < 4; ++i) {
        Run("undo");
    }
    Settle();
    EXPECT_EQ(Shown(panel), start);
}

TEST_F(LayerManagerTest, RefillingKeepsPlaceAndFocus) {
    Run("int $c; int $l; for ($c = 1; $c <= 5; ++$c) { camera; for ($l = 0; $l < 20; ++$l)"
        "qmVellixLayer -add -n (\"camera\" + $c + \"_\" + $l) -ls 0 (\"camera\" + $c); }");
    Run("qmVellixLayer -e -active 3 camera5");
    LayerManagerDialog& panel = Panel();
    QScrollBar& bar = *panel.findChild<QScrollArea*>()->verticalScrollBar();
    EXPECT_GT(bar.value(), 0) << "the active layer is brought into view";
    panel.activateWindow();
    bar.setValue(900);
    LayerItem* const focused = &Item(panel, "camera3", 9);
    focused->FocusPart(LayerItem::Part::State, Qt::OtherFocusReason);
    bar.setValue(900);
    const LayerItem& anchor = Item(panel, "camera3", 5);
    const auto y = [&](const LayerItem& item) { return item.mapTo(&panel, QPoint()).y(); };
    const int before = y(anchor);

    // The last one brings a row above what is seen, and takes it away again.
    for (const char* const line :
         {"qmVellixLayer -es 1 5 camera3", "qmVellixLayer -ev 0 0 camera1", "qmVellixLayer -delete 1 camera5",
          "qmVellixLayer -delete 2 camera1", "qmVellixUtil -rlm"}) {
        SCOPED_TRACE(line);
        for (const char* const step : {line, "undo", "redo", "undo"}) {
            const bool refresh = std::string(line).find("-rlm") != std::string::npos;
            Run(refresh ? line : step);
            Settle(20);
            EXPECT_EQ(y(anchor), before) << step;
            EXPECT_EQ(panel.focusWidget(), Toggle(*focused, 1)) << step;
        }
    }
    // The keyboard stays on a layer that moves.
    Run("qmVellixLayer -move 9 12 camera3");
    Settle(20);
    EXPECT_EQ(panel.focusWidget(), Toggle(Item(panel, "camera3", 12), 1));
    // A layer that becomes active, and one that is made here, are brought into view.
    for (const char* const line :
         {"qmVellixLayer -e -active 19 camera5", "qmVellixLayer -add -n Newest -ls 0 camera1"}) {
        Run(line);
        Settle(20);
        const bool isNew = std::string(line).find("Newest") != std::string::npos;
        QWidget& view = *panel.findChild<QScrollArea*>()->viewport();
        const LayerItem& active = Item(panel, isNew ? "camera1" : "camera5", isNew ? 20 : 19);
        EXPECT_TRUE(view.rect().contains(active.mapTo(&view, QPoint(2, 2)))) << line;
    }
}

TEST_F(LayerManagerTest, TheKeyboardReachesEverything) {
    LayerManagerDialog& panel = Panel();
    panel.activateWindow();
    Settle();
    // One row is a stop of the tab key, with its three buttons; the others are reached with the arrows.
    FindButton(&panel, QStringLiteral("Refresh"))->setFocus();
    QStringList stops;
    for (int i = 0; i < 9; ++i) {
        QTest::keyClick(panel.focusWidget(), Qt::Key_Tab);
        const QString name = panel.focusWidget()->accessibleName();
        stops.append(name.section(QLatin1Char('.'), 0, 0));
    }
    EXPECT_EQ(stops, QStringList({"Ink", "Visible", "Animated", "Click to mark it for ghosts", "Move Up",
                                  "Move Down", "New Layer", "Delete Layer", "Refresh"}));

    LayerItem& ink = Item(panel, "persp", 1);
    ink.FocusPart(LayerItem::Part::Row, Qt::TabFocusReason);
    const ExecutedLines lines;
    QTest::keyClick(panel.focusWidget(), Qt::Key_Up);
    QTest::keyClick(panel.focusWidget(), Qt::Key_Space);
    QTest::keyClick(panel.focusWidget(), Qt::Key_Right);
    QTest::keyClick(panel.focusWidget(), Qt::Key_Space);
    QTest::keyClick(panel.focusWidget(), Qt::Key_Home);
    QTest::keyClick(panel.focusWidget(), Qt::Key_Right);
    QTest::keyClick(panel.focusWidget(), Qt::Key_Space);
    QTest::keyClick(panel.focusWidget(), Qt::Key_Escape);
    EXPECT_THAT(lines.Lines(),
                ElementsAre("qmVellixLayer -e -active 2 persp", "evalDeferred(\"qmVellixUtil -draw\")",
                            "qmVellixLayer -ev 0 2 persp", "qmVellixLayer -es 0 0 front"));
    EXPECT_TRUE(panel.isVisible()) << "Escape closes no panel";
}

TEST_F(LayerManagerTest, LayersOfOneNameAreToldApart) {
    Run("qmVellixLayer -en \"Rough\" 1 persp; qmVellixLayer -en \"Rough\" 2 persp");
    LayerManagerDialog& panel = Panel();
    panel.activateWindow();
    Item(panel, "persp", 1).FocusPart(LayerItem::Part::Row, Qt::OtherFocusReason);
    Run("qmVellixLayer -ev 0 1 persp");
    Settle();
    EXPECT_EQ(panel.focusWidget(), &Item(panel, "persp", 1));
    Run("qmVellixLayer -move 1 0 persp");
    Settle();
    EXPECT_EQ(panel.focusWidget(), &Item(panel, "persp", 0));
    QTest::keyClick(panel.focusWidget(), Qt::Key_Delete);
    Settle();
    EXPECT_THAT(Shown(panel), ElementsAre("front: A & B VL", "persp: Rough VS", "persp: Rough V*"));
    Run("undo");
    Settle();
    EXPECT_EQ(Shown(panel).size(), 4U);
}

TEST_F(LayerManagerTest, RowsAreRenamedInPlace) {
    LayerManagerDialog& panel = Panel();
    panel.activateWindow();
    LayerItem& ink = Item(panel, "persp", 1);
    const auto rename = [&](const char* name, Qt::Key end) {
        ink.FocusPart(LayerItem::Part::Row, Qt::OtherFocusReason);
        QTest::keyClick(panel.focusWidget(), Qt::Key_F2);
        auto* const field = dynamic_cast<QLineEdit*>(panel.focusWidget());
        ASSERT_NE(field, nullptr);
        EXPECT_EQ(field->selectedText(), ink.GetName());
        QTest::keyClicks(field, QLatin1String(name));
        QTest::keyClick(field, end);
        Settle();
        EXPECT_EQ(panel.focusWidget(), &ink);
    };
    rename("Lines", Qt::Key_Return);
    EXPECT_EQ(ink.GetName(), "Lines");
    rename("Other", Qt::Key_Escape);
    EXPECT_EQ(ink.GetName(), "Lines");
    rename(" ", Qt::Key_Return);
    EXPECT_EQ(ink.GetName(), "Lines");
    // The name goes to the layer for which it was typed, or to none.
    QTest::keyClick(&ink, Qt::Key_F2);
    QTest::keyClicks(panel.focusWidget(), "Lost");
    Run("qmVellixLayer -move 1 0 persp");
    Settle();
    EXPECT_THAT(Shown(panel),
                ElementsAre("front: A & B VL", "persp: Sky VS", "persp: Rough V", "persp: Lines V*"));
    Run("undo; undo");
    Settle();
    EXPECT_EQ(ink.GetName(), "Ink");
}

TEST_F(LayerManagerTest, RowsAreDraggedToAnotherPlaceAndCamera) {
    LayerManagerDialog& panel = Panel();
    panel.resize(300, 400);
    Settle();
    const std::vector<std::string> start = Shown(panel);
    const auto drag = [&](LayerItem& from, const QWidget& to, int y, Qt::Key key = Qt::Key(0)) {
        const QPoint grip(60, 8);
        const auto send = [&](QEvent::Type type, const QPoint& at, Qt::MouseButtons buttons) {
            QMouseEvent event(type, from.mapFromGlobal(at), at, Qt::LeftButton, buttons, Qt::NoModifier);
            QApplication::sendEvent(&from, &event);
        };
        const QPoint target = to.mapToGlobal(QPoint(60, y));
        send(QEvent::MouseButtonPress, from.mapToGlobal(grip), Qt::LeftButton);
        send(QEvent::MouseMove, target, Qt::LeftButton);
        Settle(); // the press has made the layer active meanwhile
        if (key != Qt::Key(0)) {
            QTest::keyClick(&from, key);
        }
        send(QEvent::MouseButtonRelease, target, Qt::NoButton);
        Settle();
    };
    drag(Item(panel, "persp", 0), Item(panel, "persp", 2), 1);
    EXPECT_THAT(Shown(panel),
                ElementsAre("front: A & B VL", "persp: Rough V*", "persp: Sky VS", "persp: Ink V"));
    drag(Item(panel, "persp", 2), Item(panel, "front", 0), 1);
    EXPECT_THAT(Shown(panel),
                ElementsAre("front: Rough V*", "front: A & B VL", "persp: Sky VS", "persp: Ink V"));
    drag(Item(panel, "persp", 1), Item(panel, "persp", 0), 20, Qt::Key_Escape);
    EXPECT_EQ(Shown(panel).at(2), "persp: Sky VS*") << "Escape takes the drag back";
    for (int step = 0; step < 8 && Shown(panel) != start; ++step) {
        Run("undo");
        Settle();
    }
    EXPECT_EQ(Shown(panel), start);
}

// The row under the pointer or with the keys goes with its layer, or becomes that of another one.
TEST_F(LayerManagerTest, ALayerThatGoesInTheMiddleOfADragOrARenameTakesNoOtherAlong) {
    LayerManagerDialog& panel = Panel();
    const std::string kept = "\"" + prefs_.path().toStdString() + "/kept.ma\"";
    Run("file -rename " + kept + "; file -type \"mayaAscii\" -save");
    for (const bool isDrag : {true, false}) {
        for (const std::string& meanwhile :
             {std::string("delete vellix"), std::string("qmVellixLayer -delete 2 persp"),
              std::string("qmVellixLayer -delete 0 persp"), std::string("file -force -new"),
              std::string("qmVellixLayer -moveAll front persp"), "file -force -open " + kept}) {
            SCOPED_TRACE((isDrag ? "drag, then " : "rename, then ") + meanwhile);
            Run("file -force -open " + kept);
            Settle();
            QPointer<LayerItem> row = &Item(panel, "persp", 2);
            Run("qmVellixLayer -e -active 2 persp");
            Settle();
            const auto send = [&row](QEvent::Type type, const QPointF& at, Qt::MouseButtons buttons) {
                if (row) {
                    QMouseEvent event(type, at, row->mapToGlobal(at.toPoint()), Qt::LeftButton, buttons, {});
                    QApplication::sendEvent(row, &event);
                }
            };
            if (isDrag) {
                send(QEvent::MouseButtonPress, {60, 8}, Qt::LeftButton);
                send(QEvent::MouseMove, {60, 60}, Qt::LeftButton);
            } else {
                QTest::keyClick(row, Qt::Key_F2);
                QTest::keyClicks(row->findChild<QLineEdit*>(), "Mine");
            }
            Run(meanwhile);
            const QStringList names = Names();
            messages_.clear();
            ExecutedLines lines(ExecutedLines::Mode::KeepAndExecute);
            Settle();
            send(QEvent::MouseButtonRelease, {60, 60}, Qt::NoButton);
            if (!isDrag && QApplication::focusWidget()) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_F3); // which means nothing here
                panel.setFocus();
            }
            Settle(100);
            for (const std::string& line : lines.Lines()) {
                EXPECT_THAT(line, Not(HasSubstr("-move 2"))) << line;
            }
            EXPECT_THAT(messages_, Not(Contains(HasSubstr("[Vellix2]"))));
            EXPECT_EQ(Names(), names) << "no other layer has got the name";
            for (const QWidget* const widget : panel.findChildren<QWidget*>()) {
                EXPECT_FALSE(widget->isVisible() && widget->height() == 2) << "the line of a drop";
            }
        }
    }
}

TEST_F(LayerManagerTest, SaysWhatToDoWhenThereIsNoLayer) {
    Run("file -force -new");
    const LayerManagerDialog& panel = Panel();
    const QLabel* hint = nullptr;
    for (const QLabel* const label : panel.findChildren<QLabel*>()) {
        hint = label->text() == QLatin1String("No layers yet. New Layer adds one.") ? label : hint;
    }
    ASSERT_NE(hint, nullptr);
    EXPECT_TRUE(hint->isVisible());
    EXPECT_FALSE(hint->visibleRegion().isEmpty());
    Run("qmVellixNode -l -c persp -ln Rough");
    Settle();
    EXPECT_FALSE(hint->isVisible());
}

TEST_F(LayerManagerTest, ACameraIsShownByItsNameAndWhetherItIsThere) {
    Run("camera; qmVellixLayer -add -n Far -ls 0 camera1");
    const LayerManagerDialog& panel = Panel();
    const struct {
        const char* line;
        const char* header;
    } steps[] = {
        {"refresh", "camera1"}, {"delete camera1", "camera1 (deleted)"},
        {"undo", "camera1"},    {"rename camera1 \"ns:shot\"", "ns:shot"},
        {"undo", "camera1"},    {"delete camera1", "camera1 (deleted)"},
    };
    for (const auto& step : steps) {
        Run(step.line);
        Settle();
        const auto* const list = dynamic_cast<const CameraLayerList*>(
            Item(panel, QByteArray(step.header).replace(" (deleted)", ""), 0).parentWidget());
        ASSERT_NE(list, nullptr) << step.line;
        EXPECT_EQ(list->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly)->text(),
                  QLatin1String(step.header))
            << step.line;
    }
    Run("qmVellixLayer -moveAll persp camera1");
    Settle();
    EXPECT_EQ(Shown(panel).size(), 5U);
}

} // namespace vellix
