#pragma once

#include "scene/CallbackList.h"

#include <map>
#include <string>

namespace lightbox {

class Node;

/// Named events and conditions, and events for added, removed and renamed nodes.
class EventBus {
public:
    using Id = std::intptr_t;
    using Callback = std::function<void()>;
    using ConditionCallback = std::function<void(bool)>;
    using NodeCallback = std::function<void(Node&)>;
    using RenameCallback = std::function<void(Node&, const std::string&)>;
    enum class NodeEvent { Added, Removed };

    EventBus();

    std::vector<std::string> EventNames() const;
    /// Returns 0 for an unknown event.
    Id AddCallback(const std::string& event, Callback callback);
    void Fire(const std::string& event);

    std::vector<std::string> ConditionNames() const;
    bool Condition(const std::string& condition) const;
    /// Sets a condition and calls its callbacks if the state changes. Adds an unknown condition.
    void SetCondition(const std::string& condition, bool state);
    Id AddConditionCallback(const std::string& condition, ConditionCallback callback);

    /// Added: called after a node enters the scene. Removed: called before a node leaves it.
    Id AddNodeCallback(NodeEvent event, NodeCallback callback);
    void FireNode(NodeEvent event, Node& node);

    /// Called after a node in the scene got another name, with the name from before.
    Id AddRenameCallback(RenameCallback callback);
    void FireRename(Node& node, const std::string& before);

    /// Removes a callback of any type; returns false for an unknown id.
    bool Remove(Id id);
    /// Number of registered callbacks of all types.
    std::size_t CallbackCount() const;

private:
    struct Conditional {
        CallbackList<bool> callbacks;
        bool state = false;
    };

    std::map<std::string, CallbackList<>> events_;
    std::map<std::string, Conditional> conditions_;
    std::map<NodeEvent, CallbackList<Node&>> nodes_;
    CallbackList<Node&, const std::string&> renames_;
    Id nextId_ = 1;
};

} // namespace lightbox
