#include "ui/NewLayerDialog.h"

#include "core/LayerState.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"

#include <QStringList>

namespace vellix {

NewLayerDialog::NewLayerDialog(QWidget* parent)
    : LayerFormDialog(QStringLiteral("New Layer"), parent) {
    setObjectName(QStringLiteral("qmVxNewLayer"));
    AddStates(QStringLiteral("Layer State:"), {LayerState::Animated, LayerState::Static});
    AddButtons();
    SetLayerState(static_cast<LayerState>(Settings::defaultLayerState));
}

std::unique_ptr<NewLayerDialog> NewLayerDialog::Create(QWidget* parent) {
    auto dialog = std::make_unique<NewLayerDialog>(parent);
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    const BaseNode* const master = BaseNode::GetMaster();
    QString current = master ? master->GetActiveCamera() : QString();
    if (!cameras.contains(current)) {
        current = MayaUtil::GetActive3dViewCameraName();
    }
    dialog->SetLayerName(Settings::DEFAULT_LAYER_NAME);
    dialog->SetCameras(cameras, current);
    return dialog;
}

void NewLayerDialog::AddLayer() {
    const int state = static_cast<int>(GetLayerState());
    if (BaseNode::GetMaster()) {
        MayaUtil::AddLayer(GetCamera(), GetLayerName(), state);
    } else {
        MayaUtil::CreateNode(true, false, GetCamera(), GetLayerName(), state);
    }
    MayaUtil::Draw();
}

} // namespace vellix
