#pragma once

#include "scene/Node.h"
#include "scene/NonCopyable.h"

#include <memory>
#include <vector>

namespace lightbox {

class EventBus;

/// The active selection: nodes in the order they were selected. Fires "SelectionChanged" when it changes, and
/// keeps the condition "SomethingSelected".
class Selection {
public:
    using List = std::vector<std::shared_ptr<Node>>;

    explicit Selection(EventBus& events)
        : events_(events) {}

    const List& Get() const { return nodes_; }
    bool Contains(const Node& node) const;
    /// Selects these nodes; duplicates count once.
    void Set(const List& nodes);
    void Clear() { Set({}); }

    /// Delays the event until its own end.
    class Hold : NonCopyable {
    public:
        explicit Hold(Selection& selection)
            : selection_(selection) {
            ++selection_.held_;
        }
        ~Hold();

    private:
        Selection& selection_;
    };

private:
    void Changed();

    EventBus& events_;
    List nodes_;
    int held_ = 0;
    bool pending_ = false;
};

} // namespace lightbox
