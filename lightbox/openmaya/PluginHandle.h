#pragma once

#include "scene/Object.h"

#include <maya/MObject.h>

namespace lightbox {

struct Plugin;

/// The object behind the MObject that a plug-in's entry points receive.
class PluginHandle : public Object {
public:
    explicit PluginHandle(Plugin& plugin)
        : plugin_(&plugin) {}

    MFn::Type ApiType() const override { return MFn::kPlugin; }
    bool HasFn(MFn::Type type) const override { return type == MFn::kPlugin || type == MFn::kBase; }
    Plugin& Get() const { return *plugin_; }

    /// Makes the argument of initializePlugin and uninitializePlugin. Invalid after the plug-in is unloaded.
    static MObject MakeObject(Plugin& plugin);

private:
    Plugin* plugin_;
};

} // namespace lightbox
