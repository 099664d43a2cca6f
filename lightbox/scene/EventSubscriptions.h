#pragma once

#include "scene/EventBus.h"
#include "scene/NonCopyable.h"

#include <string>
#include <utility>
#include <vector>

namespace lightbox {

/// Owns a listener's event callbacks and removes them on destruction.
class EventSubscriptions : NonCopyable {
public:
    explicit EventSubscriptions(EventBus& events)
        : events_(events) {}
    ~EventSubscriptions() {
        for (const EventBus::Id id : ids_) {
            events_.Remove(id);
        }
    }

    void Add(const std::string& event, EventBus::Callback callback) {
        ids_.push_back(events_.AddCallback(event, std::move(callback)));
    }
    void AddCondition(const std::string& condition, EventBus::ConditionCallback callback) {
        ids_.push_back(events_.AddConditionCallback(condition, std::move(callback)));
    }

private:
    EventBus& events_;
    std::vector<EventBus::Id> ids_;
};

} // namespace lightbox
