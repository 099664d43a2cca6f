#pragma once

#include <QWidget>

#include <string>

namespace lightbox {

class Host;
class Playback;
class TimeSlider;

/// The time area at the bottom of the main window: the time slider with the current time and the playback
/// controls, and below it the range slider with the ends of the ranges, the frame rate and the loop. While it
/// exists, playback works, and the global MEL variable gPlayBackSlider holds the slider's name
/// ("timeControl1", also its objectName).
class TimeSliderBar : public QWidget {
    Q_OBJECT

public:
    explicit TimeSliderBar(Host& host, QWidget* parent = nullptr);
    ~TimeSliderBar() override;

    /// The widget under the plug-in's overlay.
    TimeSlider& Slider() const { return *slider_; }

private:
    QWidget* MakeUpperRow();
    QWidget* MakeLowerRow();
    void NameSlider(const std::string& name);

    Host& host_;
    Playback* playback_;
    TimeSlider* slider_ = nullptr;
};

} // namespace lightbox
