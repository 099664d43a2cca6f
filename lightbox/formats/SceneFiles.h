#pragma once

#include "formats/FileError.h"
#include "formats/FileOperation.h"
#include "scene/Node.h"
#include "scene/NonCopyable.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {

class FileReader;
class Host;
class PreservedContent;
class ReferenceList;
class SceneContent;

/// The formats that a scene can be stored in, named as `file -type` names them.
enum class SceneFormat { MayaAscii, LightboxBinary };

/// The scene as a document: its file, its format, whether it has changed, and new, open, save, import,
/// reference and export. Every operation fires its events and sets the flags of MFileIO while it runs.
///
/// A file that cannot be opened, or that is no scene at all, leaves the scene as it was. A scene file with a
/// fault inside keeps everything that could be read, as Maya does; each fault is reported with file and line,
/// the call ends with a FileError, and Save() then refuses to write over that file until it is forced or the
/// scene renamed.
class SceneFiles : NonCopyable {
public:
    explicit SceneFiles(Host& host);
    ~SceneFiles();

    /// The scene's file: an absolute path, or empty for an untitled scene.
    const std::string& SceneName() const { return sceneName_; }
    /// Gives the scene another file name without writing. A relative name is taken from the current folder, a
    /// name without a suffix gets that of the format, a known suffix sets the format. Answers the whole path.
    const std::string& Rename(const std::string& path);
    SceneFormat Format() const { return format_; }
    void SetFormat(SceneFormat format) { format_ = format; }

    /// True when the scene differs from its file, or from the empty scene it began as.
    bool IsModified() const;
    void SetModified(bool modified);

    /// Empties the scene and makes the default nodes. Throws FileError when there are unsaved changes and not
    /// `force`, as Open() does.
    void New(bool force);
    void Open(const std::string& path, bool force);
    /// Writes to the scene's own file. `force` writes also over a file that was read with faults.
    void Save(bool force);
    /// Adds the content of another scene; this is not on the undo queue. With a namespace the new nodes go
    /// into it; without, names that clash are prefixed with the file's base name. Answers the new nodes.
    std::vector<std::shared_ptr<Node>> Import(const std::string& path, const std::string& nameSpace);
    /// References a file; answers the name of the reference. An empty namespace stands for the file's base
    /// name.
    std::string AddReference(const std::string& path, const std::string& nameSpace, const std::string& name,
                             bool deferred);
    /// Writes the whole scene, or some nodes and what lies below them, to another file; the scene keeps its
    /// name.
    void ExportAll(const std::string& path, SceneFormat format);
    void ExportNodes(const std::string& path, SceneFormat format,
                     const std::vector<std::shared_ptr<Node>>& nodes);

    ReferenceList& references() const { return *references_; }
    /// What was read from files but has no meaning here, kept to be written back.
    PreservedContent& preserved() const { return *preserved_; }
    /// `fileInfo` pairs, in order of first appearance.
    const std::vector<std::pair<std::string, std::string>>& fileInfo() const { return fileInfo_; }
    void SetFileInfo(const std::string& key, const std::string& value);
    void RemoveFileInfo(const std::string& key);

    /// True while an operation of that kind runs, at any depth.
    bool Running(FileOperation operation) const;
    bool IsReading() const;
    bool IsWriting() const;
    /// The reader that is at work right now, or null. Scene commands ask it for the names of its file.
    FileReader* reader() const { return readers_.empty() ? nullptr : readers_.back(); }
    const std::vector<FileReader*>& readers() const { return readers_; }
    /// Reads the reader's file. Throws FileError when it cannot be read at all.
    void RunReader(FileReader& reader);
    void RunReader(FileReader& reader, std::string bytes);

    /// The format that a path's suffix stands for; `fallback` when it says nothing.
    static SceneFormat FormatOf(const std::string& path, SceneFormat fallback);
    static const char* FormatName(SceneFormat format);
    /// False for the name of a format that cannot be written.
    static bool ParseFormatName(const std::string& name, SceneFormat& format);
    /// The path as an absolute one, "~" resolved; where there is no such file, with the suffix of a scene
    /// that is there.
    static std::string FindFile(const std::string& path);
    static std::string AbsolutePath(const std::string& path);

private:
    friend class FileOperationScope;

    void CheckUnsaved(bool force) const;
    void Empty();
    void Write(const std::string& path, SceneFormat format, SceneContent content);

    Host& host_;
    std::string sceneName_;
    SceneFormat format_ = SceneFormat::MayaAscii;
    bool hasFaults_ = false;
    bool isForcedModified_ = false;
    std::uint64_t savedState_ = 0;
    std::vector<std::pair<std::string, std::string>> fileInfo_;
    std::vector<FileOperation> operations_;
    std::vector<FileReader*> readers_;
    std::unique_ptr<ReferenceList> references_;
    std::unique_ptr<PreservedContent> preserved_;
};

} // namespace lightbox
