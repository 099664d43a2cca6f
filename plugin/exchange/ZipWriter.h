#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <vector>

namespace vellix {

/// Collects the members of a ZIP archive (PKWARE's APPNOTE, without ZIP64) and writes it whole or not at all
/// (WholeFile). Members are stored as they are: pictures are compressed already, and beside them the texts
/// are small. They lie in the archive in the order in which they were added, and carry no time, so that equal
/// members make equal archives. Their bytes are shared, not copied.
class ZipWriter {
public:
    /// The most that every reader understands, in bytes with the directory.
    static constexpr qint64 MAX_BYTES = 0xffffffffLL;
    static constexpr int MAX_MEMBERS = 65535;

    /// Is told the share of the archive that is written, 0..1; returns false to stop.
    using Progress = std::function<bool(double)>;

    /// A name has at most 65,535 bytes in UTF-8.
    void Add(const QString& name, const QByteArray& bytes);

    /// Why there can be no such archive, as a sentence without its full stop; empty if there can. With other
    /// members to come, their bytes and their count.
    QString Refusal(qint64 bytesToCome = 0, int membersToCome = 0) const;
    /// Writes the archive. Returns why that failed, in the words of the system, or an empty string. Holds its
    /// directory besides the members, and 1 MB. Throws std::bad_alloc when memory is short.
    QString Write(const QString& path, const Progress& progress = nullptr) const;

private:
    struct Member {
        QByteArray name; ///< UTF-8
        QByteArray bytes;
    };

    qint64 Bytes() const;

    std::vector<Member> members_;
};

} // namespace vellix
