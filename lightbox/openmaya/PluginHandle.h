#pragma once

#include "scene/Object.h"

#include <maya/MObject.h>

namespace lightbox {

struct Plugin;

/// What the MObject stands for that a plug-in's entry points get.
class PluginHandle : public Object {
public:
    explicit PluginHandle(Plugin& plugin)
        : plugin_(&plugin) {}

    MFn::Type ApiType() const override { return MFn::kPlugin; }
    bool HasFn(MFn::Type type) const override { return type == MFn::kPlugin || type == MFn::kBase; }
    Plugin& Get() const { return *plugin_; }

    /// The object to hand to initializePlugin and uninitializePlugin. It must not be used after the plug-in
    /// is unloaded.
    static MObject MakeObject(Plugin& plugin);

private:
    Plugin* plugin_;
};

} // namespace lightbox
