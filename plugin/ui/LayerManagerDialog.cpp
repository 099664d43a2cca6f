#include "ui/LayerManagerDialog.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "ui/CameraList.h"
#include "ui/PlainIconButton.h"

#include <maya/MGlobal.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace vellix {

namespace {

/// The host's own icon if it has one, so that the panel looks like the host.
QIcon HostIcon(const char* resource, Icon own) {
    const QIcon icon{QLatin1String(resource)};
    return icon.availableSizes().isEmpty() ? Icons::Get(own) : icon;
}

} // namespace

LayerManagerDialog::LayerManagerDialog(QWidget* parent)
    : FloatingPanel(QStringLiteral("Layer Manager"), Settings::layerManagerGeometry, parent)
    , m_list(new CameraList(this)) {
    setObjectName(QStringLiteral("qmVxLayerManager"));
    setMinimumSize(200, 180);
    const auto add = [this](QHBoxLayout* row, const QIcon& icon, const char* toolTip,
                            void (LayerManagerDialog::*slot)()) {
        auto* const button = new PlainIconButton(icon, QLatin1String(toolTip), this);
        button->setObjectName(objectName() + QString(QLatin1String(toolTip)).remove(QLatin1Char(' ')));
        connect(button, &PlainIconButton::clicked, this, slot);
        row->addWidget(button);
        return button;
    };
    auto* const top = new QHBoxLayout;
    top->addStretch(1);
    m_list->SetTabPredecessor(add(top, Icons::Get(Icon::Refresh), "Refresh", &LayerManagerDialog::RefreshUi));
    auto* const bottom = new QHBoxLayout;
    m_moveUp = add(bottom, HostIcon(":/moveLayerUp.png", Icon::MoveLayerUp), "Move Up",
                   &LayerManagerDialog::MoveLayerUp);
    m_moveDown = add(bottom, HostIcon(":/moveLayerDown.png", Icon::MoveLayerDown), "Move Down",
                     &LayerManagerDialog::MoveLayerDown);
    bottom->addStretch(1);
    add(bottom, HostIcon(":/newLayerEmpty.png", Icon::NewLayer), "New Layer", &LayerManagerDialog::NewLayer);
    m_delete = add(bottom, Icons::Get(Icon::DeleteLayer), "Delete Layer", &LayerManagerDialog::DeleteLayer);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(m_list, 1);
    layout->addLayout(bottom);
}

// --- changes reported -------------------------------------------------------------------------------------

void LayerManagerDialog::Clear() {
    m_rows.clear();
    m_activeCamera.clear();
    m_activeIndex = -1;
    QueueUpdate();
}

void LayerManagerDialog::Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera,
                              int activeIndex) {
    m_rows = rows;
    SetActive(activeCamera, activeIndex);
}

void LayerManagerDialog::AppendLayer(const LayerManagerRow& row) {
    // Rows of one camera must be adjacent.
    const auto last = std::find_if(m_rows.rbegin(), m_rows.rend(),
                                   [&](const LayerManagerRow& other) { return other.camera == row.camera; });
    m_rows.insert(last == m_rows.rend() ? m_rows.size() : int(last.base() - m_rows.begin()), row);
    QueueUpdate();
}

void LayerManagerDialog::SetActive(const QString& camera, int index) {
    m_activeCamera = camera;
    m_activeIndex = index;
    QueueUpdate();
}

int LayerManagerDialog::LayerCount(const QString& camera) const {
    return int(std::count_if(m_rows.begin(), m_rows.end(),
                             [&](const LayerManagerRow& row) { return row.camera == camera; }));
}

void LayerManagerDialog::QueueUpdate() {
    if (!m_updateQueued) {
        m_updateQueued = true;
        QMetaObject::invokeMethod(this, "Update", Qt::QueuedConnection);
    }
    m_undoing = m_undoing || MGlobal::isUndoing() || MGlobal::isRedoing();
}

void LayerManagerDialog::Update() {
    m_updateQueued = false;
    // A new layer is scrolled into view. Undo and redo keep the scroll position.
    const LayerItem* const active = m_list->GetActive();
    const bool isNew = !m_undoing && m_rows.size() > m_shownCount;
    m_undoing = false;
    m_shownCount = m_rows.size();
    m_list->Fill(m_rows, m_activeCamera, m_activeIndex);
    m_revealActive = m_revealActive || (isNew && active != m_list->GetActive());
    m_moveUp->SetDimmed(!CanMoveUp());
    m_moveDown->SetDimmed(!CanMoveDown());
    m_delete->SetDimmed(!HasActive());
    if (m_revealActive && isVisible() && HasActive()) {
        m_revealActive = false;
        m_list->RevealActive();
    }
}

// --- actions ----------------------------------------------------------------------------------------------

bool LayerManagerDialog::HasActive() const {
    return !m_activeCamera.isEmpty() && m_activeIndex >= 0;
}

bool LayerManagerDialog::CanMoveUp() const {
    return !m_activeCamera.isEmpty() && m_activeIndex + 1 < LayerCount(m_activeCamera);
}

bool LayerManagerDialog::CanMoveDown() const {
    return !m_activeCamera.isEmpty() && m_activeIndex >= 1;
}

void LayerManagerDialog::NewLayer() {
    DialogManager::ShowNewLayerDialog();
}

void LayerManagerDialog::DeleteLayer() {
    if (HasActive()) {
        MayaUtil::RemoveLayer(m_activeCamera, m_activeIndex);
    }
}

void LayerManagerDialog::MoveLayerUp() {
    if (CanMoveUp()) {
        m_revealActive = true;
        MayaUtil::MoveLayer(m_activeCamera, m_activeIndex, m_activeIndex + 1);
    }
}

void LayerManagerDialog::MoveLayerDown() {
    if (CanMoveDown()) {
        m_revealActive = true;
        MayaUtil::MoveLayer(m_activeCamera, m_activeIndex, m_activeIndex - 1);
    }
}

void LayerManagerDialog::RefreshUi() {
    MayaUtil::RefreshLayerManagerDialog();
}

void LayerManagerDialog::showEvent(QShowEvent* event) {
    FloatingPanel::showEvent(event);
    Update();
}

void LayerManagerDialog::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        // The rows get the new palette only after the panel.
        QMetaObject::invokeMethod(m_list, "UpdateColors", Qt::QueuedConnection);
    }
    FloatingPanel::changeEvent(event);
}

} // namespace vellix
