#include "tools/OutsidePress.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace vellix {

OutsidePress::OutsidePress(std::function<void()> pressed)
    : pressed_(std::move(pressed)) {}

void OutsidePress::Watch(QWidget* view) {
    view_ = view;
    QCoreApplication::instance()->installEventFilter(this);
}

void OutsidePress::Stop() {
    if (QCoreApplication* const application = QCoreApplication::instance()) {
        application->removeEventFilter(this);
    }
}

bool OutsidePress::eventFilter(QObject* watched, QEvent* event) {
    const bool isPress = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::TabletPress;
    if (isPress && watched->isWidgetType() && watched != view_) {
        pressed_();
    }
    return false;
}

} // namespace vellix
