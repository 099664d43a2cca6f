#pragma once

#include "scene/NonCopyable.h"

#include <QString>

#include <memory>
#include <set>
#include <string>
#include <vector>

class QFile;

namespace lightbox {

/// What is on disk about a session in case it does not end properly: the automatic saves with content that is
/// in no other file. Each session has a record in the folder "sessions" of the preference folder, and beside
/// it a file that the program keeps locked. The lock ends with the process in whatever way that ends, so a
/// record whose lock is free was left behind. A process number would not tell: another process may have got
/// it since, or it may be of another machine that shares the folder.
class SessionRecord : NonCopyable {
public:
    struct Content {
        std::string sceneName;          ///< the scene that was saved; empty for an untitled one
        bool hasFaults = false;         ///< the scene's file was read with faults
        std::vector<std::string> files; ///< the automatic saves, the oldest first
    };
    class Abandoned;

    /// The record of this session; nothing is on disk yet. Without a preference folder it never is.
    explicit SessionRecord(const std::string& prefsFolder);
    /// Removes the record, unless it was left: the session ends properly.
    ~SessionRecord();

    const Content& GetContent() const { return content_; }
    /// Writes the record. Throws FileError when that fails; the record on disk then stays as it was.
    void Write(Content content);
    /// Removes the record from the disk.
    void Remove();
    /// Leaves the record behind, as if the program had been killed now.
    void Leave();
    /// The automatic saves of all other sessions, running or left behind, as canonical paths.
    std::set<std::string> FilesOfOthers() const;

    /// The records that other sessions have left behind.
    static std::vector<std::unique_ptr<Abandoned>> FindAbandoned(const std::string& prefsFolder);

private:
    QString folder_; ///< empty without a preference folder
    QString name_;
    std::unique_ptr<QFile> lock_;
    Content content_;
};

/// The record of a session that has not ended properly. While this exists no other program gets the record;
/// it then stays on disk unless it was removed.
class SessionRecord::Abandoned : NonCopyable {
public:
    Abandoned(QString path, std::unique_ptr<QFile> lock);
    ~Abandoned();

    const Content& GetContent() const { return content_; }
    /// The last automatic save that is still there; empty when there is none.
    std::string NewestFile() const;
    /// Whether the folder of the last automatic save is there.
    bool HasFolder() const;
    /// Removes the record. The automatic saves stay.
    void Remove();

private:
    QString path_;
    std::unique_ptr<QFile> lock_;
    Content content_;
};

} // namespace lightbox
