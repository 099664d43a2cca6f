#include "timeline/TimeSliderBar.h"

#include "mel/Interpreter.h"
#include "scene/Host.h"
#include "text/Quoted.h"
#include "timeline/FrameField.h"
#include "timeline/Playback.h"
#include "timeline/PlaybackControls.h"
#include "timeline/PlaybackMenus.h"
#include "timeline/RangeSlider.h"
#include "timeline/TimeSlider.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace lightbox {

namespace {

QHBoxLayout* RowOf(QWidget* row) {
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    return layout;
}

} // namespace

TimeSliderBar::TimeSliderBar(Host& host, QWidget* parent)
    : QWidget(parent)
    , host_(host)
    , playback_(new Playback(host.time(), host.events(), this)) {
    setObjectName("timeSliderBar");
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 2, 4, 2);
    rows->setSpacing(3);
    rows->addWidget(MakeUpperRow());
    rows->addWidget(MakeLowerRow());
    NameSlider(slider_->objectName().toStdString());
}

TimeSliderBar::~TimeSliderBar() {
    NameSlider("");
}

void TimeSliderBar::NameSlider(const std::string& name) {
    host_.interpreter().ExecuteReporting("global string $gPlayBackSlider; $gPlayBackSlider = " +
                                         Quoted(name));
}

QWidget* TimeSliderBar::MakeUpperRow() {
    auto* row = new QWidget(this);
    QHBoxLayout* layout = RowOf(row);
    // An overlay may use the position of the slider in its parent as its own. In a parent of its own the
    // slider starts at (0, 0).
    auto* place = new QWidget(row);
    QHBoxLayout* only = RowOf(place);
    slider_ = new TimeSlider(host_, place);
    only->addWidget(slider_);
    layout->addWidget(place, 1);
    layout->addWidget(new FrameField(host_, FrameField::Role::CurrentTime, row));
    layout->addWidget(new PlaybackControls(host_, row));
    return row;
}

QWidget* TimeSliderBar::MakeLowerRow() {
    auto* row = new QWidget(this);
    QHBoxLayout* layout = RowOf(row);
    layout->addWidget(new FrameField(host_, FrameField::Role::AnimationStart, row));
    layout->addWidget(new FrameField(host_, FrameField::Role::PlaybackStart, row));
    layout->addWidget(new RangeSlider(host_, row), 1);
    layout->addWidget(new FrameField(host_, FrameField::Role::PlaybackEnd, row));
    layout->addWidget(new FrameField(host_, FrameField::Role::AnimationEnd, row));
    layout->addWidget(new PlaybackMenus(host_, row));
    return row;
}

} // namespace lightbox
