#include "ui/CameraLayerList.h"

#include "host/MayaUtil.h"
#include "host/panels/DialogManager.h"
#include "ui/CameraMenu.h"
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
    : QWidget(parent)
    , m_header(new ElidedLabel(this))
    , m_itemLayout(new QVBoxLayout) {
    m_header->setContentsMargins(5, 0, 5, 0);
    m_header->setAutoFillBackground(true);
    m_header->setBackgroundRole(QPalette::Button);
    m_header->setForegroundRole(QPalette::ButtonText);
    m_itemLayout->setContentsMargins(0, 0, 0, 0);
    m_itemLayout->setSpacing(0);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addLayout(m_itemLayout);
    FitHeader();
    SetCameraName(QStringLiteral("unknownCamera"));
}

void CameraLayerList::FitHeader() {
    QFont bold = font();
    bold.setBold(true);
    m_header->setFont(bold);
    m_header->setFixedHeight(qMax(HEADER_HEIGHT, QFontMetrics(bold).height() + 3));
}

void CameraLayerList::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        FitHeader();
    }
    QWidget::changeEvent(event);
}

void CameraLayerList::SetCameraName(const QString& name) {
    m_camera = name;
    m_header->setText(name);
}

void CameraLayerList::Fill(const QList<LayerManagerRow>& rows) {
    while (m_items.size() > rows.size()) {
        LayerItem* const item = m_items.takeLast();
        m_itemLayout->removeWidget(item);
        item->hide();
        // One of the item's own buttons may be handling a click.
        item->deleteLater();
    }
    for (int i = 0; i < rows.size(); ++i) {
        if (i < m_items.size()) {
            m_items[i]->Show(rows[i]);
        } else {
            AppendLayer(rows[i]);
        }
    }
}

void CameraLayerList::AppendLayer(const LayerManagerRow& row) {
    auto* const item = new LayerItem(m_camera, m_items.size(), this);
    item->Show(row);
    connect(item, &LayerItem::Focused, this, &CameraLayerList::ItemFocused);
    m_items.append(item);
    m_itemLayout->insertWidget(0, item);
    // The layout would show the item only later and leave no room for it until then.
    item->show();
}

void CameraLayerList::contextMenuEvent(QContextMenuEvent* event) {
    const QString camera = m_camera;
    auto* const menu = new QMenu(window());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    CameraMenu::Add(*menu, QStringLiteral("Move all layers to         "), camera,
                    [camera](const QString& chosen) { MayaUtil::MoveAllLayers(camera, chosen); });
    menu->popup(event->globalPos());
}

} // namespace vellix
