#pragma once

#include <QImage>
#include <QList>

namespace vellix {

class Layer;

/// Composes layers (bottom first) as they look at a frame number. With `ghosting`, adds the active layer's
/// ghosts as the user's settings ask (an `activeLayer` out of range has none). Leaves the layers unchanged;
/// packed frames stay packed. Returns straight alpha, Format_RGBA8888.
QImage ComposeLayersAt(int frame, const QList<Layer*>& layers, int activeLayer, bool ghosting);

} // namespace vellix
