#pragma once

#include "scene/Host.h"

#include <memory>

namespace lightbox {

class PluginManager;

/// The host of this program: makes the parts in the order in which they need each other, and owns them.
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
