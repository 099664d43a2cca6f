#pragma once

#include "scene/Plugin.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace lightbox {

/// A failure to load or unload a plug-in; what() is the message for the user.
class PluginError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Loads and unloads plug-ins for commands and scene files.
class PluginLoader {
public:
    virtual ~PluginLoader() = default;

    /// Loads a plug-in by name ("sketch"), looked up in the search path, or by path. Returns a plug-in that
    /// is loaded already unchanged. Throws PluginError when nothing is found or the entry point fails.
    virtual Plugin& Load(const std::string& nameOrPath) = 0;

    /// Unloads a plug-in and empties the undo queue, which may hold its commands. Throws PluginError while
    /// the scene has nodes of its types, unless `force` is set: then those nodes become unknown nodes that
    /// keep their content as text.
    virtual void Unload(const std::string& name, bool force) = 0;

    /// Whether reading a scene file loads the plug-ins it requires.
    virtual bool LoadsOnDemand() const = 0;

    /// The loaded plug-in with that name or path, or null.
    virtual Plugin* Find(const std::string& nameOrPath) const = 0;
    /// Every loaded plug-in, in order of loading.
    virtual std::vector<Plugin*> Loaded() const = 0;
    /// The library file for a name or path; empty when there is none.
    virtual std::string FindFile(const std::string& nameOrPath) const = 0;
};

} // namespace lightbox
