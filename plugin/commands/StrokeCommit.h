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

    QString camera_;
    int addedLayer_;
    bool frameAdded_;
    MTime frameTime_;        ///< time of the added frame
    int paintedFrame_ = 0;   ///< time of the frame painted into, whole frames
    QString previousCamera_; ///< camera that was active before the first layer was added
    int previousActiveLayer_ = -1;
    QByteArray image_;
};

} // namespace vellix
