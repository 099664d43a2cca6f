#pragma once

#include <QString>

namespace lightbox {

/// Where frames lie in a time slider, in view pixels. Whatever is laid over the slider counts the same way: a
/// margin of half a hundredth of the width, and 99 hundredths divided among the frames.
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
    /// The left edge of a frame's place.
    double X(double frame) const { return margin_ + (frame - start_) * perFrame_; }
    /// The frame, whole numbers away from the start, whose place holds that x; not bound to the range.
    double FrameAt(double x) const;
    /// The same, bound to the range.
    double FrameWithin(double x) const;
    /// Frames from one number to the next so that numbers of that width stay apart.
    double LabelStep(double labelWidth) const;
    /// Frames from one tick to the next, a part of the label step.
    double TickStep(double labelStep) const;

private:
    double start_;
    double end_;
    double margin_;
    double perFrame_;
};

/// A frame as the sliders show it: at most two decimals.
QString FrameLabel(double frame);

} // namespace lightbox
