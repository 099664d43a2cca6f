#pragma once

#include <algorithm>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace lightbox {

/// Calls callbacks in the order they were added. A callback may add and remove callbacks, itself included: a
/// removed one is not called any more, an added one only from the next call on. All are called, also after
/// one that throws; the first exception is thrown at the end. Calling needs no memory.
template <typename... Arguments>
class CallbackList {
public:
    using Id = std::intptr_t;
    using Callback = std::function<void(Arguments...)>;

    /// Ids ascend.
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
        // Callbacks may change the list, so each is found anew, which needs no memory as a copy would.
        const Id last = entries_.back().id;
        std::exception_ptr failure;
        for (auto next = entries_.begin(); next != entries_.end() && next->id <= last;) {
            const Entry entry = *next; // it may take itself off
            try {
                (*entry.callback)(arguments...);
            } catch (...) {
                failure = failure ? failure : std::current_exception();
            }
            next = std::upper_bound(entries_.begin(), entries_.end(), entry.id,
                                    [](Id id, const Entry& other) { return id < other.id; });
        }
        if (failure) {
            std::rethrow_exception(failure);
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
