#pragma once

#include "formats/FileError.h"
#include "formats/FileOperation.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {

class FileReader;
class Host;
class ReferenceList;
class UnknownContent;

/// The formats that a scene can be stored in, named as `file -type` names them.
enum class SceneFormat { MayaAscii, LightboxBinary };

/// The scene as a document: its file, its format, whether it has changed, and new, open, save, import,
/// reference and export. Every operation fires the events that MSceneMessage and MEventMessage know and sets
/// the flags of MFileIO while it runs.
///
/// A file that cannot be opened, or that is no scene at all, leaves the scene as it was. A scene file with a
/// fault inside keeps everything that could be read, as Maya does; each fault is reported with file and line,
/// the call ends with a FileError, and Save() then refuses to write over that file until it is forced or the
/// scene renamed.
class SceneFiles {
public:
    explicit SceneFiles(Host& host);
    ~SceneFiles();
    SceneFiles(const SceneFiles&) = delete;
    SceneFiles& operator=(const SceneFiles&) = delete;

    /// The scene's file: an absolute path, or empty for an untitled scene.
    const std::string& SceneName() const { return sceneName_; }
    /// Gives the scene another file name without writing; a relative name is taken from the current folder.
    void Rename(const std::string& path);
    SceneFormat Format() const { return format_; }
    void SetFormat(SceneFormat format);

    /// True when the scene differs from its file, or from the empty scene it began as.
    bool IsModified() const;
    void SetModified(bool modified);

    /// Empties the scene and makes the default nodes; throws FileError when there are unsaved changes and not
    /// `force`.
    void New(bool force);
    void Open(const std::string& path, bool force);
    /// Writes to the scene's own file. `force` writes also over a file that was read with faults.
    void Save(bool force);
    /// Adds the content of another scene. With a namespace the new nodes go into it; without, only names that
    /// clash are prefixed with the file's base name. Returns the full names of the new nodes.
    std::vector<std::string> Import(const std::string& path, const std::string& nameSpace);
    /// Writes the whole scene, or the named nodes and what lies below them, to another file; the scene keeps
    /// its name.
    void ExportAll(const std::string& path, SceneFormat format);
    void ExportSelected(const std::string& path, SceneFormat format, const std::vector<std::string>& nodes);

    /// Files that this scene references: creation, loading, removal.
    ReferenceList& references() { return *references_; }
    /// What was read from files but has no meaning here, kept to be written back.
    UnknownContent& unknown() { return *unknown_; }
    /// `fileInfo` pairs, in order of first appearance.
    std::vector<std::pair<std::string, std::string>>& fileInfo() { return fileInfo_; }

    /// True while an operation of that kind runs, at any depth.
    bool Running(FileOperation operation) const;
    bool IsReading() const;
    bool IsWriting() const;
    /// The reader that is feeding statements right now, or null. Scene commands ask it for the names of its
    /// file.
    FileReader* reader() const { return readers_.empty() ? nullptr : readers_.back(); }

    /// The format that a path's suffix stands for; `fallback` when it says nothing.
    static SceneFormat FormatOf(const std::string& path, SceneFormat fallback);
    static const char* FormatName(SceneFormat format);
    static bool ParseFormatName(const std::string& name, SceneFormat& format);

private:
    friend class FileOperationScope;
    friend class FileReader;

    Host& host_;
    std::string sceneName_;
    SceneFormat format_ = SceneFormat::MayaAscii;
    bool hasFaults_ = false;
    std::vector<std::pair<std::string, std::string>> fileInfo_;
    std::vector<FileOperation> operations_;
    std::vector<FileReader*> readers_;
    std::unique_ptr<ReferenceList> references_;
    std::unique_ptr<UnknownContent> unknown_;
};

} // namespace lightbox
