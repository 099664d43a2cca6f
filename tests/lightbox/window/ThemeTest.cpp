#include "controls/Theme.h"

#include <QApplication>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QImage>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionSpinBox>

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

using namespace lightbox;

namespace {

/// The lightest pixel that a spin box draws into one of its buttons, 0 to 255.
int LightestPixel(QAbstractSpinBox& box, QStyle::SubControl button) {
    QStyleOptionSpinBox option;
    option.initFrom(&box);
    option.buttonSymbols = box.buttonSymbols();
    option.frame = true;
    option.subControls = QStyle::SC_All;
    const QRect area = box.style()->subControlRect(QStyle::CC_SpinBox, &option, button, &box);
    const QImage image = box.grab(area).toImage();
    int lightest = 0;
    for (int y = 0; y < image.height(); y++) {
        for (int x = 0; x < image.width(); x++) {
            lightest = std::max(lightest, qGray(image.pixel(x, y)));
        }
    }
    return lightest;
}

TEST(ThemeTest, TheButtonsOfASpinBoxHaveArrows) {
    Theme::Apply(*qApp);
    QSpinBox whole;
    whole.setRange(-5, 5);
    QDoubleSpinBox fraction;
    fraction.setRange(-5, 5);
    for (QAbstractSpinBox* box :
         {static_cast<QAbstractSpinBox*>(&whole), static_cast<QAbstractSpinBox*>(&fraction)}) {
        box->resize(70, 24);
        EXPECT_GT(LightestPixel(*box, QStyle::SC_SpinBoxUp), 150);
        EXPECT_GT(LightestPixel(*box, QStyle::SC_SpinBoxDown), 150);
    }
}

TEST(ThemeTest, WhatIsOffIsSeenToo) {
    for (const Theme::Kind kind : {Theme::Kind::Dark, Theme::Kind::Light}) {
        Theme::Apply(*qApp, kind);
        const bool isDark = kind == Theme::Kind::Dark;
        EXPECT_EQ(Theme::Window().lightness() < 128, isDark);
        EXPECT_EQ(Theme::Text().lightness() > 128, isDark);
        QCheckBox box;
        QRadioButton radio;
        for (QAbstractButton* const button :
             {static_cast<QAbstractButton*>(&box), static_cast<QAbstractButton*>(&radio)}) {
            button->resize(button->sizeHint());
            const QImage off = button->grab().toImage();
            button->setChecked(true);
            const QImage on = button->grab().toImage();
            EXPECT_NE(off, on);
            int most = 0;
            for (int x = 0; x < off.width(); ++x) {
                most = std::max(
                    most, std::abs(qGray(off.pixel(x, off.height() / 2)) - qGray(Theme::Window().rgb())));
            }
            EXPECT_GT(most, 60);
        }
    }
    Theme::Apply(*qApp);
}

} // namespace
