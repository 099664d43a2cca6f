#pragma once

#include "core/DocumentListener.h"

namespace vellix {

/// The one place that decides what is stale after a change: the views, the marks over the time slider and the
/// layer manager panel. A drawing keeps the flags of its own picture caches.
class DocumentFollower : private DocumentListener {
public:
    /// From now on until Stop() changes of drawings are followed.
    static void Start();
    static void Stop();

    /// The scene has changed around the drawings: one was opened, undone, or a drawing node has come or gone.
    static void FollowScene();

private:
    void OnDocumentChanged(LayerManager& document, DocumentChanges changes) override;
};

} // namespace vellix
