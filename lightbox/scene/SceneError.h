#pragma once

#include <stdexcept>

namespace lightbox {

/// A refused edit; what() is the message for the user. The scene is unchanged.
class SceneError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace lightbox
