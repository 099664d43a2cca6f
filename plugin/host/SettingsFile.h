#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vellix {

/// Additions to QSettings for an INI file that a user may edit or a disk may damage.
class SettingsFile {
public:
    /// Turns values of types that the plug-in never writes into plain text, since QSettings builds any object
    /// that a value claims to be, and a damaged one can crash the host. Leaves a file without such values
    /// alone.
    static void Disarm(const QString& path);

    /// Sorts the file by the given keys ("group/key"), since QSettings keeps no order on some platforms.
    /// Other keys follow.
    static void Sort(const QString& path, const QStringList& keys);

    /// Disarm() for the content of an INI file. Returns it unchanged when it has no such values.
    static QByteArray Disarmed(const QByteArray& content);
};

} // namespace vellix
