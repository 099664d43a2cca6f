#pragma once

#include <QWidget>

#include <string>

namespace lightbox {

class Host;
class Playback;
class TimeSlider;

/// The time area at the bottom of the main window: the time slider with the current time and the playback
/// controls, and below it the range slider with the ends of the ranges, the frame rate and the loop. While it
/// exists, the global MEL variable gPlayBackSlider names its slider ("timeControl1", also the slider's
/// objectName), and playback runs.
class TimeSliderBar : public QWidget {
    Q_OBJECT

public:
    explicit TimeSliderBar(Host& host, QWidget* parent = nullptr);
    ~TimeSliderBar() override;

    /// The control that the plug-in lays its overlay on.
    TimeSlider& Slider() const { return *slider_; }
    Playback& GetPlayback() const { return *playback_; }

private:
    QWidget* MakeUpperRow();
    QWidget* MakeLowerRow();
    void NameSlider(const std::string& name);

    Host& host_;
    Playback* playback_;
    TimeSlider* slider_ = nullptr;
};

} // namespace lightbox
