#pragma once

#include "paint/LineStyle.h"
#include "paint/SampleFilter.h"
#include "paint/Stroke.h"
#include "paint/StrokeCurve.h"

#include <QLineF>
#include <QList>
#include <QPointF>
#include <QString>

namespace vellix {

/// Turns the raw samples of one gesture into the points of its stroke. Freehand samples are averaged over the
/// last five and thinned out, or joined by a curve; shapes keep an anchor and a live end; text keeps one live
/// point. Positions are image pixels.
class StrokeSmoother {
public:
    /// What a sample did to the stroke.
    struct Outcome {
        bool changed = false;      ///< the stroke was marked changed
        bool firstSegment = false; ///< the freehand stroke has just got its second point and can be shown
    };

    /// Clears the history. Call before the first sample of every stroke. The style matters for freehand tools
    /// only.
    void Reset(const LineStyle& style = LineStyle());

    /// Adds `sample` to `stroke` by the rules of the stroke's tool. `textFontFamily` becomes the font of a
    /// text stroke; other tools ignore it. A dropped sample leaves the stroke as it was.
    Outcome Receive(Stroke& stroke, const StrokePoint& sample, const QString& textFontFamily);
    /// The same where the pen's place is known more exactly than to the pixel, and the time (milliseconds,
    /// from any beginning); else samples count as evenly taken. Only curves make use of it.
    Outcome Receive(Stroke& stroke, const StrokePoint& sample, const QPointF& exact, double time,
                    const QString& textFontFamily);
    /// Draws the tail of the stroke up to the last sample, to be seen until the next one. Only curves have
    /// one, and with a stabiliser its string is seen there. Returns false, and changes nothing, if there is
    /// none or it is drawn already.
    bool DrawTail(Stroke& stroke);
    /// Draws what the line style has held back: the line reaches the pen. Call when the pen is lifted.
    Outcome Finish(Stroke& stroke);

    /// Whether the pen draws the brush on a string now.
    bool HasString() const { return hasPen_ && style_.stabiliser > 0; }
    /// The string, from the brush to the pen.
    QLineF String() const { return QLineF(brush_, pen_); }

private:
    Outcome ReceiveFreehand(Stroke& stroke, const StrokePoint& sample);
    Outcome ReceiveStyled(Stroke& stroke, const StrokePoint& sample, const QPointF& exact, double time);
    void AddToFilter(const QPointF& position);
    static void DrawFiltered(SampleFilter& filter, StrokeCurve& curve, QList<StrokePoint>& points);
    void CentreAll(ToolType tool, QList<StrokePoint>& points, int first) const;
    Outcome OutcomeOf(Stroke& stroke, int pointsBefore) const;
    StrokePoint Smoothed(const StrokePoint& sample) const;

    /// The last samples, newest first.
    QList<StrokePoint> history_;

    LineStyle style_;
    SampleFilter filter_;
    StrokeCurve curve_;
    bool hasPen_ = false;      ///< a sample came
    bool tailIsStale_ = false; ///< since the last sample that curves follow
    QPointF pen_;
    QPointF brush_;
    StrokePoint last_;  ///< the last sample
    double time_ = 0.0; ///< its time, milliseconds
};

} // namespace vellix
