#include "scene/DagNode.h"

#include "scene/Plug.h"
#include "scene/Scene.h"
#include "scene/Transformation.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <algorithm>
#include <iterator>

namespace lightbox {

namespace {

Imath::V3d VectorOf(const Node& node, const char* attribute) {
    const Plug plug(std::const_pointer_cast<Node>(node.Shared()), node.Type().FindAttribute(attribute));
    const AttributeValue value = plug.Get();
    const auto* numbers = std::get_if<std::vector<double>>(&value);
    return numbers && numbers->size() == 3 ? Imath::V3d((*numbers)[0], (*numbers)[1], (*numbers)[2])
                                           : Imath::V3d(0.0);
}

double NumberOf(const Node& node, const char* attribute) {
    return Plug(std::const_pointer_cast<Node>(node.Shared()), node.Type().FindAttribute(attribute)).Number();
}

} // namespace

int DagNode::IndexInParent() const {
    if (!parent_) {
        return -1;
    }
    return static_cast<int>(std::find(parent_->children_.begin(), parent_->children_.end(), this) -
                            parent_->children_.begin());
}

bool DagNode::IsBelow(const DagNode& node) const {
    for (const DagNode* current = this; current; current = current->parent_) {
        if (current == &node) {
            return true;
        }
    }
    return false;
}

std::vector<DagNode*> DagNode::Shapes() const {
    std::vector<DagNode*> shapes;
    std::copy_if(children_.begin(), children_.end(), std::back_inserter(shapes),
                 [](const DagNode* child) { return child->Type().IsShape(); });
    return shapes;
}

std::string DagNode::FullPath() const {
    if (IsWorld()) {
        return {};
    }
    return (parent_ ? parent_->FullPath() : std::string()) + "|" + Name();
}

std::string DagNode::PartialPath() const {
    if (!InScene() || IsWorld()) {
        return Name();
    }
    std::string path = Name();
    const DagNode* top = parent_;
    while (InScene()->FindAll(path).size() > 1 && top && !top->IsWorld()) {
        path.insert(0, top->Name() + "|");
        top = top->parent_;
    }
    // If several nodes have the name, the leading bar selects the top-level one.
    return top && top->IsWorld() && InScene()->FindAll(path).size() > 1 ? "|" + path : path;
}

Imath::M44d DagNode::LocalMatrix() const {
    if (!Type().IsTransform()) {
        return {};
    }
    return LocalTransformation().Matrix();
}

Transformation DagNode::LocalTransformation() const {
    Transformation parts;
    parts.translate = VectorOf(*this, "translate");
    parts.rotate = VectorOf(*this, "rotate");
    parts.scale = VectorOf(*this, "scale");
    parts.shear = VectorOf(*this, "shear");
    parts.rotatePivot = VectorOf(*this, "rotatePivot");
    parts.rotatePivotTranslate = VectorOf(*this, "rotatePivotTranslate");
    parts.scalePivot = VectorOf(*this, "scalePivot");
    parts.scalePivotTranslate = VectorOf(*this, "scalePivotTranslate");
    parts.rotateAxis = VectorOf(*this, "rotateAxis");
    parts.rotateOrder = static_cast<int>(NumberOf(*this, "rotateOrder"));
    if (Type().IsA("joint")) {
        parts.jointOrient = VectorOf(*this, "jointOrient");
        if (NumberOf(*this, "segmentScaleCompensate") != 0.0) {
            for (int axis = 0; axis < 3; ++axis) {
                // The connected value is the parent's scale.
                const double scale = VectorOf(*this, "inverseScale")[axis];
                parts.inverseScale[axis] = scale != 0.0 ? 1.0 / scale : 1.0;
            }
        }
    }
    return parts;
}

Imath::M44d DagNode::WorldMatrix() const {
    const bool inherits = !Type().IsTransform() || NumberOf(*this, "inheritsTransform") != 0.0;
    return parent_ && inherits ? LocalMatrix() * parent_->WorldMatrix() : LocalMatrix();
}

bool DagNode::IsVisible() const {
    for (const DagNode* node = this; node && !node->IsWorld(); node = node->parent_) {
        if (NumberOf(*node, "visibility") == 0.0) {
            return false;
        }
    }
    return true;
}

} // namespace lightbox
