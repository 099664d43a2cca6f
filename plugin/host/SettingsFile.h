#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVector>

namespace vellix {

/// The settings file: an INI file in the format of QSettings, which a user may edit, a disk may damage, and
/// other programs may add to. Only numbers, flags, texts, bytes and colours are decoded; whatever else a
/// value claims to be is a text. Groups, keys and other lines that are not set here are kept byte for byte.
///
/// Unlike with QSettings, a value never builds another object, no lock file is waited for, and no line
/// continues on the next one. Of two programs that write at the same time, the last one wins.
class SettingsFile {
public:
    /// Reads the file. A missing file is empty.
    explicit SettingsFile(const QString& path);

    /// Returns `missing` if the file has no such key.
    QVariant Value(const QString& group, const QString& key, const QVariant& missing) const;
    void Set(const QString& group, const QString& key, const QVariant& value);
    /// Writes the file: first the values that were set, in that order, each group followed by its other
    /// lines, then the other groups. Returns why that failed, or an empty string. A file that could not be
    /// read is not replaced.
    QString Write() const;

    /// A value as it stands behind "key=".
    static QByteArray Encoded(const QVariant& value);
    static QVariant Decoded(const QByteArray& text);

private:
    /// A group as it stands in the file. What comes before the first header is a group without one.
    struct Group {
        QByteArray header;
        QByteArray name;
        QVector<QByteArray> lines;
    };
    struct NewValue {
        QByteArray group;
        QByteArray key;
        QByteArray text;
    };

    void Parse();
    bool IsSet(const QByteArray& group, const QByteArray& key) const;
    QVector<QByteArray> NewLines(const QByteArray& group) const;
    QByteArray Composed() const;

    QString path_;
    QString fault_; ///< why the file could not be read
    QByteArray content_;
    QVector<Group> groups_;
    QVector<NewValue> values_;
};

} // namespace vellix
