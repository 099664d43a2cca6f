#pragma once

#include <stdexcept>

namespace lightbox {

/// Thrown when a file cannot be read or written. what() is the message for the user.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace lightbox
