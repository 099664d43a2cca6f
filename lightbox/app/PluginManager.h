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

    /// Initialises a plug-in that is linked into this program. Throws PluginError when the entry point
    /// refuses.
    Plugin& LoadBuiltin(const std::string& name, EntryPoint initialize, EntryPoint uninitialize);

    /// Loads every plug-in in the program's own plug-in folders; what cannot be loaded is reported as a
    /// warning.
    void Autoload();

    /// Unloads everything in the reverse order of loading and empties the scene for it; called once, when the
    /// program ends.
    void UnloadAll();

    /// The folders in which a plug-in is looked for: MAYA_PLUG_IN_PATH, then the program's own: "plug-ins"
    /// beside the program or its folder, and that of its installation.
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
