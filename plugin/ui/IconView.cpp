#include "ui/IconView.h"

#include <QPainter>

namespace vellix {

IconView::IconView(Icon icon, int side, QWidget* parent)
    : QWidget(parent)
    , m_shown(icon)
    , m_icon(Icons::Get(icon)) {
    setFixedSize(side, side);
}

void IconView::SetIcon(Icon icon) {
    if (icon != m_shown) {
        m_shown = icon;
        m_icon = Icons::Get(icon);
        update();
    }
}

void IconView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    m_icon.paint(&painter, rect());
}

} // namespace vellix
