#include "tools/DrawContextInputHandler.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "paint/TabletPressure.h"
#include "tools/DrawContext.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTabletEvent>
#include <QWidget>

namespace vellix {

void DrawContextInputHandler::SetEventFilterEnabled(bool enabled) {
    m_adjustSize = false;
    m_adjustOpacity = false;
    if (m_timeSlider != nullptr) {
        m_timeSlider->removeEventFilter(this);
    }
    if (enabled) {
        ResetTabletSettings();
        if (m_timeSlider == nullptr) {
            m_timeSlider = MayaUtil::GetTimeControlWidget();
        }
        if (m_timeSlider != nullptr) {
            m_timeSlider->installEventFilter(this);
        }
        InstallEventFilters();
    } else {
        RemoveEventFilters();
    }
    EndTextDraw();
    SetDrawContext(nullptr);
}

void DrawContextInputHandler::SetDrawContext(DrawContext* context) {
    m_drawContext = context;
    AcceptInputMethod(context != nullptr);
}

void DrawContextInputHandler::ResetTabletSettings() {
    Settings::tabletPressure = 1.0f;
    Settings::tabletEraserEnabled = false;
}

void DrawContextInputHandler::EndTextDraw() {
    if (m_drawContext != nullptr) {
        m_drawContext->EndTextDraw();
    }
}

void DrawContextInputHandler::ForgetHeldKeys() {
    ViewEventFilter::ForgetHeldKeys();
    m_adjustSize = false;
    m_adjustOpacity = false;
}

bool DrawContextInputHandler::eventFilter(QObject* watched, QEvent* event) {
    if (IsWatchedView(watched)) {
        return ProcessViewEvent(event);
    }
    if (IsMainWindow(watched)) {
        return ProcessMainWindowEvent(event) || ViewEventFilter::eventFilter(watched, event);
    }
    if (watched != nullptr && watched == m_timeSlider && event->type() == QEvent::MouseButtonPress) {
        return ProcessTimeControlMouseEvent(static_cast<QMouseEvent*>(event));
    }
    return false;
}

bool DrawContextInputHandler::ProcessViewEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        return ProcessMouseEvent(static_cast<QMouseEvent*>(event));
    case QEvent::TabletMove:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
        return ProcessTabletEvent(static_cast<QTabletEvent*>(event));
    case QEvent::InputMethod:
        return ProcessInputMethodEvent(event);
    default:
        return false;
    }
}

bool DrawContextInputHandler::ProcessMainWindowEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        return ProcessKeyDownEvent(static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        return ProcessKeyUpEvent(static_cast<QKeyEvent*>(event));
    case QEvent::ShortcutOverride:
        return OverrideShortcut(static_cast<QKeyEvent*>(event));
    default:
        return false;
    }
}

bool DrawContextInputHandler::ProcessKeyDownEvent(QKeyEvent* event) {
    TrackBackslash(*event);
    if (event->key() == Qt::Key_Backslash) {
        return false;
    }
    if (m_drawContext != nullptr) {
        return m_drawContext->ProcessKeyDownEvent(event);
    }
    switch (event->key()) {
    case Qt::Key_B:
        m_adjustSize = true;
        return true;
    case Qt::Key_M:
        m_adjustOpacity = true;
        return true;
    default:
        return false;
    }
}

bool DrawContextInputHandler::ProcessKeyUpEvent(QKeyEvent* event) {
    TrackBackslash(*event);
    if (event->key() != Qt::Key_B && event->key() != Qt::Key_M) {
        return false;
    }
    // Auto-repeat sends release and press events for a key that is still held.
    if (!event->isAutoRepeat()) {
        (event->key() == Qt::Key_B ? m_adjustSize : m_adjustOpacity) = false;
    }
    return true;
}

bool DrawContextInputHandler::IsTyping() const {
    return m_drawContext != nullptr && m_drawContext->IsTyping();
}

/// Claims the tool's own keys before the host's shortcuts get them.
bool DrawContextInputHandler::OverrideShortcut(QKeyEvent* event) const {
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool adjusts =
        modifiers == Qt::NoModifier && (event->key() == Qt::Key_B || event->key() == Qt::Key_M);
    // Some keyboards type characters with Ctrl and Alt together.
    const Qt::KeyboardModifiers commands =
        modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const bool types = commands == Qt::NoModifier ||
                       commands == Qt::KeyboardModifiers(Qt::ControlModifier | Qt::AltModifier);
    if (IsTyping() ? types : adjusts) {
        event->accept();
        return true;
    }
    return false;
}

/// Takes text from input methods, such as dead keys that compose one character from several.
bool DrawContextInputHandler::ProcessInputMethodEvent(QEvent* event) {
    const QString text = static_cast<QInputMethodEvent*>(event)->commitString();
    if (!IsTyping()) {
        return false;
    }
    if (!text.isEmpty()) {
        QKeyEvent typed(QEvent::KeyPress, 0, Qt::NoModifier, text);
        m_drawContext->ProcessKeyDownEvent(&typed);
    }
    event->accept();
    return true;
}

/// Lets the stroke's view take text from input methods while text is typed, and restores the view afterwards.
void DrawContextInputHandler::AcceptInputMethod(bool accept) {
    if (m_typedInto != nullptr) {
        m_typedInto->setAttribute(Qt::WA_InputMethodEnabled, false);
        m_typedInto.clear();
    }
    QWidget* const view = accept ? m_drawContext->View() : nullptr;
    if (view != nullptr && !view->testAttribute(Qt::WA_InputMethodEnabled)) {
        view->setAttribute(Qt::WA_InputMethodEnabled);
        m_typedInto = view;
    }
}

bool DrawContextInputHandler::ProcessTabletEvent(QTabletEvent* event) {
    const double pressure = event->pressure();
    if (pressure != 0.0) {
        Settings::tabletPressure = TabletPressure::Curve(pressure, Settings::tabletPressure);
        Settings::tabletEraserEnabled = event->pointerType() == QTabletEvent::Eraser;
    }
    return false;
}

bool DrawContextInputHandler::ProcessMouseEvent(QMouseEvent* event) {
    if (event->type() != QEvent::MouseButtonRelease) {
        EndTextDraw();
    }
    if (!IsPlainRightPress(*event) || !Settings::drawToolContextMenu || IsBackslashHeld()) {
        return false;
    }
    ShowContextMenu();
    return true;
}

bool DrawContextInputHandler::ProcessTimeControlMouseEvent(QMouseEvent* event) {
    if (!IsPlainRightPress(*event) || !Settings::timelineContextMenu) {
        return false;
    }
    ShowTimeControlContextMenu();
    return true;
}

} // namespace vellix
