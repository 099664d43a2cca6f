#pragma once

namespace vellix {

/// A dialog that shows something of the scene, which may change while it is open.
class SceneFollower {
public:
    virtual ~SceneFollower() = default;
    /// A drawing node or a camera has come or gone.
    virtual void FollowScene() = 0;
};

} // namespace vellix
