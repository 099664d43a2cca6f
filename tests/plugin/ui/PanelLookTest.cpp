#include "plugin/ui/DialogFixture.h"

#include <QCheckBox>
#include <QDir>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QStringList>
#include <QStyleFactory>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

class PanelLookTest : public DialogFixture {
protected:
    PanelLookTest() { Run("qmVellixNode -l -c persp -ln \"Rough\""); }
    ~PanelLookTest() override { QApplication::setFont(font_); }

    /// Every text that is smaller than it asks to be.
    static QStringList CutOff(QWidget* window) {
        QStringList cut;
        for (auto* widget : window->findChildren<QWidget*>()) {
            const auto* label = qobject_cast<QLabel*>(widget);
            const bool hasText = label != nullptr || qobject_cast<QAbstractButton*>(widget) != nullptr ||
                                 qobject_cast<QGroupBox*>(widget) != nullptr;
            int wanted = label != nullptr && label->wordWrap() ? 0 : widget->sizeHint().width();
            // Styles give push buttons a width that they share, however short their text is.
            if (const auto* button = qobject_cast<QPushButton*>(widget)) {
                wanted = button->fontMetrics().horizontalAdvance(button->text()) + 8;
            }
            if (hasText && widget->isVisible() &&
                (widget->width() < wanted ||
                 widget->mapTo(window, QPoint(widget->width(), 0)).x() > window->width())) {
                cut.append(widget->property("text").toString() + widget->toolTip());
            }
        }
        return cut;
    }

    /// The contrast of two colours, 1 to 21 (WCAG 2.1, "contrast ratio").
    static double Contrast(const QColor& a, const QColor& b) {
        const auto luminance = [](const QColor& color) {
            const auto linear = [](double part) {
                return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
            };
            return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
                   0.0722 * linear(color.blueF());
        };
        const double first = luminance(a) + 0.05;
        const double second = luminance(b) + 0.05;
        return first > second ? first / second : second / first;
    }
    /// The largest contrast of a pixel to the most frequent colour in a part of a picture.
    static double ContrastIn(const QImage& image, const QRect& part) {
        QHash<QRgb, int> counts;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) {
                ++counts[image.pixel(x, y)];
            }
        }
        QRgb ground = 0;
        for (auto entry = counts.cbegin(); entry != counts.cend(); ++entry) {
            ground = counts.value(ground) < entry.value() ? entry.key() : ground;
        }
        double most = 1.0;
        for (auto entry = counts.cbegin(); entry != counts.cend(); ++entry) {
            most = std::max(most, Contrast(ground, entry.key()));
        }
        return most;
    }
    /// Texts have a contrast of 4.5 to their ground, what is switched on and off has 3.
    static void CheckContrasts(const QWidget& window, const QImage& image) {
        for (const auto* const widget : window.findChildren<QWidget*>()) {
            const QRect part = QRect(widget->mapTo(&window, QPoint()), widget->size()) & image.rect();
            const auto* const button = qobject_cast<const QAbstractButton*>(widget);
            const auto* const label = qobject_cast<const QLabel*>(widget);
            if (!widget->isVisible() || !widget->isEnabled() || part.width() < 8 || part.height() < 8) {
                continue;
            }
            if ((label && !label->text().isEmpty()) || (button && !button->text().isEmpty())) {
                EXPECT_GE(ContrastIn(image, part), 4.5) << widget->property("text").toString().toStdString();
            }
            if (qobject_cast<const QCheckBox*>(button) || qobject_cast<const QRadioButton*>(button)) {
                const QRect mark(part.topLeft(), QSize(part.height(), part.height()));
                EXPECT_GE(ContrastIn(image, mark & part), 3.0) << button->text().toStdString();
            }
        }
    }

private:
    QFont font_ = QApplication::font();
};

} // namespace

TEST_F(PanelLookTest, NoTextIsCutOffInAnyFont) {
    for (const double points : {7.0, 10.0, 18.0}) {
        QFont font = QApplication::font();
        font.setPointSizeF(points);
        QApplication::setFont(font);
        for (const WindowRow& row : WINDOWS) {
            SCOPED_TRACE(row.title);
            QWidget* window = Open(row.flag, row.title);
            ASSERT_NE(window, nullptr);
            EXPECT_EQ(CutOff(window).join('\n').toStdString(), "") << points;
            if (auto* pages = window->findChild<QListWidget*>()) {
                pages->setCurrentRow(1);
                Settle();
                EXPECT_EQ(CutOff(window).join('\n').toStdString(), "") << points;
            }
            window->close();
            Settle();
        }
    }
}

// Every widget that the mouse can use is reached by Tab, and tells what it is.
TEST_F(PanelLookTest, EverythingIsReachedByTheKeyboard) {
    for (const WindowRow& row : WINDOWS) {
        SCOPED_TRACE(row.title);
        QWidget* window = Open(row.flag, row.title);
        ASSERT_NE(window, nullptr);
        QSet<QWidget*> reached;
        QWidget* next = window;
        do {
            next = next->nextInFocusChain();
            if ((next->focusPolicy() & Qt::TabFocus) != 0 && window->isAncestorOf(next)) {
                reached.insert(next);
            }
        } while (next != window);
        for (auto* button : window->findChildren<QAbstractButton*>()) {
            EXPECT_TRUE(reached.contains(button)) << button->text().toStdString();
            EXPECT_FALSE((button->text() + button->accessibleName()).isEmpty());
        }
        window->close();
        Settle();
    }
}

/// To look at what the panels look like: VELLIX_PICTURES names a folder that exists.
TEST_F(PanelLookTest, IsDrawnInLightAndDark) {
    const QString folder = qEnvironmentVariable("VELLIX_PICTURES");
    Run("qmVellixLayer -add -n Ink -ls 0 persp; qmVellixLayer -add -n \"Background\" -ls 1 persp;"
        "qmVellixLayer -add -n \"Notes for the next scene\" -ls 0 persp; qmVellixLayer -ev 0 2 persp;"
        "qmVellixLayer -add -n \"Door\" -ls 0 front; qmVellixLayer -add -n \"Door frame\" -ls 0 front;"
        "qmVellixLayer -es 2 0 front; qmVellixLayer -e -active 1 persp");
    for (const bool dark : {true, false}) {
        Run(dark ? "lightboxTheme \"dark\"" : "lightboxTheme \"light\"");
        for (const WindowRow& row : WINDOWS) {
            QWidget* window = Open(row.flag, row.title);
            ASSERT_NE(window, nullptr);
            auto* pages = window->findChild<QListWidget*>();
            for (int page = 0; page < (pages ? pages->count() : 1); ++page) {
                if (pages) {
                    pages->setCurrentRow(page);
                }
                Settle();
                const QImage image = window->grab().toImage();
                // Text and icons stand out from the ground of the panel.
                const QColor ground = window->palette().color(QPalette::Window);
                const bool isDarkGround = ground.lightness() < 128;
                EXPECT_EQ(isDarkGround, dark);
                int most = 0;
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x) {
                        most = qMax(most, qAbs(image.pixelColor(x, y).lightness() - ground.lightness()));
                    }
                }
                EXPECT_GT(most, 100) << row.title;
                CheckContrasts(*window, image);
                if (!folder.isEmpty()) {
                    image.save(QStringLiteral("%1/%2%3_%4_%5.png")
                                   .arg(folder, QString(row.title).remove(' '),
                                        page > 0 ? QString::number(page) : QString(), dark ? "dark" : "light")
                                   .arg(image.devicePixelRatio()));
                }
            }
            window->close();
            Settle();
        }
    }
    Run("lightboxTheme \"dark\"");
}

} // namespace vellix
