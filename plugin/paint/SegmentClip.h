#pragma once

#include "paint/ImageSize.h"

#include <QPoint>

namespace vellix {

/// Bounds the walk along a segment whose ends may lie anywhere.
///
/// A segment is walked from end to end, so that what is painted inside the image is what every step from its
/// true ends gives. Only when an end lies more than WALK_MARGIN pixels outside the image, the segment is
/// first cut to the image and CUT_MARGIN pixels around it, which is more than any stamp reaches. What is
/// painted then differs from the long walk by the rounding of the new ends to whole pixels and by where along
/// the segment the stamps fall.
struct SegmentClip {
    static constexpr int WALK_MARGIN = 8192; ///< pixels
    static constexpr int CUT_MARGIN = 128;   ///< pixels

    QPoint from;
    QPoint to;
    float opacityFrom = 1.0f; ///< moves with its end
    float opacityTo = 1.0f;

    /// Cuts the segment. Returns false if no pixel of the image lies within CUT_MARGIN of it: nothing is to
    /// be painted.
    bool Cut();
};

} // namespace vellix
