#pragma once

#include "commands/ActiveLayers.h"
#include "commands/PlaybackTimeScope.h"
#include "commands/StrokeCommit.h"
#include "paint/ScopeExit.h"

#include <QSet>
#include <QString>

#include <memory>
#include <vector>

namespace vellix {

class BaseNode;
class Frame;
struct RecordedStroke;
struct Stroke;

/// Draws recorded strokes on the active layer of a camera, as the draw tool does: what it needs to draw is
/// made, its samples go through the same smoothing, and the finished stroke is committed in the same way.
/// While it lives the tool settings are the recording's and the playback time moves; afterwards both are the
/// user's again.
class StrokePlayer {
public:
    /// The node is borrowed.
    StrokePlayer(BaseNode& node, const QString& camera);

    using Commits = std::vector<std::unique_ptr<StrokeCommit>>;

    /// Draws the stroke at a frame. The first stroke on each picture adds its commit to the list; undoing it
    /// takes the later ones back as well. False, with the reason logged and nothing changed, when the layer
    /// cannot be drawn on.
    bool Draw(const RecordedStroke& recorded, int frame, Commits& commits);

private:
    Stroke* Begin(const RecordedStroke& recorded, int& layerAdded, bool& frameAdded);
    static void Feed(Stroke& stroke, const RecordedStroke& recorded);
    bool Commit(int layerAdded, bool frameAdded, Commits& commits);
    void TakeBack(const ActiveLayers& before, int layerAdded, bool frameAdded);

    BaseNode& node_;
    QString camera_;
    PlaybackTimeScope time_;
    QSet<const Frame*> drawn_; // what was drawn on so far
    ScopeExit restoreSettings_;
};

} // namespace vellix
