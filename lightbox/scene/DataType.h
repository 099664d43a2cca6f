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
    /// Values that exist right now, wherever they are held.
    mutable int liveValues = 0;
};

} // namespace lightbox
