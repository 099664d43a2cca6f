#pragma once

#include <maya/MApiNamespace.h>

#include <string>

namespace lightbox {

/// A data type that a plug-in registered.
struct DataType {
    std::string name;
    unsigned id = 0;
    MCreatorFunction creator = nullptr;
    std::string plugin;
    /// Number of existing values, in the scene or held elsewhere.
    mutable int liveValues = 0;
};

} // namespace lightbox
