#include "openmaya/ApiBridge.h"
#include "scene/Node.h"

#include <maya/MObjectHandle.h>

using lightbox::ApiBridge;

MObjectHandle::MObjectHandle(const MObject& object)
    : object_(ApiBridge::Get(object)) {}

MObject MObjectHandle::object() const {
    return ApiBridge::Wrap(object_.lock());
}

bool MObjectHandle::isAlive() const {
    return !object_.expired();
}

bool MObjectHandle::isValid() const {
    const MObject alive = object();
    const auto node = ApiBridge::GetNode(alive);
    return !alive.isNull() && (!node || node->InScene());
}

bool MObjectHandle::operator==(const MObjectHandle& other) const {
    return object() == other.object();
}

bool MObjectHandle::operator==(const MObject& other) const {
    return object() == other;
}
