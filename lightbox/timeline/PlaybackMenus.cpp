#include "timeline/PlaybackMenus.h"

#include "mel/Interpreter.h"
#include "scene/Host.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"
#include "text/Quoted.h"
#include "timeline/TransportButton.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

namespace lightbox {

namespace {

using Sign = TransportButton::Sign;

struct LoopRow {
    Sign sign;
    const char* name;
    const char* tip;
};

/// In the order of Timeline::Loop.
constexpr LoopRow LOOPS[] = {
    {Sign::LoopOnce, "once", QT_TRANSLATE_NOOP("PlaybackMenus", "Playback stops at the end")},
    {Sign::LoopContinuous, "continuous",
     QT_TRANSLATE_NOOP("PlaybackMenus", "Playback starts over at the end")},
    {Sign::LoopOscillate, "oscillate", QT_TRANSLATE_NOOP("PlaybackMenus", "Playback turns at the ends")}};

/// The time units in the menu; the others can only be set by command.
constexpr const char* UNITS[] = {"15fps", "film", "25fps", "ntsc", "show", "palf", "ntscf"};

QString RateText(MTime::Unit unit) {
    return QString::number(RateOf(unit).PerSecond(), 'g', 5) + " fps";
}

} // namespace

PlaybackMenus::PlaybackMenus(Host& host, QWidget* parent)
    : QWidget(parent)
    , host_(host)
    , events_(host.events())
    , loop_(new TransportButton(Sign::LoopContinuous, QString(), this))
    , rate_(new QToolButton(this))
    , menu_(new QMenu(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addWidget(loop_);
    row->addWidget(rate_);
    loop_->setObjectName("playbackLoop");
    rate_->setObjectName("frameRate");
    rate_->setAutoRaise(true);
    rate_->setFocusPolicy(Qt::NoFocus);
    rate_->setPopupMode(QToolButton::InstantPopup);
    rate_->setMenu(menu_);
    rate_->setToolTip(tr("Frame rate and playback speed"));
    rate_->setMinimumWidth(rate_->fontMetrics().horizontalAdvance("23.976 fps") + 26);
    connect(menu_, &QMenu::aboutToShow, this, &PlaybackMenus::FillMenu);
    connect(loop_, &TransportButton::clicked, this, &PlaybackMenus::NextLoop);
    for (const char* event : {"timeUnitChanged", "timeSliderChanged"}) {
        events_.Add(event, [this] { ShowState(); });
    }
    ShowState();
}

void PlaybackMenus::ShowState() {
    const LoopRow& loop = LOOPS[static_cast<int>(host_.time().PlaybackLoop())];
    loop_->SetSign(loop.sign);
    loop_->setToolTip(tr(loop.tip));
    rate_->setText(RateText(host_.time().Unit()));
}

void PlaybackMenus::NextLoop() {
    const int next = (static_cast<int>(host_.time().PlaybackLoop()) + 1) % 3;
    host_.interpreter().ExecuteReporting(std::string("playbackOptions -loop \"") + LOOPS[next].name + "\"");
}

void PlaybackMenus::FillMenu() {
    menu_->clear();
    menu_->addSection(tr("Frame rate"));
    for (const char* name : UNITS) {
        const MTime::Unit unit = UnitFromName(name);
        QAction* action = menu_->addAction(RateText(unit), this, [this, unit] {
            host_.interpreter().ExecuteReporting("currentUnit -time " + Quoted(UnitName(unit)));
        });
        action->setCheckable(true);
        action->setChecked(host_.time().Unit() == unit);
    }
    menu_->addSection(tr("Playback speed"));
    AddSpeed(tr("Play every frame, free"), 0.0, 0.0);
    AddSpeed(tr("Play every frame, at most real time"), 0.0, 1.0);
    AddSpeed(tr("Real time"), 1.0, host_.time().MaxPlaybackSpeed());
    AddSpeed(tr("Half speed"), 0.5, host_.time().MaxPlaybackSpeed());
    AddSpeed(tr("Double speed"), 2.0, host_.time().MaxPlaybackSpeed());
}

void PlaybackMenus::AddSpeed(const QString& label, double speed, double maxSpeed) {
    const Timeline& time = host_.time();
    QAction* action = menu_->addAction(label, this, [this, speed, maxSpeed] {
        host_.interpreter().ExecuteReporting("playbackOptions -playbackSpeed " + DecimalText(speed) +
                                             " -maxPlaybackSpeed " + DecimalText(maxSpeed));
    });
    action->setCheckable(true);
    action->setChecked(time.PlaybackSpeed() == speed && time.MaxPlaybackSpeed() == maxSpeed);
}

} // namespace lightbox
