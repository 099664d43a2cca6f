#pragma once

namespace vellix {

/// Constants that the readers and writers of both stored forms share.
struct LayerDataFormat {
    static constexpr int VERSION = 1;
    /// Name of a missing layer in the ASCII form.
    static constexpr const char* UNKNOWN_LAYER = "UNKNOWN";
};

} // namespace vellix
