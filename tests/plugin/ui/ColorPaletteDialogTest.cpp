#include "plugin/ui/DialogFixture.h"
#include "ui/FlatButton.h"

#include <QColorDialog>
#include <QMenu>

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::ElementsAre;

class ColorPaletteDialogTest : public DialogFixture {
protected:
    ColorPaletteDialogTest() {
        for (int i = 0; i < 16; ++i) {
            QColorDialog::setCustomColor(i, QColor(10 * i, 255 - 10 * i, 7));
        }
    }
    ~ColorPaletteDialogTest() override {
        for (int i = 0; i < 16; ++i) {
            QColorDialog::setCustomColor(i, Qt::white);
        }
    }
    /// The swatch in that row and column.
    static FlatButton* At(QWidget* palette, int row, int column) {
        QList<FlatButton*> swatches = palette->findChildren<FlatButton*>();
        for (FlatButton* swatch : swatches) {
            if (swatch->x() == 2 + column * 26 && swatch->y() == 2 + row * 26) {
                return swatch;
            }
        }
        ADD_FAILURE() << "no swatch at " << row << " " << column;
        return nullptr;
    }
};

} // namespace

TEST_F(ColorPaletteDialogTest, AClickMakesTheSwatchTheColorToDrawWith) {
    QWidget* palette = Open("-colorPalette", "Color Palette");
    ASSERT_EQ(palette->findChildren<FlatButton*>().size(), 16);
    EXPECT_EQ(palette->size(), QSize(2 + 8 * 26, 2 + 2 * 26));
    EXPECT_EQ(At(palette, 1, 2)->GetColor(), QColor(50, 205, 7)); // the sixth
    EXPECT_EQ(At(palette, 0, 7)->GetColor(), QColor(140, 115, 7));
    Lines();
    QTest::mouseClick(At(palette, 1, 2), Qt::LeftButton);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -e -drawColor 50 205 7"));
    EXPECT_EQ(Settings::activeColor, QColor(50, 205, 7));
    // The arrow keys go where they point, and the space bar picks.
    QTest::keyClick(At(palette, 1, 2), Qt::Key_Right);
    QTest::keyClick(palette->focusWidget(), Qt::Key_Up);
    EXPECT_EQ(palette->focusWidget(), At(palette, 0, 3));
    QTest::keyClick(palette->focusWidget(), Qt::Key_Space);
    EXPECT_EQ(Settings::activeColor, QColor(60, 195, 7));
    EXPECT_EQ(QColorDialog::customColor(5), QColor(50, 205, 7)) << "picking changes no swatch";
}

TEST_F(ColorPaletteDialogTest, IsCustomizedInTheColorChooser) {
    QWidget* palette = Open("-colorPalette", "Color Palette");
    QTimer::singleShot(50, [] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        ASSERT_EQ(menu->actions().size(), 1);
        EXPECT_EQ(menu->actions().first()->text(), "Customize...");
        QTimer::singleShot(100, [] {
            auto* chooser = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(chooser, nullptr);
            EXPECT_EQ(chooser->windowTitle(), "Customize Palette Colors");
            EXPECT_EQ(chooser->currentColor(), QColor(0, 255, 7));
            QColorDialog::setCustomColor(5, QColor(1, 2, 3));
            chooser->reject();
        });
        menu->actions().first()->trigger();
        menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(1, 1), palette->mapToGlobal(QPoint(1, 1)));
    QApplication::sendEvent(palette, &event);
    Settle();
    EXPECT_EQ(At(palette, 1, 2)->GetColor(), QColor(1, 2, 3));
}

TEST_F(ColorPaletteDialogTest, ShowsWhatWasCustomizedElsewhere) {
    QWidget* palette = Open("-colorPalette", "Color Palette");
    QColorDialog chooser(&Window());
    chooser.open();
    Settle(300);
    chooser.activateWindow();
    ASSERT_TRUE(WaitFor([&] { return chooser.isActiveWindow(); }));
    QColorDialog::setCustomColor(5, QColor(4, 5, 6));
    chooser.reject();
    EXPECT_TRUE(WaitFor([&] { return At(palette, 1, 2)->GetColor() == QColor(4, 5, 6); }));
}

TEST_F(ColorPaletteDialogTest, ComesBackWhereItWasLeft) {
    QWidget* palette = Open("-colorPalette", "Color Palette");
    palette->move(321, 123);
    Settle();
    palette->close();
    EXPECT_FALSE(Settings::colorPaletteGeometry.isEmpty());
    palette->move(5, 5);
    Open("-colorPalette", "Color Palette");
    EXPECT_EQ(palette->pos(), QPoint(321, 123));
    Settings::colorPaletteGeometry.clear();
}

} // namespace vellix
