#include "app/PluginManager.h"

#include "formats/SceneFiles.h"
#include "formats/UnknownNodes.h"
#include "mel/Interpreter.h"
#include "openmaya/ApiBridge.h"
#include "openmaya/DrawOverrides.h"
#include "openmaya/PluginCommand.h"
#include "openmaya/PluginHandle.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/Scene.h"
#include "scene/ToolContexts.h"
#include "scene/UndoQueue.h"

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>

#include <algorithm>
#include <exception>

namespace lightbox {
namespace {

constexpr char BUILTIN_PATH[] = "builtin";

#if defined(Q_OS_WIN)
constexpr const char* SUFFIXES[] = {".mll", ".dll"};
#elif defined(Q_OS_MACOS)
constexpr const char* SUFFIXES[] = {".bundle", ".dylib"};
#else
constexpr const char* SUFFIXES[] = {".so"};
#endif

std::string NameOf(const std::string& path) {
    return QFileInfo(QString::fromStdString(path)).completeBaseName().toStdString();
}

bool IsFile(const std::string& path) {
    return QFileInfo(QString::fromStdString(path)).isFile();
}

/// The folders of the program's own plug-ins, in a build folder or an installation.
std::vector<std::string> OwnFolders() {
    const std::string program = QCoreApplication::applicationDirPath().toStdString();
    return {program + "/plug-ins", program + "/../plug-ins", program + "/../lib/lightbox/plug-ins"};
}

} // namespace

struct PluginManager::Entry {
    Plugin plugin;
    std::unique_ptr<QLibrary> library; ///< null for a plug-in that is linked into the program
    EntryPoint initialize = nullptr;
    EntryPoint uninitialize = nullptr;
};

PluginManager::PluginManager(Host& host)
    : host_(host) {}

PluginManager::~PluginManager() = default;

std::vector<std::string> PluginManager::SearchPath() {
    std::vector<std::string> folders;
    const QString variable = qEnvironmentVariable("MAYA_PLUG_IN_PATH");
    for (const QString& folder : variable.split(QDir::listSeparator(), Qt::SkipEmptyParts)) {
        folders.push_back(folder.toStdString());
    }
    const std::vector<std::string> own = OwnFolders();
    folders.insert(folders.end(), own.begin(), own.end());
    return folders;
}

std::string PluginManager::FindFile(const std::string& nameOrPath) const {
    const auto withSuffix = [](const std::string& path) {
        if (IsFile(path)) {
            return path;
        }
        for (const char* suffix : SUFFIXES) {
            if (IsFile(path + suffix)) {
                return path + suffix;
            }
        }
        return std::string();
    };
    if (nameOrPath.find('/') != std::string::npos || nameOrPath.find('\\') != std::string::npos) {
        return withSuffix(SceneFiles::AbsolutePath(nameOrPath));
    }
    if (nameOrPath.empty()) {
        return {};
    }
    const std::string below = "/" + nameOrPath;
    for (const std::string& folder : SearchPath()) {
        const std::string found = withSuffix(folder + below);
        if (!found.empty()) {
            return SceneFiles::AbsolutePath(found);
        }
    }
    return {};
}

Plugin& PluginManager::Load(const std::string& nameOrPath) {
    if (Plugin* loaded = Find(nameOrPath)) {
        return *loaded;
    }
    const std::string path = FindFile(nameOrPath);
    if (path.empty()) {
        throw PluginError("Plug-in, \"" + nameOrPath + "\", was not found on MAYA_PLUG_IN_PATH.");
    }
    if (Plugin* loaded = Find(NameOf(path))) {
        return *loaded;
    }
    auto entry = std::make_unique<Entry>();
    entry->plugin.name = NameOf(path);
    entry->plugin.path = path;
    entry->library = std::make_unique<QLibrary>(QString::fromStdString(path));
    // Resolve all symbols now, so that a missing one fails here and not in the middle of a stroke.
    entry->library->setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!entry->library->load()) {
        throw PluginError("Could not load the plug-in \"" + path +
                          "\": " + entry->library->errorString().toStdString());
    }
    entry->initialize = reinterpret_cast<EntryPoint>(entry->library->resolve("initializePlugin"));
    entry->uninitialize = reinterpret_cast<EntryPoint>(entry->library->resolve("uninitializePlugin"));
    if (!entry->initialize || !entry->uninitialize) {
        entry->library->unload();
        throw PluginError("\"" + path +
                          "\" is not a plug-in: it does not export initializePlugin and "
                          "uninitializePlugin.");
    }
    return Start(std::move(entry));
}

Plugin& PluginManager::LoadBuiltin(const std::string& name, EntryPoint initialize, EntryPoint uninitialize) {
    if (Plugin* loaded = Find(name)) {
        return *loaded;
    }
    auto entry = std::make_unique<Entry>();
    entry->plugin.name = name;
    entry->plugin.path = BUILTIN_PATH;
    entry->initialize = initialize;
    entry->uninitialize = uninitialize;
    return Start(std::move(entry));
}

Plugin& PluginManager::Start(std::unique_ptr<Entry> entry) {
    entries_.push_back(std::move(entry));
    Entry& added = *entries_.back();
    const UndoQueue::Pause pause(host_.undo());
    const std::vector<std::string> before = DrawOverrides::Get().Registrants();
    const int errorsBefore = host_.output().ErrorCount();
    MStatus status;
    try {
        status = added.initialize(PluginHandle::MakeObject(added.plugin));
    } catch (const std::exception& error) {
        status = ApiBridge::Fail(MS::kFailure, error.what());
    }
    for (const std::string& registrant : DrawOverrides::Get().Registrants()) {
        if (std::find(before.begin(), before.end(), registrant) == before.end()) {
            added.plugin.drawOverrides.push_back(registrant);
        }
    }
    if (!status) {
        const std::string name = added.plugin.name;
        Purge(added.plugin);
        if (added.library) {
            added.library->unload();
        }
        entries_.pop_back();
        const std::string reason = status.errorString().asChar();
        const bool wasShown = host_.output().ErrorCount() > errorsBefore &&
                              host_.output().LastError().find(reason) != std::string::npos;
        throw PluginError("The plug-in \"" + name + "\" could not be initialised" +
                          (wasShown ? ". The message before says why." : ": " + reason));
    }
    return added.plugin;
}

void PluginManager::Unload(const std::string& name, bool force) {
    Plugin* plugin = Find(name);
    if (!plugin) {
        throw PluginError("Plug-in, \"" + name + "\", is not loaded.");
    }
    if (IsInPluginCommand()) {
        throw PluginError("Plug-in, \"" + name + "\", cannot be unloaded by a plug-in's own command.");
    }
    if (host_.files().IsReading()) {
        throw PluginError("Plug-in, \"" + name + "\", cannot be unloaded while a scene file is being read.");
    }
    // The code that opened the menu is still on the stack and may belong to the plug-in.
    if (QApplication::activePopupWidget()) {
        throw PluginError("Plug-in, \"" + name + "\", cannot be unloaded while a menu is open.");
    }
    for (const std::string& command : plugin->contextCommands) {
        if (host_.tools().IsBusy(command)) {
            throw PluginError("Plug-in, \"" + name + "\", cannot be unloaded by its own tool.");
        }
    }
    const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const auto& candidate) { return &candidate->plugin == plugin; });
    UnknownNodes unknown(host_);
    const int users = unknown.CountUsing(*plugin);
    if (users > 0 && !force) {
        throw PluginError("Plug-in, \"" + plugin->name +
                          "\", cannot be unloaded because it is still in use: " + std::to_string(users) +
                          " of the scene's nodes need it.");
    }
    // Undo items may hold nodes, values and commands of the plug-in.
    host_.undo().Flush();
    if (users > 0) {
        unknown.Convert(*plugin);
    }
    const std::string fault = Stop(**entry);
    // A plug-in that failed may have left callbacks or threads behind, so its code stays in memory.
    if ((*entry)->library && fault.empty()) {
        (*entry)->library->unload();
    }
    entries_.erase(entry);
    if (!fault.empty()) {
        throw PluginError(fault);
    }
}

std::string PluginManager::Stop(Entry& entry) {
    const UndoQueue::Pause pause(host_.undo());
    MStatus status;
    try {
        status = entry.uninitialize(PluginHandle::MakeObject(entry.plugin));
    } catch (const std::exception& error) {
        status = ApiBridge::Fail(MS::kFailure, error.what());
    }
    Purge(entry.plugin);
    return status ? std::string()
                  : "The plug-in \"" + entry.plugin.name +
                        "\" failed to uninitialise itself: " + status.errorString().asChar() +
                        " What it had registered was removed.";
}

void PluginManager::Purge(const Plugin& plugin) {
    const Plugin left = plugin;
    for (const std::string& registrant : left.drawOverrides) {
        DrawOverrides::Get().DeregisterAll(registrant);
    }
    for (const std::string& command : left.contextCommands) {
        host_.tools().RemoveMadeBy(command);
    }
    for (const auto* names : {&left.commands, &left.contextCommands}) {
        for (const std::string& command : *names) {
            host_.interpreter().Commands().DeregisterPlugin(command);
        }
    }
    for (const std::string& type : left.nodeTypes) {
        host_.scene().types().RemoveNodeType(type);
    }
    for (const std::string& type : left.dataTypes) {
        host_.scene().types().RemoveDataType(type);
    }
}

void PluginManager::Autoload() {
    QStringList filters;
    for (const char* const suffix : SUFFIXES) {
        filters.append("*" + QString(suffix));
    }
    for (const std::string& folder : OwnFolders()) {
        for (const QString& file : QDir(QString::fromStdString(folder)).entryList(filters, QDir::Files)) {
            try {
                // Load by name, since a plug-in of the same name on the user's search path takes precedence.
                Load(NameOf(file.toStdString())).autoload = true;
            } catch (const PluginError& error) {
                host_.output().Warning(error.what());
            }
        }
    }
}

void PluginManager::UnloadAll() {
    if (entries_.empty()) {
        return;
    }
    host_.undo().Flush();
    host_.scene().New();
    // The libraries stay loaded until the process ends, since others may still hold their data, such as
    // strings in Qt's caches.
    while (!entries_.empty()) {
        const std::string fault = Stop(*entries_.back());
        if (!fault.empty()) {
            host_.output().Warning(fault);
        }
        entries_.pop_back();
    }
}

Plugin* PluginManager::Find(const std::string& nameOrPath) const {
    for (const auto& entry : entries_) {
        const bool isPath = entry->plugin.path == nameOrPath && nameOrPath != BUILTIN_PATH;
        if (isPath || entry->plugin.name == nameOrPath || entry->plugin.name == NameOf(nameOrPath)) {
            return &entry->plugin;
        }
    }
    return nullptr;
}

std::vector<Plugin*> PluginManager::Loaded() const {
    std::vector<Plugin*> plugins;
    for (const auto& entry : entries_) {
        plugins.push_back(&entry->plugin);
    }
    return plugins;
}

} // namespace lightbox
