#include "node/MasterNode.h"

#include "core/LayerManager.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"

#include <maya/MFileIO.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MObject.h>

#include <QString>

namespace vellix {

namespace {

bool IsReplacingScene() {
    return MFileIO::isNewingFile() || MFileIO::isOpeningFile();
}

bool CanBeMaster(const BaseNode& node) {
    MObject object = node.thisMObject();
    return !MFnDependencyNode(object).isFromReferencedFile() && node.GetLayerManager();
}

/// The first node that can be the master, apart from `except`; null if there is none.
BaseNode* FindSuccessor(const BaseNode* except) {
    for (BaseNode* node : BaseNode::GetAll()) {
        if (node != except && CanBeMaster(*node)) {
            return node;
        }
    }
    return nullptr;
}

} // namespace

void MasterNode::OnRemoved(const BaseNode& node) {
    if (IsReplacingScene() || !node.IsMaster()) {
        return;
    }
    if (BaseNode* const successor = FindSuccessor(&node)) {
        successor->TakeOver();
        Logger::Warning(
            QStringLiteral("The drawing of \"%1\" is shown and edited now, instead of that of \"%2\".")
                .arg(successor->GetPath(), node.GetPath()));
    }
}

void MasterNode::OnAdded(const BaseNode& node) {
    if (MayaUtil::IsReadingScene() || !node.IsMaster()) {
        return;
    }
    for (BaseNode* other : BaseNode::GetAll()) {
        if (other != &node && other->IsMaster()) {
            other->StepBack();
        }
    }
}

void MasterNode::OnSceneRead(const QList<BaseNode*>& added) {
    BaseNode* master = nullptr;
    for (BaseNode* node : BaseNode::GetAll()) {
        const bool isFirst = master == nullptr || (added.contains(master) && !added.contains(node));
        if (node->IsMaster() && isFirst) {
            master = node;
        }
    }
    if (!master) {
        if (BaseNode* const successor = FindSuccessor(nullptr)) {
            successor->TakeOver();
        }
        return;
    }
    for (BaseNode* node : BaseNode::GetAll()) {
        if (node != master && node->IsMaster()) {
            node->StepBack();
            Logger::Info(QStringLiteral("The drawing of \"%1\" is shown, and that of \"%2\" is edited.")
                             .arg(node->GetPath(), master->GetPath()));
        }
    }
}

} // namespace vellix
