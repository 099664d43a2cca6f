#pragma once

#include "paint/NonCopyable.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace vellix {

/// Writes a file whole or not at all. The new content goes to a temporary file in the same folder. Commit()
/// replaces the old file by it, once all of it is on the disk. Whatever fails before leaves the old file as
/// it was.
///
/// A symbolic link stays: its target is replaced. The new file has the permissions of the old one. A program
/// that is killed leaves its temporary file, which the next program that writes the same file removes. A
/// temporary file that is still being written is locked and stays.
class WholeFile : private NonCopyable {
public:
    /// Opens the temporary file. If that fails, Fault() tells.
    explicit WholeFile(const QString& path);
    /// Without Commit(), drops what was written.
    ~WholeFile();

    /// Returns false once anything has failed.
    bool Write(const QByteArray& bytes);
    /// Replaces the old file. Returns false, and drops what was written, if anything has failed.
    bool Commit();

    /// Why writing failed, in the words of the system; empty while nothing has.
    const QString& Fault() const { return fault_; }
    /// The temporary file, for another program that writes it.
    const QString& TemporaryPath() const { return temporary_; }

    /// Writes a whole file at once. Returns why that failed, or an empty string.
    static QString Write(const QString& path, const QByteArray& content);

private:
    bool Fail();
    bool CheckTarget();
    void Open();
    void Drop();

    QString target_;    ///< with links resolved
    QString temporary_; ///< empty while there is none to remove
    QString fault_;
    qintptr file_; ///< a file descriptor, or a handle on Windows
};

} // namespace vellix
