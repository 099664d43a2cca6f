#pragma once

#include "core/LayerManager.h"
#include "node/BaseNodeLayerData.h"

#include <maya/MStatus.h>

#include <cstdlib>
#include <sstream>

namespace fuzz {

inline std::string Written(vellix::BaseNodeLayerData& data) {
    std::ostringstream out;
    return data.writeBinary(out) ? out.str() : std::string();
}

/// What was read has to come back the same when it is written and read again.
inline void CheckComesBack(vellix::BaseNodeLayerData& data) {
    const auto layers = data.GetLayerManager();
    if (!layers || layers->TotalLayerCount() == 0) {
        return;
    }
    const std::string first = Written(data);
    vellix::BaseNodeLayerData again;
    std::istringstream in(first);
    if (!again.readBinary(in, static_cast<unsigned>(first.size())) || Written(again) != first) {
        std::abort();
    }
}

} // namespace fuzz
