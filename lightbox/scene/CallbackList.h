#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lightbox {

/// Calls callbacks in the order they were added. A callback may add and remove callbacks, itself included: a
/// removed one is not called any more, an added one only from the next call on.
template <typename... Arguments>
class CallbackList {
public:
    using Id = std::intptr_t;
    using Callback = std::function<void(Arguments...)>;

    void Add(Id id, Callback callback) {
        entries_.push_back({id, std::make_shared<Callback>(std::move(callback))});
    }
    /// Returns false for an unknown id.
    bool Remove(Id id) {
        const auto found = Find(id);
        if (found == entries_.end()) {
            return false;
        }
        entries_.erase(found);
        return true;
    }
    void Call(Arguments... arguments) {
        if (entries_.empty()) {
            return;
        }
        // Callbacks may change the list, so this iterates over a copy and looks each one up before calling
        // it.
        const std::vector<Entry> entries = entries_;
        for (const Entry& entry : entries) {
            if (Find(entry.id) != entries_.end()) {
                (*entry.callback)(arguments...);
            }
        }
    }
    std::size_t Count() const { return entries_.size(); }

private:
    struct Entry {
        Id id;
        std::shared_ptr<Callback> callback;
    };

    typename std::vector<Entry>::iterator Find(Id id) {
        return std::find_if(entries_.begin(), entries_.end(),
                            [&](const Entry& entry) { return entry.id == id; });
    }

    std::vector<Entry> entries_;
};

} // namespace lightbox
