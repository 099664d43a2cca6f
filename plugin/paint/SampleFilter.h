#pragma once

#include "paint/PenSample.h"

#include <deque>

namespace vellix {

/// Takes the noise out of the samples of a stroke without cutting its curves short. Each sample moves to the
/// parabola that fits best through its neighbours (Savitzky and Golay, "Smoothing and Differentiation of
/// Data", 1964): two on each side, and up to four where the pen is slow or hardly turns. A mean would draw
/// circles too small: by an eighth, when five samples reach around a quarter of it. No window reaches past a
/// corner where the pen stopped, or the line would shoot over.
class SampleFilter {
public:
    void Reset();
    void Add(const PenSample& sample);
    /// No more samples come.
    void Finish() { isFinished_ = true; }
    /// Gives the next filtered sample. The first and the last stay where they were. Returns false while later
    /// samples are needed for it.
    bool Take(PenSample& filtered);

private:
    enum class Corner { No, Yes, Unknown };
    struct Kept : PenSample {
        double step = 0.0;               ///< to it from the sample before, image pixels
        Corner corner = Corner::Unknown; ///< until it was asked for, and could be told
    };

    int HalfWidth();
    bool IsGentle(int width) const;
    Corner CornerAt(int index);
    Corner FindCorner(int index) const;
    bool IsSlowAt(int index) const;
    double Speed(int index) const;
    QPointF WayFrom(int index, int direction, bool& isKnown) const;

    std::deque<Kept> samples_; ///< those that windows may still need
    int next_ = 0;             ///< the next one to be given, in samples_
    bool isFinished_ = false;
};

} // namespace vellix
