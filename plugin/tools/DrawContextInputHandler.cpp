#include "tools/DrawContextInputHandler.h"

#include "host/MayaUtil.h"
#include "host/PresetKeys.h"
#include "host/Settings.h"
#include "node/OpenText.h"
#include "paint/TabletPressure.h"
#include "tools/DrawContext.h"
#include "tools/EventClock.h"
#include "tools/ThreadManager.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTabletEvent>
#include <QWidget>

namespace vellix {

namespace {

/// The preset that a key chooses in a view; 0 for none.
int PresetInView(const QKeyEvent& event) {
    return Settings::presetKeys ? PresetOfKey(event) : 0;
}

} // namespace

DrawContextInputHandler::DrawContextInputHandler()
    : outsidePress_([this] { EndTextDraw(); }) {}

DrawContextInputHandler::~DrawContextInputHandler() {
    SetDrawContext(nullptr);
}

void DrawContextInputHandler::SetEventFilterEnabled(bool enabled) {
    adjustSize_ = false;
    adjustOpacity_ = false;
    pickColor_ = false;
    if (timeSlider_) {
        timeSlider_->removeEventFilter(this);
    }
    if (enabled) {
        ResetTabletSettings();
        if (!timeSlider_) {
            timeSlider_ = MayaUtil::GetTimeControlWidget();
        }
        if (timeSlider_) {
            timeSlider_->installEventFilter(this);
        }
        InstallEventFilters();
    } else {
        RemoveEventFilters();
    }
    EndTextDraw();
    SetDrawContext(nullptr);
}

void DrawContextInputHandler::SetDrawContext(DrawContext* context) {
    if (context) {
        OpenText::SetCommit([this] { EndTextDraw(); });
        outsidePress_.Watch(context->View());
    } else if (drawContext_) {
        OpenText::SetCommit(nullptr);
        outsidePress_.Stop();
    }
    drawContext_ = context;
    AcceptInputMethod(context != nullptr);
}

void DrawContextInputHandler::ResetTabletSettings() {
    Settings::tabletPressure = 1.0f;
    Settings::tabletEraserEnabled = false;
}

void DrawContextInputHandler::EndTextDraw() {
    if (drawContext_) {
        drawContext_->EndTextDraw();
    }
}

void DrawContextInputHandler::ForgetHeldKeys() {
    ViewEventFilter::ForgetHeldKeys();
    adjustSize_ = false;
    adjustOpacity_ = false;
    pickColor_ = false;
}

bool DrawContextInputHandler::ProcessEvent(QObject* watched, QEvent* event) {
    if (IsWatchedView(watched)) {
        return ProcessViewEvent(event);
    }
    if (IsMainWindow(watched)) {
        return ProcessMainWindowEvent(event) || ViewEventFilter::ProcessEvent(watched, event);
    }
    if (watched && watched == timeSlider_ && event->type() == QEvent::MouseButtonPress) {
        return ProcessTimeControlMouseEvent(static_cast<QMouseEvent*>(event));
    }
    return false;
}

bool DrawContextInputHandler::ProcessViewEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseMove:
        EventClock::Learn(static_cast<QMouseEvent*>(event)->timestamp());
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        EventClock::Learn(static_cast<QMouseEvent*>(event)->timestamp());
        return ProcessMouseEvent(static_cast<QMouseEvent*>(event));
    case QEvent::TabletMove:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
        return ProcessTabletEvent(static_cast<QTabletEvent*>(event));
    case QEvent::InputMethod:
    case QEvent::InputMethodQuery:
        return ProcessInputMethodEvent(event);
    case QEvent::KeyPress:
        // Here, since the view would use the tab key to pass the focus on.
        return IsTyping() && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab &&
               ProcessKeyDownEvent(static_cast<QKeyEvent*>(event));
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
        if (drawContext_) {
            drawContext_->ProcessKeyDownEvent(event);
        }
        return false; // the host tracks it too
    }
    if (drawContext_) {
        return drawContext_->ProcessKeyDownEvent(event);
    }
    if (bool* const held = HeldSwitch(event->key())) {
        *held = true;
        return true;
    }
    const int preset = PresetInView(*event);
    if (preset > 0 && !event->isAutoRepeat()) {
        MayaUtil::ChoosePreset(preset);
    }
    return preset > 0;
}

bool* DrawContextInputHandler::HeldSwitch(int key) {
    switch (key) {
    case Qt::Key_B:
        return &adjustSize_;
    case Qt::Key_M:
        return &adjustOpacity_;
    case Qt::Key_I:
        return &pickColor_;
    default:
        return nullptr;
    }
}

bool DrawContextInputHandler::ProcessKeyUpEvent(QKeyEvent* event) {
    TrackBackslash(*event);
    bool* const held = HeldSwitch(event->key());
    // Auto-repeat sends release and press events for a key that is still held.
    if (held && !event->isAutoRepeat()) {
        *held = false;
    }
    return held != nullptr;
}

bool DrawContextInputHandler::IsTyping() const {
    return drawContext_ != nullptr && drawContext_->IsTyping();
}

/// Claims the tool's own keys before the host's shortcuts get them.
bool DrawContextInputHandler::OverrideShortcut(QKeyEvent* event) const {
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int key = event->key();
    const bool isOurs =
        (modifiers == Qt::NoModifier && (key == Qt::Key_B || key == Qt::Key_M || key == Qt::Key_I)) ||
        PresetInView(*event) > 0;
    // Some keyboards type characters with Ctrl and Alt together.
    const Qt::KeyboardModifiers commands =
        modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const bool types = commands == Qt::NoModifier ||
                       commands == Qt::KeyboardModifiers(Qt::ControlModifier | Qt::AltModifier);
    if (IsTyping() ? types || DrawContext::EditsText(*event) : isOurs) {
        event->accept();
        return true;
    }
    return false;
}

/// Takes text from input methods, such as dead keys that compose one character from several.
bool DrawContextInputHandler::ProcessInputMethodEvent(QEvent* event) {
    if (!IsTyping()) {
        return false;
    }
    if (event->type() == QEvent::InputMethodQuery) {
        drawContext_->AnswerInputMethod(*static_cast<QInputMethodQueryEvent*>(event));
    } else {
        drawContext_->ProcessInputMethodEvent(*static_cast<QInputMethodEvent*>(event));
    }
    event->accept();
    return true;
}

/// Lets the stroke's view take text from input methods while text is typed, and restores the view afterwards.
void DrawContextInputHandler::AcceptInputMethod(bool accept) {
    if (typedInto_) {
        typedInto_->setAttribute(Qt::WA_InputMethodEnabled, false);
        typedInto_.clear();
    }
    QWidget* const view = accept ? drawContext_->View() : nullptr;
    if (view && !view->testAttribute(Qt::WA_InputMethodEnabled)) {
        view->setAttribute(Qt::WA_InputMethodEnabled);
        typedInto_ = view;
    }
}

bool DrawContextInputHandler::ProcessTabletEvent(QTabletEvent* event) {
    const double pressure = event->pressure();
    if (pressure != 0.0) {
        Settings::tabletPressure = TabletPressure::Curve(pressure, Settings::tabletPressure);
        Settings::tabletEraserEnabled = event->pointerType() == QTabletEvent::Eraser;
    }
    ThreadManager& samples = *ThreadManager::GetInstance();
    switch (event->type()) {
    case QEvent::TabletPress:
        samples.SetPenDown(true);
        break;
    case QEvent::TabletRelease:
        samples.SetPenDown(false);
        samples.OnPenMoved(event->globalPosF(), event->timestamp(), true);
        break;
    default:
        samples.OnPenMoved(event->globalPosF(), event->timestamp(), false);
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
