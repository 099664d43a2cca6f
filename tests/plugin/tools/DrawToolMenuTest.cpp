#include "host/MayaUtil.h"
#include "mel/Error.h"
#include "plugin/tools/DrawToolFixture.h"

#include <QMenu>
#include <QTimer>

#include <gmock/gmock.h>

namespace vellix {

namespace {

class DrawToolMenuTest : public DrawToolFixture {
protected:
    DrawToolMenuTest() { Run("qmVellixUtil -brushTool"); }

    /// The items of a menu: "-" for a separator, "x " before what is checked, "o " before what could be, in
    /// brackets what cannot be chosen, and after a menu's name its items.
    static QString Described(const QMenu& menu) {
        QStringList items;
        for (const QAction* const action : menu.actions()) {
            QString text = action->isSeparator() ? "-" : action->text();
            if (action->isCheckable()) {
                text.prepend(action->isChecked() ? "x " : "o ");
            }
            if (!action->isEnabled()) {
                text = "[" + text + "]";
            }
            items << (action->menu() ? text + "(" + Described(*action->menu()) + ")" : text);
        }
        return items.join(", ");
    }
    static QAction* Find(const QMenu& menu, const QString& text) {
        for (QAction* const action : menu.actions()) {
            if (action->text() == text) {
                return action;
            }
            QAction* const below = action->menu() ? Find(*action->menu(), text) : nullptr;
            if (below) {
                return below;
            }
        }
        return nullptr;
    }
    /// Right-clicks a point of the screen, chooses an item of the menu or closes it. Empty when none opens.
    QString Choose(const QPoint& point, const QString& item = QString()) {
        QString described;
        QTimer poll;
        poll.setInterval(10);
        QObject::connect(&poll, &QTimer::timeout, [&] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu || !menu->isVisible()) {
                return;
            }
            poll.stop();
            described = Described(*menu);
            EXPECT_TRUE(menu->geometry().adjusted(-2, -2, 2, 2).contains(point)) << "it is at the pointer";
            QAction* const action = item.isEmpty() ? nullptr : Find(*menu, item);
            EXPECT_EQ(action != nullptr, !item.isEmpty()) << item.toStdString();
            if (whileOpen_) {
                whileOpen_();
            }
            menu->close();
            if (action) {
                action->trigger();
            }
        });
        input_.MoveTo(point);
        Settle(QApplication::doubleClickInterval() + 50); // the second of two clicks would be no press
        poll.start();
        input_.Press(3);
        Settle(150);
        input_.Release(3);
        Settle(30);
        return described;
    }
    QString ChooseInView(const QString& item = QString()) { return Choose(OnScreen({300, 200}), item); }
    std::function<void()> whileOpen_;
    static QString WithoutLayers(const QString& menu) { return menu.mid(menu.indexOf("Transform, ")); }
};

const char* const VIEW_MENU =
    "Transform, -, Draw Tool(o Pencil, x Brush, o Eraser, o Text, o Line, o Arrow, o Ellipse, o Rectangle), "
    "-, "
    "Layer(New Layer..., Layer Properties...), Frame(Insert Frame(s), Duplicate Frame, Delete Frame(s), -, "
    "Cut Frame(s), Copy Frame(s), Paste Frame(s), -, Clear Frame(s), -, Step Forward, Step Back), "
    "Ghosting(o Ghost Previous, x Ghost Next, -, Settings..., -, [o Pin Drawing], [Unpin All Drawings], -, "
    "%1), -, "
    "Toolbox..., Tool Options..., Layer Manager..., Retiming Tool..., -, "
    "Display Timeline Frames(o Always, o Selection/Context Active, x Off), -, "
    "Cleanup(Delete Active Layer, Delete Active Camera Layers, -, Clear All)";

/// Without a drawing that could be pinned.
QString ViewMenu(const char* markItem) {
    return QString(VIEW_MENU).arg(markItem);
}

} // namespace

TEST_F(DrawToolMenuTest, TheViewsMenuShowsLayersAndWhatIsOn) {
    Settings::ghostNext = true;
    Settings::timelineFrameDisplay = 2;
    Run("qmVellixLayer -add -ls 0 -n \"Ink & colour\" persp; qmVellixLayer -add -ls 0 persp");
    Run("qmVellixLayer -e -active 1 persp");
    const QString shown = ChooseInView();
    EXPECT_EQ(WithoutLayers(shown), ViewMenu("o Mark Layer"));
    EXPECT_THAT(shown.toStdString(), ::testing::HasSubstr(", Ink && colour (active), "));
    EXPECT_EQ(shown.count("(active)"), 1);
    EXPECT_EQ(shown.left(shown.indexOf(", -, ")).split(", ").size(), 3);

    // The items of a view whose camera is not the active one are that camera's, and none of them is active.
    Run("qmVellixLayer -add -ls 0 -n Side front; qmVellixLayer -e -active 1 persp");
    Run("lookThru modelPanel4 front");
    Settle();
    EXPECT_EQ(ChooseInView(), "Side, -, " + ViewMenu("o Mark Layer"));
    ChooseInView("Side");
    EXPECT_EQ(Node().GetActiveCamera(), "front");
    Run("file -force -new");
    EXPECT_EQ(ChooseInView(), ViewMenu("[o Mark Layer]"));
    Settings::timelineFrameDisplay = 0;
    Settings::ghostNext = false;
}

TEST_F(DrawToolMenuTest, ItemsDoWhatTheySay) {
    Run("qmVellixLayer -add -ls 0 -n Upper persp");
    ChooseInView(Node().GetLayerName("persp", 0));
    EXPECT_EQ(Node().GetActiveLayerIndex("persp"), 0);
    ChooseInView("Line");
    EXPECT_EQ(Settings::activeTool, ToolType::Line);
    EXPECT_THAT(ChooseInView("Ghost Previous").toStdString(), ::testing::HasSubstr("x Line"));
    EXPECT_TRUE(Settings::ghostPrev);
    for (const char* const on : {"1", "0"}) {
        ChooseInView("Pin Drawing");
        EXPECT_EQ(Run("qmVellixUtil -q -pinDrawing").AsString(), on);
        ChooseInView("Mark Layer");
        EXPECT_EQ(Run("qmVellixLayer -qm 0 persp").AsString(), on);
    }
    ChooseInView("Pin Drawing");
    EXPECT_THAT(ChooseInView("Unpin All Drawings").toStdString(), ::testing::HasSubstr("x Pin Drawing"));
    EXPECT_EQ(Run("qmVellixUtil -q -pinDrawing").AsString(), "0");
    ChooseInView("Selection/Context Active");
    EXPECT_EQ(Settings::timelineFrameDisplay, 1);
    Run("currentTime 7");
    ChooseInView("Insert Frame(s)");
    EXPECT_TRUE(Node().FrameExists("persp", MTime(7.0, MTime::uiUnit())));
    ChooseInView("Step Back");
    EXPECT_EQ(MayaUtil::GetPlaybackTimeValue(), 1);
    ChooseInView("Delete Active Layer");
    EXPECT_EQ(Node().LayerCount("persp"), 1);
    ChooseInView("Clear All");
    Settle(100);
    EXPECT_EQ(BaseNode::GetMaster(), nullptr);
    Settings::timelineFrameDisplay = 0;
}

TEST_F(DrawToolMenuTest, AnythingMayHappenWhileItIsOpen) {
    for (const char* line : {"file -force -new", "delete vellix", "setToolTo selectSuperContext",
                             "qmVellixLayer -delete 0 persp", "unloadPlugin -force vellix2"}) {
        for (const char* item : {"Layer", "Line"}) {
            SCOPED_TRACE(::testing::Message() << line << " " << item);
            Run("file -force -new; qmVellixNode -l -f -c persp; qmVellixUtil -brushTool");
            whileOpen_ = [&] {
                const bool unloads = std::string(line).find("unload") == 0;
                try {
                    Run(line);
                    EXPECT_FALSE(unloads) << "the menu returns to its code";
                } catch (const lightbox::mel::Error&) {
                    EXPECT_TRUE(unloads);
                }
            };
            EXPECT_NE(ChooseInView(item), "");
            whileOpen_ = nullptr;
            EXPECT_EQ(Settings::activeTool == ToolType::Line, std::string(item) == "Line");
            Run("file -force -new; qmVellixNode -l -f -c persp; qmVellixUtil -brushTool");
            Drag({{500, 300}, {540, 300}, {580, 300}});
            EXPECT_GT(Drawing().pixelColor(540, 524).alpha(), 0);
        }
    }
}

TEST_F(DrawToolMenuTest, ItOpensOnlyForAPlainRightClick) {
    const struct {
        unsigned key;
        bool inView;
        bool onSlider;
    } rows[] = {{0, true, true},
                {0xffe1, false, false}, // Shift
                {0xffe3, false, false}, // Control
                {'\\', false, true}};
    QWidget* const slider = MayaUtil::GetTimeControlWidget();
    ASSERT_NE(slider, nullptr);
    const QPoint onSlider = slider->mapToGlobal(slider->rect().center());
    for (const auto& row : rows) {
        SCOPED_TRACE(row.key);
        MoveTo({300, 200});
        Settle(20);
        if (row.key != 0) {
            input_.PressKey(row.key);
            Settle(20);
        }
        EXPECT_EQ(!ChooseInView().isEmpty(), row.inView);
        const QString time = Choose(onSlider);
        EXPECT_EQ(time, row.onSlider
                            ? "[Vellix 2], -, Insert Frame(s), Duplicate Frame, Delete Frame(s), -, Cut "
                              "Frame(s), Copy Frame(s), Paste Frame(s), -, Clear Frame(s)"
                            : "");
        if (row.key != 0) {
            input_.ReleaseKey(row.key);
            Settle(20);
        }
    }
    Settings::drawToolContextMenu = Settings::timelineContextMenu = false;
    EXPECT_EQ(ChooseInView(), "");
    EXPECT_EQ(Choose(onSlider), "");
    Settings::drawToolContextMenu = Settings::timelineContextMenu = true;
    Run("setToolTo selectSuperContext");
    EXPECT_EQ(ChooseInView(), "") << "the tool is not in use";
}

} // namespace vellix
