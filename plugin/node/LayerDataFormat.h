#pragma once

namespace vellix {

/// What both forms of a stored drawing, and their readers and writers, have in common.
struct LayerDataFormat {
    static constexpr int VERSION = 1;
    /// Stands in the ASCII form for a layer that could not be had when writing.
    static constexpr const char* UNKNOWN_LAYER = "UNKNOWN";
};

} // namespace vellix
