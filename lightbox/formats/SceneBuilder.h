#pragma once

#include "formats/PlugSetting.h"
#include "scene/NonCopyable.h"
#include "scene/Plug.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lightbox {

class DagNode;
class Host;
class NodeType;

/// Puts what a file says into the scene; the readers of both formats work on it. It knows the names that the
/// file uses, which are not always those that the nodes got, and the node that statements without a node's
/// name are about. What means nothing here it keeps.
class SceneBuilder : NonCopyable {
public:
    enum class Mode { Open, Import, Reference };

    struct Source {
        std::string path; ///< absolute
        Mode mode = Mode::Open;
        std::string nameSpace; ///< new nodes go here; empty for none
        std::string reference; ///< name of the reference that is read
    };

    SceneBuilder(Host& host, Source source);

    const Source& source() const { return source_; }
    const std::vector<std::shared_ptr<Node>>& NewNodes() const { return newNodes_; }

    void Require(const std::string& plugin, const std::string& version, const std::string& statement);
    void SetUnits(const std::string& linear, const std::string& angular, const std::string& time);
    void SetFileInfo(const std::string& key, const std::string& value);
    /// What the head of a file says about a reference before it is read: whether it is left unloaded. That
    /// goes before what the statement says that reads it.
    void AnnounceReference(const std::string& name, bool isDeferred) { announced_[name] = isDeferred; }
    bool IsDeferred(const std::string& name, bool asSaid) const {
        const auto found = announced_.find(name);
        return found == announced_.end() ? asSaid : found->second;
    }

    /// The node that the file's name or path stands for; null when there is none or more than one.
    std::shared_ptr<Node> Find(const std::string& path) const;
    /// The node that ".attribute" is about; null after a `select` of a node that is not here.
    const std::shared_ptr<Node>& Current() const { return current_; }
    /// The node that was selected and is not here.
    const std::string& MissingDefault() const { return missingDefault_; }
    /// `select -ne :time1;`
    void Select(const std::string& path);
    /// Creates a node, or takes the one that is there when it is shared. An unknown type becomes an unknown
    /// node.
    std::shared_ptr<Node> CreateNode(const std::string& type, const std::string& name,
                                     const std::string& parentPath, bool shared);
    void SetUuid(Node& node, const std::string& uuid);
    /// True when settings of the node are passed over: a node that was there before an imported file.
    bool IsForeign(const Node& node) const;

    /// Stores a setting. Throws SceneError; UnknownAttributeError for what the node does not know.
    void Apply(const std::shared_ptr<Node>& node, const PlugSetting& setting);
    /// Connects two plugs; what is unknown is kept. `flags` are those of the statement beyond force.
    void Connect(const std::string& source, const std::string& destination, const std::string& flags);
    /// Runs the script that sets the scene's time ranges.
    void RunConfiguration(const std::string& script);
    /// Runs the configuration of the node that holds it, when the file had one. The node goes.
    void ApplySceneScript();

    /// Runs a statement that had been kept: by now its meaning may be known.
    virtual void RunStatement(const std::string& text) = 0;
    /// The statement that is being run, as it stands in the file.
    std::string Statement() const { return std::string(statement_); }

    /// Keeps a statement, of a node or of the whole file, and says once why.
    void KeepForCurrent(const std::string& statement, const std::string& kind, const std::string& warning);
    void KeepForNode(const Node& node, const std::string& statement);
    void KeepForFile(const std::string& statement, const std::string& kind, const std::string& warning);

    int FaultCount() const { return faults_; }
    /// Shows a fault as an error and counts it.
    void ReportFault(const std::string& message);
    /// Shows a warning, once for each `kind`.
    void WarnOnce(const std::string& kind, const std::string& message);
    /// "file: PATH line N: ", or without the line for a file that has none.
    std::string Place() const;

protected:
    ~SceneBuilder() = default;

    Host& host_;
    Source source_;
    std::string_view statement_;
    std::string_view textBefore_; ///< of the file, before the statement
    bool hasLines_ = false;       ///< whether the statement has a line in the file
    int faults_ = 0;

private:
    struct LocalName {
        std::string path;
        std::shared_ptr<Node> node;
    };
    struct UnitScale {
        double linear = 1.0;
        double angular = 1.0;
    };

    void AddLocalName(const std::string& name, const std::string& parentPath,
                      const std::shared_ptr<Node>& node);
    std::vector<std::shared_ptr<Node>> FindLocal(const std::string& path) const;
    std::shared_ptr<Node> FindShared(const std::string& name, const DagNode* parent) const;
    std::string NameInScene(const std::string& name) const;
    std::shared_ptr<DagNode> ParentFor(const std::string& parentPath);
    std::shared_ptr<const NodeType> TypeFor(const std::string& type, bool hasParent);
    std::shared_ptr<Node> ReplaceByTransform(const std::shared_ptr<Node>& unknown);
    void Scale(const Plug& plug, PlugSetting& setting) const;
    bool LoadPlugin(const std::string& plugin);

    std::shared_ptr<Node> current_;
    std::string missingDefault_; ///< selected default node that is not here
    std::map<std::string, bool> announced_;
    std::vector<std::shared_ptr<Node>> newNodes_;
    std::set<const Node*> isNew_;
    std::set<std::string> uuidsBefore_; ///< of an import: those that the scene has already
    std::unordered_map<std::string, std::vector<LocalName>> names_;
    std::unordered_map<const Node*, std::string> localPaths_;
    std::map<std::string, std::shared_ptr<const NodeType>> unknownTypes_;
    std::shared_ptr<Node> sceneScript_;
    UnitScale scale_;
    std::set<std::string> warned_;
};

} // namespace lightbox
