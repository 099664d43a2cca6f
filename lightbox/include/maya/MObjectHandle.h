#pragma once

#include <maya/MObject.h>

#include <memory>

/// Remembers an object without keeping it alive.
class MObjectHandle {
public:
    MObjectHandle() = default;
    MObjectHandle(const MObject& object);

    /// Null when the object is not alive.
    MObject object() const;
    /// The object is there, if only on the undo queue.
    bool isAlive() const;
    /// The object is alive, and a node also is in the scene.
    bool isValid() const;

    bool operator==(const MObjectHandle& other) const;
    bool operator==(const MObject& other) const;
    bool operator!=(const MObjectHandle& other) const { return !(*this == other); }
    bool operator!=(const MObject& other) const { return !(*this == other); }

private:
    std::weak_ptr<lightbox::Object> object_;
};
