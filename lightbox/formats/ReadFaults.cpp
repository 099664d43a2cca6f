#include "formats/ReadFaults.h"

#include <algorithm>

namespace lightbox {

std::string ReadFaults::Summary(std::size_t most, const std::string& separator) const {
    std::string text;
    const std::size_t shown = std::min(most, messages.size());
    for (std::size_t i = 0; i < shown; ++i) {
        text += (text.empty() ? "" : separator) + messages[i];
    }
    if (count > shown) {
        text += (text.empty() ? "" : separator) + "and " + std::to_string(count - shown) + " more";
    }
    return text;
}

} // namespace lightbox
