#include "plugin/ui/DialogFixture.h"

#include <QFontComboBox>
#include <QLineEdit>
#include <QSpinBox>

namespace vellix {

namespace {

/// Keys from within the panels, with a layer that was hidden just before.
class PanelKeysTest : public DialogFixture {
protected:
    PanelKeysTest() {
        Run("qmVellixNode -l -c persp -ln Rough; qmVellixLayer -add -n Ink -ls 0 persp");
        Run("qmVellixLayer -ev 0 0 persp");
    }

    bool IsHidden() { return Ask("qmVellixLayer -qv 0 persp") == "0"; }
    /// Without a window manager nobody else would give the window the keys.
    static void Focus(QWidget& widget) {
        QApplication::setActiveWindow(widget.window());
        widget.setFocus(Qt::TabFocusReason);
        Settle(5);
    }
    static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        Settle(5);
    }
    static std::string Describe(const QWidget& widget) {
        return (widget.objectName() + QLatin1Char(' ') + widget.toolTip()).toStdString();
    }
    /// All that Tab stops at, in its order.
    static QList<QWidget*> Stops(QWidget& window) {
        QList<QWidget*> stops;
        for (QWidget* next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain()) {
            if ((next->focusPolicy() & Qt::TabFocus) != 0 && next->isVisible() && next->isEnabled() &&
                !next->focusProxy() && window.isAncestorOf(next)) {
                stops.append(next);
            }
        }
        return stops;
    }
};

} // namespace

TEST_F(PanelKeysTest, UndoAndRedoAreTheScenesWhereverTheFocusIs) {
    Settings::activeTool = ToolType::Text;
    for (const WindowRow& row : WINDOWS) {
        if (row.isDialog) {
            continue;
        }
        QWidget& panel = *Open(row.flag, row.title);
        const QList<QWidget*> stops = Stops(panel);
        EXPECT_FALSE(stops.isEmpty()) << row.title;
        for (QWidget* const stop : stops) {
            SCOPED_TRACE(std::string(row.title) + ": " + Describe(*stop));
            ASSERT_TRUE(IsHidden());
            Focus(*stop);
            Press(Qt::Key_Z, Qt::ControlModifier);
            EXPECT_FALSE(IsHidden());
            for (const auto& redo : {QPair<Qt::Key, Qt::KeyboardModifiers>(Qt::Key_Y, Qt::ControlModifier),
                                     {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier}}) {
                Focus(*stop);
                Press(redo.first, redo.second);
                EXPECT_TRUE(IsHidden());
                Run("undo");
            }
            Run("redo");
        }
        panel.close();
    }
}

TEST_F(PanelKeysTest, AFieldTakesBackItsOwnTyping) {
    Settings::activeTool = ToolType::Text;
    QWidget& panel = *Open("-toolOptions", "Tool Options");
    auto& size = *panel.findChild<QSpinBox*>(QStringLiteral("qmVxToolOptionsSizeNumber"));
    Focus(size);
    size.selectAll();
    QTest::keyClicks(&size, QStringLiteral("47"));
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(IsHidden());
    EXPECT_EQ(size.text(), QStringLiteral("20 pt"));
    QTest::keyClicks(&size, QStringLiteral("4"));
    Press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_TRUE(IsHidden());
    // Once it counts, the scene's again.
    size.selectAll();
    QTest::keyClicks(&size, QStringLiteral("33"));
    Press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ(Settings::textSize, 33);
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(IsHidden());
    Run("redo");

    auto& font = *panel.findChild<QFontComboBox*>();
    Focus(font);
    font.lineEdit()->selectAll();
    QTest::keyClicks(&font, QStringLiteral("Q"));
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(IsHidden());
}

TEST_F(PanelKeysTest, UndoReachesTheSceneFromAFloatingView) {
    Run("qmVellixUtil -floatingViewport");
    Settle();
    lightbox::ViewportWidget* floating = nullptr;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window != &Window() && window->isVisible() && window->findChild<lightbox::ViewportWidget*>()) {
            floating = window->findChild<lightbox::ViewportWidget*>();
        }
    }
    ASSERT_NE(floating, nullptr);
    Run("qmVellixLayer -ev 1 0 persp");
    Focus(*floating);
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(IsHidden());
    Press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_FALSE(IsHidden());
    Press(Qt::Key_Z, Qt::NoModifier);
    EXPECT_TRUE(IsHidden());
    Press(Qt::Key_Z, Qt::ShiftModifier);
    EXPECT_FALSE(IsHidden());
}

// Tab goes as one reads: down, and in a row from left to right.
TEST_F(PanelKeysTest, TabFollowsTheReadingOrder) {
    for (const WindowRow& row : WINDOWS) {
        SCOPED_TRACE(row.title);
        QWidget& window = *Open(row.flag, row.title);
        QList<QWidget*> stops = Stops(window);
        // It is a ring: it begins where the window is read first.
        const auto place = [&](QWidget* widget) {
            return QRect(widget->mapTo(&window, QPoint()), widget->size());
        };
        const auto isBefore = [&](QWidget* first, QWidget* second) {
            const QRect a = place(first);
            const QRect b = place(second);
            const bool isOneRow = a.top() <= b.center().y() && b.center().y() <= a.bottom();
            return isOneRow ? a.left() < b.left() : a.top() < b.top();
        };
        std::rotate(stops.begin(), std::min_element(stops.begin(), stops.end(), isBefore), stops.end());
        for (int i = 1; i < stops.size(); ++i) {
            EXPECT_TRUE(isBefore(stops[i - 1], stops[i]))
                << Describe(*stops[i - 1]) << " before " << Describe(*stops[i]);
        }
        Focus(*stops.first());
        Press(Qt::Key_Escape, Qt::NoModifier);
        Settle();
        EXPECT_EQ(FindWindow(QString::fromLatin1(row.title)) == nullptr, row.isDialog);
        if (!row.isDialog) {
            window.close();
        }
        Settle();
    }
}

} // namespace vellix
