#pragma once

#include "commands/ActiveLayers.h"
#include "commands/PlaybackTimeScope.h"
#include "commands/StrokeCommit.h"
#include "core/Identity.h"
#include "paint/ScopeExit.h"

#include <QString>

#include <map>
#include <memory>
#include <vector>

namespace vellix {

class BaseNode;
struct RecordedStroke;
struct Stroke;

/// Draws recorded strokes on a camera's active layer in the same way as the draw tool: it adds a missing
/// layer or frame, smooths the samples and commits the finished stroke. While it exists, the tool settings
/// are those of the recording and the playback time moves. The destructor restores both.
class StrokePlayer {
public:
    /// The node is borrowed.
    StrokePlayer(BaseNode& node, const QString& camera);

    using Commits = std::vector<std::unique_ptr<StrokeCommit>>;

    /// Draws the stroke at a frame. The first stroke on each picture appends its commit to the list; undoing
    /// that commit also removes the later strokes on the picture. Returns false, with the reason logged and
    /// nothing changed, if the layer cannot be drawn on.
    bool Draw(const RecordedStroke& recorded, int frame, Commits& commits);

private:
    Stroke* Begin(const RecordedStroke& recorded, int& layerAdded, bool& frameAdded);
    static void Feed(Stroke& stroke, const RecordedStroke& recorded);
    bool Commit(bool layerAdded, bool frameAdded, Commits& commits);

    BaseNode& node_;
    QString camera_;
    PlaybackTimeScope time_;
    std::map<FrameId, StrokeCommit*> drawn_; // the commit of each frame drawn on so far; borrowed
    ScopeExit restoreSettings_;
};

} // namespace vellix
