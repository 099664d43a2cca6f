#pragma once

#include <QtGlobal>

#include <vector>

namespace vellix {

/// Changes how long drawings hold. Times are whole frames and rise.
class Retiming {
public:
    Retiming() = default;
    /// With `relative` the amount, in frames, is added to each hold; otherwise it is the new hold.
    Retiming(int amount, bool relative);

    /// Takes the range whose drawings are retimed: those that start in it and the one that it starts in.
    void SetRange(int start, int end, const std::vector<int>& times);
    /// Index of the drawing to look at afterwards: the first retimed one or, with `next`, the one after it.
    int FindTarget(const std::vector<int>& times, bool next) const;
    /// The new time of each drawing. Later ones keep their distance to the last retimed one, and every one
    /// comes at least a frame after its predecessor. They may lie beyond the range of an int.
    std::vector<qint64> GetTimes(const std::vector<int>& times) const;

private:
    qint64 GetHoldChange(const std::vector<int>& times, std::size_t index) const;

    int amount_ = 0;
    bool relative_ = false;
    int start_ = 0;
    int end_ = 0;
};

} // namespace vellix
