#include "scene/Selection.h"

#include "scene/EventBus.h"

#include <algorithm>
#include <unordered_set>

namespace lightbox {

bool Selection::Contains(const Node& node) const {
    return std::any_of(nodes_.begin(), nodes_.end(),
                       [&](const std::shared_ptr<Node>& selected) { return selected.get() == &node; });
}

void Selection::Set(const List& nodes) {
    List unique;
    std::unordered_set<const Node*> seen;
    for (const std::shared_ptr<Node>& node : nodes) {
        if (seen.insert(node.get()).second) {
            unique.push_back(node);
        }
    }
    if (unique != nodes_) {
        nodes_ = std::move(unique);
        Changed();
    }
}

void Selection::Changed() {
    if (held_ > 0) {
        pending_ = true;
        return;
    }
    pending_ = false;
    events_.SetCondition("SomethingSelected", !nodes_.empty());
    events_.Fire("SelectionChanged");
}

Selection::Hold::~Hold() {
    if (--selection_.held_ == 0 && selection_.pending_) {
        selection_.Changed();
    }
}

} // namespace lightbox
