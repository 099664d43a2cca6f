#include "controls/ControlMenu.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVariant>

namespace lightbox {

namespace {

constexpr const char* BOX_PROPERTY = "optionBox";

} // namespace

void ControlMenu::SetOptionBox(QAction& item, QAction& box) {
    item.setProperty(BOX_PROPERTY, QVariant::fromValue<QObject*>(&box));
    connect(&box, &QObject::destroyed, &item, [&item] { item.setProperty(BOX_PROPERTY, QVariant()); });
}

QAction* ControlMenu::OptionBoxOf(const QAction& item) {
    return qobject_cast<QAction*>(item.property(BOX_PROPERTY).value<QObject*>());
}

QRect ControlMenu::OptionBoxRect(QAction& item) const {
    const QRect row = actionGeometry(&item);
    const int side = row.height() / 2;
    return {row.right() - side - 6, row.center().y() - side / 2, side, side};
}

void ControlMenu::paintEvent(QPaintEvent* event) {
    QMenu::paintEvent(event);
    QPainter painter(this);
    for (QAction* const item : actions()) {
        if (OptionBoxOf(*item) && item->isVisible()) {
            painter.setPen(
                palette().color(item == activeAction() ? QPalette::HighlightedText : QPalette::Text));
            painter.drawRect(OptionBoxRect(*item));
        }
    }
}

void ControlMenu::mouseReleaseEvent(QMouseEvent* event) {
    QAction* const item = actionAt(event->pos());
    QAction* const box = item ? OptionBoxOf(*item) : nullptr;
    // The whole right end of the row counts as the box, since the square itself is small.
    if (box && event->button() == Qt::LeftButton && event->pos().x() >= OptionBoxRect(*item).left() - 6) {
        for (QWidget* menu = this; qobject_cast<QMenu*>(menu); menu = menu->parentWidget()) {
            menu->close();
        }
        box->trigger();
        return;
    }
    QMenu::mouseReleaseEvent(event);
}

void ControlMenu::OpenOn(QWidget& widget) {
    widget.installEventFilter(this);
}

bool ControlMenu::eventFilter(QObject* watched, QEvent* event) {
    const bool isPlain = openingButton == Qt::RightButton && openingModifiers == Qt::NoModifier;
    if (event->type() == QEvent::ContextMenu && isPlain) {
        popup(static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    if (event->type() == QEvent::MouseButtonPress && !isPlain) {
        const auto* const press = static_cast<QMouseEvent*>(event);
        if (press->button() == openingButton && press->modifiers() == openingModifiers) {
            popup(press->globalPos());
            return true;
        }
    }
    return QMenu::eventFilter(watched, event);
}

} // namespace lightbox
