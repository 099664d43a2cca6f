#pragma once

#include "formats/FileError.h"
#include "formats/FileOperation.h"
#include "formats/ReadFaults.h"
#include "formats/SceneUnits.h"
#include "scene/Node.h"
#include "scene/NonCopyable.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {

class AutoSave;
class FileReader;
class Host;
class PreservedContent;
class ReferenceList;
class SceneContent;

/// The formats of scene files. FormatName() gives their names for `file -type`.
enum class SceneFormat { MayaAscii, LightboxBinary };

/// The scene as a document: its file, its format, its modified flag, and the operations new, open, save,
/// import, reference and export. Every operation fires its events and sets the flags of MFileIO while it
/// runs.
///
/// A file that cannot be opened, or that is not a scene, leaves the scene unchanged. When a scene file has
/// faults, everything that could be read stays in the scene, as in Maya. Each fault is reported with file and
/// line, and the call throws FileError at its end. Every error shown while the file is read counts as a
/// fault, also a plug-in's. A file with faults is not overwritten unless that is forced, whatever name the
/// scene has had in between; so is one that was imported or referenced.
class SceneFiles : NonCopyable {
public:
    explicit SceneFiles(Host& host);
    ~SceneFiles();

    /// The scene's file: an absolute path, or empty for an untitled scene.
    const std::string& SceneName() const { return sceneName_; }
    /// Changes the scene's file name without writing. A relative name starts at the current folder. A known
    /// suffix sets the format; any other name gets the suffix of the format. Returns the absolute path.
    /// Throws FileError for an empty name and for a folder.
    const std::string& Rename(const std::string& path);
    SceneFormat Format() const { return format_; }
    void SetFormat(SceneFormat format) { format_ = format; }

    /// True when the scene differs from its file, or from the empty scene it began as.
    bool IsModified() const;
    void SetModified(bool modified);
    /// Equal values mean an equal scene.
    std::pair<std::uint64_t, std::uint64_t> ContentVersion() const;

    /// Empties the scene and makes the default nodes. New() and Open() throw FileError for unsaved changes
    /// unless `force`, and while another file operation runs.
    void New(bool force);
    void Open(const std::string& path, bool force);
    /// Opens a copy of a scene under the scene's name, or as an untitled scene when the name is empty, with
    /// unsaved changes. `hadFaults` says that the scene had been read with faults when it was copied.
    void OpenCopy(const std::string& copy, const std::string& name, bool hadFaults);
    /// Writes to the scene's own file. `force` also overwrites a file that was read with faults.
    void Save(bool force);
    /// Saves under another name, like Rename() and Save(). When that fails, the scene keeps its name and
    /// format.
    void SaveAs(const std::string& path, std::optional<SceneFormat> format, bool force);
    /// The faults with which this scene has read a file; null when there were none.
    const ReadFaults* FaultsOf(const std::string& path) const;
    /// Adds the content of another scene and returns the new nodes. Cannot be undone. The new nodes go into
    /// the namespace; when it is empty, names that clash get the file's base name as prefix.
    std::vector<std::shared_ptr<Node>> Import(const std::string& path, const std::string& nameSpace);
    /// References a file and returns the reference's name. An empty namespace stands for the file's base
    /// name.
    std::string AddReference(const std::string& path, const std::string& nameSpace, const std::string& name,
                             bool deferred);
    /// Write the whole scene, or some nodes with all that belongs to them, to another file. The scene's name
    /// stays. `force` is as for Save().
    void ExportAll(const std::string& path, SceneFormat format, bool force);
    void ExportNodes(const std::string& path, SceneFormat format,
                     const std::vector<std::shared_ptr<Node>>& nodes, bool force);

    AutoSave& autoSave() const { return *autoSave_; }
    ReferenceList& references() const { return *references_; }
    /// Content of files that has no meaning here; saving writes it back.
    PreservedContent& preserved() const { return *preserved_; }
    /// The units in which the scene's file holds its numbers.
    const SceneUnits& units() const { return units_; }
    void SetUnits(const SceneUnits& units) { units_ = units; }
    /// `fileInfo` pairs, in order of first appearance.
    const std::vector<std::pair<std::string, std::string>>& fileInfo() const { return fileInfo_; }
    void SetFileInfo(const std::string& key, const std::string& value);
    void RemoveFileInfo(const std::string& key);

    /// True while the operation runs, at any depth.
    bool Running(FileOperation operation) const;
    bool IsReading() const;
    bool IsWriting() const;
    /// The innermost active reader, or null.
    FileReader* reader() const { return readers_.empty() ? nullptr : readers_.back(); }
    const std::vector<FileReader*>& readers() const { return readers_; }
    /// Runs the reader on its file, or on the given bytes. Returns whether all was read without errors.
    /// Throws FileError when the file cannot be read or is not a scene.
    bool RunReader(FileReader& reader);
    bool RunReader(FileReader& reader, std::string bytes);

    /// Returns the format of a path's suffix, or `fallback` for an unknown suffix.
    static SceneFormat FormatOf(const std::string& path, SceneFormat fallback);
    static const char* FormatName(SceneFormat format);
    /// The suffix of a format's files, without the dot.
    static const char* SuffixOf(SceneFormat format);
    /// Sets `format` from its name. Returns false for an unknown name and leaves `format` unchanged.
    static bool ParseFormatName(const std::string& name, SceneFormat& format);
    /// Returns the absolute path of a scene file. When no such file exists, tries the suffixes of the
    /// formats; when that fails too, returns the absolute path itself.
    static std::string FindFile(const std::string& path);
    /// Returns the path as an absolute one, with "~" resolved.
    static std::string AbsolutePath(const std::string& path);

private:
    friend class FileOperationScope;

    void CheckUnsaved(bool force) const;
    void ForceModified();
    void CheckReplaceable(const std::string& path, bool force) const;
    void Empty();
    /// Until its end is reached a file counts as one with faults: an exception may end the reading anywhere.
    void MarkAsReading(const std::string& path);
    /// Replaces the scene by a file's content, under that name.
    void Read(const std::string& file, const std::string& name);
    void CheckFaults(const std::string& file) const;
    void Write(const std::string& path, SceneFormat format, SceneContent content);

    Host& host_;
    std::string sceneName_;
    SceneFormat format_ = SceneFormat::MayaAscii;
    std::map<std::string, ReadFaults> faults_; ///< by the canonical path of the file
    bool isForcedModified_ = false;
    std::uint64_t forcedChanges_ = 0; ///< changes that the undo queue does not know
    std::uint64_t savedState_ = 0;
    SceneUnits units_;
    std::vector<std::pair<std::string, std::string>> fileInfo_;
    std::vector<FileOperation> operations_;
    std::vector<FileReader*> readers_;
    std::unique_ptr<ReferenceList> references_;
    std::unique_ptr<PreservedContent> preserved_;
    std::unique_ptr<AutoSave> autoSave_;
};

} // namespace lightbox
