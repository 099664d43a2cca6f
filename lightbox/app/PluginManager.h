#pragma once

#include "scene/NonCopyable.h"
#include "scene/PluginLoader.h"

#include <memory>
#include <string>
#include <vector>

class MObject;
class MStatus;

namespace lightbox {

class Host;

/// Finds, loads and unloads plug-ins: shared libraries that export initializePlugin and uninitializePlugin.
class PluginManager : public PluginLoader, private NonCopyable {
public:
    using EntryPoint = MStatus (*)(MObject);

    explicit PluginManager(Host& host);
    ~PluginManager() override;

    Plugin& Load(const std::string& nameOrPath) override;
    void Unload(const std::string& name, bool force) override;
    bool LoadsOnDemand() const override { return loadsOnDemand_; }
    void SetLoadsOnDemand(bool loads) { loadsOnDemand_ = loads; }
    Plugin* Find(const std::string& nameOrPath) const override;
    std::vector<Plugin*> Loaded() const override;
    std::string FindFile(const std::string& nameOrPath) const override;

    /// Initialises a plug-in that is linked into this program. Throws PluginError when its entry point fails.
    Plugin& LoadBuiltin(const std::string& name, EntryPoint initialize, EntryPoint uninitialize);

    /// Loads every plug-in in the program's own plug-in folders. A plug-in that cannot be loaded causes a
    /// warning.
    void Autoload();

    /// Empties the scene and uninitialises all plug-ins in reverse order of loading. Called once, when the
    /// program ends.
    void UnloadAll();

    /// The folders to search for plug-ins: MAYA_PLUG_IN_PATH, then the program's own: "plug-ins" beside the
    /// program or its folder, and the one of its installation.
    static std::vector<std::string> SearchPath();

private:
    struct Entry;

    Plugin& Start(std::unique_ptr<Entry> entry);
    /// Takes out all that the plug-in registered. Returns why its own clean-up failed, or an empty string.
    std::string Stop(Entry& entry);
    /// Deregisters everything that the plug-in registered and did not deregister itself.
    void Purge(const Plugin& plugin);

    Host& host_;
    std::vector<std::unique_ptr<Entry>> entries_;
    bool loadsOnDemand_ = true;
};

} // namespace lightbox
