#pragma once

#include <maya/MObjectHandle.h>

#include <QString>

namespace vellix {

/// A camera that is remembered through changes of its name.
class CameraHandle {
public:
    CameraHandle() = default;
    /// The camera of this name; the name alone if there is none.
    explicit CameraHandle(const QString& name);

    /// The camera's name now. Of a camera that is not in the scene, the last known name.
    QString Name() const;
    bool IsEmpty() const { return name_.isEmpty(); }

private:
    mutable QString name_;
    MObjectHandle transform_;
};

} // namespace vellix
