#pragma once

#include <QtGlobal>

namespace vellix {

/// What may be done with a layer. The values are written into scenes and settings.
enum class LayerState : qint32 {
    Animated = 0, ///< frames are keys; drawing where there is none makes one
    Static = 1,   ///< one drawing for all times
    Locked = 2,   ///< no drawing and no editing of frames; shown like an animated layer
};

inline bool IsLayerState(qint64 value) {
    return value >= static_cast<qint64>(LayerState::Animated) &&
           value <= static_cast<qint64>(LayerState::Locked);
}

/// A value that is no state counts as animated.
inline LayerState ToLayerState(qint64 value) {
    return IsLayerState(value) ? static_cast<LayerState>(value) : LayerState::Animated;
}

} // namespace vellix
