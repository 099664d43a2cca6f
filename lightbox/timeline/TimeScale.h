#pragma once

#include <QString>

namespace lightbox {

/// Maps frames to x positions in a time slider, in view pixels. Overlays over the slider use the same
/// formula: a margin of 0.5 % of the width on each side, and 99 % divided among the frames.
class TimeScale {
public:
    TimeScale(double start, double end, double width)
        : start_(start)
        , end_(end < start ? start : end)
        , margin_(width * 0.005)
        , perFrame_(width * 0.99 / (end_ - start_ + 1.0)) {}

    double Start() const { return start_; }
    double End() const { return end_; }
    double PixelsPerFrame() const { return perFrame_; }
    /// The left edge of a frame's cell.
    double X(double frame) const { return margin_ + (frame - start_) * perFrame_; }
    /// The frame whose cell contains x: the start plus a whole number of frames, not clamped to the range.
    double FrameAt(double x) const;
    /// Like FrameAt(), but clamped to the range.
    double FrameWithin(double x) const;
    /// The number of frames between labels, so that labels of that width in pixels do not overlap.
    double LabelStep(double labelWidth) const;
    /// The number of frames between ticks; it divides the label step.
    double TickStep(double labelStep) const;

private:
    double start_;
    double end_;
    double margin_;
    double perFrame_;
};

/// The text of a frame in the sliders, with at most two decimals.
QString FrameLabel(double frame);

} // namespace lightbox
