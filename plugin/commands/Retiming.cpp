#include "commands/Retiming.h"

#include <algorithm>

namespace vellix {

Retiming::Retiming(int amount, bool relative)
    : amount_(amount)
    , relative_(relative) {}

void Retiming::SetRange(int start, int end, const std::vector<int>& times) {
    const auto later = std::upper_bound(times.begin(), times.end(), start);
    start_ = later == times.begin() ? start : *(later - 1);
    end_ = end; // needs no rounding to a drawing: whatever starts before it is retimed
}

int Retiming::FindTarget(const std::vector<int>& times, bool next) const {
    const int count = static_cast<int>(times.size());
    const int later = static_cast<int>(std::upper_bound(times.begin(), times.end(), start_) - times.begin());
    if (later == count) {
        return count - 1;
    }
    return next ? later : std::max(later - 1, 0);
}

qint64 Retiming::GetHoldChange(const std::vector<int>& times, std::size_t index) const {
    if (times[index] < start_ || times[index] >= end_ || index + 1 == times.size()) {
        return 0;
    }
    return relative_ ? amount_ : amount_ - (static_cast<qint64>(times[index + 1]) - times[index]);
}

std::vector<qint64> Retiming::GetTimes(const std::vector<int>& times) const {
    std::vector<qint64> result;
    result.reserve(times.size());
    qint64 shift = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (i > 0 && times[i] + shift <= result.back()) {
            shift = result.back() + 1 - times[i];
        }
        result.push_back(times[i] + shift);
        shift += GetHoldChange(times, i);
    }
    return result;
}

} // namespace vellix
