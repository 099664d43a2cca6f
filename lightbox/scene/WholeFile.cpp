#include "scene/WholeFile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace lightbox {

namespace {

/// So many temporary names are looked at for files of killed programs. As many programs may be killed while
/// others write the same file.
constexpr int MAX_LEFT = 4;
/// So many programs can write the same file at once.
constexpr int MAX_WRITERS = 1000;
/// Longer names are shortened to leave room for what a temporary name adds: most systems allow 255 bytes.
constexpr int MAX_NAME = 200;

/// The path as the system names it. Follows links, also to a file that does not exist yet.
std::string Resolved(const std::string& path) {
    QFileInfo file(QString::fromStdString(path));
    for (int links = 0; file.isSymLink() && links < 40; ++links) {
        file.setFile(file.symLinkTarget());
    }
    return QFile::encodeName(file.absoluteFilePath()).toStdString();
}

std::string TemporaryName(const std::string& target, int number) {
    const std::size_t start = target.rfind('/') + 1;
    std::size_t end = std::min(target.size(), start + MAX_NAME);
    while (end < target.size() && (target[end] & 0xC0) == 0x80) {
        --end; // not within a character
    }
    return target.substr(0, start) + '.' + target.substr(start, end - start) + ".lightbox-" +
           std::to_string(number) + ".part";
}

bool IsSame(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Removes a temporary file that no program has locked.
void RemoveLeft(const std::string& name) {
    const int descriptor = open(name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    struct stat opened;
    struct stat named;
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && fstat(descriptor, &opened) == 0 &&
        S_ISREG(opened.st_mode) && lstat(name.c_str(), &named) == 0 && IsSame(opened, named)) {
        unlink(name.c_str());
    }
    close(descriptor);
}

/// Locks a new temporary file. Returns false if another program has taken it for one that was left and
/// removes it. Where the file system has no locks, nobody can lock it, and so nobody removes it.
bool Lock(int descriptor) {
    struct stat status;
    return (flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) &&
           fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

/// Brings a file to the disk. Some file systems cannot be told to; they answer EINVAL or ENOTSUP.
bool Sync(int descriptor) {
#ifdef F_FULLFSYNC
    if (fcntl(descriptor, F_FULLFSYNC) == 0) {
        return true;
    }
#endif
    return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;
}

/// After this, the new name outlives a power cut. If it fails, the file is whole all the same: the old or the
/// new one.
void SyncFolder(const std::string& file) {
    const int folder = open(file.substr(0, file.rfind('/') + 1).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        fsync(folder);
        close(folder);
    }
}

} // namespace

WholeFile::WholeFile(const std::string& path)
    : target_(Resolved(path)) {
    if (CheckTarget()) {
        Open();
    }
}

WholeFile::~WholeFile() {
    Drop();
}

bool WholeFile::Fail(int error) {
    if (fault_.empty()) {
        fault_ = std::generic_category().message(error);
    }
    return false;
}

/// A folder or a device is not replaced, nor a file that is protected against writing.
bool WholeFile::CheckTarget() {
    struct stat status;
    if (stat(target_.c_str(), &status) != 0) {
        return errno == ENOENT || Fail(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        fault_ = S_ISDIR(status.st_mode) ? "It is a folder" : "It is not a file on a disk";
        return false;
    }
    return access(target_.c_str(), W_OK) == 0 || Fail(errno);
}

void WholeFile::Open() {
    for (int number = 1; number <= MAX_LEFT; ++number) {
        RemoveLeft(TemporaryName(target_, number));
    }
    // Until it has the permissions of the old file, nobody else reads it.
    const mode_t mode = access(target_.c_str(), F_OK) == 0 ? 0600 : 0666;
    for (int number = 1; number <= MAX_WRITERS; ++number) {
        const std::string name = TemporaryName(target_, number);
        const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor < 0 && errno != EEXIST) {
            break;
        }
        if (descriptor >= 0 && Lock(descriptor)) {
            descriptor_ = descriptor;
            temporary_ = name;
            return;
        }
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    fault_ = "No temporary file can be made beside it: " + std::generic_category().message(errno);
}

bool WholeFile::Write(const char* bytes, std::size_t count) {
    while (fault_.empty() && count > 0) {
        const ssize_t written = write(descriptor_, bytes, count);
        if (written < 0 && errno != EINTR) {
            return Fail(errno);
        }
        const auto done = static_cast<std::size_t>(written < 0 ? 0 : written);
        bytes += done;
        count -= done;
    }
    return fault_.empty();
}

/// What cannot be kept, for example on a disk without owners, is left.
void WholeFile::KeepOwner() const {
    struct stat old;
    if (stat(target_.c_str(), &old) != 0) {
        return;
    }
    const auto keep = [this](uid_t owner, gid_t group) { return fchown(descriptor_, owner, group) == 0; };
    // Another group must not get the permissions that the old file's group had.
    const bool keepsGroup = keep(static_cast<uid_t>(-1), old.st_gid);
    keep(old.st_uid, static_cast<gid_t>(-1));
    fchmod(descriptor_, keepsGroup ? old.st_mode & 07777 : old.st_mode & 0707);
}

bool WholeFile::Commit() {
    if (fault_.empty()) {
        KeepOwner();
        // Still open and locked while it is renamed, so that nobody takes it for one that was left.
        if (!Sync(descriptor_) || std::rename(temporary_.c_str(), target_.c_str()) != 0) {
            Fail(errno);
        } else {
            temporary_.clear();
            SyncFolder(target_);
        }
    }
    Drop();
    return fault_.empty();
}

void WholeFile::Drop() {
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
        temporary_.clear();
    }
    if (descriptor_ >= 0) {
        close(descriptor_);
        descriptor_ = -1;
    }
}

std::string WholeFile::Write(const std::string& path, const std::string& content) {
    WholeFile file(path);
    file.Write(content.data(), content.size());
    file.Commit();
    return file.Fault();
}

} // namespace lightbox
