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

    /// Unloads a plug-in. While nodes of its types exist in the scene it refuses (PluginError), unless
    /// `force` is given: then those nodes become unknown nodes that keep what they held as text.
    void Unload(const std::string& name, bool force);

    /// Loads the plug-ins that lie beside the program; what cannot be loaded is reported as a warning.
    void Autoload();

    /// Unloads everything in the reverse order of loading; called once, when the program ends.
    void UnloadAll();

    /// The loaded plug-in of that name (or path), or null.
    Plugin* Find(const std::string& nameOrPath) const;

    /// The loaded plug-in that registered a node type or data type, or null when the type is the host's own.
    const Plugin* OwnerOfNodeType(const std::string& typeName) const;
    const Plugin* OwnerOfDataType(const std::string& typeName) const;

    /// Every loaded plug-in, in order of loading.
    std::vector<Plugin*> Loaded() const;

    /// The folders in which a plug-in is looked for: MAYA_PLUG_IN_PATH, then the program's own folder and
    /// those of its installation beside it.
    static std::vector<std::string> SearchPath();

private:
    struct Entry;

    Plugin& Start(std::unique_ptr<Entry> entry);
    std::vector<std::unique_ptr<Entry>>::iterator Locate(const std::string& nameOrPath);

    Host& host_;
    std::vector<std::unique_ptr<Entry>> entries_;
};

} // namespace lightbox
