#pragma once

#include <QtGlobal>

namespace vellix {

/// Identify a layer and a frame while the program runs. A layer keeps its identity when it is renamed, moved,
/// removed and put back, a frame when its time or picture changes or when it is removed and put back; a copy
/// gets a new one. Undo and redo find with them what they act on.
enum class LayerId : quint64 { None = 0 };
enum class FrameId : quint64 { None = 0 };

/// One drawing: a frame of a layer.
struct DrawingId {
    LayerId layer = LayerId::None;
    FrameId frame = FrameId::None;
};

inline bool operator==(const DrawingId& a, const DrawingId& b) {
    return a.layer == b.layer && a.frame == b.frame;
}

} // namespace vellix
