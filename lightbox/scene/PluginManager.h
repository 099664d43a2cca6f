#pragma once

#include "scene/Plugin.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

class MObject;
class MStatus;

namespace lightbox {

class Host;

/// A plug-in that could not be loaded or unloaded; what() is the message for the user.
class PluginError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Finds, loads and unloads plug-ins: shared libraries that export initializePlugin and uninitializePlugin.
class PluginManager {
public:
    using EntryPoint = MStatus (*)(MObject);

    explicit PluginManager(Host& host);
    ~PluginManager();
    PluginManager(const PluginManager&) = delete;
    PluginManager& operator=(const PluginManager&) = delete;

    /// Loads a plug-in by name ("vellix2") or path. A name is looked for in the search path. Loading one that
    /// is loaded already returns it unchanged. Throws PluginError when nothing is found or the entry point
    /// refuses.
    Plugin& Load(const std::string& nameOrPath);

    /// Initialises a plug-in that is linked into this program. Throws PluginError when the entry point
    /// refuses.
    Plugin& LoadBuiltin(const std::string& name, EntryPoint initialize, EntryPoint uninitialize);

    /// Unloads a plug-in and drops the undo queue, which may hold its commands. While nodes of its types
    /// exist in the scene it refuses (PluginError), unless `force` is given: then those nodes become unknown
    /// nodes that keep what they held as text.
    void Unload(const std::string& name, bool force);

    /// Loads the plug-ins that come with the program; what cannot be loaded is reported as a warning.
    void Autoload();

    /// Unloads everything in the reverse order of loading and empties the scene for it; called once, when the
    /// program ends.
    void UnloadAll();

    /// Whether a scene file that requires a plug-in gets it loaded.
    bool LoadsOnDemand() const { return loadsOnDemand_; }
    void SetLoadsOnDemand(bool loads) { loadsOnDemand_ = loads; }

    /// The loaded plug-in of that name (or path), or null.
    Plugin* Find(const std::string& nameOrPath) const;
    /// Every loaded plug-in, in order of loading.
    std::vector<Plugin*> Loaded() const;

    /// The library that a name or path stands for; empty when there is none.
    static std::string FindFile(const std::string& nameOrPath);
    /// The folders in which a plug-in is looked for: MAYA_PLUG_IN_PATH, then the program's own folder and
    /// those of its installation beside it.
    static std::vector<std::string> SearchPath();

private:
    struct Entry;

    Plugin& Start(std::unique_ptr<Entry> entry);
    void Stop(Entry& entry);
    /// Takes out what the plug-in has registered and not taken out itself.
    void Purge(const Plugin& plugin);

    Host& host_;
    std::vector<std::unique_ptr<Entry>> entries_;
    bool loadsOnDemand_ = true;
};

} // namespace lightbox
