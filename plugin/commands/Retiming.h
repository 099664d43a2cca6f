#pragma once

#include <QtGlobal>

#include <vector>

namespace vellix {

/// Changes how long drawings are held. Times are whole frames, ascending.
class Retiming {
public:
    Retiming() = default;
    /// With `relative`, the amount (in frames) is added to each hold; otherwise it is the new hold.
    Retiming(int amount, bool relative);

    /// Sets the range to retime (`end` exclusive): the drawings that start in it, and the one displayed at
    /// its start.
    void SetRange(int start, int end, const std::vector<int>& times);
    /// Index of the drawing to go to afterwards: the first retimed one or, with `next`, the one after it.
    int FindTarget(const std::vector<int>& times, bool next) const;
    /// The new time of each drawing. Later drawings keep their distance to the last retimed one, and each
    /// comes at least one frame after its predecessor. Times may exceed the range of an int.
    std::vector<qint64> GetTimes(const std::vector<int>& times) const;

private:
    qint64 GetHoldChange(const std::vector<int>& times, std::size_t index) const;

    int amount_ = 0;
    bool relative_ = false;
    int start_ = 0;
    int end_ = 0;
};

} // namespace vellix
