#include "openmaya/Access.h"

#include "mel/Value.h"
#include "openmaya/PluginHandle.h"
#include "scene/Host.h"

namespace lightbox {

MObject Access::Wrap(std::shared_ptr<Object> object) {
    MObject handle;
    handle.handle_ = std::move(object);
    return handle;
}

MDagPath Access::Wrap(DagNode& node) {
    MDagPath path;
    path.node_ = Wrap(node.Shared());
    return path;
}

MPlug Access::Wrap(const Plug& plug) {
    MPlug wrapped;
    wrapped.node_ = Wrap(plug.node);
    wrapped.attribute_ = Wrap(plug.attribute);
    wrapped.element_ = plug.element;
    return wrapped;
}

MString Access::Wrap(std::string text) {
    MString string;
    string.text_ = std::move(text);
    return string;
}

bool Access::ReadString(const mel::Value& value, MString& result) {
    result = Wrap(value.IsString() ? value.Text() : value.AsString());
    return true;
}

UserInterface* Access::Ui() {
    Host* host = Host::Current();
    return host ? host->ui() : nullptr;
}

std::shared_ptr<Node> Access::GetNode(const MObject& object) {
    return std::dynamic_pointer_cast<Node>(object.handle_);
}

std::shared_ptr<DagNode> Access::GetDagNode(const MObject& object) {
    return std::dynamic_pointer_cast<DagNode>(object.handle_);
}

std::shared_ptr<Attribute> Access::GetAttribute(const MObject& object) {
    return std::dynamic_pointer_cast<Attribute>(object.handle_);
}

std::shared_ptr<DataValue> Access::GetData(const MObject& object) {
    return std::dynamic_pointer_cast<DataValue>(object.handle_);
}

Plug Access::GetPlug(const MPlug& plug) {
    return Plug(GetNode(plug.node_), GetAttribute(plug.attribute_), plug.element_);
}

MStatus Access::Fail(MStatus::MStatusCode code, const std::string& text) {
    MStatus status(code);
    status.text_ = text;
    return status;
}

MObject PluginHandle::MakeObject(Plugin& plugin) {
    return Access::Wrap(std::make_shared<PluginHandle>(plugin));
}

} // namespace lightbox
