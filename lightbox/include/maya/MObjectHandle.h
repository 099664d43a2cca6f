#pragma once

#include <maya/MObject.h>

#include <memory>

/// Refers to an object without keeping it alive.
class MObjectHandle {
public:
    MObjectHandle() = default;
    MObjectHandle(const MObject& object);

    /// The object; null when it is not alive.
    MObject object() const;
    /// Whether the object exists, even if only on the undo queue.
    bool isAlive() const;
    /// Whether the object is alive and, for a node, in the scene.
    bool isValid() const;

    bool operator==(const MObjectHandle& other) const;
    bool operator==(const MObject& other) const;
    bool operator!=(const MObjectHandle& other) const { return !(*this == other); }
    bool operator!=(const MObject& other) const { return !(*this == other); }

private:
    std::weak_ptr<lightbox::Object> object_;
};
