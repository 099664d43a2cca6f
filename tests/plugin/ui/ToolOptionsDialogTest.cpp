#include "host/panels/DialogManager.h"
#include "plugin/ui/DialogFixture.h"
#include "ui/PressureField.h"
#include "ui/PressureStrip.h"

#include <QCheckBox>
#include <QFontComboBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLineEdit>
#include <QRect>
#include <QScreen>
#include <QSlider>
#include <QSpinBox>
#include <QStringList>

#include <gmock/gmock.h>

namespace vellix {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ToolOptionsDialogTest : public DialogFixture {
protected:
    ToolOptionsDialogTest() {
        options_ = Open("-toolOptions", "Tool Options");
        Lines();
    }
    QSpinBox* Number(const char* toolTip) { return Find<QSpinBox>(options_, toolTip); }
    QAbstractButton* Unfold() {
        return options_->findChild<QAbstractButton*>("qmVxToolOptionsPressureShown");
    }
    PressureField* Field(const QString& name) {
        return options_->findChild<PressureField*>("qmVxToolOptions" + name + "Curve");
    }
    /// Drags with the left button, places as parts of the widget from the top left.
    static void DragIn(QWidget* widget, const QPointF& from, const QPointF& to) {
        const auto at = [widget](const QPointF& place) {
            return QPoint(int(widget->width() * place.x()), int(widget->height() * place.y()));
        };
        QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, at(from));
        for (int step = 1; step <= 10; ++step) {
            QMouseEvent move(QEvent::MouseMove, at(from + (to - from) * step / 10.0), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(widget, &move);
        }
        QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, at(to));
    }
    QSlider* Slider(const char* toolTip) { return Find<QSlider>(options_, toolTip); }
    void Drag(QSlider* slider, double from, double to, int steps) {
        const auto at = [slider](double part) {
            return QPoint(int(slider->width() * part), slider->height() / 2);
        };
        QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, at(from));
        for (int step = 1; step <= steps; ++step) {
            QMouseEvent move(QEvent::MouseMove, at(from + (to - from) * step / steps), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(slider, &move);
        }
    }

    QWidget* options_ = nullptr;
};

} // namespace

TEST_F(ToolOptionsDialogTest, ShowsTheOptionsThatTheActiveToolHas) {
    const struct {
        const char* flag;
        const char* seen;
        int mostSize;
    } rows[] = {{"-pencilTool", "size opacity pressure curves", 100},
                {"-brushTool", "size opacity hardness pressure curves", 100},
                {"-eraserTool", "size opacity hardness pressure curves", 100},
                {"-textTool", "size opacity font", 100},
                {"-lineTool", "size opacity", 50},
                {"-arrowTool", "size opacity", 50},
                {"-ellipseTool", "size opacity", 50},
                {"-rectangleTool", "size opacity", 50}};
    for (const auto& row : rows) {
        Run(std::string("qmVellixUtil ") + row.flag);
        QString seen = "size opacity";
        seen += Number("How sharp")->isVisible() ? " hardness" : "";
        seen += options_->findChild<QFontComboBox*>()->isVisible() ? " font" : "";
        seen += options_->findChild<QCheckBox*>("qmVxToolOptionsPressure")->isVisible() ? " pressure" : "";
        seen += options_->findChild<QCheckBox*>("qmVxToolOptionsSmoothCurves")->isVisible() ? " curves" : "";
        EXPECT_EQ(seen.toStdString(), row.seen) << row.flag;
        EXPECT_EQ(Number("Length of a string")->isVisible(), seen.endsWith("curves")) << row.flag;
        EXPECT_EQ(Unfold()->isVisible(), seen.endsWith("curves")) << row.flag;
        EXPECT_EQ(Number("How large")->maximum(), row.mostSize) << row.flag;
        EXPECT_EQ(Number("How opaque")->minimum(), 1);
        EXPECT_EQ(Number("How sharp")->minimum(), 0);
    }
}

TEST_F(ToolOptionsDialogTest, EachChangeIsOneLine) {
    QTest::keyClick(Slider("How opaque"), Qt::Key_Left);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -brushOptions 6 99 100 1"));
    QTest::keyClick(Number("How sharp"), Qt::Key_Down);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -brushOptions 6 99 99 1"));
    Click(options_, "Tablet pressure");
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -brushOptions 6 99 99 0"));
    EXPECT_FALSE(Settings::brushTabletEnabled);
    Click(options_, "Smooth curves");
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -e -smoothCurves 1"));
    QTest::keyClick(Number("Length of a string"), Qt::Key_Up);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -e -stabiliser 1"));
    EXPECT_TRUE(Settings::lineStyle.smoothCurves);
    EXPECT_EQ(Settings::lineStyle.stabiliser, 1);
    Settings::lineStyle = LineStyle();
    Run("qmVellixUtil -pencilTool");
    Lines();
    QTest::keyClick(Number("How large"), Qt::Key_Up);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -pencilOptions 7 100 0"));
}

TEST_F(ToolOptionsDialogTest, PressureIsDrawnAndTried) {
    EXPECT_FALSE(Field("Size")->isVisible());
    const int folded = options_->height();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    options_->move(screen.right() - options_->width() - 20, screen.bottom() - folded - 20);
    Settle(20);
    Unfold()->click();
    Settle(20);
    EXPECT_TRUE(Field("Size")->isVisible());
    EXPECT_EQ(Field("Size")->size(), Field("Opacity")->size());
    EXPECT_TRUE(screen.contains(options_->frameGeometry())) << "it has grown upward";
    EXPECT_FALSE(Unfold()->isChecked()) << "that looks like a selection";
    EXPECT_GT(options_->height(), folded + 100);
    Click(options_, "Pressure sets size");
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -e -brushSizePressure 1 0 50 50"));
    DragIn(Field("Size"), {0.06, 0.93}, {0.06, 0.70}); // the start
    DragIn(Field("Size"), {0.5, 0.36}, {0.7, 0.66});   // the middle
    const std::vector<std::string> lines = Lines();
    ASSERT_EQ(lines.size(), 2U) << "one line for each drag";
    const PressureCurve size = Settings::GetPenPressure(ToolType::Brush).size;
    EXPECT_NEAR(size.least, 26, 4);
    EXPECT_NEAR(size.middleAt, 72, 4);
    EXPECT_NEAR(size.middle, 8, 6);
    QTest::keyClick(Field("Opacity"), Qt::Key_Up);
    QTest::keyClick(Field("Opacity"), Qt::Key_PageUp);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -e -brushOpacityPressure 0 50 51",
                                     "qmVellixUtil -e -brushOpacityPressure 1 50 51"));
    QTest::mouseDClick(Field("Opacity"), Qt::LeftButton);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -e -brushOpacityPressure 0 50 50"));

    auto* const strip = options_->findChild<PressureStrip*>();
    const auto seen = [strip] { return strip->grab().toImage(); };
    const QImage wave = seen();
    Run("qmVellixUtil -e -bsp 1 100 50 50");
    EXPECT_NE(seen(), wave) << "what the pressure does";
    Lines();
    const QImage even = seen();
    DragIn(strip, {0.1, 0.2}, {0.9, 0.3});
    EXPECT_NE(seen(), even);
    QTest::mouseDClick(strip, Qt::LeftButton);
    EXPECT_EQ(seen(), even);
    EXPECT_THAT(Lines(), IsEmpty()) << "nothing of the scene";
    Unfold()->click();
    Settle(20);
    EXPECT_EQ(options_->height(), folded);
    Settings::SetPenPressure(ToolType::Brush, PenPressure());
}

TEST_F(ToolOptionsDialogTest, ANumberThatIsTooLargeIsTheLargest) {
    auto* const number = options_->findChild<QSpinBox*>("qmVxToolOptionsOpacityNumber");
    ASSERT_NE(number, nullptr);
    number->setFocus();
    number->selectAll();
    QTest::keyClicks(number, "250");
    QTest::keyClick(number, Qt::Key_Return);
    EXPECT_EQ(number->value(), 100);
    number->selectAll();
    QTest::keyClicks(number, "25");
    QTest::keyClick(number, Qt::Key_Return);
    EXPECT_EQ(Settings::brushOpacity, 25);
}

TEST_F(ToolOptionsDialogTest, SmallSizesHaveRoomOnTheSlider) {
    auto* const slider = options_->findChild<QSlider*>("qmVxToolOptionsSizeSlider");
    ASSERT_NE(slider, nullptr);
    const int range = slider->maximum() - slider->minimum();
    slider->setValue(slider->minimum() + range * 3 / 10);
    const int most = options_->findChild<QSpinBox*>("qmVxToolOptionsSizeNumber")->maximum();
    EXPECT_NEAR(Settings::brushSize, most * 0.09, 1.0);
    // Every size is a place of its own, and the arrow keys reach all of them.
    slider->setValue(slider->minimum());
    for (int size = 2; size <= 40; ++size) {
        QTest::keyClick(slider, Qt::Key_Right);
        ASSERT_EQ(Settings::brushSize, size);
    }
}

TEST_F(ToolOptionsDialogTest, ADragIsAFewLinesAndEndsWhereItWasLeft) {
    QSlider* slider = Slider("How large");
    Drag(slider, 0.25, 0.9, 200);
    QTest::mouseRelease(slider, Qt::LeftButton);
    const std::vector<std::string> lines = Lines();
    ASSERT_FALSE(lines.empty());
    EXPECT_LE(lines.size(), 5U);
    const QSpinBox* const number = Number("How large");
    EXPECT_EQ(lines.back(), "qmVellixUtil -brushOptions " + std::to_string(number->value()) + " 100 100 1");
    EXPECT_GT(number->value(), 60);
    EXPECT_EQ(Settings::brushSize, number->value());
    // Held still half way it is told without being let go.
    Drag(slider, 0.9, 0.5, 3);
    EXPECT_TRUE(WaitFor([number] { return number->value() < 60 && Settings::brushSize == number->value(); }));
    Lines();
    QTest::mouseRelease(slider, Qt::LeftButton);
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(ToolOptionsDialogTest, FollowsWhatOthersSetWithoutSayingSo) {
    QWidget* focused = Number("How large");
    options_->activateWindow();
    focused->setFocus();
    Run("qmVellixUtil -brushOptions 21 32 43 0");
    EXPECT_EQ(Number("How large")->value(), 21);
    EXPECT_EQ(Slider("How opaque")->value(), 32);
    EXPECT_EQ(Number("How sharp")->value(), 43);
    EXPECT_FALSE(options_->findChild<QCheckBox*>("qmVxToolOptionsPressure")->isChecked());
    // Size and opacity that are dragged in a view change the settings, then refresh.
    for (int size = 22; size < 40; ++size) {
        Settings::SetToolSize(ToolType::Brush, size);
        DialogManager::RefreshToolOptions();
        EXPECT_EQ(Number("How large")->value(), size);
    }
    Settle(100);
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_EQ(Settings::brushSize, 39);
    EXPECT_EQ(options_->focusWidget(), focused);
}

TEST_F(ToolOptionsDialogTest, AFontIsOneThatThereIs) {
    Run("qmVellixUtil -textTool");
    Lines();
    const QStringList families = QFontDatabase().families();
    auto* font = options_->findChild<QFontComboBox*>();
    const QString other = families.first() != Settings::textFontFamily ? families.first() : families.last();
    const auto type = [font](const QString& family) {
        font->lineEdit()->setFocus();
        font->lineEdit()->selectAll();
        QTest::keyClicks(font->lineEdit(), family);
        QTest::keyClick(font->lineEdit(), Qt::Key_Return);
        Settle(10);
    };
    type(other);
    EXPECT_THAT(Lines(), ElementsAre("qmVellixUtil -textOptions 20 100 \"" + other.toStdString() + "\""));
    EXPECT_EQ(Settings::textFontFamily, other);
    type("No Such Font At All");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_EQ(font->currentText(), other);
    // A scene may come from a machine with other fonts.
    Run("qmVellixUtil -textOptions 20 100 \"Elsewhere Sans\"");
    EXPECT_EQ(font->currentText(), "Elsewhere Sans");
    Settings::textFontFamily = other;
}

} // namespace vellix
