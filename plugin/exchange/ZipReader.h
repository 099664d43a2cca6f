#pragma once

#include "paint/NonCopyable.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <map>

struct zip;

namespace vellix {

/// Reads the members of a ZIP archive that comes from outside. Refuses an archive with a name that leads out
/// of it, with two members of one name, or with encrypted members. No more than the wanted bytes of a member
/// is ever allocated, however many it inflates to.
class ZipReader : private NonCopyable {
public:
    /// Opens the archive. If that fails, Fault() tells.
    explicit ZipReader(const QString& path);
    /// The archive is these bytes.
    explicit ZipReader(const QByteArray& bytes);
    ~ZipReader();

    /// What is wrong, in a sentence without a full stop; empty while nothing is.
    const QString& Fault() const { return fault_; }

    bool Has(const QString& name) const { return members_.count(name) > 0; }
    /// The size of the member as the archive tells it, in bytes; 0 for none.
    qint64 SizeOf(const QString& name) const;
    /// Reads a member of at most `limit` bytes. Returns false, with Fault(), if it is missing, longer or
    /// damaged. Throws std::bad_alloc when memory is short.
    bool Read(const QString& name, qint64 limit, QByteArray& bytes);
    /// Reads the beginning of a member, at most `count` bytes, without checking the rest.
    bool ReadBegin(const QString& name, qint64 count, QByteArray& bytes);

private:
    struct Member {
        quint64 index = 0;
        qint64 size = 0;
    };

    void Open(zip* archive, const QString& reason);
    void ListMembers();
    bool Fail(const QString& fault);
    bool ReadMember(const QString& name, qint64 count, bool all, QByteArray& bytes);

    QByteArray bytes_; ///< of the archive, if it is no file
    zip* archive_ = nullptr;
    std::map<QString, Member> members_;
    QString fault_;
};

} // namespace vellix
