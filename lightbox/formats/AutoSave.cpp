#include "formats/AutoSave.h"

#include "formats/AutoSaveFolder.h"
#include "formats/FileError.h"
#include "formats/SceneFiles.h"
#include "scene/Host.h"
#include "scene/OptionVars.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace lightbox {
namespace {

/// The files of a session that others leave alone. Without a limit on the files, the list needs one.
constexpr std::size_t MAX_RECORDED = 20;

QDateTime TimeOf(const std::string& file) {
    return QFileInfo(QString::fromStdString(file)).lastModified();
}

} // namespace

AutoSave::AutoSave(Host& host)
    : host_(host)
    , record_(host.options().prefsFolder) {}

AutoSave::~AutoSave() = default;

AutoSaveSettings AutoSave::Settings() const {
    return AutoSaveSettings::Load(host_.optionVars());
}

void AutoSave::SetSettings(const AutoSaveSettings& settings) {
    settings.Store(host_.optionVars());
    // Now, as this session may not end properly.
    host_.optionVars().Save();
}

bool AutoSave::IsNeeded() const {
    return host_.files().IsModified() && host_.files().ContentVersion() != savedVersion_;
}

std::string AutoSave::Perform() {
    SceneFiles& files = host_.files();
    if (files.IsReading() || files.IsWriting()) {
        throw FileError("The scene cannot be saved while a file is being read or written.");
    }
    const AutoSaveSettings settings = Settings();
    const AutoSaveFolder folder(settings.DestinationFolder(host_.options().prefsFolder), files.SceneName());
    const Version version = files.ContentVersion();
    std::string file = folder.Reserve(SceneFiles::SuffixOf(files.Format()));
    SessionRecord::Content content = record_.GetContent();
    content.sceneName = files.SceneName();
    content.hasFaults = files.FaultsOf(files.SceneName()) != nullptr;
    const auto isGone = [](const std::string& path) { return !QFile::exists(QString::fromStdString(path)); };
    content.files.erase(std::remove_if(content.files.begin(), content.files.end(), isGone),
                        content.files.end());
    if (content.files.size() == MAX_RECORDED) {
        content.files.erase(content.files.begin());
    }
    content.files.push_back(file);
    // The record comes first, so that no other session takes the file for a left-over.
    std::string recordError;
    try {
        record_.Write(content);
    } catch (const FileError& error) {
        recordError = error.what();
    }
    try {
        files.ExportAll(file, files.Format(), true);
    } catch (...) {
        QFile::remove(QString::fromStdString(file));
        throw;
    }
    savedVersion_ = version;
    folder.Rotate(file, settings.limitsBackups ? settings.maxBackups : 0, record_.FilesOfOthers());
    if (!recordError.empty()) {
        throw FileError("The scene was saved to \"" + file +
                        "\", but would not be offered after a crash: " + recordError);
    }
    return file;
}

void AutoSave::Settle() {
    record_.Remove();
    savedVersion_ = Version();
}

void AutoSave::LeaveForNextStart() {
    if (!host_.files().IsModified()) {
        return;
    }
    if (IsNeeded()) {
        Perform();
    }
    record_.Leave();
}

AutoSave::Unfinished AutoSave::FindUnfinished() {
    Unfinished latest;
    for (auto& record : SessionRecord::FindAbandoned(host_.options().prefsFolder)) {
        const std::string file = record->NewestFile();
        const QFileInfo scene(QString::fromStdString(record->GetContent().sceneName));
        if (file.empty()) {
            // On a disk that is not mounted now, the files may be back at the next start.
            if (record->HasFolder()) {
                record->Remove();
            }
        } else if (scene.isFile() && scene.lastModified() > TimeOf(file)) {
            record->Remove();
        } else if (!latest.record || TimeOf(file) > TimeOf(latest.file)) {
            latest = {std::move(record), file};
        }
    }
    return latest;
}

void AutoSave::Recover(Unfinished session) {
    const SessionRecord::Content content = session.record->GetContent();
    host_.files().OpenCopy(session.file, content.sceneName, content.hasFaults);
    savedVersion_ = host_.files().ContentVersion();
    record_.Write(content);
    session.record->Remove();
}

} // namespace lightbox
