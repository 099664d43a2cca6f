#include "node/DocumentFollower.h"

#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"
#include "node/IdleWork.h"

#include <maya/M3dView.h>

namespace vellix {

namespace {

// The changes after which each of them is refreshed.
constexpr DocumentChanges PANEL_CHANGES = DocumentChange::Layers | DocumentChange::LayerSettings |
                                          DocumentChange::ActiveLayer | DocumentChange::ActiveCamera |
                                          DocumentChange::Ghosting;
constexpr DocumentChanges MARK_CHANGES = DocumentChange::Layers | DocumentChange::ActiveLayer |
                                         DocumentChange::ActiveCamera | DocumentChange::Frames;
/// Views do not show which camera is active.
constexpr DocumentChanges VIEW_CHANGES = DocumentChange::Layers | DocumentChange::LayerSettings |
                                         DocumentChange::ActiveLayer | DocumentChange::Frames |
                                         DocumentChange::Pictures | DocumentChange::Ghosting;

void RefreshViews(const LayerManager& document) {
    for (BaseNode* node : BaseNode::GetAll()) {
        if (node->GetLayerManager().get() == &document) {
            node->QueueRefresh();
        }
    }
}

/// Without a node that gets dirty: a flip changes nothing in the scene.
void RedrawViews() {
    MStatus status;
    M3dView view = M3dView::active3dView(&status);
    if (status) {
        view.refresh(true);
    }
}

} // namespace

void DocumentFollower::Start() {
    static DocumentFollower follower;
    LayerManager::SetListener(&follower);
}

void DocumentFollower::Stop() {
    LayerManager::SetListener(nullptr);
}

void DocumentFollower::OnDocumentChanged(LayerManager& document, DocumentChanges changes) {
    if (changes & PANEL_CHANGES) {
        document.UpdateLayerManagerDialog();
    }
    if (MayaUtil::IsReadingScene()) {
        return; // the node is incomplete while reading; FollowScene() follows afterwards
    }
    if ((changes & MARK_CHANGES) && document.IsMaster()) {
        BaseNode::UpdateTimeControlOverlay();
    }
    if (changes & VIEW_CHANGES) {
        RefreshViews(document);
        IdleWork::Schedule();
    } else if (changes & DocumentChange::Flip) {
        RedrawViews();
    }
}

void DocumentFollower::FollowScene() {
    IdleWork::Schedule();
    BaseNode::UpdateTimeControlOverlay();
    if (BaseNode* master = BaseNode::GetMaster()) {
        master->UpdateLayerManagerDialog();
    } else {
        BaseNode::ClearLayerManagerDialog();
    }
}

} // namespace vellix
