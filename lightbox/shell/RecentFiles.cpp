#include "shell/RecentFiles.h"

#include "formats/SceneFiles.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/OptionVars.h"

#include <algorithm>

namespace lightbox {

namespace {

const char* const OPTION_VARIABLE = "RecentFilesList";
constexpr std::size_t MAX_FILES = 10;

/// The stored paths, the latest last.
std::vector<std::string> Stored(const OptionVars& variables) {
    const OptionVars::Value* const value = variables.Find(OPTION_VARIABLE);
    const auto* files = value ? std::get_if<std::vector<std::string>>(value) : nullptr;
    return files ? *files : std::vector<std::string>();
}

} // namespace

RecentFiles::RecentFiles(Host& host, QObject* parent)
    : QObject(parent)
    , host_(host) {
    for (const char* event : {"SceneOpened", "SceneSaved"}) {
        callbacks_.push_back(host.events().AddCallback(event, [this] {
            if (!host_.files().SceneName().empty()) {
                Add(QString::fromStdString(host_.files().SceneName()));
            }
        }));
    }
}

RecentFiles::~RecentFiles() {
    for (const std::intptr_t callback : callbacks_) {
        host_.events().Remove(callback);
    }
}

QStringList RecentFiles::List() const {
    QStringList files;
    for (const std::string& file : Stored(host_.optionVars())) {
        files.prepend(QString::fromStdString(file));
    }
    return files;
}

void RecentFiles::Add(const QString& path) {
    std::vector<std::string> files = Stored(host_.optionVars());
    const std::string added = path.toStdString();
    files.erase(std::remove(files.begin(), files.end(), added), files.end());
    files.push_back(added);
    if (files.size() > MAX_FILES) {
        files.erase(files.begin(), files.end() - MAX_FILES);
    }
    host_.optionVars().Set(OPTION_VARIABLE, std::move(files));
    Q_EMIT Changed();
}

void RecentFiles::Clear() {
    host_.optionVars().Remove(OPTION_VARIABLE);
    Q_EMIT Changed();
}

} // namespace lightbox
