#include "ui/IconView.h"

#include <QPainter>

namespace vellix {

IconView::IconView(Icon icon, int side, QWidget* parent)
    : GuardedWidget(parent)
    , shown_(icon)
    , icon_(Icons::Get(icon)) {
    setFixedSize(side, side);
}

void IconView::SetIcon(Icon icon) {
    if (icon != shown_) {
        shown_ = icon;
        icon_ = Icons::Get(icon);
        update();
    }
}

void IconView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    icon_.paint(&painter, rect());
}

} // namespace vellix
