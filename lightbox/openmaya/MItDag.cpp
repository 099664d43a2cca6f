#include "openmaya/ApiBridge.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <maya/MItDag.h>

#include <deque>
#include <vector>

using lightbox::ApiBridge;
using lightbox::DagNode;

struct MItDag::State {
    struct Visit {
        std::shared_ptr<DagNode> node;
        unsigned int depth;
    };
    /// All nodes below the root, collected first, so that the scene may change during the iteration.
    std::vector<Visit> visits;
    std::size_t position = 0;
    TraversalType order = kDepthFirst;
    MFn::Type filter = MFn::kInvalid;

    void Start(DagNode& root, TraversalType type, MFn::Type newFilter) {
        visits.clear();
        position = 0;
        order = type;
        filter = newFilter;
        std::deque<std::pair<DagNode*, unsigned int>> waiting{{&root, 0U}};
        while (!waiting.empty()) {
            const auto [node, depth] = waiting.front();
            waiting.pop_front();
            visits.push_back({std::static_pointer_cast<DagNode>(node->Shared()), depth});
            const std::vector<DagNode*>& children = node->Children();
            if (type == kBreadthFirst) {
                for (DagNode* child : children) {
                    waiting.emplace_back(child, depth + 1);
                }
            } else {
                for (auto child = children.rbegin(); child != children.rend(); ++child) {
                    waiting.emplace_front(*child, depth + 1);
                }
            }
        }
        SkipOthers();
    }

    void SkipOthers() {
        while (!IsDone() && filter != MFn::kInvalid && !visits[position].node->HasFn(filter)) {
            ++position;
        }
    }

    bool IsDone() const { return position >= visits.size(); }
    DagNode* Node() const { return IsDone() ? nullptr : visits[position].node.get(); }
};

MItDag::MItDag(TraversalType type, MFn::Type filter, MStatus* ReturnStatus)
    : state_(std::make_unique<State>()) {
    state_->Start(lightbox::Host::Get().scene().world(), type, filter);
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
}

MItDag::~MItDag() = default;

MStatus MItDag::reset() {
    state_->Start(lightbox::Host::Get().scene().world(), state_->order, state_->filter);
    return MS::kSuccess;
}

MStatus MItDag::reset(const MObject& object, TraversalType type, MFn::Type filter) {
    const std::shared_ptr<DagNode> root = ApiBridge::GetDagNode(object);
    if (!root) {
        return MS::kInvalidParameter;
    }
    state_->Start(*root, type, filter);
    return MS::kSuccess;
}

bool MItDag::isDone(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return state_->IsDone();
}

MStatus MItDag::next() {
    if (state_->IsDone()) {
        return MS::kFailure;
    }
    ++state_->position;
    state_->SkipOthers();
    return MS::kSuccess;
}

MStatus MItDag::prune() {
    if (state_->IsDone()) {
        return MS::kFailure;
    }
    DagNode* const root = state_->Node();
    auto& visits = state_->visits;
    for (std::size_t i = visits.size(); i-- > state_->position + 1;) {
        if (visits[i].node->IsBelow(*root)) {
            visits.erase(visits.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
    return MS::kSuccess;
}

MObject MItDag::currentItem(MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, state_->IsDone() ? MS::kFailure : MS::kSuccess);
    return state_->IsDone() ? MObject() : ApiBridge::Wrap(state_->Node()->Shared());
}

MStatus MItDag::getPath(MDagPath& dagPath) const {
    if (state_->IsDone()) {
        return MS::kFailure;
    }
    dagPath = ApiBridge::Wrap(*state_->Node());
    return MS::kSuccess;
}

MString MItDag::fullPathName(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, state_->IsDone() ? MS::kFailure : MS::kSuccess);
    return state_->IsDone() ? MString() : ApiBridge::Wrap(state_->Node()->FullPath());
}

MString MItDag::partialPathName(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, state_->IsDone() ? MS::kFailure : MS::kSuccess);
    return state_->IsDone() ? MString() : ApiBridge::Wrap(state_->Node()->PartialPath());
}

unsigned int MItDag::depth(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, state_->IsDone() ? MS::kFailure : MS::kSuccess);
    return state_->IsDone() ? 0 : state_->visits[state_->position].depth;
}
