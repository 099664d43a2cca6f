#pragma once

#include "scene/AnimCurve.h"
#include "scene/Connections.h"
#include "scene/DagNode.h"
#include "scene/NonCopyable.h"
#include "scene/Selection.h"
#include "scene/TypeRegistry.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace lightbox {

class EventBus;
class Timeline;

/// Everything needed to put a detached node back in its place.
struct NodePlace {
    std::shared_ptr<Node> node;
    /// Null for a node outside the DAG, the world for a top-level node.
    std::shared_ptr<DagNode> parent;
    int index = -1;
    std::string name;
    std::vector<Connection> connections;
    int selectionIndex = -1;
};

/// The nodes, their names, the DAG, the connections and the selection. The operations here do not record
/// undo; Edit.h has the undoable ones.
class Scene : NonCopyable {
public:
    Scene(EventBus& events, const Timeline& timeline);
    ~Scene();

    TypeRegistry& types() { return types_; }
    const TypeRegistry& types() const { return types_; }
    Connections& connections() { return connections_; }
    const Connections& connections() const { return connections_; }
    Selection& selection() { return selection_; }
    const Selection& selection() const { return selection_; }
    DagNode& world() { return *world_; }
    const Timeline& timeline() const { return timeline_; }

    /// Removes everything and makes the default nodes: time1, defaultResolution, defaultRenderGlobals and the
    /// cameras persp, top, front and side.
    void New();

    /// Makes a node outside the scene. For a plug-in's type, also makes the plug-in's object and runs its
    /// postConstructor. Throws SceneError for an abstract type and when the plug-in's creator returns null.
    std::shared_ptr<Node> Make(const std::shared_ptr<const NodeType>& type);
    /// Puts a new node into the scene under a free name (see FreeName), which it returns. DAG nodes go below
    /// the parent; null stands for the world.
    std::string Attach(const std::shared_ptr<Node>& node, const std::string& wantedName,
                       DagNode* parent = nullptr);
    /// Takes a node out of the scene. Its children must have been detached before.
    NodePlace Detach(Node& node);
    /// Puts a detached node back: name, position, connections and selection.
    void Restore(const NodePlace& place);

    /// Increases with every change of a value, a connection or a node. Views and their caches compare it.
    std::uint64_t Revision() const { return revision_ + connections_.Revision(); }
    /// Reports a change that the scene does not notice by itself.
    void Touch() { ++revision_; }

    /// The nodes in the order of their creation.
    std::vector<std::shared_ptr<Node>> Nodes() const;
    std::size_t NodeCount() const { return nodes_.size(); }
    /// The node and all its descendants, depth first.
    static std::vector<DagNode*> Subtree(DagNode& root);

    /// All nodes that a name or partial path ("b", "a|b", "|a|b", ":a", "ns:b") matches.
    std::vector<std::shared_ptr<Node>> FindAll(const std::string& path) const;
    /// The only node that matches; null for none or several.
    std::shared_ptr<Node> Find(const std::string& path) const;
    /// Like FindAll, with the wildcards * and ? in any part. A * does not match across namespaces.
    std::vector<std::shared_ptr<Node>> Matching(const std::string& pattern) const;
    /// Finds a plug by "node.attribute" or "node.array[3].child", with long or short names. Throws SceneError
    /// with the reason when there is none.
    Plug FindPlug(const std::string& text) const;
    bool HasPlug(const std::string& text) const;
    /// The node's name for messages and results: its name, or its shortest unambiguous path.
    static std::string ShownName(const Node& node);

    /// Returns `wanted` if it is free, else the name with the next free number; a # at its end asks for a
    /// number. In the DAG a name must be free among the siblings and must not be that of a node outside the
    /// DAG. Characters that names cannot have become underscores.
    std::string FreeName(const std::string& wanted, const Node& node, const DagNode* parent) const;
    /// A name that no node has anywhere: the type's default name and a number.
    std::string FreeDefaultName(const NodeType& type) const;
    /// The base with the lowest number that makes a name which no node has anywhere.
    std::string FreeNumberedName(const std::string& base) const;
    bool IsNameTaken(const std::string& name) const { return byName_.count(name) != 0; }
    /// When memory is short nothing is renamed; once it is, no listener that lacks memory makes it fail.
    void Rename(Node& node, const std::string& freeName);
    void Move(DagNode& node, DagNode& parent, int index = -1);
    void Reorder(DagNode& node, int index);

    /// The namespaces by full name ("a:b"), without the root. Attaching a node adds its namespaces.
    const std::set<std::string>& Namespaces() const { return namespaces_; }
    bool AddNamespace(const std::string& name);
    /// Returns false for a namespace that is not empty.
    bool RemoveNamespace(const std::string& name);
    void SetNamespaces(std::set<std::string> namespaces) { namespaces_ = std::move(namespaces); }
    /// The namespace for new names that have none; empty for the root.
    std::string currentNamespace;
    /// A preference of the user; New() keeps it.
    TangentDefaults tangentDefaults;

    /// Whether a name matches a pattern with * and ?. Neither matches a colon.
    static bool MatchesName(const std::string& pattern, const std::string& name);
    static std::string NamespaceOf(const std::string& name);
    static std::string WithoutNamespace(const std::string& name);

private:
    void Insert(const std::shared_ptr<Node>& node, const std::string& name, DagNode* parent, int index);
    void MakeDefaultNodes();
    void MakeCamera(const std::string& name, const std::vector<double>& translate,
                    const std::vector<double>& rotate, bool orthographic);
    void SwapName(Node& node, std::string& name);
    void Unname(Node& node);

    EventBus& events_;
    const Timeline& timeline_;
    TypeRegistry types_;
    std::map<std::uint64_t, std::shared_ptr<Node>> nodes_;
    std::unordered_map<std::string, std::vector<Node*>> byName_;
    std::shared_ptr<DagNode> world_;
    Connections connections_;
    Selection selection_;
    std::set<std::string> namespaces_;
    std::uint64_t nextSerial_ = 1;
    std::uint64_t revision_ = 0;
    /// By base name: all lower numbers are taken.
    mutable std::unordered_map<std::string, long long> lowestFree_;
};

} // namespace lightbox
