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

/// Everything needed to put a detached node back where it was.
struct NodePlace {
    std::shared_ptr<Node> node;
    /// Null for a node that is not in the DAG, the world for a top level node.
    std::shared_ptr<DagNode> parent;
    int index = -1;
    std::string name;
    std::vector<Connection> connections;
    int selectionIndex = -1;
};

/// The nodes, their names, the DAG, connections and the selection. The operations here do not record undo;
/// see Edit.h for those that do.
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

    /// A node that is not in the scene yet. For a plug-in's type its object is made and its postConstructor
    /// has run. Throws SceneError for an abstract type and when the plug-in's creator yields nothing.
    std::shared_ptr<Node> Make(const std::shared_ptr<const NodeType>& type);
    /// Puts a made node into the scene under a name that is free (see FreeName); DAG nodes below the parent,
    /// the world with none. Answers the name.
    std::string Attach(const std::shared_ptr<Node>& node, const std::string& wantedName,
                       DagNode* parent = nullptr);
    /// Takes a node out. Its children must have gone before.
    NodePlace Detach(Node& node);
    /// Puts a detached node back: name, position, connections and selection.
    void Restore(const NodePlace& place);

    /// Rises with every change of the scene: a value, a connection, a node that comes, moves, or goes. Views
    /// and what is cached for them compare it.
    std::uint64_t Revision() const { return revision_ + connections_.Revision(); }
    /// Something changed that the scene does not see by itself.
    void Touch() { ++revision_; }

    /// Nodes in the order of their creation.
    std::vector<std::shared_ptr<Node>> Nodes() const;
    std::size_t NodeCount() const { return nodes_.size(); }
    /// The node and all below it, depth first.
    static std::vector<DagNode*> Subtree(DagNode& root);

    /// All nodes that a name or partial path ("b", "a|b", "|a|b", ":a", "ns:b") stands for.
    std::vector<std::shared_ptr<Node>> FindAll(const std::string& path) const;
    /// The only one, or null when there is none or more than one.
    std::shared_ptr<Node> Find(const std::string& path) const;
    /// Like FindAll, with * and ? in any part. A * does not reach across namespaces.
    std::vector<std::shared_ptr<Node>> Matching(const std::string& pattern) const;
    /// "node.attribute", "node.array[3].child", long or short names. Throws SceneError with the reason when
    /// there is none.
    Plug FindPlug(const std::string& text) const;
    bool HasPlug(const std::string& text) const;
    /// The name by which the node is shown: its name, or its shortest unambiguous path.
    static std::string ShownName(const Node& node);

    /// The name itself when it is free, else with the next free number; a # at its end asks for a number. In
    /// the DAG a name has to be free among the siblings and may not be that of a node outside the DAG.
    /// Characters that no name has become underscores.
    std::string FreeName(const std::string& wanted, const Node& node, const DagNode* parent) const;
    /// A name that no node has at all, from the type's default name and a number.
    std::string FreeDefaultName(const NodeType& type) const;
    /// The base with the lowest number that makes a name which no node has at all.
    std::string FreeNumberedName(const std::string& base) const;
    bool IsNameTaken(const std::string& name) const { return byName_.count(name) != 0; }
    void Rename(Node& node, const std::string& freeName);
    void Move(DagNode& node, DagNode& parent, int index = -1);
    void Reorder(DagNode& node, int index);

    /// Namespaces by full name ("a:b") without the root. Adding a node adds its namespaces.
    const std::set<std::string>& Namespaces() const { return namespaces_; }
    bool AddNamespace(const std::string& name);
    /// Only one that is empty.
    bool RemoveNamespace(const std::string& name);
    void SetNamespaces(std::set<std::string> namespaces) { namespaces_ = std::move(namespaces); }
    /// The namespace into which new names without one go; empty for the root.
    std::string currentNamespace;
    /// A preference of the user: a new scene leaves it alone.
    TangentDefaults tangentDefaults;

    /// Whether a name is one that a pattern with * and ? stands for. Neither stands for a colon.
    static bool MatchesName(const std::string& pattern, const std::string& name);
    static std::string NamespaceOf(const std::string& name);
    static std::string WithoutNamespace(const std::string& name);

private:
    void Insert(const std::shared_ptr<Node>& node, const std::string& name, DagNode* parent, int index);
    void MakeDefaultNodes();
    void MakeCamera(const std::string& name, const std::vector<double>& translate,
                    const std::vector<double>& rotate, bool orthographic);
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
    /// By base: all lower numbers are taken.
    mutable std::unordered_map<std::string, long long> lowestFree_;
};

} // namespace lightbox
