#include "formats/SceneFiles.h"

#include "formats/AsciiWriter.h"
#include "formats/AtomicFile.h"
#include "formats/AutoSave.h"
#include "formats/BinaryWriter.h"
#include "formats/FileOperation.h"
#include "formats/FileReader.h"
#include "formats/PreservedContent.h"
#include "formats/ReferenceList.h"
#include "formats/SceneContent.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/Scene.h"
#include "scene/ScopeExit.h"
#include "scene/Timeline.h"
#include "scene/UndoQueue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <new>
#include <tuple>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace lightbox {
namespace {

constexpr char ASCII_SUFFIX[] = "ma";
constexpr char BINARY_SUFFIX[] = "lbx";

/// Number of faults that the message of a refused save names.
constexpr std::size_t NAMED_FAULTS = 3;
/// Number of a file's faults that are kept.
constexpr std::size_t MAX_KEPT_FAULTS = 50;

/// Gives the memory that reading a text has taken back to the system: twice as much as its drawings need, in
/// pieces that the allocator would keep.
void FreeUnused() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

/// The path that a file has whatever link it is reached by.
std::string CanonicalPath(const std::string& path) {
    const QFileInfo info(QString::fromStdString(path));
    const QString canonical = info.canonicalFilePath();
    return (canonical.isEmpty() ? info.absoluteFilePath() : canonical).toStdString();
}

ReadFaults FaultsFrom(const ErrorCollector& errors, const FileReader& reader) {
    ReadFaults faults;
    faults.messages = errors.Texts();
    faults.count = faults.messages.size() + static_cast<std::size_t>(reader.HiddenFaultCount());
    faults.messages.resize(std::min(MAX_KEPT_FAULTS, faults.messages.size()));
    const std::string file = "file: " + reader.source().path;
    for (std::string& message : faults.messages) {
        if (message.compare(0, file.size(), file) == 0) {
            message.erase(0, message.find_first_not_of(" :", file.size()));
        }
    }
    return faults;
}

std::string ReadBytes(const std::string& path) {
    QFile file(QString::fromStdString(path));
    const QFileInfo info(file);
    if (!info.exists()) {
        throw FileError("File not found: " + path);
    }
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        throw FileError("Could not read \"" + path + "\": " +
                        (info.isFile() ? file.errorString().toStdString() : std::string("it is not a file")) +
                        ".");
    }
    std::string bytes;
    try {
        bytes.resize(static_cast<std::size_t>(file.size()));
    } catch (const std::bad_alloc&) {
        throw FileError("There is not enough memory to read \"" + path + "\".");
    }
    const qint64 count = file.read(bytes.data(), static_cast<qint64>(bytes.size()));
    if (count != static_cast<qint64>(bytes.size())) {
        throw FileError("Could not read \"" + path + "\": " + file.errorString().toStdString() + ".");
    }
    return bytes;
}

} // namespace

SceneFiles::SceneFiles(Host& host)
    : host_(host)
    , savedState_(host.undo().State())
    , references_(std::make_unique<ReferenceList>(host))
    , preserved_(std::make_unique<PreservedContent>())
    , autoSave_(std::make_unique<AutoSave>(host)) {}

SceneFiles::~SceneFiles() = default;

std::string SceneFiles::AbsolutePath(const std::string& path) {
    QString text = QString::fromStdString(path);
    if (text == "~" || text.startsWith("~/")) {
        text.replace(0, 1, QDir::homePath());
    }
    return QDir::cleanPath(QFileInfo(text).absoluteFilePath()).toStdString();
}

std::string SceneFiles::FindFile(const std::string& path) {
    std::string whole = AbsolutePath(path);
    for (const char* suffix : {"", ".ma", ".lbx"}) {
        if (QFileInfo(QString::fromStdString(whole + suffix)).isFile()) {
            return whole + suffix;
        }
    }
    return whole;
}

SceneFormat SceneFiles::FormatOf(const std::string& path, SceneFormat fallback) {
    const QString suffix = QFileInfo(QString::fromStdString(path)).suffix().toLower();
    return suffix == ASCII_SUFFIX    ? SceneFormat::MayaAscii
           : suffix == BINARY_SUFFIX ? SceneFormat::LightboxBinary
                                     : fallback;
}

const char* SceneFiles::FormatName(SceneFormat format) {
    return format == SceneFormat::MayaAscii ? "mayaAscii" : "lightboxBinary";
}

const char* SceneFiles::SuffixOf(SceneFormat format) {
    return format == SceneFormat::MayaAscii ? ASCII_SUFFIX : BINARY_SUFFIX;
}

bool SceneFiles::ParseFormatName(const std::string& name, SceneFormat& format) {
    for (const SceneFormat candidate : {SceneFormat::MayaAscii, SceneFormat::LightboxBinary}) {
        if (name == FormatName(candidate)) {
            format = candidate;
            return true;
        }
    }
    return false;
}

const std::string& SceneFiles::Rename(const std::string& path) {
    const QFileInfo info(QString::fromStdString(path));
    if (path.empty() || info.isDir() || path.find('\0') != std::string::npos) {
        throw FileError("\"" + path + "\" cannot be the name of a scene.");
    }
    const std::string suffix = info.suffix().toLower().toStdString();
    const bool isKnown = suffix == ASCII_SUFFIX || suffix == BINARY_SUFFIX;
    format_ = FormatOf(path, format_);
    const std::string name =
        AbsolutePath(path) + (isKnown ? std::string() : std::string(".") + SuffixOf(format_));
    if (name != sceneName_) {
        sceneName_ = name;
        ForceModified();
    }
    return sceneName_;
}

bool SceneFiles::IsModified() const {
    return isForcedModified_ || host_.undo().State() != savedState_;
}

void SceneFiles::SetModified(bool modified) {
    isForcedModified_ = false;
    savedState_ = host_.undo().State();
    if (modified) {
        ForceModified();
    }
}

void SceneFiles::ForceModified() {
    isForcedModified_ = true;
    ++forcedChanges_;
}

std::pair<std::uint64_t, std::uint64_t> SceneFiles::ContentVersion() const {
    return {host_.undo().State(), forcedChanges_};
}

bool SceneFiles::Running(FileOperation operation) const {
    return std::find(operations_.begin(), operations_.end(), operation) != operations_.end();
}

bool SceneFiles::IsReading() const {
    return Running(FileOperation::Open) || Running(FileOperation::Import) ||
           Running(FileOperation::Reference);
}

bool SceneFiles::IsWriting() const {
    return Running(FileOperation::Save) || Running(FileOperation::Export);
}

void SceneFiles::CheckUnsaved(bool force) const {
    if (!force && IsModified()) {
        throw FileError("Unsaved changes.");
    }
    if (!operations_.empty()) {
        throw FileError("The scene cannot be replaced while a file is being read or written.");
    }
}

void SceneFiles::Empty() {
    autoSave_->Settle();
    // The undo queue belongs to the old scene.
    host_.undo().Flush();
    host_.scene().New();
    host_.time().Reset();
    references_->Clear();
    preserved_->Clear();
    fileInfo_.clear();
    units_ = SceneUnits();
    sceneName_.clear();
    format_ = SceneFormat::MayaAscii;
    faults_.clear();
}

void SceneFiles::New(bool force) {
    CheckUnsaved(force);
    host_.events().Fire("PreFileNewOrOpened");
    host_.events().Fire("PreNewSceneOpened");
    {
        const FileOperationScope scope(host_, FileOperation::New);
        Empty();
        SetModified(false);
    }
    host_.events().Fire("NewSceneOpened");
    host_.undo().Flush();
    SetModified(false);
}

bool SceneFiles::RunReader(FileReader& reader) {
    return RunReader(reader, ReadBytes(reader.source().path));
}

bool SceneFiles::RunReader(FileReader& reader, std::string bytes) {
    const std::string path = CanonicalPath(reader.source().path);
    MarkAsReading(path);
    readers_.push_back(&reader);
    const ScopeExit unregister([this] { readers_.pop_back(); });
    const ErrorCollector errors(host_.output());
    reader.Read(std::move(bytes));
    FreeUnused();
    const ReadFaults faults = FaultsFrom(errors, reader);
    if (faults.count > 0) {
        faults_[path] = faults;
    } else if (const auto entry = faults_.find(path);
               entry != faults_.end() &&
               (entry->second.isReading || reader.source().mode == FileReader::Mode::Reference)) {
        faults_.erase(entry);
    }
    return faults.count == 0;
}

void SceneFiles::MarkAsReading(const std::string& path) {
    faults_.try_emplace(path, ReadFaults{1, {"The file was not read to its end."}, true});
}

const ReadFaults* SceneFiles::FaultsOf(const std::string& path) const {
    const auto found = faults_.find(CanonicalPath(path));
    return found == faults_.end() ? nullptr : &found->second;
}

void SceneFiles::CheckReplaceable(const std::string& path, bool force) const {
    const ReadFaults* faults = FaultsOf(path);
    if (faults && !force) {
        throw FileError("\"" + path + "\" was read with errors; saving would lose what could not be read: " +
                        faults->Summary(NAMED_FAULTS, "; ") +
                        ". Save under another name, or force the save.");
    }
}

void SceneFiles::Open(const std::string& path, bool force) {
    const std::string file = FindFile(path);
    CheckUnsaved(force);
    Read(file, file);
    CheckFaults(file);
}

void SceneFiles::OpenCopy(const std::string& copy, const std::string& name, bool hadFaults) {
    CheckUnsaved(true);
    Read(copy, name);
    ForceModified();
    if (!name.empty()) {
        const std::string path = CanonicalPath(name);
        if (const ReadFaults* faults = FaultsOf(copy)) {
            faults_[path] = *faults;
        } else if (hadFaults) {
            faults_[path] = {1, {"what could not be read before the last session ended"}, false};
        } else {
            faults_.erase(path);
        }
    }
    CheckFaults(copy);
}

void SceneFiles::Read(const std::string& file, const std::string& name) {
    // Checked before the old scene is emptied: a file that is not a scene must not cost it.
    std::string bytes = ReadBytes(file);
    FileReader::CheckIsScene(bytes, file);
    host_.events().Fire("PreFileNewOrOpened");
    host_.events().Fire("PreSceneOpened");
    FileReader reader(host_, {file, FileReader::Mode::Open, {}, {}});
    {
        const FileOperationScope scope(host_, FileOperation::Open);
        Empty();
        // The scene gets its name only after the file is known as one that is not read yet.
        MarkAsReading(CanonicalPath(file));
        if (!name.empty()) {
            MarkAsReading(CanonicalPath(name));
        }
        sceneName_ = name;
        format_ = FormatOf(file, SceneFormat::MayaAscii);
        RunReader(reader, std::move(bytes));
    }
    host_.undo().Flush();
    SetModified(false);
    host_.events().Fire("PostSceneRead");
    host_.events().Fire("SceneOpened");
    // Changes that callbacks make to the new scene do not count as changes by the user.
    host_.undo().Flush();
    SetModified(false);
}

void SceneFiles::CheckFaults(const std::string& file) const {
    if (FaultsOf(file)) {
        throw FileError("Errors while reading \"" + file +
                        "\"; the scene holds everything that could be read.");
    }
}

void SceneFiles::Save(bool force) {
    if (sceneName_.empty()) {
        throw FileError("No file name specified.");
    }
    CheckReplaceable(sceneName_, force);
    if (!operations_.empty()) {
        throw FileError("The scene cannot be saved while a file is being read or written.");
    }
    host_.events().Fire("PreSceneSaved");
    {
        const FileOperationScope scope(host_, FileOperation::Save);
        Write(sceneName_, format_, SceneContent::Whole(host_));
    }
    SetModified(false);
    autoSave_->Settle();
    host_.events().Fire("SceneSaved");
}

void SceneFiles::SaveAs(const std::string& path, std::optional<SceneFormat> format, bool force) {
    const auto before = std::make_tuple(sceneName_, format_, isForcedModified_);
    try {
        Rename(path);
        format_ = format.value_or(format_);
        Save(force);
    } catch (...) {
        std::tie(sceneName_, format_, isForcedModified_) = before;
        throw;
    }
}

std::vector<std::shared_ptr<Node>> SceneFiles::Import(const std::string& path, const std::string& nameSpace) {
    const std::string file = FindFile(path);
    FileReader reader(host_, {file, FileReader::Mode::Import, nameSpace, {}});
    bool isWhole = false; // an earlier reading of the file may have had faults
    {
        const FileOperationScope scope(host_, FileOperation::Import);
        isWhole = RunReader(reader);
    }
    ForceModified();
    host_.events().Fire("SceneImported");
    if (!isWhole) {
        throw FileError("Errors while reading \"" + file +
                        "\"; the scene holds everything that could be read.");
    }
    return reader.NewNodes();
}

std::string SceneFiles::AddReference(const std::string& path, const std::string& nameSpace,
                                     const std::string& name, bool deferred) {
    const std::string file = FindFile(path);
    if (!QFileInfo(QString::fromStdString(file)).isFile()) {
        throw FileError("Reference file not found: " + file);
    }
    const std::string base = QFileInfo(QString::fromStdString(file)).completeBaseName().toStdString();
    std::string added = references_->Add(file, nameSpace.empty() ? base : nameSpace, name, deferred).name;
    ForceModified();
    if (!IsReading()) {
        host_.events().Fire("_referenceCreated");
    }
    return added;
}

void SceneFiles::ExportAll(const std::string& path, SceneFormat format, bool force) {
    CheckReplaceable(AbsolutePath(path), force);
    const FileOperationScope scope(host_, FileOperation::Export);
    Write(AbsolutePath(path), format, SceneContent::Whole(host_));
}

void SceneFiles::ExportNodes(const std::string& path, SceneFormat format,
                             const std::vector<std::shared_ptr<Node>>& nodes, bool force) {
    CheckReplaceable(AbsolutePath(path), force);
    const FileOperationScope scope(host_, FileOperation::Export);
    Write(AbsolutePath(path), format, SceneContent::Part(host_, nodes));
}

void SceneFiles::Write(const std::string& path, SceneFormat format, SceneContent content) {
    const QFileInfo target(QString::fromStdString(path));
    const std::string name = target.fileName().toStdString();
    AtomicFile file(path);
    try {
        if (format == SceneFormat::MayaAscii) {
            content.NameReferencesFrom(target.absolutePath().toStdString());
            AsciiWriter(*this, host_.time(), file.Stream()).Write(content, name);
        } else {
            BinaryWriter(*this, host_.time(), file.Stream()).Write(content, name);
        }
    } catch (const FileError&) {
        file.CheckFault(); // a full disk is why a value could not be written
        throw;
    }
    file.Commit();
    faults_.erase(CanonicalPath(path));
}

void SceneFiles::SetFileInfo(const std::string& key, const std::string& value) {
    const auto found =
        std::find_if(fileInfo_.begin(), fileInfo_.end(), [&](const auto& pair) { return pair.first == key; });
    if (found != fileInfo_.end()) {
        found->second = value;
    } else {
        fileInfo_.emplace_back(key, value);
    }
}

void SceneFiles::RemoveFileInfo(const std::string& key) {
    fileInfo_.erase(std::remove_if(fileInfo_.begin(), fileInfo_.end(),
                                   [&](const auto& pair) { return pair.first == key; }),
                    fileInfo_.end());
}

} // namespace lightbox
