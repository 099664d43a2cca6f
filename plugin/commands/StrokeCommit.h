#pragma once

#include "core/Identity.h"
#include "core/PressAdditions.h"

#include <QByteArray>
#include <QString>

namespace vellix {

class BaseNode;

/// Paints one stroke into the drawing it belongs to, with undo and redo, including the layer and frame that
/// were added for the stroke. Keeps one image as PNG bytes: that from before the stroke or, after undo, that
/// with the stroke. Undo and redo swap it with the frame's image.
class StrokeCommit {
public:
    /// Whether the layer and the frame of the stroke were added for it.
    StrokeCommit(const QString& camera, bool layerAdded, bool frameAdded);

    /// Paints the node's active stroke. Returns false, with nothing painted, if there is no stroke on the
    /// camera or it may not be committed; then it is dropped, with the reason logged.
    bool Commit(BaseNode& node);
    /// Both act on the drawing that was painted into and on what was added for it. They return false, with
    /// the reason logged and nothing changed, if these are gone.
    bool Undo(BaseNode& node);
    bool Redo(BaseNode& node);

private:
    QString camera_;
    bool layerAdded_;
    bool frameAdded_;
    DrawingId drawing_;
    PressAdditions additions_;
    QByteArray image_;
};

} // namespace vellix
