#pragma once

#include "core/Identity.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace vellix {

inline FrameId FrameOf(FrameId frame) {
    return frame;
}

/// Entries by the frame to which they belong, at most one each; FrameOf(entry) tells the frame. Looking up
/// frames in the order of their identities, as most layers hold them, takes constant time each. Only the
/// constructor needs memory.
template <typename Entry>
class FrameTable {
public:
    /// Of several entries of a frame, one is kept.
    explicit FrameTable(std::vector<Entry> entries)
        : entries_(std::move(entries)) {
        if (!std::is_sorted(entries_.begin(), entries_.end(), IsBefore)) {
            std::sort(entries_.begin(), entries_.end(), IsBefore);
        }
        const auto isSame = [](const Entry& a, const Entry& b) { return FrameOf(a) == FrameOf(b); };
        entries_.erase(std::unique(entries_.begin(), entries_.end(), isSame), entries_.end());
    }

    /// The entry of the frame, owned by the table; null if there is none.
    const Entry* Find(FrameId frame) {
        if (next_ == entries_.size() || FrameOf(entries_[next_]) != frame) {
            const auto found =
                std::lower_bound(entries_.begin(), entries_.end(), frame,
                                 [](const Entry& entry, FrameId id) { return FrameOf(entry) < id; });
            if (found == entries_.end() || FrameOf(*found) != frame) {
                return nullptr;
            }
            next_ = static_cast<std::size_t>(found - entries_.begin());
        }
        return &entries_[next_++];
    }
    std::size_t Size() const { return entries_.size(); }

private:
    static bool IsBefore(const Entry& a, const Entry& b) { return FrameOf(a) < FrameOf(b); }

    std::vector<Entry> entries_;
    std::size_t next_ = 0; ///< after the entry that was found last
};

} // namespace vellix
