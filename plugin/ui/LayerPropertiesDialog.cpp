#include "ui/LayerPropertiesDialog.h"

#include "core/LayerState.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"

#include <QCheckBox>
#include <QFormLayout>

namespace vellix {

LayerPropertiesDialog::LayerPropertiesDialog(const QString& camera, int index, QWidget* parent)
    : LayerFormDialog(QStringLiteral("Layer Properties"), parent)
    , m_layerCamera(camera)
    , m_index(index)
    , m_state(LayerState::Animated)
    , m_visible(new QCheckBox(QStringLiteral("Visible"), this)) {
    setObjectName(QStringLiteral("qmVxLayerProperties"));
    m_visible->setToolTip(QStringLiteral("Show the layer"));
    Form().addRow(QString(), m_visible);
    AddStates(QStringLiteral("State:"), {LayerState::Animated, LayerState::Static, LayerState::Locked});
    AddButtons();
    SetLayerState(m_state);
}

void LayerPropertiesDialog::SetLayerName(const QString& name) {
    m_layerName = name;
    LayerFormDialog::SetLayerName(name);
}

void LayerPropertiesDialog::SetVisibility(bool visible) {
    m_visibility = visible;
    m_visible->setChecked(visible);
}

void LayerPropertiesDialog::SetLayerState(LayerState state) {
    m_state = state;
    LayerFormDialog::SetLayerState(state);
}

void LayerPropertiesDialog::SetCameras(const QStringList& cameras) {
    // A camera may have been deleted while its layers stayed.
    const QStringList offered =
        cameras.contains(m_layerCamera) ? cameras : cameras + QStringList(m_layerCamera);
    LayerFormDialog::SetCameras(offered, m_layerCamera);
}

void LayerPropertiesDialog::FollowScene() {
    const BaseNode* const master = BaseNode::GetMaster();
    if (master == nullptr || !master->LayerExists(m_layerCamera, m_index)) {
        reject();
        return;
    }
    const QString chosen = GetCamera();
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    SetCameras(cameras);
    SelectCamera(chosen);
}

void LayerPropertiesDialog::Open(const QString& camera, int index, QWidget* parent) {
    const BaseNode* const master = BaseNode::GetMaster();
    if (master == nullptr || !master->LayerExists(camera, index)) {
        Logger::Error(master == nullptr ? "Node not found" : "Layer does not exist.");
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
    const QString name = GetLayerName();
    if (!name.isEmpty() && name != m_layerName) {
        MayaUtil::SetLayerName(m_layerCamera, m_index, name);
    }
    if (m_visible->isChecked() != m_visibility) {
        MayaUtil::SetLayerVisible(m_layerCamera, m_index, m_visible->isChecked());
    }
    if (GetLayerState() != m_state) {
        MayaUtil::SetLayerState(m_layerCamera, m_index, GetLayerState());
    }
    if (GetCamera() != m_layerCamera) {
        MayaUtil::MoveLayer(m_layerCamera, m_index, GetCamera(), -1);
    }
}

} // namespace vellix
