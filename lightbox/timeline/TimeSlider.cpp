#include "timeline/TimeSlider.h"

#include "mel/Interpreter.h"
#include "scene/AnimationEdit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

constexpr int SLIDER_HEIGHT = 38;
constexpr int LABEL_PIXELS = 11;
/// The largest distance of a press, in view pixels, that grips an end of the highlighted range.
constexpr double GRIP = 5.0;

const QColor HIGHLIGHT(178, 58, 48, 120);
const QColor HIGHLIGHT_EDGE(226, 104, 88);
const QColor ARROW(244, 208, 96);
const QColor KEY(232, 72, 60);
const QColor NOW(240, 150, 48);

/// The widget's text colour with an alpha of 0 to 255.
QColor Ink(const QWidget& widget, int alpha) {
    QColor ink = widget.palette().color(QPalette::Text);
    ink.setAlpha(alpha);
    return ink;
}

/// Paints a triangle that points left (-1) or right (1), with its tip at x.
void PaintArrow(QPainter& painter, double x, double y, int direction) {
    const double length = 6.0 * direction;
    const QPointF points[] = {{x, y}, {x - length, y - 4.5}, {x - length, y + 4.5}};
    painter.drawPolygon(points, 3);
}

} // namespace

TimeSlider::TimeSlider(Host& host, QWidget* parent)
    : QWidget(parent)
    , host_(host)
    , events_(host.events()) {
    setObjectName("timeControl1");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMouseTracking(true);
    setToolTip(tr("Drag to change the time; Shift and drag to highlight a range; middle button to move the "
                  "time without the scene"));
    QFont small = font();
    small.setPixelSize(LABEL_PIXELS);
    setFont(small);
    Subscribe();
}

void TimeSlider::Subscribe() {
    for (const char* event : {"timeChanged", "playbackRangeChanged", "timeUnitChanged"}) {
        events_.Add(event, [this] { update(); });
    }
    for (const char* event : {"timeSliderChanged", "SelectionChanged", "Undo", "Redo", "SceneOpened",
                              "NewSceneOpened", "SceneImported"}) {
        events_.Add(event, [this] {
            keyTimes_.reset();
            update();
        });
    }
}

TimeScale TimeSlider::Scale() const {
    const Timeline& time = host_.time();
    return {time.MinTime(), time.MaxTime(), static_cast<double>(width())};
}

QSize TimeSlider::sizeHint() const {
    return {400, SLIDER_HEIGHT};
}

QSize TimeSlider::minimumSizeHint() const {
    return {120, SLIDER_HEIGHT};
}

const std::vector<double>& TimeSlider::KeyTimes() {
    if (!keyTimes_) {
        keyTimes_ = animation::KeyTimesOf(host_.scene().selection().Get());
    }
    return *keyTimes_;
}

void TimeSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    const TimeScale scale = Scale();
    PaintHighlight(painter, scale);
    PaintTicks(painter, scale);
    PaintKeys(painter, scale);
    PaintCurrentTime(painter, scale);
}

void TimeSlider::PaintTicks(QPainter& painter, const TimeScale& scale) const {
    const double widest = std::max(fontMetrics().horizontalAdvance(FrameLabel(scale.Start())),
                                   fontMetrics().horizontalAdvance(FrameLabel(std::floor(scale.End()))));
    const double labelStep = scale.LabelStep(widest + 12.0);
    const double tickStep = scale.TickStep(labelStep);
    // The ticks start below the numbers and reach into the lower third, where overlays paint their marks.
    const double top = height() * 0.5;
    const auto isLabelled = [&](double frame) {
        const double steps = frame / labelStep;
        return std::abs(steps - std::round(steps)) * labelStep < 1e-6;
    };
    const double first = std::ceil(scale.Start() / tickStep - 1e-9) * tickStep;
    const int ticks = static_cast<int>(std::floor((scale.End() - first) / tickStep + 1e-9)) + 1;
    double free = 0.0;
    for (int tick = 0; tick < ticks; ++tick) {
        const double frame = first + tick * tickStep;
        const double x = scale.X(frame);
        if (isLabelled(frame)) {
            painter.fillRect(QRectF(std::floor(x + 0.5), top - 4.0, 1.0, height() - top + 4.0),
                             Ink(*this, 150));
            painter.setPen(Ink(*this, 215));
            const QString label = FrameLabel(frame);
            const double labelWidth = fontMetrics().horizontalAdvance(label);
            // At the right end, put the number to the left of its tick, or leave it out, so that no number is
            // clipped.
            const double left = x + 3.0 + labelWidth > width() ? x - 3.0 - labelWidth : x + 3.0;
            if (left > free) {
                painter.drawText(QPointF(left, top - 5.0), label);
                free = left + labelWidth;
            }
        } else {
            painter.fillRect(QRectF(std::floor(x + 0.5), top + 3.0, 1.0, height() - top - 3.0),
                             Ink(*this, 70));
        }
    }
}

void TimeSlider::PaintHighlight(QPainter& painter, const TimeScale& scale) const {
    const Timeline& time = host_.time();
    if (!time.IsRangeHighlighted()) {
        return;
    }
    const auto range = time.SliderRange();
    const double left = std::max(scale.X(range.first), -1.0);
    const double right = std::min(scale.X(range.second), width() + 1.0);
    if (right <= left) {
        return;
    }
    painter.fillRect(QRectF(left, 0.0, right - left, height()), HIGHLIGHT);
    painter.fillRect(QRectF(left, 0.0, 1.0, height()), HIGHLIGHT_EDGE);
    painter.fillRect(QRectF(right - 1.0, 0.0, 1.0, height()), HIGHLIGHT_EDGE);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ARROW);
    const double y = height() * 0.56;
    if (right - left > 20.0) {
        PaintArrow(painter, left + 2.0, y, -1);
        PaintArrow(painter, right - 2.0, y, 1);
    }
    if (right - left > 48.0) {
        const double middle = 0.5 * (left + right);
        PaintArrow(painter, middle - 8.0, y, -1);
        PaintArrow(painter, middle + 8.0, y, 1);
    }
    painter.restore();
}

void TimeSlider::PaintKeys(QPainter& painter, const TimeScale& scale) {
    const double keyWidth = std::clamp(std::floor(scale.PixelsPerFrame() * 0.25), 1.0, 3.0);
    const double top = height() * 0.42;
    for (const double frame : KeyTimes()) {
        if (frame >= scale.Start() && frame <= scale.End()) {
            painter.fillRect(QRectF(std::floor(scale.X(frame) + 0.5), top, keyWidth, height() - top), KEY);
        }
    }
}

void TimeSlider::PaintCurrentTime(QPainter& painter, const TimeScale& scale) const {
    const double frame = host_.time().CurrentTime();
    if (frame < scale.Start() || frame >= scale.End() + 1.0) {
        return;
    }
    const double x = std::floor(scale.X(frame) + 0.5);
    QColor place = NOW;
    place.setAlpha(70);
    painter.fillRect(QRectF(x, 0.0, std::max(2.0, scale.PixelsPerFrame()), height()), place);
    painter.fillRect(QRectF(x, 0.0, 2.0, height()), NOW);
    const QString label = FrameLabel(frame);
    const double labelWidth = fontMetrics().horizontalAdvance(label) + 8.0;
    // At the right end, put the label to the left of its line.
    const double left = x + 2.0 + labelWidth > width() ? x - labelWidth : x + 2.0;
    const QRectF flag(left, 0.0, labelWidth, LABEL_PIXELS + 5.0);
    painter.fillRect(flag, NOW);
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(QColor(24, 24, 24));
    painter.drawText(flag, Qt::AlignCenter, label);
    painter.setFont(font());
}

TimeSlider::Drag TimeSlider::DragFor(const QMouseEvent& event) const {
    if (event.button() == Qt::MiddleButton) {
        return Drag::TimeOnly;
    }
    if (event.modifiers() & Qt::ShiftModifier) {
        return Drag::Highlight;
    }
    const Timeline& time = host_.time();
    if (!time.IsRangeHighlighted()) {
        return Drag::Scrub;
    }
    const TimeScale scale = Scale();
    const auto range = time.SliderRange();
    const double left = scale.X(range.first);
    const double right = scale.X(range.second);
    const double x = event.localPos().x();
    // In a narrow range, leave the middle half for moving it.
    const double grip = std::min(GRIP, (right - left) / 4.0);
    if (x >= left - GRIP && x < left + grip) {
        return Drag::RangeStart;
    }
    if (x > right - grip && x <= right + GRIP) {
        return Drag::RangeEnd;
    }
    return x >= left && x <= right ? Drag::MoveRange : Drag::Scrub;
}

void TimeSlider::mousePressEvent(QMouseEvent* event) {
    const bool isOurs = event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton;
    if (!isOurs || drag_ != Drag::None) {
        event->ignore();
        return;
    }
    Timeline& time = host_.time();
    time.SetPlaying(0);
    drag_ = DragFor(*event);
    button_ = event->button();
    pressFrame_ = Scale().FrameAt(event->localPos().x());
    pressTime_ = time.CurrentTime();
    pressRange_ = time.SliderRange();
    change_.emplace(host_);
    if (drag_ == Drag::Scrub) {
        time.ClearHighlight();
    }
    if (drag_ == Drag::Highlight) {
        pressFrame_ = Scale().FrameWithin(event->localPos().x());
    }
    DragTo(event->localPos().x());
}

void TimeSlider::mouseMoveEvent(QMouseEvent* event) {
    if (drag_ != Drag::None) {
        DragTo(event->localPos().x());
    } else {
        ShowCursor(event->localPos().x());
    }
}

void TimeSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (drag_ == Drag::None || event->button() != button_) {
        event->ignore();
        return;
    }
    DragTo(event->localPos().x());
    const double moved = host_.time().SliderRange().first - pressRange_.first;
    const bool movesKeys = drag_ == Drag::MoveRange && moved != 0.0;
    drag_ = Drag::None;
    change_.reset();
    if (movesKeys) {
        MoveKeys(moved);
    }
    ShowCursor(event->localPos().x());
}

void TimeSlider::mouseDoubleClickEvent(QMouseEvent* event) {
    // Treat other double clicks as presses, so that two quick Shift drags stay two drags.
    if (event->button() != Qt::LeftButton || event->modifiers() & Qt::ShiftModifier) {
        mousePressEvent(event);
        return;
    }
    const Timeline& time = host_.time();
    host_.time().HighlightRange(time.MinTime(), time.MaxTime() + 1.0);
}

void TimeSlider::DragTo(double x) {
    Timeline& time = host_.time();
    const double frame = Scale().FrameWithin(x);
    switch (drag_) {
    case Drag::Scrub:
        change_->MoveTo(frame);
        break;
    case Drag::TimeOnly:
        time.MoveWithoutScene(frame);
        break;
    case Drag::Highlight:
        time.HighlightRange(std::min(pressFrame_, frame), std::max(pressFrame_, frame) + 1.0);
        break;
    case Drag::None:
        break;
    default:
        DragRange(x);
    }
}

/// Sets the range before the time, so that observers of the time see the new range.
void TimeSlider::DragRange(double x) {
    Timeline& time = host_.time();
    const TimeScale scale = Scale();
    const double first = pressRange_.first;
    const double last = pressRange_.second;
    if (drag_ == Drag::RangeStart) {
        time.HighlightRange(std::min(scale.FrameWithin(x), last - 1.0), last);
        return;
    }
    if (drag_ == Drag::RangeEnd) {
        time.HighlightRange(first, std::max(scale.FrameWithin(x) + 1.0, first + 1.0));
        return;
    }
    // Keep the range within the slider. A range that already extends beyond it does not move further out.
    const double furthestBack = std::min(0.0, scale.Start() - first);
    const double furthestOn = std::max(0.0, scale.End() + 1.0 - last);
    const double distance = std::clamp(scale.FrameAt(x) - pressFrame_, furthestBack, furthestOn);
    time.HighlightRange(first + distance, last + distance);
    if (distance != 0.0 || time.CurrentTime() != pressTime_) {
        change_->MoveTo(pressTime_ + distance);
    }
}

void TimeSlider::MoveKeys(double distance) const {
    if (animation::KeyTimesOf(host_.scene().selection().Get()).empty()) {
        return;
    }
    host_.interpreter().ExecuteReporting(
        "keyframe -edit -relative -option \"over\" -includeUpperBound 0 -timeChange " +
        DecimalText(distance) + " -time \"" + DecimalText(pressRange_.first) + ":" +
        DecimalText(pressRange_.second) + "\"");
}

void TimeSlider::ShowCursor(double x) {
    const Timeline& time = host_.time();
    if (!time.IsRangeHighlighted()) {
        unsetCursor();
        return;
    }
    const QMouseEvent hover(QEvent::MouseMove, QPointF(x, 0.0), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    switch (DragFor(hover)) {
    case Drag::RangeStart:
    case Drag::RangeEnd:
        setCursor(Qt::SizeHorCursor);
        break;
    case Drag::MoveRange:
        setCursor(Qt::OpenHandCursor);
        break;
    default:
        unsetCursor();
    }
}

} // namespace lightbox
