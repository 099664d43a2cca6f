#pragma once

#include <maya/MTime.h>

#include <QByteArray>
#include <QString>

namespace vellix {

class BaseNode;

/// One stroke painted into the drawing, and the way back: the layer and the frame that were added for the
/// stroke, and the frame's image on the other side of the change, as PNG bytes. The image is exchanged, never
/// copied.
class StrokeCommit {
public:
    /// `layerAdded` is the index of the layer that was added, negative for none.
    StrokeCommit(const QString& camera, int layerAdded, bool frameAdded);

    /// Paints the node's active stroke into the active layer's current frame. False, with nothing painted,
    /// when the camera has no active layer or there is no stroke.
    bool Commit(BaseNode& node);
    /// Both work on the stroke's own frame, wherever the playback time has gone since.
    bool Undo(BaseNode& node);
    bool Redo(BaseNode& node);

private:
    bool ExchangeImage(BaseNode& node);

    QString camera_;
    int addedLayer_;
    bool frameAdded_;
    MTime frameTime_;        ///< of the frame that was added
    int paintedFrame_ = 0;   ///< time of the frame that was painted on
    QString previousCamera_; ///< active before the stroke gave its camera a first layer
    int previousActiveLayer_ = -1;
    QByteArray image_;
};

} // namespace vellix
