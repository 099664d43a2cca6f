#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

/// Named events and conditions. Callbacks run in the order they were added; they may add and remove
/// callbacks, also themselves, while they run: a removed one is not called any more, an added one only by the
/// next event.
class EventBus {
public:
    using Id = std::intptr_t;
    using Callback = std::function<void()>;
    using ConditionCallback = std::function<void(bool)>;

    EventBus();

    bool HasEvent(const std::string& event) const;
    std::vector<std::string> EventNames() const;
    /// Adds an event of a user's own (scriptJob, userEvent). False when it exists.
    bool AddEvent(const std::string& event);
    /// 0 when there is no such event.
    Id AddCallback(const std::string& event, Callback callback);
    void Fire(const std::string& event);

    bool HasCondition(const std::string& condition) const;
    std::vector<std::string> ConditionNames() const;
    bool Condition(const std::string& condition) const;
    /// Calls the condition's callbacks when its state changes. Adds a condition that is not there.
    void SetCondition(const std::string& condition, bool state);
    Id AddConditionCallback(const std::string& condition, ConditionCallback callback);

    /// Removes a callback of either kind; false when there is none of that id.
    bool Remove(Id id);
    /// Callbacks that are registered, of either kind.
    std::size_t CallbackCount() const;

private:
    struct Entry {
        Id id;
        std::shared_ptr<ConditionCallback> callback;
    };
    struct Channel {
        std::vector<Entry> entries;
        bool state = false;
    };
    using Channels = std::map<std::string, Channel>;

    Id Add(Channels& channels, const std::string& name, ConditionCallback callback);
    void Call(Channels& channels, const std::string& name, bool state);
    static bool Erase(Channels& channels, Id id);

    Channels events_;
    Channels conditions_;
    Id nextId_ = 1;
};

} // namespace lightbox
