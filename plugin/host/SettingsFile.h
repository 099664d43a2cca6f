#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vellix {

/// What QSettings does not do for an INI file that people may edit or disks may damage.
class SettingsFile {
public:
    /// Turns stored values of kinds that the plug-in never writes into plain text: QSettings builds whatever
    /// object a value claims to be, and a damaged one can bring the host down. Any other file is left alone.
    static void Disarm(const QString& path);

    /// Puts the keys ("group/key") into that order, which not every platform's QSettings keeps; others
    /// follow.
    static void Sort(const QString& path, const QStringList& keys);

    /// The content of an INI file with such values turned into text; the same content when there are none.
    static QByteArray Disarmed(const QByteArray& content);
};

} // namespace vellix
