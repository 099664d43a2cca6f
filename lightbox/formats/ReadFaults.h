#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace lightbox {

/// What was not read of a scene file, or not surely right. Saving over the file would lose it.
struct ReadFaults {
    /// Number of faults; larger than that of the messages when not all were kept.
    std::size_t count = 0;
    /// What the errors said, without the file's name.
    std::vector<std::string> messages;
    /// True while the file is being read, which may end anywhere.
    bool isReading = false;

    /// The first `most` messages and the number of further ones, with `separator` between them.
    std::string Summary(std::size_t most, const std::string& separator) const;
};

} // namespace lightbox
