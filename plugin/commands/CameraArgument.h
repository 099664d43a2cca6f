#pragma once

#include <QString>

namespace vellix {

class BaseNode;

/// The camera that a command acts on when it has an optional "-camera" flag.
class CameraArgument {
public:
    /// The camera that was named, else the active camera of the node (null for none). An empty string, with
    /// an error logged, when the named camera does not exist or there is none to fall back on.
    static QString Resolve(const QString& named, const BaseNode* node);
};

} // namespace vellix
