#include "ui/CameraLayerList.h"

#include "core/CameraHandle.h"
#include "host/MayaUtil.h"
#include "host/panels/DialogManager.h"
#include "ui/CameraMenu.h"
#include "ui/DrawingMenu.h"
#include "ui/ElidedLabel.h"
#include "ui/LayerItem.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QVBoxLayout>

namespace vellix {

namespace {

const int HEADER_HEIGHT = 20;

} // namespace

CameraLayerList::CameraLayerList(QWidget* parent)
    : GuardedWidget(parent)
    , header_(new ElidedLabel(this))
    , itemLayout_(new QVBoxLayout) {
    header_->setContentsMargins(5, 0, 5, 0);
    header_->setAutoFillBackground(true);
    header_->setBackgroundRole(QPalette::Button);
    header_->setForegroundRole(QPalette::ButtonText);
    itemLayout_->setContentsMargins(0, 0, 0, 0);
    itemLayout_->setSpacing(0);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(header_);
    layout->addLayout(itemLayout_);
    FitHeader();
    SetCameraName(QStringLiteral("unknownCamera"));
}

void CameraLayerList::FitHeader() {
    QFont bold = font();
    bold.setBold(true);
    header_->setFont(bold);
    header_->setFixedHeight(qMax(HEADER_HEIGHT, QFontMetrics(bold).height() + 3));
}

void CameraLayerList::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        FitHeader();
    }
    QWidget::changeEvent(event);
}

void CameraLayerList::SetCameraName(const QString& name) {
    camera_ = name;
    ShowHeader(true);
}

void CameraLayerList::ShowHeader(bool cameraExists) {
    header_->setText(cameraExists ? camera_ : tr("%1 (deleted)").arg(camera_));
    header_->setToolTip(cameraExists
                            ? QString()
                            : tr("This camera was deleted. Its layers are kept: right-click to move them to "
                                 "another camera."));
}

void CameraLayerList::Fill(const QList<LayerManagerRow>& rows) {
    ShowHeader(rows.isEmpty() || rows.first().cameraExists);
    while (items_.size() > rows.size()) {
        LayerItem* const item = items_.takeLast();
        itemLayout_->removeWidget(item);
        item->hide();
        // One of the item's own buttons may be handling a click.
        item->deleteLater();
    }
    for (int i = 0; i < rows.size(); ++i) {
        if (i < items_.size()) {
            items_[i]->Show(rows[i]);
        } else {
            AppendLayer(rows[i]);
        }
    }
}

void CameraLayerList::AppendLayer(const LayerManagerRow& row) {
    auto* const item = new LayerItem(camera_, items_.size(), this);
    item->Show(row);
    connect(item, &LayerItem::Focused, this, &CameraLayerList::ItemFocused);
    connect(item, &LayerItem::DragStarted, this, &CameraLayerList::ItemDragStarted);
    connect(item, &LayerItem::DragMoved, this, &CameraLayerList::ItemDragMoved);
    connect(item, &LayerItem::DragEnded, this, &CameraLayerList::ItemDragEnded);
    items_.append(item);
    itemLayout_->insertWidget(0, item);
    // The layout would show the item only later and leave no room for it until then.
    item->show();
}

void CameraLayerList::contextMenuEvent(QContextMenuEvent* event) {
    const CameraHandle mover(camera_); // it may get another name while the menu is open
    auto* const menu = new QMenu(window());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    CameraMenu::Add(*menu, QStringLiteral("Move all layers to         "), camera_,
                    [mover](const QString& chosen) { MayaUtil::MoveAllLayers(mover.Name(), chosen); });
    DrawingMenu::Add(*menu);
    menu->popup(event->globalPos());
}

} // namespace vellix
