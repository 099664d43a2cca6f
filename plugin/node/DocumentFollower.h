#pragma once

#include "core/DocumentListener.h"

namespace vellix {

/// Decides what must be refreshed after a change: the views, the frame marks over the time slider and the
/// layer manager panel. Each drawing keeps the flags of its own picture caches.
class DocumentFollower : private DocumentListener {
public:
    /// Follows the changes of all drawings until Stop().
    static void Start();
    static void Stop();

    /// Call when the scene has changed around the drawings: after opening a scene, after undo or redo, and
    /// when a drawing node was added or removed.
    static void FollowScene();

private:
    void OnDocumentChanged(LayerManager& document, DocumentChanges changes) override;
};

} // namespace vellix
