#include "paint/WholeFile.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <QDir>
#include <qt_windows.h>

#include <string>
#else
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace vellix {

namespace {

/// So many temporary names are looked at for files of killed programs.
constexpr int MAX_LEFT = 4;
/// So many programs can write the same file at once.
constexpr int MAX_WRITERS = 1000;
/// Longer names are shortened to leave room for what a temporary name adds: most systems allow 255 bytes or
/// characters.
constexpr int MAX_NAME = 200;

constexpr qintptr NO_FILE = -1;

/// The absolute path. Follows links, also to a file that does not exist yet.
QString Resolved(const QString& path) {
    QFileInfo file(path);
    for (int links = 0; file.isSymLink() && links < 40; ++links) {
        file.setFile(file.symLinkTarget());
    }
    return file.absoluteFilePath();
}

QString TemporaryName(const QString& target, int number) {
    const int start = target.lastIndexOf(QLatin1Char('/')) + 1;
    QString name = target.mid(start);
    while (QFile::encodeName(name).size() > MAX_NAME) {
        name.chop(name.at(name.size() - 1).isLowSurrogate() ? 2 : 1);
    }
    return target.left(start) + QLatin1Char('.') + name + QStringLiteral(".vellix-%1.part").arg(number);
}

#ifdef Q_OS_WIN

HANDLE Handle(qintptr file) {
    return reinterpret_cast<HANDLE>(file);
}

/// The path in a form that may be longer than 260 characters.
std::wstring Native(const QString& path) {
    const QString native = QDir::toNativeSeparators(QDir::cleanPath(path));
    const bool isShared = native.startsWith(QLatin1String("\\\\"));
    const QString whole =
        isShared ? QLatin1String("\\\\?\\UNC\\") + native.mid(2) : QLatin1String("\\\\?\\") + native;
    return whole.toStdWString();
}

bool NameExists() {
    return GetLastError() == ERROR_FILE_EXISTS;
}

/// Removes a temporary file. One that is open cannot be removed, which is the lock here.
void RemoveLeft(const QString& path) {
    DeleteFileW(Native(path).c_str());
}

/// Other programs may write to the file but not remove it.
qintptr OpenNew(const QString& path, const QString&) {
    return reinterpret_cast<qintptr>(CreateFileW(Native(path).c_str(), GENERIC_WRITE,
                                                 FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_NEW,
                                                 FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Returns how many bytes were written, -1 on a fault.
qint64 WriteSome(qintptr file, const char* bytes, qint64 count) {
    constexpr qint64 LARGEST = 64 << 20;
    DWORD written = 0;
    const DWORD wanted = static_cast<DWORD>(qMin(count, LARGEST));
    return WriteFile(Handle(file), bytes, wanted, &written, nullptr) ? static_cast<qint64>(written) : -1;
}

bool Sync(qintptr file) {
    return FlushFileBuffers(Handle(file)) != 0;
}

/// A file that is open can be neither renamed nor removed.
bool Replace(qintptr& file, const QString& temporary, const QString& target) {
    CloseHandle(Handle(file));
    file = NO_FILE;
    if (MoveFileExW(Native(temporary).c_str(), Native(target).c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
        return true;
    }
    const DWORD error = GetLastError();
    DeleteFileW(Native(temporary).c_str());
    SetLastError(error);
    return false;
}

/// Closes the file; removes it unless it was renamed.
void Discard(qintptr file, const QString& temporary) {
    CloseHandle(Handle(file));
    if (!temporary.isEmpty()) {
        DeleteFileW(Native(temporary).c_str());
    }
}

/// A new file inherits its permissions from the folder.
void KeepOwner(qintptr, const QString&) {}

#else

bool NameExists() {
    return errno == EEXIST;
}

bool IsSame(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Removes a temporary file that no program has locked.
void RemoveLeft(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    const int descriptor = ::open(name.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    struct stat opened;
    struct stat named;
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ::fstat(descriptor, &opened) == 0 &&
        S_ISREG(opened.st_mode) && ::lstat(name.constData(), &named) == 0 && IsSame(opened, named)) {
        ::unlink(name.constData());
    }
    ::close(descriptor);
}

/// Locks a new temporary file. Returns false if another program has taken it for one that was left and
/// removes it. Where the file system has no locks, nobody can lock it, and so nobody removes it.
bool Lock(int descriptor) {
    struct stat status;
    return (::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) &&
           ::fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

qintptr OpenNew(const QString& path, const QString& target) {
    // Until it has the permissions of the old file, nobody else reads it.
    const mode_t mode = ::access(QFile::encodeName(target).constData(), F_OK) == 0 ? 0600 : 0666;
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (descriptor < 0 || Lock(descriptor)) {
        return descriptor;
    }
    ::close(descriptor);
    errno = EEXIST;
    return NO_FILE;
}

/// Returns how many bytes were written, -1 on a fault.
qint64 WriteSome(qintptr file, const char* bytes, qint64 count) {
    const auto written = ::write(static_cast<int>(file), bytes, static_cast<std::size_t>(count));
    return written < 0 && errno == EINTR ? 0 : written;
}

/// Brings a file to the disk. Some file systems cannot be told to; they answer EINVAL or ENOTSUP.
bool Sync(qintptr file) {
    const int descriptor = static_cast<int>(file);
#ifdef F_FULLFSYNC
    if (::fcntl(descriptor, F_FULLFSYNC) == 0) {
        return true;
    }
#endif
    return ::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;
}

/// After this, the new name outlives a power cut. If it fails, the file is whole all the same: the old or the
/// new one.
void SyncFolder(const QString& file) {
    const QByteArray path = QFile::encodeName(file.left(file.lastIndexOf(QLatin1Char('/')) + 1));
    const int folder = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

/// The file stays open and locked while it is renamed, so that nobody takes it for one that was left.
bool Replace(qintptr&, const QString& temporary, const QString& target) {
    if (std::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(target).constData()) != 0) {
        return false;
    }
    SyncFolder(target);
    return true;
}

/// Closes the file; removes it, while it is still locked, unless it was renamed.
void Discard(qintptr file, const QString& temporary) {
    if (!temporary.isEmpty()) {
        ::unlink(QFile::encodeName(temporary).constData());
    }
    ::close(static_cast<int>(file));
}

/// What cannot be kept, for example on a disk without owners, is left.
void KeepOwner(qintptr file, const QString& target) {
    struct stat old;
    if (::stat(QFile::encodeName(target).constData(), &old) != 0) {
        return;
    }
    const int descriptor = static_cast<int>(file);
    const auto keep = [descriptor](uid_t owner, gid_t group) {
        return ::fchown(descriptor, owner, group) == 0;
    };
    // Another group must not get the permissions that the old file's group had.
    const bool keepsGroup = keep(static_cast<uid_t>(-1), old.st_gid);
    keep(old.st_uid, static_cast<gid_t>(-1));
    ::fchmod(descriptor, keepsGroup ? old.st_mode & 07777 : old.st_mode & 0707);
}

#endif

} // namespace

WholeFile::WholeFile(const QString& path)
    : target_(Resolved(path))
    , file_(NO_FILE) {
    if (CheckTarget()) {
        Open();
    }
}

WholeFile::~WholeFile() {
    Drop();
}

/// Keeps the system's words for the last call that failed.
bool WholeFile::Fail() {
    if (fault_.isEmpty()) {
        fault_ = qt_error_string();
    }
    return false;
}

/// A folder or a device is not replaced, nor a file that is protected against writing.
bool WholeFile::CheckTarget() {
    const QFileInfo old(target_);
    if (old.exists() && !old.isFile()) {
        fault_ =
            old.isDir() ? QStringLiteral("It is a folder") : QStringLiteral("It is not a file on a disk");
    } else if (old.exists() && !old.isWritable()) {
        fault_ = QStringLiteral("The file is protected against writing");
    }
    return fault_.isEmpty();
}

void WholeFile::Open() {
    for (int number = 1; number <= MAX_LEFT; ++number) {
        RemoveLeft(TemporaryName(target_, number));
    }
    for (int number = 1; number <= MAX_WRITERS; ++number) {
        const QString name = TemporaryName(target_, number);
        file_ = OpenNew(name, target_);
        if (file_ != NO_FILE) {
            temporary_ = name;
            return;
        }
        if (!NameExists()) {
            break;
        }
    }
    fault_ = QStringLiteral("No temporary file can be made beside it: ") + qt_error_string();
}

bool WholeFile::Write(const QByteArray& bytes) {
    qint64 done = 0;
    while (fault_.isEmpty() && done < bytes.size()) {
        const qint64 written = WriteSome(file_, bytes.constData() + done, bytes.size() - done);
        if (written < 0) {
            return Fail();
        }
        done += written;
    }
    return fault_.isEmpty();
}

bool WholeFile::Commit() {
    if (fault_.isEmpty()) {
        KeepOwner(file_, target_);
        if (!Sync(file_) || !Replace(file_, temporary_, target_)) {
            Fail();
        } else {
            temporary_.clear();
        }
    }
    Drop();
    return fault_.isEmpty();
}

void WholeFile::Drop() {
    if (file_ != NO_FILE) {
        Discard(file_, temporary_);
        file_ = NO_FILE;
    }
    temporary_.clear();
}

QString WholeFile::Write(const QString& path, const QByteArray& content) {
    WholeFile file(path);
    file.Write(content);
    file.Commit();
    return file.Fault();
}

} // namespace vellix
