#include "ui/LayerPropertiesDialog.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LayerState.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QStringList>

namespace vellix {

LayerPropertiesDialog::LayerPropertiesDialog(const QString& camera, int index, QWidget* parent)
    : LayerFormDialog(QStringLiteral("Layer Properties"), parent)
    , layerCamera_(camera)
    , state_(LayerState::Animated)
    , visible_(new QCheckBox(QStringLiteral("Visible"), this)) {
    setObjectName(QStringLiteral("qmVxLayerProperties"));
    const BaseNode* const master = BaseNode::GetMaster();
    if (const Layer* const layer = master ? master->GetLayer(camera, index) : nullptr) {
        layer_ = layer->GetId();
    }
    visible_->setToolTip(QStringLiteral("Show the layer"));
    Form().addRow(QString(), visible_);
    AddStates(QStringLiteral("State:"), {LayerState::Animated, LayerState::Static, LayerState::Locked});
    AddButtons();
    SetLayerState(state_);
}

void LayerPropertiesDialog::SetLayerName(const QString& name) {
    layerName_ = name;
    LayerFormDialog::SetLayerName(name);
}

void LayerPropertiesDialog::SetVisibility(bool visible) {
    visibility_ = visible;
    visible_->setChecked(visible);
}

void LayerPropertiesDialog::SetLayerState(LayerState state) {
    state_ = state;
    LayerFormDialog::SetLayerState(state);
}

void LayerPropertiesDialog::SetCameras(const QStringList& cameras) {
    // A camera may have been deleted while its layers stayed.
    const QStringList offered =
        cameras.contains(layerCamera_) ? cameras : cameras + QStringList(layerCamera_);
    LayerFormDialog::SetCameras(offered, layerCamera_);
}

void LayerPropertiesDialog::FollowScene() {
    const BaseNode* const master = BaseNode::GetMaster();
    const LayerPlace place = master ? master->FindLayer(layer_) : LayerPlace();
    if (!place.layer) {
        reject();
        return;
    }
    const QString chosen = GetCamera() == layerCamera_ ? place.camera : GetCamera();
    layerCamera_ = place.camera;
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    SetCameras(cameras);
    SelectCamera(chosen);
}

void LayerPropertiesDialog::Open(const QString& camera, int index, QWidget* parent) {
    const BaseNode* const master = BaseNode::GetMaster();
    if (!master || !master->LayerExists(camera, index)) {
        Logger::Error(master ? "Layer does not exist." : "Node not found");
        return;
    }
    auto dialog = std::make_unique<LayerPropertiesDialog>(camera, index, parent);
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    dialog->SetLayerName(master->GetLayerName(camera, index));
    dialog->SetVisibility(master->IsLayerVisible(camera, index));
    dialog->SetLayerState(master->GetLayerState(camera, index));
    dialog->SetCameras(cameras);
    DialogManager::OpenModal(std::move(dialog));
}

void LayerPropertiesDialog::UpdateLayer() {
    const BaseNode* const master = BaseNode::GetMaster();
    const LayerPlace place = master ? master->FindLayer(layer_) : LayerPlace();
    if (!place.layer) {
        Logger::Error("Layer does not exist.");
        return;
    }
    const QString name = GetLayerName();
    if (!name.isEmpty() && name != layerName_) {
        MayaUtil::SetLayerName(place.camera, place.index, name);
    }
    if (visible_->isChecked() != visibility_) {
        MayaUtil::SetLayerVisible(place.camera, place.index, visible_->isChecked());
    }
    if (GetLayerState() != state_) {
        MayaUtil::SetLayerState(place.camera, place.index, GetLayerState());
    }
    if (GetCamera() != layerCamera_ && GetCamera() != place.camera) {
        MayaUtil::MoveLayer(place.camera, place.index, GetCamera(), -1);
    }
}

} // namespace vellix
