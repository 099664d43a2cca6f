#pragma once

#include "scene/NonCopyable.h"

#include <cstddef>
#include <string>

namespace lightbox {

/// Writes a file whole or not at all. The new content goes to a temporary file in the same folder. Commit()
/// replaces the old file by it, once all of it is on the disk. Whatever fails before leaves the old file as
/// it was.
///
/// A symbolic link stays: its target is replaced. The new file has the permissions of the old one. A program
/// that is killed leaves its temporary file, which the next program that writes the same file removes. A
/// temporary file that is still being written is locked and stays.
class WholeFile : NonCopyable {
public:
    /// Opens the temporary file. If that fails, Fault() tells.
    explicit WholeFile(const std::string& path);
    /// Without Commit(), drops what was written.
    ~WholeFile();

    /// Returns false once anything has failed.
    bool Write(const char* bytes, std::size_t count);
    /// Replaces the old file. Returns false, and drops what was written, if anything has failed.
    bool Commit();

    /// Why writing failed, in the words of the system; empty while nothing has.
    const std::string& Fault() const { return fault_; }

    /// Writes a whole file at once. Returns why that failed, or an empty string.
    static std::string Write(const std::string& path, const std::string& content);

private:
    bool Fail(int error);
    bool CheckTarget();
    void Open();
    void KeepOwner() const;
    void Drop();

    std::string target_;    ///< as the system names it, with links resolved
    std::string temporary_; ///< empty while there is none to remove
    std::string fault_;
    int descriptor_ = -1;
};

} // namespace lightbox
