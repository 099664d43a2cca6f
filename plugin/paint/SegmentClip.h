#pragma once

#include "paint/ImageSize.h"

#include <QPoint>

namespace vellix {

/// Bounds the cost of walking a segment whose ends may lie anywhere.
///
/// Normally a segment is walked from its true ends. Only when an end lies more than WALK_MARGIN pixels
/// outside the image, the segment is first cut to the image plus CUT_MARGIN pixels on each side, farther than
/// any stamp reaches. The cut changes what is painted slightly: the new ends are rounded to whole pixels, and
/// the stamps fall on other places along the segment.
struct SegmentClip {
    static constexpr int WALK_MARGIN = 8192; ///< pixels
    static constexpr int CUT_MARGIN = 128;   ///< pixels

    QPoint from;
    QPoint to;
    float opacityFrom = 1.0f; ///< 0..1; Cut() interpolates both to the new ends
    float opacityTo = 1.0f;

    /// Cuts the segment if needed. Returns false if it does not come within CUT_MARGIN of the image, so there
    /// is nothing to paint.
    bool Cut();
};

} // namespace vellix
