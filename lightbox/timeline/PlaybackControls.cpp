#include "timeline/PlaybackControls.h"

#include "scene/AnimationEdit.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"

#include <QHBoxLayout>
#include <QShortcut>

#include <algorithm>
#include <cmath>

namespace lightbox {

using Sign = TransportButton::Sign;

PlaybackControls::PlaybackControls(Host& host, QWidget* parent)
    : QWidget(parent)
    , host_(host)
    , events_(host.events()) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    const auto connectTo = [this](TransportButton* button, auto action) {
        connect(button, &TransportButton::clicked, this, action);
    };
    connectTo(
        AddButton(Sign::ToStart, tr("Go to the start of the playback range"), "goToStart", "Alt+Shift+V"),
        [this] { GoTo(host_.time().MinTime()); });
    connectTo(AddButton(Sign::StepBack, tr("Step back one frame"), "stepBackFrame", "Alt+,"),
              [this] { Step(-1); });
    connectTo(AddButton(Sign::KeyBack, tr("Step back one key"), "stepBackKey", ","), [this] { StepKey(-1); });
    playBack_ = AddButton(Sign::PlayBack, tr("Play backwards"), "playBackwards");
    connectTo(playBack_, [this] { Play(-1); });
    playForward_ = AddButton(Sign::PlayForward, tr("Play forwards"), "playForwards", "Alt+V");
    connectTo(playForward_, [this] { Play(1); });
    connectTo(AddButton(Sign::KeyForward, tr("Step forward one key"), "stepForwardKey", "."),
              [this] { StepKey(1); });
    connectTo(AddButton(Sign::StepForward, tr("Step forward one frame"), "stepForwardFrame", "Alt+."),
              [this] { Step(1); });
    connectTo(AddButton(Sign::ToEnd, tr("Go to the end of the playback range"), "goToEnd"),
              [this] { GoTo(host_.time().MaxTime()); });
    events_.AddCondition("playingBack", [this](bool) { ShowState(); });
}

TransportButton* PlaybackControls::AddButton(Sign sign, const QString& tip, const char* name,
                                             const char* key) {
    const QKeySequence keys(key);
    const QString shown = keys.toString(QKeySequence::NativeText);
    auto* button = new TransportButton(sign, keys.isEmpty() ? tip : tip + " (" + shown + ")", this);
    button->setObjectName(name);
    layout()->addWidget(button);
    if (!keys.isEmpty()) {
        auto* const shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::ApplicationShortcut);
        connect(shortcut, &QShortcut::activated, button, &TransportButton::click);
    }
    return button;
}

void PlaybackControls::ShowState() {
    const int direction = host_.time().PlayingDirection();
    playBack_->SetSign(direction < 0 ? Sign::Stop : Sign::PlayBack);
    playForward_->SetSign(direction > 0 ? Sign::Stop : Sign::PlayForward);
}

void PlaybackControls::GoTo(double frame) {
    host_.time().SetPlaying(0);
    if (frame != host_.time().CurrentTime()) {
        edit::SetCurrentTime(host_, frame);
    }
}

void PlaybackControls::Step(int direction) {
    const Timeline& time = host_.time();
    const double by = std::max(1.0, time.PlaybackBy());
    const double next =
        direction > 0 ? std::floor(time.CurrentTime()) + by : std::ceil(time.CurrentTime()) - by;
    if (next > time.MaxTime()) {
        GoTo(time.MinTime());
    } else {
        GoTo(next < time.MinTime() ? time.MaxTime() : next);
    }
}

void PlaybackControls::StepKey(int direction) {
    const Timeline& time = host_.time();
    std::vector<double> times = animation::KeyTimesOf(host_.scene().selection().Get());
    times.erase(std::remove_if(times.begin(), times.end(),
                               [&](double key) { return key < time.MinTime() || key > time.MaxTime(); }),
                times.end());
    if (times.empty()) {
        return;
    }
    const double now = time.CurrentTime();
    if (direction > 0) {
        const auto next = std::upper_bound(times.begin(), times.end(), now);
        GoTo(next == times.end() ? times.front() : *next);
    } else {
        const auto here = std::lower_bound(times.begin(), times.end(), now);
        GoTo(here == times.begin() ? times.back() : *(here - 1));
    }
}

void PlaybackControls::Play(int direction) {
    Timeline& time = host_.time();
    const bool stops = time.PlayingDirection() == direction;
    // Stop first on a change of direction, so that observers of the condition see one playback end and
    // another start.
    time.SetPlaying(0);
    if (!stops) {
        time.SetPlaying(direction);
    }
}

} // namespace lightbox
