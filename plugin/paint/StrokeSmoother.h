#pragma once

#include "paint/Stroke.h"

#include <QList>
#include <QPoint>
#include <QString>

namespace vellix {

/// Turns the raw samples of one gesture into the points of its stroke. Freehand samples are averaged over the
/// last five and thinned out; shapes keep an anchor and a live end; text keeps one live point. Positions are
/// image pixels.
class StrokeSmoother {
public:
    /// What a sample did to the stroke.
    struct Outcome {
        bool changed = false;      ///< the stroke was marked changed
        bool firstSegment = false; ///< the freehand stroke has just got its second point and can be shown
    };

    /// Clears the history. Call before the first sample of every stroke.
    void Reset();

    /// Adds `sample` to `stroke` by the rules of the stroke's tool. `textFontFamily` becomes the font of a
    /// text stroke; other tools ignore it. A dropped sample leaves the stroke as it was.
    Outcome Receive(Stroke& stroke, const StrokePoint& sample, const QString& textFontFamily);

private:
    Outcome ReceiveFreehand(Stroke& stroke, const StrokePoint& sample);
    StrokePoint Smoothed(const StrokePoint& sample) const;

    QList<QPoint> positions_; // newest first, as long as opacities_
    QList<float> opacities_;
};

} // namespace vellix
