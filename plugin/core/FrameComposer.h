#pragma once

#include <QImage>
#include <QList>

namespace vellix {

class Layer;

/// Composes layers (bottom first) as they look at a frame, with the active layer's ghosts as the user's
/// settings have them when `ghosting` is set. Reads the layers without changing anything about them; frames
/// that are packed stay packed. Straight alpha, Format_RGBA8888.
QImage ComposeLayersAt(int frame, const QList<Layer*>& layers, int activeLayer, bool ghosting);

} // namespace vellix
