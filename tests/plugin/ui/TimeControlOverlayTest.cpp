#include "ui/TimeControlOverlay.h"

#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "host/Settings.h"
#include "host/entry/PluginMain.h"
#include "mel/Interpreter.h"
#include "plugin/host/ExecutedLines.h"

#include <QImage>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>
#include <string>

namespace vellix {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A slider that counts the presses that reach it.
class Slider : public QWidget {
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
};

class TimeControlOverlayTest : public ::testing::Test {
protected:
    TimeControlOverlayTest()
        : host_(lightbox::Host::Options{true, prefs_.path().toStdString()}) {
        Settings::timelineFrameColor = QColor(200, 40, 20);
        Settings::timeControlRangeMoveEnabled = true;
        slider_ = std::make_unique<Slider>();
        slider_->resize(1000, 30);
        slider_->setStyleSheet(QStringLiteral("background: white"));
        overlay_ = std::make_unique<TimeControlOverlay>(slider_.get());
        slider_->show();
        Run("playbackOptions -min 1 -max 10");
    }
    ~TimeControlOverlayTest() override { Settings::timeControlRangeMoveEnabled = true; }

    void Run(const char* mel) { host_.interpreter().Execute(mel); }
    void Highlight(int start, int end) {
        Run(qPrintable(
            QStringLiteral("timeControl -e -rangeArray %1 %2 $gPlayBackSlider").arg(start).arg(end)));
    }
    QImage Painted() {
        overlay_->show();
        return slider_->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    void Press() { QTest::mousePress(overlay_.get(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 10)); }
    void Move() {
        QMouseEvent move(QEvent::MouseMove, QPointF(320, 10), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(overlay_.get(), &move);
    }
    void Release() { QTest::mouseRelease(overlay_.get(), Qt::LeftButton, Qt::NoModifier, QPoint(320, 10)); }
    /// What dragging the highlighted range does: the slider moves the range, and the time follows.
    void DragRangeTo(int start, int end) {
        Press();
        Move();
        Highlight(start, end);
        overlay_->UpdateMoveOffset();
    }

    QTemporaryDir prefs_;
    lightbox::LightboxHost host_;
    std::unique_ptr<Slider> slider_;
    std::unique_ptr<TimeControlOverlay> overlay_;
};

} // namespace

TEST_F(TimeControlOverlayTest, MarksLieInTheLowerThird) {
    overlay_->SetFrameTimes({1, 4, 10});
    const QImage image = Painted();
    // 99 pixels a frame after a margin of 5; a band of 9 pixels from 23 on, of which 7 are in the slider.
    const QRgb outline = qRgb(200, 40, 20);
    const QRgb fill = image.pixel(50, 27);
    EXPECT_NEAR(qRed(fill), 255 - 55 * 63 / 255.0, 2);
    EXPECT_NEAR(qGreen(fill), 255 - 215 * 63 / 255.0, 2);
    struct Place {
        int x;
        int y;
        QRgb color;
    };
    const QRgb white = qRgb(255, 255, 255);
    const Place places[] = {
        {4, 27, white},    {5, 27, outline},   {6, 27, fill},      {102, 27, fill},    {103, 27, outline},
        {104, 27, white},  {301, 27, white},   {302, 27, outline}, {400, 27, outline}, {401, 27, white},
        {895, 27, white},  {896, 27, outline}, {994, 27, outline}, {995, 27, white},   {50, 22, white},
        {50, 23, outline}, {50, 24, fill},     {50, 29, fill},
    };
    for (const Place& place : places) {
        EXPECT_EQ(image.pixel(place.x, place.y), place.color) << place.x << "," << place.y;
    }
    overlay_->ClearFrameTimes();
    EXPECT_EQ(Painted().pixel(50, 27), white);
}

TEST_F(TimeControlOverlayTest, MarksFollowTheSliderAndItsRange) {
    overlay_->SetFrameTimes({7});
    Run("playbackOptions -min 7 -max 7");
    QImage image = Painted();
    EXPECT_EQ(image.pixel(5, 27), qRgb(200, 40, 20)) << "one frame is as wide as the slider";
    EXPECT_EQ(image.pixel(994, 27), qRgb(200, 40, 20));
    slider_->resize(500, 60);
    Painted();
    image = Painted();
    EXPECT_EQ(overlay_->size(), QSize(500, 60));
    EXPECT_EQ(image.pixel(3, 50), qRgb(200, 40, 20));
    EXPECT_EQ(image.pixel(100, 43), qRgb(200, 40, 20)) << "19 pixels high";
    // More frames than pixels: a mark stays a pixel wide.
    Run("playbackOptions -min 1 -max 5000");
    overlay_->SetFrameTimes({2500});
    image = Painted();
    EXPECT_EQ(image.pixel(250, 50), qRgb(200, 40, 20));
    EXPECT_EQ(image.pixel(252, 50), qRgb(255, 255, 255));
}

TEST_F(TimeControlOverlayTest, TheSliderGetsTheMouse) {
    overlay_->show();
    Press();
    EXPECT_EQ(slider_->presses, 1);
    // Also without a button: the slider shows by its cursor what a press would take hold of.
    EXPECT_TRUE(overlay_->hasMouseTracking());
}

TEST_F(TimeControlOverlayTest, DraggingTheRangeMovesItsFrames) {
    overlay_->show();
    Highlight(3, 6);
    overlay_->SetDrawContextActive(true);
    ExecutedLines lines;
    DragRangeTo(5, 8);
    EXPECT_TRUE(overlay_->HasMoveOffset());
    EXPECT_EQ(overlay_->GetMoveOffset(), 2);
    EXPECT_EQ(overlay_->GetRangeForMoveOffset()[0], 3.0);
    Release();
    EXPECT_FALSE(overlay_->HasMoveOffset());
    EXPECT_EQ(overlay_->GetMoveOffset(), 0);
    DragRangeTo(2, 5); // the range was captured anew
    Release();
    DragRangeTo(2, 5);
    Release();
    DragRangeTo(4, 7);
    overlay_->SetDrawContextActive(false); // another tool is chosen in the middle of it
    EXPECT_EQ(overlay_->GetMoveOffset(), 0);
    Release();
    EXPECT_THAT(lines.Lines(),
                ElementsAre("qmVellixFrame -move 2 3 5", "qmVellixFrame -move -3 5 7",
                            "qmVellixUtil -refreshTimelineDisplay", "qmVellixUtil -refreshTimelineDisplay"));
}

TEST_F(TimeControlOverlayTest, ADragMovesNoFramesButThoseOfItsLayer) {
    host_.plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
    overlay_->show();
    overlay_->SetDrawContextActive(true);
    for (const char* const meanwhile : {"currentTime 5", "qmVellixLayer -e -active 0 persp", "delete vellix",
                                        "file -force -new; qmVellixNode -layer -camera persp"}) {
        SCOPED_TRACE(meanwhile);
        Run("file -force -new; playbackOptions -min 1 -max 10; qmVellixNode -layer -camera persp;"
            "qmVellixLayer -add -layerState 0 persp");
        Highlight(3, 6);
        overlay_->SetDrawContextActive(true);
        const ExecutedLines lines;
        DragRangeTo(5, 8);
        Run(meanwhile);
        Release();
        const bool moves = meanwhile == std::string("currentTime 5");
        EXPECT_EQ(lines.Lines().back(),
                  moves ? "qmVellixFrame -move 2 3 5" : "qmVellixUtil -refreshTimelineDisplay");
        EXPECT_EQ(overlay_->GetMoveOffset(), 0);
    }
    overlay_.reset();
    host_.plugins().Unload("vellix2", true);
}

TEST_F(TimeControlOverlayTest, WhatIsNoMoveMovesNothing) {
    overlay_->show();
    ExecutedLines lines;
    // Without the draw tool, and with the feature off.
    Highlight(3, 6);
    DragRangeTo(5, 8);
    EXPECT_FALSE(overlay_->HasMoveOffset());
    Release();
    overlay_->SetDrawContextActive(true);
    Settings::timeControlRangeMoveEnabled = false;
    DragRangeTo(6, 9);
    EXPECT_EQ(overlay_->GetMoveOffset(), 0);
    Release();
    Settings::timeControlRangeMoveEnabled = true;
    EXPECT_THAT(lines.Lines(), IsEmpty());

    // A resized range keeps the offset that it had.
    overlay_->SetDrawContextActive(true);
    DragRangeTo(7, 10);
    EXPECT_EQ(overlay_->GetMoveOffset(), 1);
    Highlight(7, 14);
    overlay_->UpdateMoveOffset();
    EXPECT_EQ(overlay_->GetMoveOffset(), 1);

    // A range that vanishes, and an overlay that is hidden, forget the drag.
    Run("timeControl -e -rangeVisible 0 $gPlayBackSlider");
    overlay_->UpdateMoveOffset();
    EXPECT_FALSE(overlay_->HasMoveOffset());
    EXPECT_EQ(overlay_->GetRangeForMoveOffset().length(), 0U);
    Release();
    Highlight(3, 6);
    overlay_->SetDrawContextActive(true);
    DragRangeTo(4, 7);
    overlay_->hide();
    EXPECT_FALSE(overlay_->HasMoveOffset());
    overlay_->show();
    Release();
    EXPECT_THAT(lines.Lines(), IsEmpty());

    // A press beside any range drags the time only.
    Run("timeControl -e -rangeVisible 0 $gPlayBackSlider");
    Press();
    Move();
    EXPECT_FALSE(overlay_->HasMoveOffset());
}

TEST_F(TimeControlOverlayTest, AMoveForwardOntoAnotherFrameIsBlack) {
    overlay_->show();
    Highlight(1, 3);
    overlay_->SetDrawContextActive(true);
    DragRangeTo(4, 6);
    overlay_->SetFrameTimes({5, 5, 6});
    QImage image = Painted();
    EXPECT_EQ(image.pixel(450, 27), qRgb(0, 0, 0));
    EXPECT_NE(image.pixel(550, 27), qRgb(0, 0, 0));
    overlay_->SetDrawContextActive(true);
    DragRangeTo(2, 4);
    EXPECT_EQ(overlay_->GetMoveOffset(), -2);
    EXPECT_NE(Painted().pixel(450, 27), qRgb(0, 0, 0)) << "backward it is not shown";
}

TEST_F(TimeControlOverlayTest, ItOutlivesASliderThatGoesFirst) {
    overlay_->show();
    overlay_->SetFrameTimes({1});
    slider_.reset();
    EXPECT_EQ(overlay_->parentWidget(), nullptr);
    overlay_->SetShown(true);
    EXPECT_FALSE(overlay_->IsShown()) << "it is no window";
}

} // namespace vellix
