#pragma once

#include "scene/Plugin.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace lightbox {

/// A plug-in that could not be loaded or unloaded; what() is the message for the user.
class PluginError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What commands and scene files may do with plug-ins.
class PluginLoader {
public:
    virtual ~PluginLoader() = default;

    /// Loads a plug-in by name ("sketch") or path. A name is looked for in the search path. Loading one that
    /// is loaded already returns it unchanged. Throws PluginError when nothing is found or the entry point
    /// refuses.
    virtual Plugin& Load(const std::string& nameOrPath) = 0;

    /// Unloads a plug-in and drops the undo queue, which may hold its commands. While nodes of its types
    /// exist in the scene it refuses (PluginError), unless `force` is given: then those nodes become unknown
    /// nodes that keep what they held as text.
    virtual void Unload(const std::string& name, bool force) = 0;

    /// Whether a scene file that requires a plug-in gets it loaded.
    virtual bool LoadsOnDemand() const = 0;

    /// The loaded plug-in of that name (or path), or null.
    virtual Plugin* Find(const std::string& nameOrPath) const = 0;
    /// Every loaded plug-in, in order of loading.
    virtual std::vector<Plugin*> Loaded() const = 0;
    /// The library that a name or path stands for; empty when there is none.
    virtual std::string FindFile(const std::string& nameOrPath) const = 0;
};

} // namespace lightbox
