#pragma once

#include <maya/MDrawRegistry.h>
#include <maya/MPxDrawOverride.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

class DagNode;
class Node;
class NodeType;
class View;

/// The draw overrides of plug-ins: the registrations, and the instances that draw nodes. Each view has its
/// own instance for a node, so that views with different cameras do not overwrite each other's cached data.
class DrawOverrides {
public:
    struct Instance {
        std::weak_ptr<Node> node;
        std::string registrant;
        std::unique_ptr<MHWRender::MPxDrawOverride> drawOverride;
        /// The data kept between drawings; null for none.
        std::unique_ptr<MUserData> data;
    };

    static DrawOverrides& Get();

    /// Returns false when the classification already has one, or a name is empty.
    bool Register(const std::string& classification, const std::string& registrant,
                  MHWRender::MDrawRegistry::DrawOverrideCreator creator);
    /// Deletes the instances first. Returns false for an unknown registration.
    bool Deregister(const std::string& classification, const std::string& registrant);
    /// Registrants in no particular order.
    std::vector<std::string> Registrants() const;
    void DeregisterAll(const std::string& registrant);

    bool IsEmpty() const { return registrations_.empty(); }
    /// Whether an override draws the nodes of that type.
    bool HasFor(const NodeType& type) const { return Find(type) != nullptr; }
    /// The instance that draws a node in a view; null when the plug-in creates none.
    Instance* For(const View& view, DagNode& node);

    /// Deletes the instances of a view, or those of nodes outside the scene.
    void Forget(const View& view) { instances_.erase(&view); }
    void ForgetGoneNodes(const View& view);

private:
    struct Registration {
        std::string registrant;
        MHWRender::MDrawRegistry::DrawOverrideCreator creator;
    };

    const Registration* Find(const NodeType& type) const;

    std::map<std::string, Registration> registrations_;
    std::map<const View*, std::map<const Node*, Instance>> instances_;
};

} // namespace lightbox
