#include "ui/FloatingPanel.h"

#include "host/PanelTable.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"

#include <maya/M3dView.h>

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QShowEvent>

#include <algorithm>
#include <limits>

namespace vellix {

namespace {

// Pixels.
constexpr int PLACE_MARGIN = 24; ///< between the edge of the view and a panel
constexpr int PLACE_GAP = 8;     ///< between two panels
constexpr int CASCADE_STEP = 24;

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

/// A place for a frame of this size beside the area's middle, where the picture is, and beside what is taken:
/// down the area's right side, then down its left, then in a cascade.
QRect FreePlace(const QSize& size, const QRect& area, const QList<QRect>& taken) {
    for (int side = 0; side < 2; ++side) {
        int top = area.top() + PLACE_MARGIN;
        for (int i = 0; i <= taken.size(); ++i) {
            QRect place(QPoint(area.left() + PLACE_MARGIN, top), size);
            if (side == 0) {
                place.moveRight(area.right() - PLACE_MARGIN);
            }
            const auto below = std::find_if(taken.begin(), taken.end(), [&](const QRect& other) {
                return other.adjusted(-PLACE_GAP, -PLACE_GAP, PLACE_GAP, PLACE_GAP).intersects(place);
            });
            if (below == taken.end() && place.bottom() <= area.bottom()) {
                return place;
            }
            top = below == taken.end() ? area.bottom() : below->bottom() + PLACE_GAP + 1;
        }
    }
    const QPoint step(CASCADE_STEP, CASCADE_STEP);
    return QRect(area.topLeft() + step * (taken.size() + 1), size);
}

/// The area of the active view on the screen; that of the window without one.
QRect ViewArea(const QWidget& window) {
    MStatus status;
    M3dView view = M3dView::active3dView(&status);
    const QWidget* const widget = status ? view.widget() : nullptr;
    return widget && widget->isVisible() ? QRect(widget->mapToGlobal(QPoint()), widget->size())
                                         : window.geometry();
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
    : GuardedWidget(parent, Qt::Tool)
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

bool FloatingPanel::HandleEvent(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && focusWidget()) {
        if (MovesInPanel(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
    }
    return GuardedWidget::HandleEvent(event);
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
        place = FreePlace(place.size(), ViewArea(*parentWidget()->window()), PlacesOfOthers());
    }
    const QRect available = AvailableNear(place);
    // A panel saved on a larger screen is cut to the size of this one.
    const QSize frame = frameGeometry().size() - size();
    resize(size().boundedTo(available.size() - frame));
    place.setSize(size() + frame);
    // Until a window is shown its frame is not known, so a move would shift it by the frame each time.
    const QPoint inside = MoveInto(place, available).topLeft();
    if (inside != frameGeometry().topLeft()) {
        move(inside);
    }
}

void FloatingPanel::KeepOnScreen() {
    const QRect place = frameGeometry();
    const QPoint inside = MoveInto(place, AvailableNear(place)).topLeft();
    if (inside != place.topLeft()) {
        move(inside);
    }
}

QList<QRect> FloatingPanel::PlacesOfOthers() const {
    QList<QRect> places;
    for (const FloatingPanel* const panel : parentWidget()->findChildren<FloatingPanel*>()) {
        if (panel != this && panel->isVisible()) {
            places.append(panel->frameGeometry());
        }
    }
    return places;
}

} // namespace vellix
