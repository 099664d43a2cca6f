#include "ui/CameraList.h"

#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "ui/CameraLayerList.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace vellix {

namespace {

constexpr int EMPTY_MARGIN = 12; ///< pixels around the text of an empty list
constexpr int SCROLL_INTERVAL_MS = 40;
constexpr int SCROLL_EDGE = 16; ///< pixels at the upper and lower edge where a drag scrolls
constexpr int SCROLL_STEP = 8;  ///< pixels
constexpr int DROP_LINE = 2;    ///< pixels

} // namespace

struct CameraList::Gap {
    QString camera;
    int index = -1; ///< a layer that is put here comes below the one with this index
    int y = 0;      ///< in the content
};

struct CameraList::Place {
    bool isKnown = false;
    QString camera;
    quint64 id = 0;
    int index = 0;
    int y = 0; ///< pixels below the top of the viewport
    LayerItem::Part part = LayerItem::Part::Row;
};

CameraList::CameraList(QWidget* parent)
    : GuardedWidget(parent)
    , content_(new QWidget)
    , layout_(new QVBoxLayout(content_))
    , empty_(new QLabel(QStringLiteral("No layers yet. New Layer adds one.")))
    , dropLine_(new QWidget(content_)) {
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(2);
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setWordWrap(true);
    empty_->setMargin(EMPTY_MARGIN);
    layout_->addWidget(empty_, 1);
    layout_->addStretch(1);
    dropLine_->setAutoFillBackground(true);
    dropLine_->setBackgroundRole(QPalette::Highlight);
    dropLine_->hide();
    scrolling_.setInterval(SCROLL_INTERVAL_MS);
    ConnectGuarded(&scrolling_, &QTimer::timeout, this, &CameraList::ScrollWhileDragging);
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
    empty_->setVisible(sections_.isEmpty());
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
    ConnectGuarded(section, &CameraLayerList::ItemFocused, this, &CameraList::SetTabStop);
    ConnectGuarded(section, &CameraLayerList::ItemDragStarted, this, &CameraList::BeginDrag);
    ConnectGuarded(section, &CameraLayerList::ItemDragMoved, this, &CameraList::DragTo);
    ConnectGuarded(section, &CameraLayerList::ItemDragEnded, this, &CameraList::EndDrag);
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

/// Finds the layer of a place, wherever it has moved to. A layer without an identity is found by camera and
/// index. Null if there is none.
LayerItem* CameraList::FindLayer(const Place& place) const {
    if (place.id == 0) {
        return FindItem(place.camera, place.index);
    }
    const QList<LayerItem*> items = ItemsFromTop();
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const LayerItem* item) { return item->GetId() == place.id; });
    return found == items.end() ? nullptr : *found;
}

CameraList::Place CameraList::PlaceOf(const LayerItem& item) {
    Place place;
    place.isKnown = true;
    place.camera = item.GetCamera();
    place.id = item.GetId();
    place.index = item.GetIndex();
    return place;
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
            place = PlaceOf(*item);
            place.y = y;
            break;
        }
    }
    return place;
}

void CameraList::RestoreTopmost(const Place& place) {
    // A list scrolled to the top stays there, so that new layers come into view.
    if (!place.isKnown || verticalScrollBar()->value() == 0) {
        return;
    }
    if (const LayerItem* const item = FindLayer(place)) {
        const int moved = item->mapTo(viewport(), QPoint()).y() - place.y;
        verticalScrollBar()->setValue(verticalScrollBar()->value() + moved);
    }
}

CameraList::Place CameraList::FindFocused() const {
    Place place;
    for (const LayerItem* const item : ItemsFromTop()) {
        LayerItem::Part part = LayerItem::Part::Row;
        if (item->GetFocusedPart(part)) {
            place = PlaceOf(*item);
            place.part = part;
            break;
        }
    }
    return place;
}

void CameraList::RestoreFocus(const Place& place) {
    const QList<LayerItem*> items = ItemsFromTop();
    if (!place.isKnown) {
        if (!items.contains(tabStop_) || active_) {
            SetTabStop(active_ ? active_.data() : items.value(0, nullptr));
        }
        return;
    }
    LayerItem* item = FindLayer(place);
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

// --- dragging layers --------------------------------------------------------------------------------------

void CameraList::BeginDrag(LayerItem* item) {
    dragged_ = item->GetId();
    draggedRow_ = item;
    scrolling_.start();
}

void CameraList::DragTo(const QPoint& place) {
    dragPlace_ = place;
    const Gap gap = FindGap(content_->mapFromGlobal(place).y());
    if (dragged_ != 0 && gap.index >= 0) {
        dropLine_->setGeometry(0, gap.y - DROP_LINE / 2, content_->width(), DROP_LINE);
        dropLine_->raise();
        dropLine_->show();
    }
}

void CameraList::EndDrag(bool drop) {
    scrolling_.stop();
    dropLine_->hide();
    Place from; // the layer may have gone or moved meanwhile
    from.id = dragged_;
    const LayerItem* const item = dragged_ != 0 ? FindLayer(from) : nullptr;
    const Gap gap = FindGap(content_->mapFromGlobal(dragPlace_).y());
    dragged_ = 0;
    if (!drop || !item || gap.index < 0) {
        return;
    }
    if (gap.camera != item->GetCamera()) {
        MayaUtil::MoveLayer(item->GetCamera(), item->GetIndex(), gap.camera, gap.index);
        return;
    }
    const int to = gap.index > item->GetIndex() ? gap.index - 1 : gap.index;
    if (to != item->GetIndex()) {
        MayaUtil::MoveLayer(item->GetCamera(), item->GetIndex(), to);
    }
}

void CameraList::ScrollWhileDragging() {
    // The release goes with a row that goes.
    if (!draggedRow_) {
        EndDrag(false);
        return;
    }
    const int y = viewport()->mapFromGlobal(dragPlace_).y();
    const int step = y < SCROLL_EDGE                           ? -SCROLL_STEP
                     : y >= viewport()->height() - SCROLL_EDGE ? SCROLL_STEP
                                                               : 0;
    if (step != 0) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + step);
        DragTo(dragPlace_);
    }
}

CameraList::Gap CameraList::FindGap(int y) const {
    Gap nearest;
    for (const CameraLayerList* const section : sections_) {
        const QList<LayerItem*>& items = section->Items();
        for (int i = 0; !items.isEmpty() && i <= items.size(); ++i) {
            const LayerItem* const item = items[qMin(i, items.size() - 1)];
            const int edge = item->mapTo(content_, QPoint(0, i < items.size() ? item->height() : 0)).y();
            if (nearest.index < 0 || qAbs(edge - y) < qAbs(nearest.y - y)) {
                nearest.camera = section->GetCameraName();
                nearest.index = i;
                nearest.y = edge;
            }
        }
    }
    return nearest;
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

} // namespace vellix
