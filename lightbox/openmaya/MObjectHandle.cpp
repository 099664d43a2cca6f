#include "openmaya/Access.h"
#include "scene/Node.h"

#include <maya/MObjectHandle.h>

using lightbox::Access;

MObjectHandle::MObjectHandle(const MObject& object)
    : object_(Access::Get(object)) {}

MObject MObjectHandle::object() const {
    return Access::Wrap(object_.lock());
}

bool MObjectHandle::isAlive() const {
    return !object_.expired();
}

bool MObjectHandle::isValid() const {
    const MObject alive = object();
    const auto node = Access::GetNode(alive);
    return !alive.isNull() && (!node || node->InScene());
}

bool MObjectHandle::operator==(const MObjectHandle& other) const {
    return object() == other.object();
}

bool MObjectHandle::operator==(const MObject& other) const {
    return object() == other;
}
