#include "ui/CameraList.h"

#include "ui/CameraLayerList.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

namespace vellix {

struct CameraList::Place {
    QString camera;
    QString name; ///< empty for no place
    int index = 0;
    int y = 0; ///< pixels below the top of the viewport
    LayerItem::Part part = LayerItem::Part::Row;
};

CameraList::CameraList(QWidget* parent)
    : QScrollArea(parent)
    , m_content(new QWidget)
    , m_layout(new QVBoxLayout(m_content)) {
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(2);
    m_layout->addStretch(1);
    setWidget(m_content);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The rows take the keyboard focus, not the list.
    setFocusPolicy(Qt::NoFocus);
    viewport()->setFocusPolicy(Qt::NoFocus);
}

QSize CameraList::sizeHint() const {
    const int line = fontMetrics().height();
    return {20 * line, 20 * line};
}

void CameraList::Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera, int activeIndex) {
    const Place topmost = FindTopmost();
    const Place focused = FindFocused();
    setUpdatesEnabled(false);
    FillSections(rows);
    LayerItem* const active = FindItem(activeCamera, activeIndex);
    if (m_active != nullptr && m_active != active) {
        m_active->SetActive(false);
    }
    if (active != nullptr) {
        active->SetActive(true);
    }
    m_active = active;
    LayOut();
    RestoreTopmost(topmost);
    RestoreFocus(focused);
    setUpdatesEnabled(true);
}

void CameraList::FillSections(const QList<LayerManagerRow>& rows) {
    QList<CameraLayerList*> old = m_sections;
    m_sections.clear();
    for (int first = 0; first < rows.size();) {
        const QString camera = rows[first].camera;
        QList<LayerManagerRow> layers;
        for (; first < rows.size() && rows[first].camera == camera; ++first) {
            layers.append(rows[first]);
        }
        CameraLayerList* const section = TakeSection(camera, old);
        if (m_layout->indexOf(section) != m_sections.size()) {
            m_layout->insertWidget(m_sections.size(), section);
        }
        m_sections.append(section);
        section->Fill(layers);
    }
    for (CameraLayerList* const section : old) {
        m_layout->removeWidget(section);
        section->hide();
        section->deleteLater();
    }
}

CameraLayerList* CameraList::TakeSection(const QString& camera, QList<CameraLayerList*>& from) {
    for (int i = 0; i < from.size(); ++i) {
        if (from[i]->GetCameraName() == camera) {
            return from.takeAt(i);
        }
    }
    auto* const section = new CameraLayerList(m_content);
    section->SetCameraName(camera);
    connect(section, &CameraLayerList::ItemFocused, this, &CameraList::SetTabStop);
    return section;
}

/// Lays the rows out now, not in the event loop: places are restored before anything is painted.
void CameraList::LayOut() {
    for (CameraLayerList* const section : m_sections) {
        section->show();
        section->layout()->activate();
    }
    m_layout->activate();
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(this, &request);
}

LayerItem* CameraList::GetActive() const {
    return m_active;
}

void CameraList::RevealActive() {
    if (m_active != nullptr) {
        ensureWidgetVisible(m_active.data(), 0, 0);
    }
}

void CameraList::UpdateColors() {
    for (LayerItem* const item : ItemsFromTop()) {
        item->UpdateColors();
    }
}

// --- finding layers ---------------------------------------------------------------------------------------

LayerItem* CameraList::FindItem(const QString& camera, int index) const {
    for (const CameraLayerList* const section : m_sections) {
        if (section->GetCameraName() == camera) {
            return section->Items().value(index, nullptr);
        }
    }
    return nullptr;
}

/// Finds a layer by name on the camera, or else on another camera that it may have moved to. Null if there is
/// none.
LayerItem* CameraList::FindNamed(const QString& camera, const QString& name) const {
    LayerItem* elsewhere = nullptr;
    for (LayerItem* const item : ItemsFromTop()) {
        if (item->GetName() == name) {
            if (item->GetCamera() == camera) {
                return item;
            }
            elsewhere = item;
        }
    }
    return elsewhere;
}

QList<LayerItem*> CameraList::ItemsFromTop() const {
    QList<LayerItem*> items;
    for (const CameraLayerList* const section : m_sections) {
        for (int i = section->Items().size() - 1; i >= 0; --i) {
            items.append(section->Items()[i]);
        }
    }
    return items;
}

// --- saving and restoring places --------------------------------------------------------------------------

CameraList::Place CameraList::FindTopmost() const {
    Place place;
    for (const LayerItem* const item : ItemsFromTop()) {
        const int y = item->mapTo(viewport(), QPoint()).y();
        if (y + item->height() > 0) {
            place.camera = item->GetCamera();
            place.name = item->GetName();
            place.y = y;
            break;
        }
    }
    return place;
}

void CameraList::RestoreTopmost(const Place& place) {
    // A list scrolled to the top stays there, so that new layers come into view.
    if (place.name.isEmpty() || verticalScrollBar()->value() == 0) {
        return;
    }
    if (const LayerItem* const item = FindNamed(place.camera, place.name)) {
        const int moved = item->mapTo(viewport(), QPoint()).y() - place.y;
        verticalScrollBar()->setValue(verticalScrollBar()->value() + moved);
    }
}

CameraList::Place CameraList::FindFocused() const {
    Place place;
    for (const LayerItem* const item : ItemsFromTop()) {
        if (item->GetFocusedPart(place.part)) {
            place.camera = item->GetCamera();
            place.name = item->GetName();
            place.index = item->GetIndex();
            break;
        }
    }
    return place;
}

void CameraList::RestoreFocus(const Place& place) {
    const QList<LayerItem*> items = ItemsFromTop();
    if (place.name.isEmpty()) {
        if (!items.contains(m_tabStop) || m_active != nullptr) {
            SetTabStop(m_active != nullptr ? m_active.data() : items.value(0, nullptr));
        }
        return;
    }
    LayerItem* item = FindNamed(place.camera, place.name);
    for (int index = place.index; item == nullptr && index >= 0; --index) {
        item = FindItem(place.camera, index);
    }
    if (item == nullptr) {
        item = items.value(0, nullptr);
    }
    LayerItem::Part part = LayerItem::Part::Row;
    if (item != nullptr && !(item->GetFocusedPart(part) && part == place.part)) {
        item->FocusPart(place.part, Qt::OtherFocusReason);
    }
}

// --- keyboard ---------------------------------------------------------------------------------------------

void CameraList::SetTabStop(LayerItem* item) {
    if (m_tabStop == item) {
        return;
    }
    if (m_tabStop != nullptr) {
        m_tabStop->SetTabStop(false);
    }
    m_tabStop = item;
    if (item != nullptr) {
        item->SetTabStop(true);
        item->PlaceInTabOrder(m_tabPredecessor);
    }
}

void CameraList::keyPressEvent(QKeyEvent* event) {
    const QList<LayerItem*> items = ItemsFromTop();
    int at = 0;
    LayerItem::Part part = LayerItem::Part::Row;
    while (at < items.size() && !items[at]->GetFocusedPart(part)) {
        ++at;
    }
    if (at == items.size()) {
        QScrollArea::keyPressEvent(event);
        return;
    }
    const int page = qMax(1, viewport()->height() / qMax(1, items[at]->height()) - 1);
    int to = at;
    switch (event->key()) {
    case Qt::Key_Up:
        to -= 1;
        break;
    case Qt::Key_Down:
        to += 1;
        break;
    case Qt::Key_PageUp:
        to -= page;
        break;
    case Qt::Key_PageDown:
        to += page;
        break;
    case Qt::Key_Home:
        to = 0;
        break;
    case Qt::Key_End:
        to = items.size() - 1;
        break;
    default:
        event->ignore();
        return;
    }
    LayerItem* const item = items[qBound(0, to, items.size() - 1)];
    item->FocusPart(part, Qt::OtherFocusReason);
    ensureWidgetVisible(item, 0, 0);
}

void CameraList::paintEvent(QPaintEvent* event) {
    QScrollArea::paintEvent(event);
    if (m_sections.isEmpty()) {
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
        painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap,
                         QStringLiteral("No layers yet. New Layer adds one."));
    }
}

} // namespace vellix
