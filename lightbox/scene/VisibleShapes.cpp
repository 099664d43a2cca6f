#include "scene/VisibleShapes.h"

#include "scene/DagNode.h"
#include "scene/MeshNode.h"
#include "scene/Plug.h"
#include "scene/Scene.h"
#include "scene/ShapeOutline.h"

#include <Imath/ImathVec.h>
#include <set>

namespace lightbox {

namespace {

bool IsOn(const DagNode& node, const char* attribute) {
    return Plug(std::const_pointer_cast<Node>(node.Shared()), node.Type().FindAttribute(attribute))
               .Number() != 0.0;
}

bool IsShown(const DagNode& node) {
    return IsOn(node, "visibility") && IsOn(node, "lodVisibility") && !IsOn(node, "intermediateObject") &&
           (!IsOn(node, "overrideEnabled") || IsOn(node, "overrideVisibility"));
}

bool IsTemplate(const DagNode& node) {
    return IsOn(node, "template") || (IsOn(node, "overrideEnabled") && IsOn(node, "overrideDisplayType"));
}

class Finder {
public:
    explicit Finder(Scene& scene) {
        for (const std::shared_ptr<Node>& node : scene.selection().Get()) {
            selected_.insert(node.get());
            lead_ = node.get();
        }
    }

    void Visit(DagNode& node, const Imath::M44d& above, VisibleShape::State state) {
        if (!node.IsWorld()) {
            if (!IsShown(node)) {
                return;
            }
            state = StateOf(node, state);
        }
        const bool inherits = !node.Type().IsTransform() || IsOn(node, "inheritsTransform");
        const Imath::M44d world = inherits ? node.LocalMatrix() * above : node.LocalMatrix();
        if (node.Type().IsShape()) {
            shapes.push_back({&node, world, state});
        }
        for (DagNode* child : node.Children()) {
            Visit(*child, world, state);
        }
    }

    std::vector<VisibleShape> shapes;

private:
    VisibleShape::State StateOf(const DagNode& node, VisibleShape::State above) const {
        using State = VisibleShape::State;
        if (&node == lead_ || above == State::Lead) {
            return State::Lead;
        }
        if (selected_.count(&node) > 0 || above == State::Selected) {
            return State::Selected;
        }
        return above == State::Template || IsTemplate(node) ? State::Template : State::Plain;
    }

    std::set<const Node*> selected_;
    const Node* lead_ = nullptr;
};

} // namespace

std::vector<VisibleShape> FindVisibleShapes(Scene& scene) {
    Finder finder(scene);
    finder.Visit(scene.world(), Imath::M44d(), VisibleShape::State::Plain);
    return std::move(finder.shapes);
}

Imath::Box3d BoundsOf(const DagNode& shape) {
    Imath::Box3d box;
    if (MeshNode::Is(shape)) {
        const std::shared_ptr<const MeshData> mesh = MeshNode::Evaluate(shape);
        if (mesh && !mesh->Bounds().isEmpty()) {
            box = {Imath::V3d(mesh->Bounds().min), Imath::V3d(mesh->Bounds().max)};
        }
        return box;
    }
    for (const Imath::V3f& point : ShapeOutline(shape)) {
        box.extendBy(Imath::V3d(point));
    }
    return box;
}

Imath::Box3d WorldBoundsOf(const DagNode& node) {
    Imath::Box3d box;
    if (node.Type().IsShape()) {
        box = Transformed(BoundsOf(node), node.WorldMatrix());
    }
    for (const DagNode* child : node.Children()) {
        box.extendBy(WorldBoundsOf(*child));
    }
    return box;
}

Imath::Box3d Transformed(const Imath::Box3d& box, const Imath::M44d& matrix) {
    Imath::Box3d moved;
    for (int corner = 0; corner < 8 && !box.isEmpty(); ++corner) {
        const Imath::V3d point((corner & 1) ? box.max.x : box.min.x, (corner & 2) ? box.max.y : box.min.y,
                               (corner & 4) ? box.max.z : box.min.z);
        moved.extendBy(point * matrix);
    }
    return moved;
}

} // namespace lightbox
