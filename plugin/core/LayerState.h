#pragma once

#include <QtGlobal>

namespace vellix {

/// How a layer may be edited. The values are stored in scenes and settings.
enum class LayerState : qint32 {
    Animated = 0, ///< frames are keys; drawing at a time without a key adds one
    Static = 1,   ///< one drawing for all times
    Locked = 2,   ///< neither drawing nor editing of frames; displays like an animated layer
};

inline bool IsLayerState(qint64 value) {
    return value >= static_cast<qint64>(LayerState::Animated) &&
           value <= static_cast<qint64>(LayerState::Locked);
}

/// Converts a stored value; any invalid one becomes Animated.
inline LayerState ToLayerState(qint64 value) {
    return IsLayerState(value) ? static_cast<LayerState>(value) : LayerState::Animated;
}

} // namespace vellix
