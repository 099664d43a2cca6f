#include "ui/TimeControlOverlay.h"

#include "core/Layer.h"
#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <maya/MTime.h>

#include <QColor>
#include <QMouseEvent>
#include <QPainter>

namespace vellix {

namespace {

// Fractions of the slider's size. They put the marks into its lower third, where its own ticks are.
constexpr float MARGIN_FRACTION = 0.005f;
constexpr float FRAMES_FRACTION = 0.99f;
constexpr float BAND_FRACTION = 0.333f;
constexpr int BAND_OFFSET = 2;
constexpr float HALF_PIXEL = 0.5f;
constexpr int FILL_ALPHA = 63;

/// Positions of the marks in a slider, in its pixels.
struct MarkBand {
    MarkBand(const QSize& slider, float start, float frameCount)
        : firstFrame(start)
        , margin(static_cast<float>(slider.width()) * MARGIN_FRACTION)
        , pixelsPerFrame(static_cast<float>(slider.width()) * FRAMES_FRACTION / frameCount)
        , height(static_cast<int>(static_cast<float>(slider.height()) * BAND_FRACTION))
        , top(slider.height() - height + BAND_OFFSET) {}

    QRect MarkAt(int time) const {
        const int left =
            static_cast<int>((static_cast<float>(time) - firstFrame) * pixelsPerFrame + margin + HALF_PIXEL);
        // A mark is at least one pixel wide.
        return QRect(left, top, qMax(1, static_cast<int>(pixelsPerFrame)), height);
    }

    float firstFrame;
    float margin;
    float pixelsPerFrame;
    int height;
    int top;
};

float InFrames(const MTime& time) {
    return static_cast<float>(time.as(MTime::uiUnit()));
}

MDoubleArray GetVisibleRange() {
    MDoubleArray range;
    if (MayaUtil::IsTimeSliderRangeVisible()) {
        MayaUtil::GetTimeSliderRange(range);
    }
    return range;
}

} // namespace

TimeControlOverlay::TimeControlOverlay(QWidget* timeSlider)
    : GuardedWidget(timeSlider) {
    if (timeSlider) {
        setGeometry(timeSlider->rect());
        // Moves without a button go on to the slider, which shows by its cursor what a press would take hold
        // of.
        setMouseTracking(true);
        ConnectGuarded(timeSlider, &QObject::destroyed, this, [this] { setParent(nullptr); });
    }
}

void TimeControlOverlay::SetFrameTimes(const QList<int>& times) {
    if (!frameTimes_.isSharedWith(times)) {
        frameTimes_ = times;
    }
    update();
}

void TimeControlOverlay::ClearFrameTimes() {
    frameTimes_.clear();
    update();
}

bool TimeControlOverlay::IsShown() const {
    return !isHidden();
}

void TimeControlOverlay::SetShown(bool shown) {
    // Without a parent it would become a window.
    setVisible(shown && parentWidget() != nullptr);
}

void TimeControlOverlay::SetDrawContextActive(bool active) {
    const bool shifted = GetMoveOffset() != 0;
    drawContextActive_ = active;
    ResetDrag();
    if (active) {
        UpdateDrag();
    } else if (shifted) {
        MayaUtil::RefreshTimelineOverlay(); // puts the marks back
    }
}

bool TimeControlOverlay::FollowsRange() const {
    return Settings::timeControlRangeMoveEnabled && drawContextActive_;
}

bool TimeControlOverlay::HasMoveOffset() const {
    return FollowsRange() && dragging_;
}

int TimeControlOverlay::GetMoveOffset() const {
    return Settings::timeControlRangeMoveEnabled ? moveOffset_ : 0;
}

MDoubleArray TimeControlOverlay::GetRangeForMoveOffset() const {
    return range_;
}

void TimeControlOverlay::UpdateMoveOffset() {
    if (!HasMoveOffset()) {
        return;
    }
    if (!MayaUtil::IsTimeSliderRangeVisible()) {
        ResetDrag();
        return;
    }
    MDoubleArray range;
    MayaUtil::GetTimeSliderRange(range);
    // A change of length means that the range was resized, not moved.
    if (range.length() == 2 && range_.length() == 2 && range[0] - range_[0] == range[1] - range_[1]) {
        moveOffset_ = static_cast<int>(range[0]) - static_cast<int>(range_[0]);
    }
    movePending_ = true;
}

void TimeControlOverlay::UpdateDrag() {
    if (!FollowsRange()) {
        return;
    }
    const bool wasMoved = movePending_ && range_.length() == 2;
    const bool moves = wasMoved && FindDraggedLayer() == dragged_;
    const int offset = moveOffset_;
    int first = 0;
    int last = 0;
    if (moves) {
        first = static_cast<int>(range_[0]);
        last = static_cast<int>(range_[1]);
        last -= first < last ? 1 : 0; // the end of the slider's range is exclusive
    }
    range_ = GetVisibleRange();
    moveOffset_ = 0;
    dragging_ = false;
    rangeVisibleAtPress_ = false;
    movePending_ = false;
    if (wasMoved && (!moves || offset == 0 || !MayaUtil::MoveFrames(offset, first, last))) {
        MayaUtil::RefreshTimelineOverlay(); // puts the marks back
    }
}

/// The layer whose frames a drag moves: it may change in the middle, also by another scene.
LayerId TimeControlOverlay::FindDraggedLayer() {
    const BaseNode* const node = BaseNode::GetMaster();
    const Layer* const layer = node ? node->GetActiveLayer(node->GetActiveCamera()) : nullptr;
    return layer ? layer->GetId() : LayerId::None;
}

void TimeControlOverlay::ResetDrag() {
    dragging_ = false;
    movePending_ = false;
    rangeVisibleAtPress_ = false;
    moveOffset_ = 0;
    range_.clear();
}

void TimeControlOverlay::paintEvent(QPaintEvent*) {
    const QWidget* slider = parentWidget();
    if (!slider) {
        return;
    }
    // The slider may have been resized.
    setGeometry(slider->rect());
    const float start = InFrames(MayaUtil::GetPlaybackRangeStart());
    const float frameCount = InFrames(MayaUtil::GetPlaybackRangeEnd()) - start + 1.0f;
    if (frameCount < 1.0f) {
        return;
    }
    const MarkBand band(slider->size(), start, frameCount);
    QColor fill = Settings::timelineFrameColor;
    fill.setAlpha(FILL_ALPHA);
    QPainter painter(this);
    painter.setPen(QPen(Settings::timelineFrameColor, 1));
    for (const int time : frameTimes_) {
        const QRect mark = band.MarkAt(time);
        const bool collides = GetMoveOffset() > 0 && frameTimes_.count(time) > 1;
        painter.fillRect(mark, collides ? QColor(Qt::black) : fill);
        painter.drawRect(mark.adjusted(0, 0, -1, -1)); // drawRect is one pixel larger than its rectangle
    }
}

void TimeControlOverlay::mousePressEvent(QMouseEvent* event) {
    if (FollowsRange()) {
        movePending_ = false;
        rangeVisibleAtPress_ = MayaUtil::IsTimeSliderRangeVisible();
        dragged_ = FindDraggedLayer();
    }
    event->ignore();
}

void TimeControlOverlay::mouseMoveEvent(QMouseEvent* event) {
    if (FollowsRange() && rangeVisibleAtPress_ && event->buttons() != Qt::NoButton) {
        dragging_ = true;
    }
    event->ignore();
}

void TimeControlOverlay::mouseReleaseEvent(QMouseEvent* event) {
    UpdateDrag();
    event->ignore();
}

void TimeControlOverlay::showEvent(QShowEvent*) {
    ResetDrag();
    UpdateDrag();
}

void TimeControlOverlay::hideEvent(QHideEvent*) {
    ResetDrag();
}

} // namespace vellix
