#include "openmaya/ApiBridge.h"

#include "mel/Value.h"
#include "openmaya/PluginHandle.h"
#include "scene/Host.h"

namespace lightbox {

MObject ApiBridge::Wrap(std::shared_ptr<Object> object) {
    MObject handle;
    handle.handle_ = std::move(object);
    return handle;
}

MDagPath ApiBridge::Wrap(DagNode& node) {
    MDagPath path;
    path.node_ = Wrap(node.Shared());
    return path;
}

MPlug ApiBridge::Wrap(const Plug& plug) {
    MPlug wrapped;
    wrapped.node_ = Wrap(plug.node);
    wrapped.attribute_ = Wrap(plug.attribute);
    wrapped.element_ = plug.element;
    return wrapped;
}

MString ApiBridge::Wrap(std::string text) {
    MString string;
    string.text_ = std::move(text);
    return string;
}

bool ApiBridge::ReadString(const mel::Value& value, MString& result) {
    result = Wrap(value.IsString() ? value.Text() : value.AsString());
    return true;
}

UserInterface* ApiBridge::Ui() {
    Host* host = Host::Current();
    return host ? host->ui() : nullptr;
}

std::shared_ptr<Node> ApiBridge::GetNode(const MObject& object) {
    return std::dynamic_pointer_cast<Node>(object.handle_);
}

std::shared_ptr<DagNode> ApiBridge::GetDagNode(const MObject& object) {
    return std::dynamic_pointer_cast<DagNode>(object.handle_);
}

std::shared_ptr<Attribute> ApiBridge::GetAttribute(const MObject& object) {
    return std::dynamic_pointer_cast<Attribute>(object.handle_);
}

std::shared_ptr<DataValue> ApiBridge::GetData(const MObject& object) {
    return std::dynamic_pointer_cast<DataValue>(object.handle_);
}

Plug ApiBridge::GetPlug(const MPlug& plug) {
    return Plug(GetNode(plug.node_), GetAttribute(plug.attribute_), plug.element_);
}

MStatus ApiBridge::Fail(MStatus::MStatusCode code, const std::string& text) {
    MStatus status(code);
    status.text_ = text;
    return status;
}

MObject PluginHandle::MakeObject(Plugin& plugin) {
    return ApiBridge::Wrap(std::make_shared<PluginHandle>(plugin));
}

} // namespace lightbox
