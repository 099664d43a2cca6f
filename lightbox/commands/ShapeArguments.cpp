#include "commands/ShapeArguments.h"

#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

namespace lightbox::mel {

TransformAndShape MakeShape(Host& host, const std::string& type, const std::string& name) {
    const std::shared_ptr<Node> transform = edit::CreateNode(host, "transform", name);
    const std::string& given = transform->Name();
    const std::size_t digits = given.find_last_not_of("0123456789") + 1;
    const std::shared_ptr<Node> shape =
        edit::CreateNode(host, type, given.substr(0, digits) + "Shape" + given.substr(digits),
                         static_cast<DagNode*>(transform.get()));
    return {transform, std::static_pointer_cast<DagNode>(shape)};
}

TransformAndShape ShapeOfCall(const CommandCall& call, const std::string& type) {
    const NodeList& selected = call.GetHost().scene().selection().Get();
    if (call.Objects().empty() && selected.empty()) {
        call.Fail("No " + type + " was specified.");
    }
    const std::string name =
        call.Objects().empty() ? ShownName(*selected.front()) : call.Object(0).AsString();
    std::shared_ptr<DagNode> node = DagNodeNamed(call, name);
    if (!node->Type().IsA(type)) {
        std::shared_ptr<DagNode> found;
        for (DagNode* shape : node->Shapes()) {
            if (!found && shape->Type().IsA(type)) {
                found = std::static_pointer_cast<DagNode>(shape->Shared());
            }
        }
        node = found;
    }
    if (!node) {
        call.Fail("The object '" + name + "' is not a " + type + ".");
    }
    return {node->Parent()->Shared(), node};
}

} // namespace lightbox::mel
