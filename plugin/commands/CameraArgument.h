#pragma once

#include <QString>

namespace vellix {

class BaseNode;

/// The camera that a command acts on when naming one is optional.
class CameraArgument {
public:
    /// The camera that was named, else the active camera of the node (null for none). An empty string, with
    /// an error logged, when the named camera does not exist or there is none to fall back on; `missing` is
    /// what is said then.
    static QString Resolve(const QString& named, const BaseNode* node,
                           const char* missing = "There is no active camera. Name one with -camera.");
};

} // namespace vellix
