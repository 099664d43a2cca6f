#include "formats/PreservedContent.h"

#include "scene/Node.h"

#include <algorithm>

namespace lightbox {

PreservedContent::NodeContent& PreservedContent::Of(const Node& node) {
    return nodes_[node.Serial()];
}

const PreservedContent::NodeContent* PreservedContent::Find(const Node& node) const {
    const auto found = nodes_.find(node.Serial());
    return found == nodes_.end() ? nullptr : &found->second;
}

void PreservedContent::Move(const Node& from, const Node& to) {
    if (auto moved = nodes_.extract(from.Serial())) {
        moved.key() = to.Serial();
        nodes_.insert(std::move(moved));
    }
}

PreservedContent::DefaultBlock& PreservedContent::BlockOf(const std::string& defaultNode) {
    const auto found = std::find_if(defaultBlocks.begin(), defaultBlocks.end(),
                                    [&](const DefaultBlock& block) { return block.node == defaultNode; });
    if (found != defaultBlocks.end()) {
        return *found;
    }
    defaultBlocks.push_back({defaultNode, {}});
    return defaultBlocks.back();
}

void PreservedContent::Clear() {
    *this = PreservedContent();
}

} // namespace lightbox
