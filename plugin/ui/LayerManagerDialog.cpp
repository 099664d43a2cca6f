#include "ui/LayerManagerDialog.h"

#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/PanelTable.h"
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
    : FloatingPanel(Panel::LayerManager, parent)
    , list_(new CameraList(this)) {
    setObjectName(QStringLiteral("qmVxLayerManager"));
    setMinimumSize(200, 180);
    const auto add = [this](QHBoxLayout* row, const QIcon& icon, const char* toolTip,
                            void (LayerManagerDialog::*slot)()) {
        auto* const button = new PlainIconButton(icon, QLatin1String(toolTip), this);
        button->setObjectName(objectName() + QString(QLatin1String(toolTip)).remove(QLatin1Char(' ')));
        ConnectGuarded(button, &PlainIconButton::clicked, this, slot);
        row->addWidget(button);
        return button;
    };
    auto* const top = new QHBoxLayout;
    top->addStretch(1);
    list_->SetTabPredecessor(add(top, Icons::Get(Icon::Refresh), "Refresh", &LayerManagerDialog::RefreshUi));
    auto* const bottom = new QHBoxLayout;
    moveUp_ = add(bottom, HostIcon(":/moveLayerUp.png", Icon::MoveLayerUp), "Move Up",
                  &LayerManagerDialog::MoveLayerUp);
    moveDown_ = add(bottom, HostIcon(":/moveLayerDown.png", Icon::MoveLayerDown), "Move Down",
                    &LayerManagerDialog::MoveLayerDown);
    bottom->addStretch(1);
    add(bottom, HostIcon(":/newLayerEmpty.png", Icon::NewLayer), "New Layer", &LayerManagerDialog::NewLayer);
    delete_ = add(bottom, Icons::Get(Icon::DeleteLayer), "Delete Layer", &LayerManagerDialog::DeleteLayer);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(list_, 1);
    layout->addLayout(bottom);
}

// --- changes reported -------------------------------------------------------------------------------------

void LayerManagerDialog::Clear() {
    rows_.clear();
    activeCamera_.clear();
    activeIndex_ = -1;
    QueueUpdate();
}

void LayerManagerDialog::Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera,
                              int activeIndex) {
    rows_ = rows;
    SetActive(activeCamera, activeIndex);
}

void LayerManagerDialog::AppendLayer(const LayerManagerRow& row) {
    // Rows of one camera must be adjacent.
    const auto last = std::find_if(rows_.rbegin(), rows_.rend(),
                                   [&](const LayerManagerRow& other) { return other.camera == row.camera; });
    rows_.insert(last == rows_.rend() ? rows_.size() : static_cast<int>(last.base() - rows_.begin()), row);
    QueueUpdate();
}

void LayerManagerDialog::SetActive(const QString& camera, int index) {
    activeCamera_ = camera;
    activeIndex_ = index;
    QueueUpdate();
}

int LayerManagerDialog::LayerCount(const QString& camera) const {
    return static_cast<int>(std::count_if(rows_.begin(), rows_.end(),
                                          [&](const LayerManagerRow& row) { return row.camera == camera; }));
}

void LayerManagerDialog::QueueUpdate() {
    if (!updateQueued_) {
        updateQueued_ = true;
        QMetaObject::invokeMethod(this, "Update", Qt::QueuedConnection);
    }
    undoing_ = undoing_ || MGlobal::isUndoing() || MGlobal::isRedoing();
}

void LayerManagerDialog::Update() {
    updateQueued_ = false;
    // A layer that becomes active is scrolled into view. Undo and redo keep the scroll position.
    const quint64 active = ActiveLayer();
    const bool isOther = !undoing_ && active != shownActive_;
    undoing_ = false;
    shownActive_ = active;
    list_->Fill(rows_, activeCamera_, activeIndex_);
    revealActive_ = revealActive_ || isOther;
    moveUp_->SetDimmed(!CanMoveUp());
    moveDown_->SetDimmed(!CanMoveDown());
    delete_->SetDimmed(!HasActive());
    if (revealActive_ && isVisible() && HasActive()) {
        revealActive_ = false;
        list_->RevealActive();
    }
}

/// The identity of the active layer; 0 for none.
quint64 LayerManagerDialog::ActiveLayer() const {
    int index = activeIndex_;
    for (const LayerManagerRow& row : rows_) {
        if (row.camera == activeCamera_ && index-- == 0) {
            return row.id;
        }
    }
    return 0;
}

// --- actions ----------------------------------------------------------------------------------------------

bool LayerManagerDialog::HasActive() const {
    return !activeCamera_.isEmpty() && activeIndex_ >= 0;
}

bool LayerManagerDialog::CanMoveUp() const {
    return !activeCamera_.isEmpty() && activeIndex_ + 1 < LayerCount(activeCamera_);
}

bool LayerManagerDialog::CanMoveDown() const {
    return !activeCamera_.isEmpty() && activeIndex_ >= 1;
}

void LayerManagerDialog::NewLayer() {
    DialogManager::ShowNewLayerDialog();
}

void LayerManagerDialog::DeleteLayer() {
    if (HasActive()) {
        MayaUtil::RemoveLayer(activeCamera_, activeIndex_);
    }
}

void LayerManagerDialog::MoveLayerUp() {
    if (CanMoveUp()) {
        revealActive_ = true;
        MayaUtil::MoveLayer(activeCamera_, activeIndex_, activeIndex_ + 1);
    }
}

void LayerManagerDialog::MoveLayerDown() {
    if (CanMoveDown()) {
        revealActive_ = true;
        MayaUtil::MoveLayer(activeCamera_, activeIndex_, activeIndex_ - 1);
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
        QMetaObject::invokeMethod(list_, "UpdateColors", Qt::QueuedConnection);
    }
    FloatingPanel::changeEvent(event);
}

} // namespace vellix
