#pragma once

#include <maya/MApiNamespace.h>

#include <QString>

namespace vellix {

class BaseNode;

/// Finds the camera that a command acts on.
class CameraArgument {
public:
    /// Returns whether the camera exists; logs an error if not.
    static bool Check(const QString& camera);
    /// Finds the camera's shape, the first one of this name. Returns false without one.
    static bool Find(const QString& camera, MDagPath& shape);
    /// The camera given as the command's object. Returns an empty string, and logs an error, if none is given
    /// or it does not exist.
    static QString Require(const MArgDatabase& arguments);
    /// The same, but a camera that does not exist is accepted if the node (null for none) has layers of it:
    /// the layers of a deleted camera are kept.
    static QString RequireWithLayers(const MArgDatabase& arguments, const BaseNode* node);
    /// For commands with an optional camera: returns `named` or, if that is empty, the active camera of the
    /// node (null for none). Returns an empty string, and logs an error, if the named camera does not exist
    /// or there is no active one; `missing` is the message for the latter.
    static QString Resolve(const QString& named, const BaseNode* node,
                           const char* missing = "There is no active camera. Name one with -camera.");
};

} // namespace vellix
