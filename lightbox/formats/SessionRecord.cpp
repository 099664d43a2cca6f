#include "formats/SessionRecord.h"

#include "formats/AtomicFile.h"
#include "formats/FileError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <sys/file.h>
#include <sys/stat.h>

namespace lightbox {
namespace {

using Content = SessionRecord::Content;

const char* const RECORD = ".session";
const char* const LOCK = ".lock";

QString FolderIn(const std::string& prefsFolder) {
    return prefsFolder.empty() ? QString() : QString::fromStdString(prefsFolder) + "/sessions";
}

QByteArray ToJson(const Content& content) {
    QJsonArray files;
    for (const std::string& file : content.files) {
        files.append(QString::fromStdString(file));
    }
    const QJsonObject record{{"scene", QString::fromStdString(content.sceneName)},
                             {"hasFaults", content.hasFaults},
                             {"files", files}};
    return QJsonDocument(record).toJson();
}

/// Returns an empty content when the file cannot be read.
Content ReadContent(const QString& path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    const QJsonObject record = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonArray files = record["files"].toArray();
    Content content;
    content.sceneName = record["scene"].toString().toStdString();
    content.hasFaults = record["hasFaults"].toBool();
    for (const auto& saved : files) {
        content.files.push_back(saved.toString().toStdString());
    }
    return content;
}

/// Returns null when another process holds the lock, or when there cannot be one in the folder.
std::unique_ptr<QFile> TakeLock(const QString& path) {
    while (true) {
        auto file = std::make_unique<QFile>(path);
        if (!file->open(QIODevice::WriteOnly) || flock(file->handle(), LOCK_EX | LOCK_NB) != 0) {
            return nullptr;
        }
        struct stat status {};
        if (fstat(file->handle(), &status) == 0 && status.st_nlink > 0) {
            return file;
        }
        // The file was removed between the two steps, and locks nobody out any more.
    }
}

} // namespace

SessionRecord::SessionRecord(const std::string& prefsFolder)
    : folder_(FolderIn(prefsFolder))
    , name_(QUuid::createUuid().toString(QUuid::WithoutBraces)) {}

SessionRecord::~SessionRecord() {
    Remove();
}

void SessionRecord::Write(Content content) {
    if (!folder_.isEmpty()) {
        const QString path = folder_ + '/' + name_;
        // The lock comes first, so that there is no moment at which the record looks left behind.
        if (!lock_ && QDir().mkpath(folder_)) {
            lock_ = TakeLock(path + LOCK);
        }
        if (!lock_) {
            throw FileError("Could not lock \"" + path.toStdString() + LOCK + "\".");
        }
        AtomicFile file((path + RECORD).toStdString());
        file.Stream() << ToJson(content).constData();
        file.Commit();
    }
    content_ = std::move(content);
}

void SessionRecord::Remove() {
    if (lock_) {
        QFile::remove(folder_ + '/' + name_ + RECORD);
        QFile::remove(lock_->fileName()); // while it is locked
        lock_.reset();
    }
    content_ = Content();
}

void SessionRecord::Leave() {
    lock_.reset();
    content_ = Content();
}

std::set<std::string> SessionRecord::FilesOfOthers() const {
    std::set<std::string> files;
    if (folder_.isEmpty()) {
        return files;
    }
    for (const QFileInfo& info : QDir(folder_).entryInfoList({QString("*") + RECORD}, QDir::Files)) {
        if (info.completeBaseName() != name_) {
            for (const std::string& file : ReadContent(info.filePath()).files) {
                files.insert(QFileInfo(QString::fromStdString(file)).canonicalFilePath().toStdString());
            }
        }
    }
    return files;
}

std::vector<std::unique_ptr<SessionRecord::Abandoned>>
SessionRecord::FindAbandoned(const std::string& prefsFolder) {
    std::vector<std::unique_ptr<Abandoned>> found;
    std::set<QString> paths;
    const QString folder = FolderIn(prefsFolder);
    if (!folder.isEmpty()) {
        for (const QFileInfo& info :
             QDir(folder).entryInfoList({QString("*") + RECORD, QString("*") + LOCK}, QDir::Files)) {
            paths.insert(folder + '/' + info.completeBaseName());
        }
    }
    for (const QString& path : paths) {
        std::unique_ptr<QFile> lock = TakeLock(path + LOCK);
        if (lock && QFile::exists(path + RECORD)) {
            found.push_back(std::make_unique<Abandoned>(path, std::move(lock)));
        } else if (lock) {
            // Its program ended before there was a record.
            QFile::remove(lock->fileName());
        }
    }
    return found;
}

SessionRecord::Abandoned::Abandoned(QString path, std::unique_ptr<QFile> lock)
    : path_(std::move(path))
    , lock_(std::move(lock))
    , content_(ReadContent(path_ + RECORD)) {}

SessionRecord::Abandoned::~Abandoned() = default;

std::string SessionRecord::Abandoned::NewestFile() const {
    for (auto file = content_.files.rbegin(); file != content_.files.rend(); ++file) {
        const QFileInfo info(QString::fromStdString(*file));
        // A save that was under way when the program ended has left an empty file.
        if (info.isFile() && info.size() > 0) {
            return *file;
        }
    }
    return {};
}

bool SessionRecord::Abandoned::HasFolder() const {
    return content_.files.empty() || QFileInfo(QString::fromStdString(content_.files.back())).dir().exists();
}

void SessionRecord::Abandoned::Remove() {
    QFile::remove(path_ + RECORD);
    QFile::remove(lock_->fileName());
}

} // namespace lightbox
