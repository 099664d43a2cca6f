#pragma once

#include <QString>

#include <array>

namespace vellix {

/// A key of the host that does something while it is held down.
struct HeldKey {
    QString& keys; ///< the setting: QKeySequence::PortableText, empty for none
    const char* shortFlag;
    const char* flag;    ///< of qmVellixUtil, which sets it
    const char* name;    ///< of the command that the host binds to the press
    const char* press;   ///< flags of qmVellixUtil for the press...
    const char* release; ///< ...and the release
    const char* label;   ///< what it does
};

/// Binds the keys that the settings name to the host's hotkeys.
class HeldKeys {
public:
    static const std::array<HeldKey, 3>& GetAll();
    /// Gives the action another key, one with its modifiers, or none. Returns false, and logs why, if this is
    /// no key or the host refuses; then the setting keeps its value.
    static bool Set(const HeldKey& action, const QString& keys);
    /// Binds all keys. Call once the plug-in is loaded into a host with a user interface.
    static void Bind();
    /// Frees those keys that are still bound to the plug-in.
    static void Unbind();
};

} // namespace vellix
