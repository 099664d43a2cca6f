#include "ui/FloatingPanel.h"

#include "host/PanelTable.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QShowEvent>

#include <limits>

namespace vellix {

namespace {

/// The available geometry of the screen that contains the middle of `place`, or of the nearest screen.
QRect AvailableNear(const QRect& place) {
    QRect nearest;
    int least = std::numeric_limits<int>::max();
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect available = screen->availableGeometry();
        const QPoint middle = place.center();
        const QPoint inside(qBound(available.left(), middle.x(), available.right()),
                            qBound(available.top(), middle.y(), available.bottom()));
        const int distance = (inside - middle).manhattanLength();
        if (distance < least) {
            least = distance;
            nearest = available;
        }
    }
    return nearest;
}

bool MovesInPanel(const QKeyEvent& key) {
    if ((key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0) {
        return false;
    }
    switch (key.key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}

} // namespace

FloatingPanel::FloatingPanel(Panel panel, QWidget* parent)
    : QDialog(parent, Qt::Tool)
    , geometry_(Settings::GetPanelGeometry(panel)) {
    setWindowTitle(QString::fromLatin1(RowOf(panel).title));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setAttribute(Qt::WA_WindowPropagation);
}

FloatingPanel::~FloatingPanel() {
    // The host's window may delete its panels without closing them.
    if (isVisible()) {
        geometry_ = saveGeometry();
    }
}

QRect FloatingPanel::MoveInto(const QRect& wanted, const QRect& available) {
    QRect place = wanted;
    place.moveLeft(qMax(available.left(), qMin(place.left(), available.right() - place.width() + 1)));
    place.moveTop(qMax(available.top(), qMin(place.top(), available.bottom() - place.height() + 1)));
    return place;
}

bool FloatingPanel::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && focusWidget()) {
        if (MovesInPanel(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
    }
    return QDialog::event(event);
}

void FloatingPanel::showEvent(QShowEvent* event) {
    // A spontaneous event comes from the window system, after minimising.
    if (!event->spontaneous()) {
        RestorePlace();
        DialogManager::NoteOpenPanels();
    }
    QDialog::showEvent(event);
}

void FloatingPanel::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        DialogManager::NoteOpenPanels();
    }
    QDialog::hideEvent(event);
}

void FloatingPanel::closeEvent(QCloseEvent* event) {
    if (isVisible()) {
        geometry_ = saveGeometry();
    }
    event->accept();
}

void FloatingPanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->ignore();
        return;
    }
    QDialog::keyPressEvent(event);
}

void FloatingPanel::RestorePlace() {
    const bool known = !geometry_.isEmpty() && restoreGeometry(geometry_);
    if (!known) {
        resize(sizeHint().expandedTo(minimumSize()));
    }
    QRect place = frameGeometry();
    if (!known && parentWidget()) {
        place.moveCenter(parentWidget()->window()->frameGeometry().center());
    }
    const QRect available = AvailableNear(place);
    // A panel saved on a larger screen is cut to the size of this one.
    const QSize frame = frameGeometry().size() - size();
    resize(size().boundedTo(available.size() - frame));
    place.setSize(size() + frame);
    move(MoveInto(place, available).topLeft());
}

} // namespace vellix
