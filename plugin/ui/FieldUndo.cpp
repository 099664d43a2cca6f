#include "ui/FieldUndo.h"

#include <QKeyEvent>
#include <QWidget>

#include <utility>

namespace vellix {

namespace {

/// Recognises all the usual keys, because hosts use more of them than the platform's own.
bool IsUndoOrRedo(const QKeyEvent& key) {
    const Qt::KeyboardModifiers modifiers = key.modifiers();
    const bool isControl = (modifiers & ~Qt::ShiftModifier) == Qt::ControlModifier;
    return isControl &&
           (key.key() == Qt::Key_Z || (key.key() == Qt::Key_Y && modifiers == Qt::ControlModifier));
}

} // namespace

FieldUndo::FieldUndo(QWidget& field, std::function<bool()> isBeingTyped)
    : QObject(&field)
    , isBeingTyped_(std::move(isBeingTyped)) {
    field.installEventFilter(this);
}

bool FieldUndo::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && IsUndoOrRedo(*static_cast<QKeyEvent*>(event))) {
        event->setAccepted(isBeingTyped_());
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace vellix
