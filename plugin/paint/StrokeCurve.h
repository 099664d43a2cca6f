#pragma once

#include "paint/PenSample.h"
#include "paint/Stroke.h"

#include <QList>

#include <deque>

namespace vellix {

/// Joins the samples of a stroke by a centripetal Catmull-Rom curve (Yuksel, Schaefer and Keyser, "On the
/// Parameterization of Catmull-Rom Curves", 2009), which makes no loop between two samples, and gives points
/// on it about a quarter of the brush's size apart. Size and opacity change evenly from sample to sample.
/// Corners of the samples stay.
class StrokeCurve {
public:
    void Reset();
    /// Appends to `points` what is settled with this sample: the curve up to the sample before. Ignores a
    /// sample at the place of the last one.
    void Add(const PenSample& sample, QList<StrokePoint>& points);
    /// Appends the rest, up to the last sample.
    void Finish(QList<StrokePoint>& points);

private:
    void AddSegment(std::size_t from, QList<StrokePoint>& points);
    class Segment;
    void Visit(const Segment& segment, double u, const QPointF& position, const QPointF& step,
               QList<StrokePoint>& points);
    void Append(const PenSample& place, QList<StrokePoint>& points);

    std::deque<PenSample> samples_; ///< the last four
    bool isCorner_ = false;         ///< whether the next segment begins in a corner

    // The curve is left for the next point at the place that is closest to the centre of a pixel, so that
    // rounding bends thin lines as little as possible.
    int size_ = 0;          ///< of the last point, image pixels
    double walked_ = 0.0;   ///< since the last point, image pixels
    double distance_ = 2.0; ///< of the best place from the centre of its pixel, squared; 2 for no place
    PenSample best_;
};

} // namespace vellix
