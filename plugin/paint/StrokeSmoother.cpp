#include "paint/StrokeSmoother.h"

#include "paint/BrushGrid.h"
#include "paint/FreehandPainter.h"
#include "paint/ToolTable.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vellix {

namespace {

constexpr int HISTORY = 5;
// Image pixels from the corner of the image. A stray position farther away is as good as one there.
constexpr int FARTHEST = 100000;
// Image pixels between two points that were added to let the size change evenly, at least.
constexpr double LEAST_STEP = 2.0;
// Milliseconds between samples whose times are not told.
constexpr double EVEN_PERIOD = 8.0;

// Tests distance < size * 0.1 without rounding: a point at exactly a tenth of the size is not closer.
bool CloserThanTenth(const QPoint& a, const QPoint& b, qint32 size) {
    const double dx = double(a.x()) - b.x();
    const double dy = double(a.y()) - b.y();
    return size > 0 && 100.0 * (dx * dx + dy * dy) < double(size) * size;
}

// Returns sum / divisor rounded to nearest, halves toward positive infinity also for negative values.
int RoundedQuotient(qint64 sum, qint64 divisor) {
    const qint64 doubled = 2 * sum + divisor;
    const qint64 quotient = doubled / (2 * divisor);
    const bool truncatedUpward = doubled < 0 && doubled % (2 * divisor) != 0;
    return int(truncatedUpward ? quotient - 1 : quotient);
}

void ReceiveText(Stroke& stroke, const StrokePoint& sample, const QString& fontFamily) {
    stroke.fontFamily = fontFamily;
    if (stroke.points.isEmpty()) {
        stroke.points.append(sample);
    } else {
        stroke.points[0] = sample;
    }
}

// The second sample goes in front of the first, which becomes the end that later samples replace.
void ReceiveShape(Stroke& stroke, const StrokePoint& sample) {
    if (stroke.points.isEmpty()) {
        stroke.points.append(sample);
    } else if (stroke.points.size() == 1) {
        stroke.points.prepend(sample);
    } else {
        stroke.points[1] = sample;
    }
}

int PaintedSize(const StrokePoint& point) {
    const int largest = FreehandPainter::MAX_SIZE;
    return qBound(1, point.size, largest);
}

/// Gives a point whose size varies a size and a place whose stamp lies around the line like those of its
/// neighbours: the stamps of odd sizes lie aside, and so do those of large brushes (see BrushGrid).
void Centre(StrokePoint& point, ToolType tool) {
    point.size = std::max(1, point.size - point.size % 2);
    if (tool == ToolType::Brush && point.size > BrushGrid::LARGEST_SMALL_BRUSH) {
        point.position += QPoint(1, 1);
    }
}

/// Appends a point. A segment has one size, so a change of the size is spread over several.
void AppendEvenly(QList<StrokePoint>& points, const StrokePoint& point) {
    const StrokePoint from = points.isEmpty() ? point : points.last();
    const int change = PaintedSize(point) - PaintedSize(from);
    const QLineF way(from.position, point.position);
    const int steps = static_cast<int>(std::min<double>(std::abs(change), way.length() / LEAST_STEP));
    for (int step = 1; step < steps; ++step) {
        const double share = static_cast<double>(step) / steps;
        StrokePoint between = point;
        between.size = PaintedSize(from) + static_cast<int>(std::lround(share * change));
        between.opacity = from.opacity + static_cast<float>(share) * (point.opacity - from.opacity);
        between.position = way.pointAt(share).toPoint();
        points.append(between);
    }
    points.append(point);
}

} // namespace

void StrokeSmoother::Reset(const LineStyle& style) {
    *this = StrokeSmoother();
    style_ = style;
}

StrokeSmoother::Outcome StrokeSmoother::Receive(Stroke& stroke, const StrokePoint& sample,
                                                const QString& textFontFamily) {
    return Receive(stroke, sample, sample.position, time_ + EVEN_PERIOD, textFontFamily);
}

StrokeSmoother::Outcome StrokeSmoother::Receive(Stroke& stroke, const StrokePoint& sample,
                                                const QPointF& exact, double time,
                                                const QString& textFontFamily) {
    switch (KindOf(stroke.tool)) {
    case ToolKind::Freehand:
        return style_.IsPlain() ? ReceiveFreehand(stroke, sample)
                                : ReceiveStyled(stroke, sample, exact, time);
    case ToolKind::Text:
        ReceiveText(stroke, sample, textFontFamily);
        break;
    case ToolKind::Shape:
        ReceiveShape(stroke, sample);
        break;
    case ToolKind::None:
        break;
    }
    stroke.changed = true;
    Outcome outcome;
    outcome.changed = true;
    return outcome;
}

StrokeSmoother::Outcome StrokeSmoother::ReceiveFreehand(Stroke& stroke, const StrokePoint& sample) {
    const bool thinning = stroke.points.size() >= 2;
    if (thinning && stroke.points.last().position == sample.position) {
        return Outcome();
    }
    if (history_.size() == HISTORY) {
        history_.removeLast();
    }
    history_.prepend(sample);

    const StrokePoint smoothed = Smoothed(sample);
    if (thinning && CloserThanTenth(stroke.points.last().position, smoothed.position, sample.size)) {
        history_.removeFirst();
        return Outcome();
    }
    const int before = stroke.points.size();
    AppendEvenly(stroke.points, smoothed);
    return OutcomeOf(stroke, before);
}

void StrokeSmoother::CentreAll(ToolType tool, QList<StrokePoint>& points, int first) const {
    for (int i = first; style_.sizeVaries && i < points.size(); ++i) {
        Centre(points[i], tool);
    }
}

StrokeSmoother::Outcome StrokeSmoother::OutcomeOf(Stroke& stroke, int pointsBefore) const {
    CentreAll(stroke.tool, stroke.points, pointsBefore);
    const int points = stroke.points.size();
    Outcome outcome;
    outcome.changed = points > pointsBefore;
    outcome.firstSegment = pointsBefore < 2 && points >= 2;
    stroke.changed = stroke.changed || outcome.changed;
    return outcome;
}

StrokeSmoother::Outcome StrokeSmoother::ReceiveStyled(Stroke& stroke, const StrokePoint& sample,
                                                      const QPointF& exact, double time) {
    last_ = sample;
    time_ = time;
    last_.position = QPoint(qBound(-FARTHEST, sample.position.x(), FARTHEST),
                            qBound(-FARTHEST, sample.position.y(), FARTHEST));
    pen_ = style_.smoothCurves ? QPointF(qBound<double>(-FARTHEST, exact.x(), FARTHEST),
                                         qBound<double>(-FARTHEST, exact.y(), FARTHEST))
                               : QPointF(last_.position);
    const QLineF string(pen_, hasPen_ ? brush_ : pen_);
    if (hasPen_ && string.length() <= style_.stabiliser) {
        return Outcome(); // the string is slack
    }
    brush_ = hasPen_ && style_.stabiliser > 0 ? string.pointAt(style_.stabiliser / string.length()) : pen_;
    hasPen_ = true;
    const int before = stroke.points.size();
    if (!style_.smoothCurves) {
        StrokePoint drawn = sample;
        drawn.position = brush_.toPoint();
        return ReceiveFreehand(stroke, drawn);
    }
    AddToFilter(brush_);
    DrawFiltered(filter_, curve_, stroke.points);
    return OutcomeOf(stroke, before);
}

/// With the size and the opacity of the last sample.
void StrokeSmoother::AddToFilter(const QPointF& position) {
    filter_.Add({position, double(last_.size), double(last_.opacity), double(last_.hardness), time_, false});
    tailIsStale_ = true;
}

void StrokeSmoother::DrawFiltered(SampleFilter& filter, StrokeCurve& curve, QList<StrokePoint>& points) {
    PenSample filtered;
    while (filter.Take(filtered)) {
        curve.Add(filtered, points);
    }
}

bool StrokeSmoother::DrawTail(Stroke& stroke) {
    if (!tailIsStale_ || style_.stabiliser > 0 || stroke.points.isEmpty()) {
        return false;
    }
    tailIsStale_ = false;
    SampleFilter filter = filter_;
    StrokeCurve curve = curve_;
    filter.Finish();
    QList<StrokePoint> tail = {stroke.points.last()};
    DrawFiltered(filter, curve, tail);
    curve.Finish(tail);
    tail.removeFirst();
    CentreAll(stroke.tool, tail, 0);
    stroke.tail.swap(tail);
    stroke.changed = true;
    return true;
}

StrokeSmoother::Outcome StrokeSmoother::Finish(Stroke& stroke) {
    stroke.tail.clear();
    const int before = stroke.points.size();
    if (!hasPen_) {
        return Outcome();
    }
    hasPen_ = false;
    if (style_.smoothCurves) {
        if (brush_ != pen_) {
            AddToFilter(pen_);
        }
        filter_.Finish();
        DrawFiltered(filter_, curve_, stroke.points);
        curve_.Finish(stroke.points);
    } else if (stroke.points.isEmpty() || stroke.points.last().position != last_.position) {
        AppendEvenly(stroke.points, last_);
    }
    brush_ = pen_;
    tailIsStale_ = false;
    return OutcomeOf(stroke, before);
}

// The weighted mean of the history. Weights fall linearly from the newest sample.
StrokePoint StrokeSmoother::Smoothed(const StrokePoint& sample) const {
    const int count = history_.size();
    qint64 x = 0;
    qint64 y = 0;
    qint64 size = 0;
    float opacity = 0.0f;
    for (int i = 0; i < count; ++i) {
        const int weight = count - i;
        const StrokePoint& point = history_.at(i);
        x += qint64(weight) * point.position.x();
        y += qint64(weight) * point.position.y();
        size += qint64(weight) * point.size;
        opacity += float(weight) * point.opacity;
    }
    const int total = count * (count + 1) / 2;
    StrokePoint smoothed = sample;
    smoothed.position = QPoint(RoundedQuotient(x, total), RoundedQuotient(y, total));
    smoothed.size = RoundedQuotient(size, total);
    smoothed.opacity = opacity / float(total);
    return smoothed;
}

} // namespace vellix
