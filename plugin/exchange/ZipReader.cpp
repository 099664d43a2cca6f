#include "exchange/ZipReader.h"

#include "paint/ScopeExit.h"

#include <QFile>

#include <algorithm>
#include <new>
#include <zip.h>

namespace vellix {

namespace {

constexpr zip_int64_t MAX_MEMBERS = 65535; ///< of an archive without the 64-bit extension

QString ReasonOf(int code) {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    QString reason = QString::fromUtf8(zip_error_strerror(&error));
    zip_error_fini(&error);
    return reason;
}

/// Whether a program that unpacks the archive would write outside its folder.
bool LeadsOut(const QString& name) {
    const QString path = QString(name).replace(QLatin1Char('\\'), QLatin1Char('/'));
    const bool hasDrive = path.size() > 1 && path.at(1) == QLatin1Char(':');
    return hasDrive || path.startsWith(QLatin1Char('/')) ||
           path.split(QLatin1Char('/')).contains(QLatin1String(".."));
}

} // namespace

ZipReader::ZipReader(const QString& path) {
    QFile file(path); // for what the system says
    if (!file.open(QIODevice::ReadOnly)) {
        Fail(QStringLiteral("it cannot be read: ") + file.errorString());
        return;
    }
    file.close();
#ifdef Q_OS_WIN
    const QByteArray name = path.toUtf8();
#else
    const QByteArray name = QFile::encodeName(path);
#endif
    int code = 0;
    zip_t* const archive = zip_open(name.constData(), ZIP_RDONLY, &code);
    Open(archive, archive ? QString() : ReasonOf(code));
}

ZipReader::ZipReader(const QByteArray& bytes)
    : bytes_(bytes) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* const source =
        zip_source_buffer_create(bytes_.constData(), static_cast<zip_uint64_t>(bytes_.size()), 0, &error);
    zip_t* const archive = source ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr;
    if (source && !archive) {
        zip_source_free(source);
    }
    const QString reason = archive ? QString() : QString::fromUtf8(zip_error_strerror(&error));
    zip_error_fini(&error);
    Open(archive, reason);
}

ZipReader::~ZipReader() {
    if (archive_) {
        zip_discard(archive_);
    }
}

void ZipReader::Open(zip* archive, const QString& reason) {
    archive_ = archive;
    if (!archive) {
        Fail(QStringLiteral("it is no archive that can be read: ") + reason);
        return;
    }
    try {
        ListMembers();
    } catch (...) {
        zip_discard(archive_);
        throw;
    }
}

void ZipReader::ListMembers() {
    const zip_int64_t count = zip_get_num_entries(archive_, 0);
    if (count > MAX_MEMBERS) {
        Fail(QStringLiteral("it has more than %1 members").arg(MAX_MEMBERS));
        return;
    }
    for (zip_int64_t i = 0; i < count; ++i) {
        const auto index = static_cast<zip_uint64_t>(i);
        zip_stat_t stat;
        zip_stat_init(&stat);
        if (zip_stat_index(archive_, index, 0, &stat) != 0 || !stat.name || !(stat.valid & ZIP_STAT_SIZE)) {
            Fail(QStringLiteral("its list of members is damaged"));
            return;
        }
        const QString name = QString::fromUtf8(stat.name);
        if (LeadsOut(name)) {
            Fail(QStringLiteral("its member \"%1\" leads out of the archive").arg(name));
            return;
        }
        if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) && stat.encryption_method != ZIP_EM_NONE) {
            Fail(QStringLiteral("its member \"%1\" is encrypted; save it without a password").arg(name));
            return;
        }
        constexpr zip_uint64_t largest = zip_uint64_t(1) << 62;
        const Member member{index, static_cast<qint64>(std::min(stat.size, largest))};
        if (!members_.emplace(name, member).second) {
            Fail(QStringLiteral("it has two members of the name \"%1\"").arg(name));
            return;
        }
    }
}

bool ZipReader::Fail(const QString& fault) {
    if (fault_.isEmpty()) {
        fault_ = fault;
    }
    return false;
}

qint64 ZipReader::SizeOf(const QString& name) const {
    const auto found = members_.find(name);
    return found == members_.end() ? 0 : found->second.size;
}

bool ZipReader::Read(const QString& name, qint64 limit, QByteArray& bytes) {
    if (SizeOf(name) > limit) {
        return Fail(QStringLiteral("its member \"%1\" is too large: %2 bytes").arg(name).arg(SizeOf(name)));
    }
    return ReadMember(name, SizeOf(name), true, bytes);
}

bool ZipReader::ReadBegin(const QString& name, qint64 count, QByteArray& bytes) {
    return ReadMember(name, std::min(count, SizeOf(name)), false, bytes);
}

/// Reads so many bytes, in pieces: what the archive says of its sizes may be wrong.
bool ZipReader::ReadMember(const QString& name, qint64 count, bool all, QByteArray& bytes) {
    const auto found = members_.find(name);
    if (!fault_.isEmpty() || found == members_.end()) {
        return Fail(QStringLiteral("its member \"%1\" is missing").arg(name));
    }
    zip_file_t* const file = zip_fopen_index(archive_, found->second.index, 0);
    if (!file) {
        return Fail(QStringLiteral("its member \"%1\" cannot be read: %2")
                        .arg(name, QString::fromUtf8(zip_strerror(archive_))));
    }
    const ScopeExit closed([file] { zip_fclose(file); });
    constexpr int piece = 1 << 20;
    QByteArray read;
    // One byte more tells whether the member ends where it should, and has its checksum checked.
    const qint64 wanted = all ? count + 1 : count;
    while (read.size() < wanted) {
        const int before = read.size();
        const int more = static_cast<int>(std::min<qint64>(piece, wanted - before));
        read.resize(before + more);
        const zip_int64_t got = zip_fread(file, read.data() + before, static_cast<zip_uint64_t>(more));
        if (got < 0) {
            return Fail(QStringLiteral("its member \"%1\" is damaged: %2")
                            .arg(name, QString::fromUtf8(zip_error_strerror(zip_file_get_error(file)))));
        }
        read.resize(before + static_cast<int>(got));
        if (got == 0) {
            break;
        }
    }
    if (read.size() != count) {
        return Fail(QStringLiteral("its member \"%1\" has another size than the archive says").arg(name));
    }
    bytes = read;
    return true;
}

} // namespace vellix
