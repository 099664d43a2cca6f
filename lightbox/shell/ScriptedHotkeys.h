#pragma once

#include <QObject>

#include <map>
#include <string>

class QKeyEvent;

namespace lightbox {

class ControlRegistry;
class Host;

/// The keys that scripts have bound with hotkey (Lightbox's own are in Hotkeys): each runs one script when it
/// is pressed and another when it is released. They work in every window, but not in a dialog or menu. A
/// focused text field or a tool gets the keys that it accepts first; those that are left come before any
/// shortcut. When the program loses the focus, keys that are held count as released.
class ScriptedHotkeys : public QObject {
    Q_OBJECT
public:
    /// One key with its modifiers.
    struct Key {
        int key = 0; ///< a Qt::Key
        Qt::KeyboardModifiers modifiers = Qt::NoModifier;

        /// The key that a script names: a character (a capital letter implies Shift) or "F1", "Page_Up" and
        /// so on. `key` is 0 if there is none.
        static Key Named(const std::string& name, Qt::KeyboardModifiers modifiers);
        bool operator<(const Key& other) const;
    };
    struct Binding {
        std::string press; ///< names of commands; empty for none
        std::string release;
        bool pressRepeats = false; ///< while the key repeats itself
    };

    /// Those of the program's window, which owns them.
    static ScriptedHotkeys& Of(ControlRegistry& registry);

    /// Gives a script a name, for keys. Replaces the one of that name.
    void NameCommand(const std::string& name, const std::string& script) { commands_[name] = script; }
    /// The binding of the key, empty if it has none.
    Binding Find(const Key& key) const;
    /// A binding without commands frees the key.
    void Bind(const Key& key, const Binding& binding);

private:
    ScriptedHotkeys(Host& host, QObject* window);

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool Claim(QObject* watched, QKeyEvent& event);
    bool Press(const QKeyEvent& event);
    bool Release(const QKeyEvent& event);
    void LetGo(quint32 place, int release);
    void ReleaseAll();
    void Run(const std::string& name);

    struct Held {
        Binding binding;
        int release = 0; ///< number of a release that may be one of the key repeating itself; 0 for none
    };

    Host& host_;
    std::map<std::string, std::string> commands_; ///< scripts by name
    std::map<Key, Binding> bindings_;
    std::map<quint32, Held> held_; ///< by the key on the keyboard
    int lastRelease_ = 0;
    quint32 claimed_ = 0; ///< whose press is on its way; 0 for none
    bool asks_ = false;   ///< whether someone else wants a key
};

} // namespace lightbox
