#include "shell/ScriptedHotkeys.h"

#include "controls/ControlRegistry.h"
#include "mel/Interpreter.h"
#include "scene/Host.h"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWidget>

#include <tuple>
#include <utility>

namespace lightbox {

namespace {

/// Of a character that is no letter, Shift is a part.
Qt::KeyboardModifiers Significant(int key, Qt::KeyboardModifiers modifiers) {
    const bool isLetter = key >= Qt::Key_A && key <= Qt::Key_Z;
    const bool isNamed = key >= Qt::Key_Escape;
    const Qt::KeyboardModifiers others = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return modifiers & (isLetter || isNamed ? others | Qt::ShiftModifier : others);
}

/// The place on the keyboard: the character may change while the key is held.
quint32 PlaceOf(const QKeyEvent& event) {
    return event.nativeScanCode() != 0 ? event.nativeScanCode() : quint32(event.key());
}

/// The press of a repetition comes within this time of its release, in milliseconds.
constexpr int REPEAT_GAP = 25;

} // namespace

ScriptedHotkeys::Key ScriptedHotkeys::Key::Named(const std::string& name, Qt::KeyboardModifiers modifiers) {
    static const std::map<std::string, const char*> others = {
        {"Page_Up", "PgUp"}, {"Page_Down", "PgDown"}, {"Insert", "Ins"}, {"Delete", "Del"}};
    const auto found = others.find(name);
    const QString text = found == others.end() ? QString::fromStdString(name) : QLatin1String(found->second);
    const bool isCapital = text.size() == 1 && text.at(0).isUpper();
    const QKeySequence keys(text.toUpper() == text || text.size() == 1 ? text.toUpper() : text);
    if (keys.count() != 1 || (keys[0] & Qt::KeyboardModifierMask) != 0 || keys[0] == Qt::Key_unknown) {
        return Key();
    }
    const int key = keys[0];
    return {key, Significant(key, isCapital ? modifiers | Qt::ShiftModifier : modifiers)};
}

bool ScriptedHotkeys::Key::operator<(const Key& other) const {
    return std::make_tuple(key, int(modifiers)) < std::make_tuple(other.key, int(other.modifiers));
}

ScriptedHotkeys& ScriptedHotkeys::Of(ControlRegistry& registry) {
    QWidget* const window = registry.MainWindow().Widget();
    ScriptedHotkeys* map = window->findChild<ScriptedHotkeys*>(QString(), Qt::FindDirectChildrenOnly);
    return map ? *map : *new ScriptedHotkeys(registry.host(), window);
}

ScriptedHotkeys::ScriptedHotkeys(Host& host, QObject* window)
    : QObject(window)
    , host_(host) {
    qApp->installEventFilter(this);
}

ScriptedHotkeys::Binding ScriptedHotkeys::Find(const Key& key) const {
    const auto found = bindings_.find(key);
    return found == bindings_.end() ? Binding() : found->second;
}

void ScriptedHotkeys::Bind(const Key& key, const Binding& binding) {
    if (binding.press.empty() && binding.release.empty()) {
        bindings_.erase(key);
    } else {
        bindings_[key] = binding;
    }
}

bool ScriptedHotkeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationDeactivate) {
        ReleaseAll();
        return false;
    }
    if (!watched->isWidgetType() || asks_) {
        return false;
    }
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        return Claim(watched, *static_cast<QKeyEvent*>(event));
    case QEvent::KeyPress:
        return Press(*static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        return Release(*static_cast<QKeyEvent*>(event));
    default:
        return false;
    }
}

/// Takes the key before the shortcuts do, unless the widget wants it or one that it stands in.
bool ScriptedHotkeys::Claim(QObject* watched, QKeyEvent& event) {
    claimed_ = 0;
    const Key key{event.key(), Significant(event.key(), event.modifiers())};
    if (bindings_.count(key) == 0 || QApplication::activeModalWidget() || QApplication::activePopupWidget()) {
        return false;
    }
    {
        const QScopedValueRollback<bool> asking(asks_, true);
        event.ignore();
        QCoreApplication::sendEvent(watched, &event);
    }
    if (!event.isAccepted()) {
        claimed_ = PlaceOf(event);
        event.accept();
    }
    return true;
}

bool ScriptedHotkeys::Press(const QKeyEvent& event) {
    if (claimed_ == 0 || PlaceOf(event) != claimed_) {
        return false;
    }
    claimed_ = 0;
    const Binding binding = Find({event.key(), Significant(event.key(), event.modifiers())});
    const auto held = held_.find(PlaceOf(event));
    const bool repeats = event.isAutoRepeat() || (held != held_.end() && held->second.release != 0);
    if (repeats && held != held_.end()) {
        held->second.release = 0;
    }
    if (!repeats || binding.pressRepeats) {
        held_[PlaceOf(event)].binding = binding;
        Run(binding.press);
    }
    return true;
}

/// A key that repeats itself sends releases and presses in turn. Not all of them are marked as repetitions:
/// a release only counts if no press follows at once.
bool ScriptedHotkeys::Release(const QKeyEvent& event) {
    const quint32 place = PlaceOf(event);
    const auto held = held_.find(place);
    if (held == held_.end()) {
        return false;
    }
    if (!event.isAutoRepeat()) {
        held->second.release = ++lastRelease_;
        QTimer::singleShot(REPEAT_GAP, this,
                           [this, place, release = lastRelease_] { LetGo(place, release); });
    }
    return true;
}

void ScriptedHotkeys::LetGo(quint32 place, int release) {
    const auto held = held_.find(place);
    if (held != held_.end() && held->second.release == release) {
        const std::string script = held->second.binding.release;
        held_.erase(held);
        Run(script);
    }
}

void ScriptedHotkeys::ReleaseAll() {
    for (const auto& held : std::exchange(held_, {})) {
        Run(held.second.binding.release);
    }
}

/// A name that nothing was named is a command or a procedure.
void ScriptedHotkeys::Run(const std::string& name) {
    const auto found = commands_.find(name);
    const std::string script = found == commands_.end() ? name : found->second;
    if (!script.empty()) {
        host_.interpreter().ExecuteReporting(script);
    }
}

} // namespace lightbox
