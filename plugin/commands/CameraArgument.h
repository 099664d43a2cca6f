#pragma once

#include <maya/MApiNamespace.h>

#include <QString>

namespace vellix {

class BaseNode;

/// The camera that a command acts on.
class CameraArgument {
public:
    /// Is there such a camera? Logs an error when not.
    static bool Check(const QString& camera);
    /// The camera that has to be named as the command's object. An empty string, with an error logged, when
    /// it is not, or does not exist.
    static QString Require(const MArgDatabase& arguments);
    /// For commands where naming one is optional: the camera that was named, else the active camera of the
    /// node (null for none). An empty string, with an error logged, when the named camera does not exist or
    /// there is none to fall back on; `missing` is what is said then.
    static QString Resolve(const QString& named, const BaseNode* node,
                           const char* missing = "There is no active camera. Name one with -camera.");
};

} // namespace vellix
