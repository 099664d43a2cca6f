#include "openmaya/ApiBridge.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <maya/MItDependencyNodes.h>

using lightbox::ApiBridge;

MItDependencyNodes::MItDependencyNodes(MFn::Type filter, MStatus* ReturnStatus) {
    ApiBridge::Report(ReturnStatus, reset(filter));
}

MStatus MItDependencyNodes::reset(MFn::Type filter) {
    nodes_.clear();
    position_ = 0;
    for (const auto& node : lightbox::Host::Get().scene().Nodes()) {
        if (filter == MFn::kInvalid || node->HasFn(filter)) {
            nodes_.push_back(ApiBridge::Wrap(node));
        }
    }
    return MS::kSuccess;
}

MStatus MItDependencyNodes::next() {
    if (position_ >= nodes_.size()) {
        return MS::kFailure;
    }
    ++position_;
    return MS::kSuccess;
}

bool MItDependencyNodes::isDone(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return position_ >= nodes_.size();
}

MObject MItDependencyNodes::thisNode(MStatus* ReturnStatus) const {
    ApiBridge::Report(ReturnStatus, position_ < nodes_.size() ? MS::kSuccess : MS::kFailure);
    return position_ < nodes_.size() ? nodes_[position_] : MObject();
}

MObject MItDependencyNodes::item(MStatus* ReturnStatus) const {
    return thisNode(ReturnStatus);
}
