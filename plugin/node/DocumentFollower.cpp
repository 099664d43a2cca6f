#include "node/DocumentFollower.h"

#include "core/LayerManager.h"
#include "node/BaseNode.h"

#include <maya/MFileIO.h>

namespace vellix {

namespace {

constexpr DocumentChanges IN_PANEL = DocumentChange::Layers | DocumentChange::LayerSettings |
                                     DocumentChange::ActiveLayer | DocumentChange::ActiveCamera;
constexpr DocumentChanges IN_MARKS = DocumentChange::Layers | DocumentChange::ActiveLayer |
                                     DocumentChange::ActiveCamera | DocumentChange::Frames;
/// Which camera is active is not seen in a view.
constexpr DocumentChanges IN_VIEWS = DocumentChange::Layers | DocumentChange::LayerSettings |
                                     DocumentChange::ActiveLayer | DocumentChange::Frames |
                                     DocumentChange::Pictures | DocumentChange::Ghosting;

bool IsReadingScene() {
    return MFileIO::isOpeningFile() || MFileIO::isImportingFile() || MFileIO::isReferencingFile();
}

void RefreshViews(const LayerManager& document) {
    for (BaseNode* node : BaseNode::GetAll()) {
        if (node->GetLayerManager().get() == &document) {
            node->QueueRefresh();
        }
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
    if (changes & IN_PANEL) {
        document.UpdateLayerManagerDialog();
    }
    if (IsReadingScene()) {
        return; // the node is not whole yet; FollowScene() comes when it is
    }
    if ((changes & IN_MARKS) && document.IsMaster()) {
        BaseNode::UpdateTimeControlOverlay();
    }
    if (changes & IN_VIEWS) {
        RefreshViews(document);
    }
}

void DocumentFollower::FollowScene() {
    BaseNode::UpdateTimeControlOverlay();
    if (BaseNode* master = BaseNode::GetMaster()) {
        master->UpdateLayerManagerDialog();
    } else {
        BaseNode::ClearLayerManagerDialog();
    }
}

} // namespace vellix
