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
    , content_(new QWidget)
    , layout_(new QVBoxLayout(content_)) {
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(2);
    layout_->addStretch(1);
    setWidget(content_);
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
    if (active_ && active_ != active) {
        active_->SetActive(false);
    }
    if (active) {
        active->SetActive(true);
    }
    active_ = active;
    LayOut();
    RestoreTopmost(topmost);
    RestoreFocus(focused);
    setUpdatesEnabled(true);
}

void CameraList::FillSections(const QList<LayerManagerRow>& rows) {
    QList<CameraLayerList*> old = sections_;
    sections_.clear();
    for (int first = 0; first < rows.size();) {
        const QString camera = rows[first].camera;
        QList<LayerManagerRow> layers;
        for (; first < rows.size() && rows[first].camera == camera; ++first) {
            layers.append(rows[first]);
        }
        CameraLayerList* const section = TakeSection(camera, old);
        if (layout_->indexOf(section) != sections_.size()) {
            layout_->insertWidget(sections_.size(), section);
        }
        sections_.append(section);
        section->Fill(layers);
    }
    for (CameraLayerList* const section : old) {
        layout_->removeWidget(section);
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
    auto* const section = new CameraLayerList(content_);
    section->SetCameraName(camera);
    connect(section, &CameraLayerList::ItemFocused, this, &CameraList::SetTabStop);
    return section;
}

/// Lays the rows out now, not in the event loop: places are restored before anything is painted.
void CameraList::LayOut() {
    for (CameraLayerList* const section : sections_) {
        section->show();
        section->layout()->activate();
    }
    layout_->activate();
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(this, &request);
}

LayerItem* CameraList::GetActive() const {
    return active_;
}

void CameraList::RevealActive() {
    if (active_) {
        ensureWidgetVisible(active_.data(), 0, 0);
    }
}

void CameraList::UpdateColors() {
    for (LayerItem* const item : ItemsFromTop()) {
        item->UpdateColors();
    }
}

// --- finding layers ---------------------------------------------------------------------------------------

LayerItem* CameraList::FindItem(const QString& camera, int index) const {
    for (const CameraLayerList* const section : sections_) {
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
    for (const CameraLayerList* const section : sections_) {
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
        if (!items.contains(tabStop_) || active_) {
            SetTabStop(active_ ? active_.data() : items.value(0, nullptr));
        }
        return;
    }
    LayerItem* item = FindNamed(place.camera, place.name);
    for (int index = place.index; item == nullptr && index >= 0; --index) {
        item = FindItem(place.camera, index);
    }
    if (!item) {
        item = items.value(0, nullptr);
    }
    LayerItem::Part part = LayerItem::Part::Row;
    if (item && !(item->GetFocusedPart(part) && part == place.part)) {
        item->FocusPart(place.part, Qt::OtherFocusReason);
    }
}

// --- keyboard ---------------------------------------------------------------------------------------------

void CameraList::SetTabStop(LayerItem* item) {
    if (tabStop_ == item) {
        return;
    }
    if (tabStop_) {
        tabStop_->SetTabStop(false);
    }
    tabStop_ = item;
    if (item) {
        item->SetTabStop(true);
        item->PlaceInTabOrder(tabPredecessor_);
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
    if (sections_.isEmpty()) {
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
        painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap,
                         QStringLiteral("No layers yet. New Layer adds one."));
    }
}

} // namespace vellix
