#pragma once

#include "formats/PlugSetting.h"
#include "formats/PreservedContent.h"
#include "formats/SceneUnits.h"
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

/// Builds the scene from the content of a file, for the readers of both formats. It resolves the file's node
/// names, since a node may get another name in the scene, and tracks the current node, which statements
/// without a node name apply to. Content without meaning here is preserved.
class SceneBuilder : NonCopyable {
public:
    enum class Mode { Open, Import, Reference };

    struct Source {
        std::string path; ///< absolute
        Mode mode = Mode::Open;
        std::string nameSpace; ///< for new nodes; empty for none
        std::string reference; ///< name of the reference being read; empty for other modes
    };

    SceneBuilder(Host& host, Source source);

    const Source& source() const { return source_; }
    const std::vector<std::shared_ptr<Node>>& NewNodes() const { return newNodes_; }

    void Require(const std::string& plugin, const std::string& version, const std::string& statement);
    /// Sets the units of what follows. The first ones are those of the file, and of the scene that is opened.
    void SetUnits(const std::string& linear, const std::string& angular, const std::string& time);
    void SetFileInfo(const std::string& key, const std::string& value);
    /// Notes from the file's header whether a reference stays unloaded. This takes precedence over the
    /// statement that reads the reference.
    void AnnounceReference(const std::string& name, bool isDeferred) { announced_[name] = isDeferred; }
    /// `inStatement` is the answer of the statement that reads the reference.
    bool IsDeferred(const std::string& name, bool inStatement) const {
        const auto found = announced_.find(name);
        return found == announced_.end() ? inStatement : found->second;
    }

    /// Finds a node by its name or path in the file; null when there is none or more than one.
    std::shared_ptr<Node> Find(const std::string& path) const;
    /// The node that ".attribute" refers to; null after a `select` of a missing node.
    const std::shared_ptr<Node>& Current() const { return current_; }
    /// The name of the missing node of the last `select`. Meaningful only while Current() is null.
    const std::string& MissingDefault() const { return missingDefault_; }
    /// Makes a node the current one: `select -ne :time1;`. An empty path leaves no node current.
    void Select(const std::string& path);
    /// Creates a node and makes it the current one. A shared node that exists already is used instead. An
    /// unknown type gives an unknown node.
    std::shared_ptr<Node> CreateNode(const std::string& type, const std::string& name,
                                     const std::string& parentPath, bool shared);
    void SetUuid(Node& node, const std::string& uuid);
    /// True for a node that existed before an import or reference was read. Its settings in the file are
    /// ignored.
    bool IsForeign(const Node& node) const;

    /// Stores a setting. Throws SceneError, and UnknownAttributeError for an attribute that the node lacks.
    void Apply(const std::shared_ptr<Node>& node, const PlugSetting& setting);
    /// Connects two plugs, or keeps the connection when one is unknown. `flags` are those of connectAttr
    /// except -force.
    void Connect(const std::string& source, const std::string& destination, const std::string& flags);
    /// Sets the scene's time ranges from the statements of a configuration script and returns its other
    /// statements, which are not run. Does nothing for imports and references.
    virtual std::string RunConfiguration(const std::string& script) = 0;
    /// Applies the configuration script of the file's script node, if any. Removes that node when saving
    /// writes it anew as it was.
    void ApplySceneScript();

    /// Runs a statement that was preserved. Its attribute may be known now.
    virtual void RunStatement(const std::string& text) = 0;
    /// Keeps the running statement as one that does not belong in a scene.
    virtual void RefuseStatement() = 0;
    /// The text of the running statement, as in the file.
    std::string Statement() const { return std::string(statement_); }
    /// True while the beginning of a statement runs whose rest is damaged or cut off.
    bool IsStatementCut() const { return isStatementCut_; }

    /// Preserve a statement of the current node, of a node or of the file. `warning` is logged once for each
    /// `kind`; an empty kind logs nothing.
    void KeepForCurrent(const std::string& statement, const std::string& kind, const std::string& warning);
    void KeepForCurrent(PreservedContent::BinaryValue value, const std::string& kind,
                        const std::string& warning);
    void KeepForNode(const Node& node, const std::string& statement);
    void KeepForHead(const std::string& statement);
    void KeepForFile(const std::string& statement, const std::string& kind, const std::string& warning);

    /// Keeps flags of `lockNode` that mean nothing here.
    void KeepLockFlags(const Node& node, const std::string& flags);
    /// Remember, until another node is current, an attribute of it that is kept as text.
    void NoteKeptAttribute(const std::string& longName, const std::string& shortName);
    bool IsKeptAttribute(const std::string& name) const { return keptAttributes_.count(name) > 0; }
    /// Remember the type of the first slice of an array, "fc[0:499]": the later ones do not repeat it. Holds
    /// until another node is current. TypeOfSlice() is empty when there is none.
    void NoteSlice(const std::string& plug, const std::string& type);
    std::string TypeOfSlice(const std::string& plug) const;

    /// Shows a fault as an error. Of very many only the first are shown.
    void ReportFault(const std::string& message);
    /// The number of faults that were not shown.
    int HiddenFaultCount() const { return hiddenFaults_; }
    /// Shows a warning, once for each `kind`.
    void WarnOnce(const std::string& kind, const std::string& message);
    /// Writes to the log, once for each `kind`, that something has no meaning here. Its kinds are counted for
    /// ShowSummary(); those that begin with "plug-in " and "node type " are named there.
    void NoteKept(const std::string& kind, const std::string& message);
    /// Tells in one line what NoteKept() has logged.
    void ShowSummary() const;
    /// Returns "file: PATH line N: ", or without the line for a binary file.
    std::string Place() const;

protected:
    ~SceneBuilder() = default;

    Host& host_;
    Source source_;
    /// Shows a fault whose text tells where it is.
    void ShowFault(const std::string& text);

    std::string_view statement_;
    int statementLine_ = 0;
    bool isStatementCut_ = false;
    bool hasLines_ = false; ///< true for a text file

private:
    struct LocalName {
        std::string path;
        std::shared_ptr<Node> node;
    };
    PreservedContent::NodeContent* ContentOfCurrent();
    void SetCurrent(const std::shared_ptr<Node>& node);
    void AddLocalName(const std::string& name, const std::string& parentPath,
                      const std::shared_ptr<Node>& node);
    std::vector<std::shared_ptr<Node>> FindLocal(const std::string& path) const;
    std::shared_ptr<Node> FindShared(const std::string& name, const DagNode* parent) const;
    std::string NameInScene(const std::string& name) const;
    std::shared_ptr<DagNode> ParentFor(const std::string& parentPath);
    std::shared_ptr<const NodeType> TypeFor(const std::string& type, bool hasParent);
    std::shared_ptr<Node> ReplaceByTransform(const std::shared_ptr<Node>& unknown);
    bool LoadPlugin(const std::string& plugin);

    std::shared_ptr<Node> current_;
    std::string missingDefault_; ///< name of the last `select`
    std::set<std::string> keptAttributes_;
    std::map<std::string, std::string> sliceTypes_; ///< by the plug up to its last index
    std::map<std::string, bool> announced_;         ///< reference's name to whether it is deferred
    std::vector<std::shared_ptr<Node>> newNodes_;
    std::set<const Node*> isNew_;
    std::set<std::string> uuidsBefore_; ///< for an import: those of the nodes that were there before
    std::unordered_map<std::string, std::vector<LocalName>> names_;
    std::unordered_map<const Node*, std::string> localPaths_;
    std::map<std::string, std::shared_ptr<const NodeType>> unknownTypes_;
    std::shared_ptr<Node> sceneScript_;
    bool hasScriptUuid_ = false;     ///< the file gives the scene's script node one
    SceneUnits units_;               ///< of what is being read
    bool hasHeadUnits_ = false;      ///< the file's own units have been read
    std::set<std::string> required_; ///< the plug-ins of the statements so far
    std::set<std::string> warned_;
    std::vector<std::string> kept_; ///< the kinds of NoteKept()
    int shownFaults_ = 0;
    int hiddenFaults_ = 0;
};

} // namespace lightbox
