#include "ui/PlainIconButton.h"

#include "ui/FocusFrame.h"

#include <QPainter>

namespace vellix {

namespace {

const int PLAIN_SIDE = 24;
const int PLAIN_MARGIN = 2; // pixels between the icon and the button's edge

} // namespace

PlainIconButton::PlainIconButton(const QIcon& icon, const QString& toolTip, QWidget* parent)
    : GuardedWidget(parent) {
    setIcon(icon);
    setToolTip(toolTip);
    setAccessibleName(toolTip);
    setFixedSize(PlainIconButton::sizeHint());
    setFocusPolicy(Qt::StrongFocus);
}

QSize PlainIconButton::sizeHint() const {
    return {PLAIN_SIDE, PLAIN_SIDE};
}

void PlainIconButton::SetDimmed(bool dimmed) {
    if (dimmed_ != dimmed) {
        dimmed_ = dimmed;
        update();
    }
}

void PlainIconButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    icon().paint(&painter, rect().adjusted(PLAIN_MARGIN, PLAIN_MARGIN, -PLAIN_MARGIN, -PLAIN_MARGIN),
                 Qt::AlignCenter, dimmed_ || !isEnabled() ? QIcon::Disabled : QIcon::Normal);
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        FocusFrame::Draw(painter, rect(), palette());
    }
}

} // namespace vellix
