#include "timeline/TimeSlider.h"

#include "app/LightboxHost.h"
#include "controls/Theme.h"
#include "mel/Interpreter.h"
#include "scene/EventBus.h"
#include "scene/Output.h"
#include "scene/Timeline.h"
#include "scene/UndoQueue.h"
#include "timeline/FrameField.h"
#include "timeline/Playback.h"
#include "timeline/RangeSlider.h"
#include "timeline/TimeSliderBar.h"
#include "timeline/TransportButton.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

using namespace lightbox;

namespace {

/// The time area alone, 1000 pixels wide for the slider's frames 1 to 99: ten pixels each, from x = 5.
class TimeSliderTest : public ::testing::Test {
protected:
    TimeSliderTest()
        : host_(Host::Options{false, prefs_.path().toStdString()}) {
        Theme::Apply(*qApp);
        host_.output().SetSink([this](Output::Kind kind, const std::string& text) {
            messages_.push_back(Output::Worded(kind, text));
        });
        bar_ = std::make_unique<TimeSliderBar>(host_);
        slider_ = &bar_->Slider();
        host_.time().SetPlaybackRange(1, 99);
        host_.undo().Flush();
        bar_->resize(1000 + bar_->width(), bar_->sizeHint().height());
        bar_->show();
        QApplication::processEvents();
        bar_->resize(bar_->width() + 1000 - slider_->width(), bar_->height());
        QApplication::processEvents();
        host_.events().AddCallback("timeChanged", [this] {
            seen_.push_back(host_.time().CurrentTime());
            ranges_.push_back(host_.time().SliderRange());
        });
    }

    /// The middle of a frame's place.
    static QPoint At(double frame) { return {static_cast<int>(5 + (frame - 1) * 10 + 5), 20}; }
    void Press(double frame, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(slider_, button, keys, At(frame));
    }
    void Move(double frame, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseMove, At(frame), Qt::NoButton, button, Qt::NoModifier);
        QApplication::sendEvent(slider_, &event);
    }
    void Release(double frame, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(slider_, button, {}, At(frame));
    }
    void Drag(double from, double to, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers keys = {}) {
        Press(from, button, keys);
        const int frames = static_cast<int>(std::abs(to - from));
        for (int i = 0; i < frames; ++i) {
            Move(from + (to > from ? i : -i), button);
        }
        Move(to, button);
        Release(to, button);
    }
    using Range = std::pair<double, double>;
    Range Highlight() { return host_.time().IsRangeHighlighted() ? host_.time().SliderRange() : Range{0, 0}; }
    mel::Value Run(const std::string& text) { return host_.interpreter().Execute(text); }
    TransportButton* Button(const char* name) { return bar_->findChild<TransportButton*>(name); }
    bool WaitFor(const std::function<bool()>& condition, int milliseconds = 5000) {
        QElapsedTimer timer;
        timer.start();
        while (!condition() && timer.elapsed() < milliseconds) {
            QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
        }
        return condition();
    }

    QTemporaryDir prefs_;
    LightboxHost host_;
    std::unique_ptr<TimeSliderBar> bar_;
    TimeSlider* slider_ = nullptr;
    std::vector<double> seen_;
    std::vector<Range> ranges_;
    std::vector<std::string> messages_;
};

} // namespace

TEST_F(TimeSliderTest, FramesLieWhereMarksAreLaidOverThem) {
    ASSERT_EQ(slider_->width(), 1000);
    EXPECT_EQ(slider_->pos(), QPoint(0, 0)) << "what takes the slider's place for its own has to fit";
    const TimeScale scale = slider_->Scale();
    for (int frame = 1; frame <= 99; ++frame) {
        const double mark = std::trunc((frame - 1) * (1000 * 0.99 / 99) + 1000 * 0.005 + 0.5);
        EXPECT_NEAR(scale.X(frame), mark, 0.5);
        EXPECT_EQ(scale.FrameAt(scale.X(frame) + 0.01), frame);
    }
    // The ticks, as they are painted: a bright column at every frame, below the numbers.
    host_.time().SetCurrentTime(99);
    const QImage image = slider_->grab().toImage();
    const double ratio = image.devicePixelRatio();
    const auto brightness = [&](double x) {
        return qGray(image.pixel(static_cast<int>((x + 0.5) * ratio), static_cast<int>(33 * ratio)));
    };
    for (int frame = 2; frame <= 98; ++frame) {
        EXPECT_GT(brightness(5 + (frame - 1) * 10), brightness(5 + (frame - 1) * 10 + 4) + 20) << frame;
    }
}

TEST_F(TimeSliderTest, DraggingScrubsAndIsUndoneInOneStep) {
    Drag(10, 13);
    EXPECT_EQ(seen_, (std::vector<double>{10, 11, 12, 13}));
    Run("undo");
    EXPECT_EQ(host_.time().CurrentTime(), 1);
    Run("redo");
    EXPECT_EQ(host_.time().CurrentTime(), 13);
    Press(13);
    Move(300);
    EXPECT_EQ(host_.time().CurrentTime(), 99) << "not past the end";
    Release(-50);
    EXPECT_EQ(host_.time().CurrentTime(), 1);
}

TEST_F(TimeSliderTest, HighlightingMovingAndResizingARange) {
    host_.time().SetCurrentTime(20);
    Drag(10, 14, Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(Highlight(), Range(10, 15));
    EXPECT_EQ(host_.time().CurrentTime(), 20);
    EXPECT_EQ(Run("timeControl -q -rangeVisible $gPlayBackSlider").AsInt(), 1);

    seen_.clear();
    ranges_.clear();
    Drag(12, 15);
    EXPECT_EQ(Highlight(), Range(13, 18));
    EXPECT_EQ(seen_, (std::vector<double>{21, 22, 23})) << "the time follows, step by step";
    EXPECT_EQ(ranges_, (std::vector<Range>{{11, 16}, {12, 17}, {13, 18}})) << "the range is there first";

    Press(15);
    Move(18);
    Move(15);
    Release(15);
    EXPECT_EQ(Highlight(), Range(13, 18)) << "there and back";
    EXPECT_EQ(host_.time().CurrentTime(), 23);
    Drag(15, 200);
    EXPECT_EQ(Highlight(), Range(95, 100)) << "not out of sight";

    Run("timeControl -e -rangeArray 30 40 $gPlayBackSlider");
    // The ends are held by their edges: frame 30 begins at x = 295, frame 40 at x = 395.
    QTest::mousePress(slider_, Qt::LeftButton, {}, {296, 20});
    Move(25);
    Release(25);
    EXPECT_EQ(Highlight(), Range(25, 40));
    QTest::mousePress(slider_, Qt::LeftButton, {}, {394, 20});
    Move(20);
    EXPECT_EQ(Highlight(), Range(25, 26)) << "an end does not pass the other";
    Release(44);
    EXPECT_EQ(Highlight(), Range(25, 45));

    Press(70);
    EXPECT_FALSE(host_.time().IsRangeHighlighted()) << "a press elsewhere ends it";
    EXPECT_EQ(host_.time().CurrentTime(), 70);
    Release(70);
    QTest::mouseDClick(slider_, Qt::LeftButton, {}, At(50));
    EXPECT_EQ(Highlight(), Range(1, 100));
}

TEST_F(TimeSliderTest, MovingARangeMovesTheKeysInIt) {
    Run("createNode transform -n a; setKeyframe -t 12 -t 20 -v 3 a.tx; select a; currentTime 12");
    Run("timeControl -e -rangeArray 10 15 $gPlayBackSlider");
    Drag(12, 15);
    EXPECT_EQ(Run("keyframe -q -tc a.tx").Shown(), "15 20");
    Run("undo");
    EXPECT_EQ(Run("keyframe -q -tc a.tx").Shown(), "12 20") << "keys first";
    EXPECT_EQ(host_.time().CurrentTime(), 15);
    Run("undo");
    EXPECT_EQ(host_.time().CurrentTime(), 12);
}

TEST_F(TimeSliderTest, TheMiddleButtonLeavesTheSceneAlone) {
    Run("createNode transform -n a; setKeyframe -t 1 -v 0 a.tx; setKeyframe -t 11 -v 10 a.tx; currentTime "
        "11");
    seen_.clear();
    Drag(30, 40, Qt::MiddleButton);
    EXPECT_EQ(host_.time().CurrentTime(), 40);
    EXPECT_TRUE(seen_.empty());
    EXPECT_EQ(Run("getAttr a.tx").AsFloat(), 10);
    Drag(6, 6);
    EXPECT_EQ(seen_, std::vector<double>{6});
    EXPECT_EQ(Run("getAttr a.tx").AsFloat(), 5);
}

TEST_F(TimeSliderTest, EventsThatAreNotOursPassOn) {
    struct Parent : QWidget {
        void mousePressEvent(QMouseEvent* event) override { buttons.push_back(event->button()); }
        std::vector<Qt::MouseButton> buttons;
    };
    Parent parent;
    parent.resize(1000, 40);
    auto* slider = new TimeSlider(host_, &parent);
    slider->resize(1000, 38);
    parent.show();
    QTest::mousePress(slider, Qt::RightButton, {}, At(10));
    EXPECT_EQ(parent.buttons, std::vector<Qt::MouseButton>{Qt::RightButton});
    EXPECT_TRUE(seen_.empty());
    // What lies over the slider and ignores the mouse, as marks do, does not keep it from working.
    struct Overlay : QWidget {
        using QWidget::QWidget;
        void mousePressEvent(QMouseEvent* event) override { event->ignore(); }
        void mouseMoveEvent(QMouseEvent* event) override { event->ignore(); }
        void mouseReleaseEvent(QMouseEvent* event) override { event->ignore(); }
    };
    auto* overlay = new Overlay(slider);
    overlay->setGeometry(slider->geometry());
    overlay->show();
    QTest::mousePress(overlay, Qt::LeftButton, {}, At(10));
    QTest::mouseMove(overlay, At(12));
    QTest::mouseRelease(overlay, Qt::LeftButton, {}, At(12));
    EXPECT_EQ(host_.time().CurrentTime(), 12);
}

TEST_F(TimeSliderTest, FieldsAndButtons) {
    auto* current = bar_->findChild<FrameField*>("currentTimeField");
    const auto type = [](FrameField* field, const char* text) {
        field->selectAll();
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Return);
    };
    type(current, "1sec");
    EXPECT_EQ(host_.time().CurrentTime(), 24);
    EXPECT_EQ(current->text(), "24");
    type(current, "soon");
    EXPECT_EQ(current->text(), "24");
    EXPECT_EQ(messages_.size(), 1U);
    type(bar_->findChild<FrameField*>("playbackEndField"), "48");
    EXPECT_EQ(host_.time().MaxTime(), 48);
    Run("undo");
    EXPECT_EQ(host_.time().MaxTime(), 99);

    Run("createNode transform -n a; setKeyframe -t 10 -t 30 a.tx; select a; currentTime 24");
    const std::pair<const char*, double> rows[] = {
        {"stepForwardFrame", 25}, {"stepBackFrame", 24}, {"stepForwardKey", 30},
        {"stepForwardKey", 10},   {"stepBackKey", 30},   {"goToEnd", 99},
        {"stepForwardFrame", 1},  {"stepBackFrame", 99}, {"goToStart", 1}};
    for (const auto& [name, frame] : rows) {
        QTest::mouseClick(Button(name), Qt::LeftButton);
        EXPECT_EQ(host_.time().CurrentTime(), frame) << name;
    }
    QTest::mouseClick(Button("playbackLoop"), Qt::LeftButton);
    EXPECT_EQ(Run("playbackOptions -q -loop").Shown(), "oscillate");
}

TEST_F(TimeSliderTest, RangeSlider) {
    host_.time().SetAnimationRange(1, 200);
    host_.time().SetPlaybackRange(51, 100);
    auto* range = bar_->findChild<RangeSlider*>("rangeControl1");
    const double perFrame = range->width() / 200.0;
    const auto drag = [&](double from, double to) {
        const auto x = [&](double frame) { return QPoint(static_cast<int>((frame - 1) * perFrame), 10); };
        QTest::mousePress(range, Qt::LeftButton, {}, x(from));
        QMouseEvent move(QEvent::MouseMove, x(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(range, &move);
        QTest::mouseRelease(range, Qt::LeftButton, {}, x(to));
    };
    const auto playback = [&] { return Range(host_.time().MinTime(), host_.time().MaxTime()); };
    host_.undo().Flush();
    drag(75, 95);
    EXPECT_EQ(playback(), Range(71, 120));
    drag(75, 400);
    EXPECT_EQ(playback(), Range(151, 200)) << "within the animation";
    Run("undo");
    EXPECT_EQ(playback(), Range(71, 120));
    drag(71.5, 61.5);
    EXPECT_EQ(playback(), Range(61, 120));
    drag(120.5, 20);
    EXPECT_EQ(playback(), Range(61, 61));
    Run("undo");
    QTest::mouseDClick(range, Qt::LeftButton, {}, {range->width() / 2, 10});
    EXPECT_EQ(playback(), Range(1, 200));
    QTest::mouseDClick(range, Qt::LeftButton, {}, {range->width() / 2, 10});
    EXPECT_EQ(playback(), Range(61, 120));
}

TEST_F(TimeSliderTest, WhereStepsOfPlaybackLead) {
    Timeline& time = host_.time();
    time.SetPlaybackRange(1, 10);
    using Loop = Timeline::Loop;
    const struct {
        Loop loop;
        double by;
        double from;
        int direction;
        long long steps;
        double frame;
        int turned;
    } rows[] = {
        {Loop::Continuous, 1, 9, 1, 1, 10, 1},   {Loop::Continuous, 1, 10, 1, 1, 1, 1},
        {Loop::Continuous, 1, 1, -1, 1, 10, -1}, {Loop::Continuous, 1, 5, 1, 1000000007, 2, 1},
        {Loop::Continuous, 4, 9, 1, 1, 1, 1},    {Loop::Continuous, 0.5, 10, 1, 1, 1, 1},
        {Loop::Once, 1, 9, 1, 5, 10, 0},         {Loop::Once, 1, 3, -1, 9, 1, 0},
        {Loop::Oscillate, 1, 9, 1, 2, 9, -1},    {Loop::Oscillate, 1, 2, -1, 2, 2, 1},
        {Loop::Oscillate, 1, 9, 1, 20, 9, -1},
    };
    for (const auto& row : rows) {
        time.SetPlaybackLoop(row.loop);
        time.SetPlaybackBy(row.by);
        const Playback::Position at = Playback::Advance(time, row.from, row.direction, row.steps);
        SCOPED_TRACE(&row - rows);
        EXPECT_DOUBLE_EQ(at.frame, row.frame);
        EXPECT_EQ(at.direction, row.turned);
    }
}

TEST_F(TimeSliderTest, PlaybackRunsInTheEventLoop) {
    Timeline& time = host_.time();
    std::vector<bool> states;
    host_.events().AddConditionCallback("playingBack", [&](bool playing) { states.push_back(playing); });
    // Every frame, and once: each frame of the range is seen, then it ends by itself.
    Run("playbackOptions -min 1 -max 20 -loop once -ps 0; play");
    ASSERT_TRUE(WaitFor([&] { return !time.IsPlaying(); }));
    std::vector<double> all;
    for (int frame = 2; frame <= 20; ++frame) {
        all.push_back(frame);
    }
    EXPECT_EQ(seen_, all);
    EXPECT_EQ(states, (std::vector<bool>{true, false}));
    // Again from its end: it begins anew.
    Run("play");
    EXPECT_EQ(time.CurrentTime(), 1);
    QTest::keyClick(bar_.get(), Qt::Key_Escape);
    EXPECT_FALSE(time.IsPlaying()) << "Escape stops it";
}

TEST_F(TimeSliderTest, RealTimeLeavesFramesOut) {
    Timeline& time = host_.time();
    // Showing a frame takes three times as long as it may.
    host_.events().AddCallback("timeChanged", [] { QTest::qSleep(3 * 1000 / 24); });
    seen_.clear();
    Run("playbackOptions -min 1 -max 48 -loop once -ps 1; currentTime 1; play");
    seen_.clear();
    ASSERT_TRUE(WaitFor([&] { return !time.IsPlaying(); }, 20000));
    EXPECT_EQ(seen_.back(), 48);
    EXPECT_LT(seen_.size(), 30U) << "frames were left out";
    EXPECT_TRUE(std::is_sorted(seen_.begin(), seen_.end()));
}

TEST_F(TimeSliderTest, TheSliderIsKnownToScripts) {
    EXPECT_EQ(Run("string $name = $gPlayBackSlider").Shown(), slider_->objectName().toStdString());
    Run("timeControl -e -rangeArray 3 8 $gPlayBackSlider");
    EXPECT_EQ(Run("timeControl -q -range $gPlayBackSlider").Shown(), "\"3:8\"");
    const QImage with = slider_->grab().toImage();
    Run("timeControl -e -rangeVisible 0 $gPlayBackSlider");
    EXPECT_TRUE(with != slider_->grab().toImage());
}
