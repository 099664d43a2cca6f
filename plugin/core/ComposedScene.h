#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

namespace vellix {

class Frame;
class Layer;
class LightTable;
class StrokePainter;

/// What a camera's image is composed of: its layers, with ghosts and stroke. All pointers are borrowed.
struct ComposedScene {
    QString camera;
    QList<Layer*> layers; ///< bottom first
    int activeLayer = -1; ///< -1: no ghosts
    bool ghosting = true; ///< false: neither ghosts nor pins, and no layer is dimmed
    const LightTable* lightTable = nullptr;
    /// The stroke being drawn; null unless the drawing that it belongs to is shown.
    StrokePainter* stroke = nullptr;
    int strokeLayer = -1; ///< the layer that the stroke is drawn on
    /// While the drawings are flipped: the frame that each layer shows, null for none. Then there are neither
    /// ghosts nor a stroke.
    QList<Frame*> flipped;
    quint64 flip = 0; ///< identifies the flip; 0: none

    /// Whether the layer at the index is shown fainter than it is drawn.
    bool IsDimmed(int layer) const {
        return ghosting && activeLayer >= 0 && layer != activeLayer && layer != strokeLayer;
    }
};

} // namespace vellix
