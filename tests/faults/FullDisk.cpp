// Makes writing fail as on a full disk. Built as a library that is preloaded into a program (LD_PRELOAD), and
// compiled into test programs, where it stands before the C library too. Three environment variables control
// it; they are read anew at each call, so that a test can change them while it runs.
//
// VELLIX_FAULT_FOLDER   absolute path; only files below this folder are affected
// VELLIX_FAULT_BYTES    regular files take this many bytes in all, then writing fails with ENOSPC. The write
// that
//                       crosses the limit is cut short, as a real disk does. The count starts again whenever
//                       the text of the variable changes; text behind the number has no other meaning ("512
//                       again").
// VELLIX_FAULT_FSYNC    1: fsync and fdatasync fail with ENOSPC
// VELLIX_FAULT_RENAME   1: renaming fails with ENOSPC
//
// Output of <cstdio> and of mapped memory does not pass through here.

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

/// The function of the same name that comes after this file: that of the C library, or of a sanitizer.
template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::string Resolved(const std::string& path) {
    char whole[PATH_MAX];
    return realpath(path.c_str(), whole) ? whole : std::string();
}

/// True for a path below the folder. The path has no links.
bool IsInFolder(const std::string& path) {
    const char* const folder = std::getenv("VELLIX_FAULT_FOLDER");
    const std::string root = folder ? Resolved(folder) : std::string();
    return !root.empty() && path.compare(0, root.size(), root) == 0 && path[root.size()] == '/';
}

/// True for a file, or a folder, that is open and lies in the folder. A deleted file still counts.
bool IsInFolder(int descriptor) {
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    char target[PATH_MAX];
    const ssize_t length = readlink(link.c_str(), target, sizeof target);
    return length > 0 && IsInFolder(std::string(target, static_cast<std::size_t>(length)));
}

/// The same for a name that need not exist.
bool IsNameInFolder(int folder, const char* name) {
    const std::string path = name;
    const std::size_t slash = path.rfind('/');
    if (path[0] != '/' && folder != AT_FDCWD) {
        return IsInFolder(folder);
    }
    const std::string parent = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    return IsInFolder(Resolved(parent) + '/' + path.substr(slash + 1));
}

bool IsOn(const char* variable) {
    const char* const value = std::getenv(variable);
    return value && std::strcmp(value, "1") == 0;
}

int Fail() {
    errno = ENOSPC;
    return -1;
}

/// Counts down the bytes that still fit.
class Space {
public:
    /// Takes up to `count` bytes and returns how many fit.
    std::size_t Take(const char* limit, std::size_t count) {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (limit_ != limit) {
            limit_ = limit;
            left_ = std::strtoull(limit, nullptr, 10);
        }
        const std::size_t fits = count < left_ ? count : left_;
        left_ -= fits;
        return fits;
    }

private:
    std::mutex mutex_;
    std::string limit_;
    std::size_t left_ = 0;
};

/// Returns how many of the bytes fit on the disk, which is all of them for a file that is not affected.
std::size_t Fitting(int descriptor, std::size_t count) {
    static Space* const space = new Space; // never destroyed: programs write until their very end
    const char* const limit = std::getenv("VELLIX_FAULT_BYTES");
    struct stat status;
    if (!limit || fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || !IsInFolder(descriptor)) {
        return count;
    }
    return space->Take(limit, count);
}

/// True when there are bytes to write and none of them fits.
bool IsFull(std::size_t fits, std::size_t count) {
    return fits == 0 && count > 0;
}

bool RenamingFails(int oldFolder, const char* oldName, int newFolder, const char* newName) {
    return IsOn("VELLIX_FAULT_RENAME") &&
           (IsNameInFolder(oldFolder, oldName) || IsNameInFolder(newFolder, newName));
}

} // namespace

extern "C" {

ssize_t write(int descriptor, const void* bytes, size_t count) {
    static const auto next = Next<decltype(write)>("write");
    const std::size_t fits = Fitting(descriptor, count);
    return IsFull(fits, count) ? Fail() : next(descriptor, bytes, fits);
}

ssize_t pwrite(int descriptor, const void* bytes, size_t count, off_t offset) {
    static const auto next = Next<decltype(pwrite)>("pwrite");
    const std::size_t fits = Fitting(descriptor, count);
    return IsFull(fits, count) ? Fail() : next(descriptor, bytes, fits, offset);
}

ssize_t pwrite64(int descriptor, const void* bytes, size_t count, off64_t offset) {
    static const auto next = Next<decltype(pwrite64)>("pwrite64");
    const std::size_t fits = Fitting(descriptor, count);
    return IsFull(fits, count) ? Fail() : next(descriptor, bytes, fits, offset);
}

// Written piece by piece, so that the limit may fall into any of them.
ssize_t writev(int descriptor, const struct iovec* pieces, int count) {
    ssize_t total = 0;
    for (int i = 0; i < count; ++i) {
        const ssize_t written = write(descriptor, pieces[i].iov_base, pieces[i].iov_len);
        if (written < 0) {
            return total > 0 ? total : written;
        }
        total += written;
        if (static_cast<std::size_t>(written) < pieces[i].iov_len) {
            break;
        }
    }
    return total;
}

int fsync(int descriptor) {
    static const auto next = Next<decltype(fsync)>("fsync");
    return IsOn("VELLIX_FAULT_FSYNC") && IsInFolder(descriptor) ? Fail() : next(descriptor);
}

int fdatasync(int descriptor) {
    static const auto next = Next<decltype(fdatasync)>("fdatasync");
    return IsOn("VELLIX_FAULT_FSYNC") && IsInFolder(descriptor) ? Fail() : next(descriptor);
}

int rename(const char* oldName, const char* newName) noexcept {
    static const auto next = Next<int(const char*, const char*)>("rename");
    return RenamingFails(AT_FDCWD, oldName, AT_FDCWD, newName) ? Fail() : next(oldName, newName);
}

int renameat(int oldFolder, const char* oldName, int newFolder, const char* newName) noexcept {
    static const auto next = Next<int(int, const char*, int, const char*)>("renameat");
    return RenamingFails(oldFolder, oldName, newFolder, newName)
               ? Fail()
               : next(oldFolder, oldName, newFolder, newName);
}

int renameat2(int oldFolder, const char* oldName, int newFolder, const char* newName,
              unsigned int flags) noexcept {
    static const auto next = Next<int(int, const char*, int, const char*, unsigned int)>("renameat2");
    return RenamingFails(oldFolder, oldName, newFolder, newName)
               ? Fail()
               : next(oldFolder, oldName, newFolder, newName, flags);
}

int linkat(int oldFolder, const char* oldName, int newFolder, const char* newName, int flags) noexcept {
    static const auto next = Next<int(int, const char*, int, const char*, int)>("linkat");
    return RenamingFails(oldFolder, oldName, newFolder, newName)
               ? Fail()
               : next(oldFolder, oldName, newFolder, newName, flags);
}

} // extern "C"
