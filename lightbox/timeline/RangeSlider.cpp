#include "timeline/RangeSlider.h"

#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"
#include "timeline/TimeScale.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

constexpr int RANGE_HEIGHT = 22;
constexpr double HANDLE_WIDTH = 9.0;
constexpr double MIN_BAR_WIDTH = 3.0 * HANDLE_WIDTH;

} // namespace

RangeSlider::RangeSlider(Host& host, QWidget* parent)
    : QWidget(parent)
    , host_(host)
    , events_(host.events()) {
    setObjectName("rangeControl1");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMouseTracking(true);
    setToolTip(tr("The playback range within the animation; double click for all of it"));
    QFont small = font();
    small.setPixelSize(11);
    setFont(small);
    for (const char* event : {"playbackRangeChanged", "timeUnitChanged"}) {
        events_.Add(event, [this] { update(); });
    }
}

QSize RangeSlider::sizeHint() const {
    return {300, RANGE_HEIGHT};
}

QSize RangeSlider::minimumSizeHint() const {
    return {80, RANGE_HEIGHT};
}

RangeSlider::Range RangeSlider::Playback() const {
    return {host_.time().MinTime(), host_.time().MaxTime()};
}

double RangeSlider::PixelsPerFrame() const {
    const Timeline& time = host_.time();
    return width() / (time.AnimationEnd() - time.AnimationStart() + 1.0);
}

QRectF RangeSlider::BarRect() const {
    const Timeline& time = host_.time();
    const double left = (time.MinTime() - time.AnimationStart()) * PixelsPerFrame();
    const double wanted = (time.MaxTime() - time.MinTime() + 1.0) * PixelsPerFrame();
    const double barWidth = std::min<double>(width(), std::max(wanted, MIN_BAR_WIDTH));
    return {std::min(left, width() - barWidth), 1.0, barWidth, height() - 2.0};
}

RangeSlider::Part RangeSlider::PartAt(double x) const {
    const QRectF bar = BarRect();
    if (x < bar.left() || x > bar.right()) {
        return Part::None;
    }
    return x < bar.left() + HANDLE_WIDTH    ? Part::Start
           : x > bar.right() - HANDLE_WIDTH ? Part::End
                                            : Part::Bar;
}

void RangeSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()), 3.0, 3.0);
    const QRectF bar = BarRect();
    const QColor button = palette().color(QPalette::Button);
    painter.setBrush(button.lightness() < 128 ? button.lighter(135) : button.darker(125));
    painter.drawRoundedRect(bar, 3.0, 3.0);
    QColor ink = palette().color(QPalette::ButtonText);
    ink.setAlpha(150);
    painter.setBrush(ink);
    painter.drawRoundedRect(QRectF(bar.left() + 3.0, bar.top() + 4.0, 3.0, bar.height() - 8.0), 1.0, 1.0);
    painter.drawRoundedRect(QRectF(bar.right() - 6.0, bar.top() + 4.0, 3.0, bar.height() - 8.0), 1.0, 1.0);
    painter.setPen(palette().color(QPalette::ButtonText));
    const QString first = FrameLabel(host_.time().MinTime());
    const QString last = FrameLabel(host_.time().MaxTime());
    const QRectF inner = bar.adjusted(HANDLE_WIDTH + 3.0, 0.0, -HANDLE_WIDTH - 3.0, 0.0);
    const int needed = fontMetrics().horizontalAdvance(first + last) + 12;
    if (inner.width() >= needed) {
        painter.drawText(inner, Qt::AlignVCenter | Qt::AlignLeft, first);
        painter.drawText(inner, Qt::AlignVCenter | Qt::AlignRight, last);
    }
}

void RangeSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    drag_ = PartAt(event->localPos().x());
    pressX_ = event->localPos().x();
    pressRange_ = Playback();
}

void RangeSlider::mouseMoveEvent(QMouseEvent* event) {
    const double x = event->localPos().x();
    if (drag_ == Part::None) {
        const Part part = PartAt(x);
        setCursor(part == Part::Bar    ? Qt::OpenHandCursor
                  : part == Part::None ? Qt::ArrowCursor
                                       : Qt::SizeHorCursor);
        return;
    }
    Timeline& time = host_.time();
    const double distance = std::round((x - pressX_) / PixelsPerFrame());
    const auto [first, last] = pressRange_;
    const double start = time.AnimationStart();
    const double end = time.AnimationEnd();
    if (drag_ == Part::Start) {
        time.SetPlaybackRange(std::clamp(first + distance, start, last), last);
    } else if (drag_ == Part::End) {
        time.SetPlaybackRange(first, std::clamp(last + distance, first, end));
    } else {
        const double moved = std::clamp(distance, start - first, end - last);
        time.SetPlaybackRange(first + moved, last + moved);
    }
}

void RangeSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (drag_ == Part::None || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    drag_ = Part::None;
    Record(pressRange_, Playback());
}

void RangeSlider::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const Timeline& time = host_.time();
    const Range all{time.AnimationStart(), time.AnimationEnd()};
    const Range now = Playback();
    if (now != all) {
        smaller_ = now;
        Record(now, all);
    } else if (smaller_.first >= all.first && smaller_.second <= all.second &&
               smaller_.first <= smaller_.second) {
        Record(now, smaller_);
    }
}

void RangeSlider::Record(const Range& before, const Range& after) {
    if (before == after) {
        return;
    }
    Timeline& time = host_.time();
    edit::Replace(host_, "playbackOptions", before, after,
                  [&time](const Range& range) { time.SetPlaybackRange(range.first, range.second); });
}

} // namespace lightbox
