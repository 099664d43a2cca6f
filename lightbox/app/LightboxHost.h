#pragma once

#include "scene/Host.h"

#include <memory>

namespace lightbox {

class PluginManager;

/// The program's host: owns the parts and makes them in the order of their dependencies.
class LightboxHost : public Host {
public:
    /// Makes the host with an empty scene that has the default nodes.
    explicit LightboxHost(const Options& options);
    /// Fires "quitApplication", then unloads the plug-ins.
    ~LightboxHost();

    PluginManager& plugins() const;

private:
    struct Owned;
    std::unique_ptr<Owned> owned_;
};

} // namespace lightbox
