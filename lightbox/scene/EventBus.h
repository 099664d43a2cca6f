#pragma once

#include "scene/CallbackList.h"

#include <map>
#include <string>

namespace lightbox {

class Node;

/// Named events and conditions, and the coming and going of nodes.
class EventBus {
public:
    using Id = std::intptr_t;
    using Callback = std::function<void()>;
    using ConditionCallback = std::function<void(bool)>;
    using NodeCallback = std::function<void(Node&)>;
    enum class NodeEvent { Added, Removed };

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

    /// Called with every node that has come into the scene, or is about to leave it.
    Id AddNodeCallback(NodeEvent event, NodeCallback callback);
    void FireNode(NodeEvent event, Node& node);

    /// Removes a callback of any kind; false when there is none of that id.
    bool Remove(Id id);
    /// Callbacks that are registered, of any kind.
    std::size_t CallbackCount() const;

private:
    struct Conditional {
        CallbackList<bool> callbacks;
        bool state = false;
    };

    std::map<std::string, CallbackList<>> events_;
    std::map<std::string, Conditional> conditions_;
    std::map<NodeEvent, CallbackList<Node&>> nodes_;
    Id nextId_ = 1;
};

} // namespace lightbox
