#pragma once

#include <maya/MTime.h>

#include <QByteArray>
#include <QString>

namespace vellix {

class BaseNode;

/// Paints one stroke into the drawing, with undo and redo, including a layer and frame that were added for
/// the stroke. Keeps one image as PNG bytes: that from before the stroke or, after undo, that with the
/// stroke. Undo and redo swap it with the frame's image.
class StrokeCommit {
public:
    /// `layerAdded` is the index of the layer added for the stroke, negative for none.
    StrokeCommit(const QString& camera, int layerAdded, bool frameAdded);

    /// Paints the node's active stroke into the active layer's current frame. Returns false, with nothing
    /// painted, if there is no active layer, frame or stroke.
    bool Commit(BaseNode& node);
    /// Both work on the frame the stroke was painted into, whatever the playback time is now.
    bool Undo(BaseNode& node);
    bool Redo(BaseNode& node);

private:
    bool ExchangeImage(BaseNode& node);

    QString m_camera;
    int m_addedLayer;
    bool m_frameAdded;
    MTime m_frameTime;        ///< time of the added frame
    int m_paintedFrame = 0;   ///< time of the frame painted into, whole frames
    QString m_previousCamera; ///< camera that was active before the first layer was added
    int m_previousActiveLayer = -1;
    QByteArray m_image;
};

} // namespace vellix
