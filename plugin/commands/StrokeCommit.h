#pragma once

#include "commands/KeptTiles.h"
#include "core/Identity.h"
#include "core/PressAdditions.h"

#include <QString>

namespace vellix {

class BaseNode;
class LayerManager;

/// Paints one stroke into the drawing it belongs to, with undo and redo, including the layer and frame that
/// were added for the stroke. Keeps the tiles that the stroke changed, as they were before it or, after undo,
/// with it (TilePatch). Undo and redo swap them with those of the picture.
class StrokeCommit {
public:
    /// Whether the layer and the frame of the stroke were added for it.
    StrokeCommit(const QString& camera, bool layerAdded, bool frameAdded);

    /// Paints the node's active stroke. Returns false, with nothing painted, if there is no stroke on the
    /// camera or it may not be committed; then it is dropped, with the reason logged.
    bool Commit(BaseNode& node);
    /// Paints the node's active stroke, another one on the same drawing. Undo then takes back all of them.
    bool CommitNext(BaseNode& node);
    /// Both act on the drawing that was painted into and on what was added for it. They return false, with
    /// the reason logged and nothing changed, if these are gone or the drawing got another picture meanwhile.
    bool Undo(BaseNode& node);
    bool Redo(BaseNode& node);

private:
    bool Exchange(LayerManager& layers);

    QString camera_;
    bool layerAdded_;
    bool frameAdded_;
    DrawingId drawing_;
    PressAdditions additions_;
    KeptTiles tiles_;
    bool isDone_ = false; // a step that failed leaves the way back nothing to do
};

} // namespace vellix
