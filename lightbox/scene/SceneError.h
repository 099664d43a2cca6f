#pragma once

#include <stdexcept>

namespace lightbox {

/// An edit that the scene refuses; what() is the message for the user. Nothing has been changed.
class SceneError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace lightbox
