#include "formats/AutoSaveFolder.h"

#include "formats/AtomicFile.h"
#include "formats/FileError.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace lightbox {
namespace {

const char* const UNTITLED = "untitled";
/// In bytes. Most systems allow 255, in which the number and the suffix have to fit, too.
constexpr int LONGEST_BASE = 200;

QString BaseOf(const std::string& sceneName) {
    QString base = QFileInfo(QString::fromStdString(sceneName)).completeBaseName();
    while (base.toUtf8().size() > LONGEST_BASE) {
        base.chop(1);
    }
    return base.isEmpty() ? QString(UNTITLED) : base;
}

/// Removes what a killed program has left of a save.
void DropUnfinished(const std::string& path) {
    try {
        const AtomicFile other(path); // removes the temporary file of the one before
    } catch (const FileError&) {
    }
    QFile::remove(QString::fromStdString(path));
}

} // namespace

AutoSaveFolder::AutoSaveFolder(const std::string& folder, const std::string& sceneName)
    : folder_(QDir::cleanPath(QString::fromStdString(folder)))
    , base_(BaseOf(sceneName)) {}

std::vector<AutoSaveFolder::Entry> AutoSaveFolder::Entries() const {
    const QRegularExpression pattern("^" + QRegularExpression::escape(base_) + "\\.([0-9]{4,})\\.(ma|lbx)$");
    std::vector<Entry> entries;
    for (const QFileInfo& info : folder_.entryInfoList(QDir::Files)) {
        const QRegularExpressionMatch match = pattern.match(info.fileName());
        if (match.hasMatch()) {
            entries.push_back(
                {match.captured(1).toULongLong(), info.filePath().toStdString(), info.size() > 0});
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.number < b.number; });
    return entries;
}

std::string AutoSaveFolder::Reserve(const std::string& suffix) const {
    if (!folder_.mkpath(QStringLiteral("."))) {
        throw FileError("The folder \"" + folder_.path().toStdString() + "\" cannot be made.");
    }
    const std::vector<Entry> entries = Entries();
    for (qulonglong number = entries.empty() ? 1 : entries.back().number + 1;; ++number) {
        QFile file(folder_.filePath(QStringLiteral("%1.%2.%3")
                                        .arg(base_)
                                        .arg(number, 4, 10, QLatin1Char('0'))
                                        .arg(QString::fromStdString(suffix))));
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            return file.fileName().toStdString();
        }
        if (!file.exists()) {
            throw FileError("Could not write \"" + file.fileName().toStdString() +
                            "\": " + file.errorString().toStdString() + ".");
        }
    }
}

void AutoSaveFolder::Rotate(const std::string& newest, int maximum, const std::set<std::string>& kept) const {
    std::vector<Entry> entries = Entries();
    entries.erase(std::find_if(entries.begin(), entries.end(),
                               [&](const Entry& entry) { return entry.path == newest; }),
                  entries.end());
    const auto isKept = [&](const Entry& entry) {
        return kept.count(QFileInfo(QString::fromStdString(entry.path)).canonicalFilePath().toStdString()) >
               0;
    };
    entries.erase(std::remove_if(entries.begin(), entries.end(), isKept), entries.end());
    const auto whole =
        std::count_if(entries.begin(), entries.end(), [](const Entry& entry) { return entry.isWhole; });
    auto spare = maximum > 0 ? whole - (maximum - 1) : 0;
    for (const Entry& entry : entries) {
        if (!entry.isWhole) {
            DropUnfinished(entry.path);
        } else if (spare-- > 0) {
            QFile::remove(QString::fromStdString(entry.path));
        }
    }
}

} // namespace lightbox
