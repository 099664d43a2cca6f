#include "formats/AutoSaveSettings.h"

#include "scene/Host.h"
#include "scene/OptionVars.h"

#include <QDir>

#include <optional>
#include <tuple>

namespace lightbox {
namespace {

const char* const ENABLE = "autoSaveEnable";
const char* const INTERVAL = "autoSaveInterval";
const char* const DESTINATION = "autoSaveDestination";
const char* const FOLDER = "autoSaveFolder";
const char* const LIMIT_BACKUPS = "autoSaveLimitBackups";
const char* const KEPT_BACKUPS = "autoSaveMaxBackups";
const char* const PROMPT = "autoSavePrompt";

constexpr int LAST_DESTINATION = static_cast<int>(AutoSaveSettings::Destination::Environment);

/// The number that scripts or we have stored, as an int or a float.
std::optional<double> Number(const OptionVars& variables, const char* name) {
    const OptionVars::Value* const value = variables.Find(name);
    if (const int* const whole = value ? std::get_if<int>(value) : nullptr) {
        return *whole;
    }
    const double* const number = value ? std::get_if<double>(value) : nullptr;
    return number ? std::optional<double>(*number) : std::nullopt;
}

bool Switch(const OptionVars& variables, const char* name, bool otherwise) {
    return Number(variables, name).value_or(otherwise ? 1.0 : 0.0) != 0.0;
}

double InRange(const OptionVars& variables, const char* name, double least, double most, double otherwise) {
    const double number = Number(variables, name).value_or(otherwise);
    return number >= least && number <= most ? number : otherwise;
}

std::string Text(const OptionVars& variables, const char* name) {
    const OptionVars::Value* const value = variables.Find(name);
    const auto* const text = value ? std::get_if<std::string>(value) : nullptr;
    return text ? *text : std::string();
}

auto Members(const AutoSaveSettings& settings) {
    return std::tie(settings.isEnabled, settings.interval, settings.destination, settings.folder,
                    settings.limitsBackups, settings.maxBackups, settings.prompts);
}

} // namespace

bool AutoSaveSettings::operator==(const AutoSaveSettings& other) const {
    return Members(*this) == Members(other);
}

AutoSaveSettings AutoSaveSettings::Load(const OptionVars& variables) {
    const AutoSaveSettings standard;
    AutoSaveSettings settings;
    settings.isEnabled = Switch(variables, ENABLE, standard.isEnabled);
    settings.interval = InRange(variables, INTERVAL, MIN_INTERVAL, MAX_INTERVAL, standard.interval);
    settings.destination = static_cast<Destination>(static_cast<int>(
        InRange(variables, DESTINATION, 0, LAST_DESTINATION, static_cast<int>(standard.destination))));
    settings.folder = Text(variables, FOLDER);
    settings.limitsBackups = Switch(variables, LIMIT_BACKUPS, standard.limitsBackups);
    settings.maxBackups =
        static_cast<int>(InRange(variables, KEPT_BACKUPS, 1, MAX_BACKUPS, standard.maxBackups));
    settings.prompts = Switch(variables, PROMPT, standard.prompts);
    return settings;
}

void AutoSaveSettings::Store(OptionVars& variables) const {
    variables.Set(ENABLE, isEnabled ? 1 : 0);
    variables.Set(INTERVAL, interval);
    variables.Set(DESTINATION, static_cast<int>(destination));
    variables.Set(FOLDER, folder);
    variables.Set(LIMIT_BACKUPS, limitsBackups ? 1 : 0);
    variables.Set(KEPT_BACKUPS, maxBackups);
    variables.Set(PROMPT, prompts ? 1 : 0);
}

std::string AutoSaveSettings::DestinationFolder(const std::string& prefsFolder) const {
    const QString standard = QStringLiteral("autosave");
    const QString preferences = QString::fromStdString(prefsFolder);
    QString named = QString::fromStdString(folder);
    if (named.isEmpty() && !preferences.isEmpty()) {
        named = preferences + '/' + standard;
    }
    QString path = destination == Destination::Environment ? qEnvironmentVariable("MAYA_AUTOSAVE_FOLDER")
                   : destination == Destination::Folder    ? named
                                                           : QString();
    if (path == "~" || path.startsWith("~/")) {
        path.replace(0, 1, QDir::homePath());
    }
    path = QDir::cleanPath(QDir::current().absoluteFilePath(path.isEmpty() ? standard : path));
    return (path.endsWith('/') ? path : path + '/').toStdString();
}

} // namespace lightbox
