#include "host/HeldKeys.h"

#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"

#include <QKeySequence>
#include <QStringList>

namespace vellix {

namespace {

/// The flags with which hotkey is told of a key; empty if the text names none, or several.
QString HotkeyFlags(const QString& keys) {
    const QKeySequence sequence = QKeySequence::fromString(keys, QKeySequence::PortableText);
    const int key = sequence.count() == 1 ? sequence[0] & ~int(Qt::KeyboardModifierMask) : 0;
    QString name = QKeySequence(key).toString(QKeySequence::PortableText);
    if (key == 0 || key == Qt::Key_unknown || name.isEmpty()) {
        return QString();
    }
    const bool isShifted = (sequence[0] & Qt::ShiftModifier) != 0;
    const struct {
        const char* portable;
        const char* host;
    } names[] = {{"PgUp", "Page_Up"}, {"PgDown", "Page_Down"}, {"Ins", "Insert"}, {"Del", "Delete"}};
    for (const auto& row : names) {
        name = name == QLatin1String(row.portable) ? QLatin1String(row.host) : name;
    }
    if (name.size() == 1 && !isShifted) {
        name = name.toLower(); // a capital letter means Shift
    }
    QString flags = QStringLiteral("-keyShortcut \"%1\"").arg(MayaUtil::EscapeString(name));
    if (isShifted) {
        flags += QLatin1String(" -shiftModifier");
    }
    if ((sequence[0] & Qt::ControlModifier) != 0) {
        flags += QLatin1String(" -ctrlModifier");
    }
    if ((sequence[0] & Qt::AltModifier) != 0) {
        flags += QLatin1String(" -altModifier");
    }
    return flags;
}

bool RunHotkeyLine(const QString& line) {
    return MayaUtil::ExecuteMel(line, false, false);
}

QString NameOfRelease(const HeldKey& action) {
    return QLatin1String(action.name) + QLatin1String("End");
}

bool NameCommand(const QString& name, const char* label, const char* flags) {
    return RunHotkeyLine(
        QStringLiteral("nameCommand -default true -annotation \"%1\" -command \"%2 %3\" \"%4\"")
            .arg(QLatin1String(label), Settings::UTIL_COMMAND_NAME, QLatin1String(flags), name));
}

bool BindKey(const HeldKey& action, const QString& keys) {
    return NameCommand(QLatin1String(action.name), action.label, action.press) &&
           NameCommand(NameOfRelease(action), action.label, action.release) &&
           RunHotkeyLine(QStringLiteral("hotkey %1 -name \"%2\" -releaseName \"%3\"")
                             .arg(HotkeyFlags(keys), QLatin1String(action.name), NameOfRelease(action)));
}

/// The user may have bound the key to something else since.
void FreeKey(const HeldKey& action) {
    const QString flags = HotkeyFlags(action.keys);
    QString bound;
    if (!flags.isEmpty() &&
        MayaUtil::ExecuteMelStringResult(QStringLiteral("hotkey -query %1 -name").arg(flags), bound, false,
                                         false) &&
        bound == QLatin1String(action.name)) {
        RunHotkeyLine(QStringLiteral("hotkey %1 -name \"\" -releaseName \"\"").arg(flags));
    }
}

} // namespace

const std::array<HeldKey, 3>& HeldKeys::GetAll() {
    static const std::array<HeldKey, 3> all = {
        {{Settings::flipPreviousKey, "-fpk", "-flipPreviousKey", "qmVxFlipPrevious", "-flip -1",
          "-flipEnd -1", "Show the previous drawing while held"},
         {Settings::flipNextKey, "-fnk", "-flipNextKey", "qmVxFlipNext", "-flip 1", "-flipEnd 1",
          "Show the next drawing while held"},
         {Settings::rollKey, "-rlk", "-rollKey", "qmVxRoll", "-roll 1", "-flipEnd 0",
          "Roll drawings while held"}}};
    return all;
}

bool HeldKeys::Set(const HeldKey& action, const QString& keys) {
    if (!keys.isEmpty() && HotkeyFlags(keys).isEmpty()) {
        Logger::Error(QStringLiteral("\"%1\" is no key. Name one with its modifiers, such as \"F7\" or "
                                     "\"Ctrl+Left\", or none.")
                          .arg(keys));
        return false;
    }
    if (Settings::guiEnabled) {
        FreeKey(action);
        if (!keys.isEmpty() && !BindKey(action, keys)) {
            Logger::Error(QStringLiteral("The host does not let the key %1 be set.").arg(keys));
            return false;
        }
    }
    action.keys = keys;
    return true;
}

void HeldKeys::Bind() {
    for (const HeldKey& action : GetAll()) {
        const bool isSet = !HotkeyFlags(action.keys).isEmpty(); // anything may stand in the file
        if (isSet && !BindKey(action, action.keys)) {
            Logger::Warning(QStringLiteral("The host does not let the key %1 be set.").arg(action.keys));
        }
    }
}

void HeldKeys::Unbind() {
    for (const HeldKey& action : GetAll()) {
        FreeKey(action);
    }
}

} // namespace vellix
