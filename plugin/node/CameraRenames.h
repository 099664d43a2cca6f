#pragma once

#include <maya/MApiNamespace.h>

namespace vellix {

/// Has the layers go with a camera that gets another name. A rename that memory is too short to follow is
/// kept, which needs no memory, and followed later.
class CameraRenames {
public:
    /// Call after a camera's transform got another name.
    static void Follow(const MObject& camera, const MString& before);
    /// Follows the renames that could not be followed. Call before layers are asked for by their camera.
    /// Returns false if memory is still too short, which is reported.
    static bool FollowLate() noexcept;
};

} // namespace vellix
