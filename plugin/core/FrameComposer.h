#pragma once

#include <QImage>
#include <QList>

namespace vellix {

class Layer;
class LightTable;

/// Composes layers (bottom first) as they look at a frame number. With `ghosting`, adds the ghosts that the
/// user's settings ask for, of the active layer, of those that are marked on the light table, or of all that
/// are visible; none if `activeLayer` is out of range or hidden. Leaves the layers unchanged; packed frames
/// stay packed. Returns straight alpha, Format_RGBA8888.
QImage ComposeLayersAt(int frame, const QList<Layer*>& layers, int activeLayer, bool ghosting,
                       const LightTable& lightTable);

} // namespace vellix
