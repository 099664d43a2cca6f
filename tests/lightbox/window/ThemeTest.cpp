#include "controls/Theme.h"

#include "controls/ColorSwatch.h"

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

TEST(ThemeTest, ASwatchHasItsEdgeAllAroundAtAnyScale) {
    Theme::Apply(*qApp);
    ColorSwatch swatch;
    swatch.resize(60, 20);
    swatch.SetColor(Qt::cyan);
    const QRgb edge = swatch.palette().color(QPalette::Dark).rgb();
    for (const int scale : {1, 2, 3}) {
        QImage image(swatch.size() * scale, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        swatch.render(&image);
        const int right = image.width() - 1;
        const int bottom = image.height() - 1;
        for (int pixel = 0; pixel < scale; ++pixel) {
            EXPECT_EQ(image.pixel(pixel, bottom / 2), edge) << scale;
            EXPECT_EQ(image.pixel(right - pixel, bottom / 2), edge) << scale;
            EXPECT_EQ(image.pixel(right / 2, pixel), edge) << scale;
            EXPECT_EQ(image.pixel(right / 2, bottom - pixel), edge) << scale;
        }
        EXPECT_EQ(image.pixel(scale, bottom / 2), QColor(Qt::cyan).rgb());
        EXPECT_EQ(image.pixel(right - scale, bottom / 2), QColor(Qt::cyan).rgb());
    }
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
