#pragma once

#include "formats/PlugSetting.h"
#include "scene/Connections.h"
#include "scene/Node.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace lightbox {

class Host;

/// One file that the scene references.
struct FileReference {
    std::string name;      ///< of the reference: "charRN"
    std::string nameSpace; ///< its nodes live here: "char", nested "set:char"
    std::string path;      ///< absolute
    std::string givenPath; ///< as the scene file has it, which may be relative to that file; or empty
    std::string options;   ///< as the scene file has them
    std::string parent;    ///< name of the reference whose file brought this one; empty for the scene's own
    bool isLoaded = false;
    bool isDeferred = false; ///< left unloaded on purpose
};

/// What the user has changed about one node of a reference since it was read.
struct ReferenceEdit {
    std::shared_ptr<Node> node;
    std::vector<std::shared_ptr<Attribute>> addedAttributes;
    std::vector<PlugSetting> settings;
};

/// The files that a scene references. Their nodes are in the scene but not of it: a saved scene holds only
/// where the file is and what was changed about its nodes, and the nodes are read again when the scene is
/// opened.
class ReferenceList {
public:
    explicit ReferenceList(Host& host)
        : host_(host) {}

    /// References a file and reads it. Names that are taken get a number. A missing or unreadable file is
    /// reported and leaves an unloaded reference. Throws FileError for a file that references itself, through
    /// others or directly.
    const FileReference& Add(const std::string& path, const std::string& nameSpace, const std::string& name,
                             bool deferred);
    /// Remembers how the scene file said it, so that it is said so again.
    void NoteStatement(const std::string& name, const std::string& givenPath, const std::string& options);
    void Load(const std::string& name);
    /// Takes the nodes out of the scene, and keeps the reference.
    void Unload(const std::string& name);
    void Remove(const std::string& name);
    /// Makes the nodes the scene's own and drops the reference.
    void MakeLocal(const std::string& name);
    void Clear();

    const std::vector<FileReference>& All() const { return references_; }
    /// By its name or by its file; null when there is none.
    const FileReference* Find(const std::string& nameOrPath) const;
    std::vector<std::shared_ptr<Node>> NodesOf(const std::string& name) const;

    std::vector<ReferenceEdit> Edits() const;
    /// Connections of the references' own that were broken.
    std::vector<Connection> BrokenConnections() const;
    /// Whether the connection comes from a reference's file.
    bool IsFromFile(const Connection& connection) const;

private:
    /// How a node was when its file had been read: for each plug that was set, a hash of the statement.
    struct Baseline {
        std::unordered_map<std::string, std::size_t> settings;
        std::set<std::string> attributes;
    };

    FileReference* Locate(const std::string& name);
    void Read(const std::string& name);
    void CheckNotCircular(const std::string& path) const;
    void TakeBaseline(const std::string& name, const std::vector<std::shared_ptr<Node>>& nodes);
    void RemoveNodes(const std::string& name);
    void DropConnections(const std::function<bool(const Plug& source, const Plug& destination)>& isDropped);
    std::string FreeName(const std::string& wanted) const;
    std::string FreeNamespace(const std::string& wanted) const;

    Host& host_;
    std::vector<FileReference> references_;
    std::map<std::uint64_t, Baseline> baselines_; ///< by the node's serial
    std::map<Plug, Plug> connections_;            ///< those that came from references: destination, source
};

} // namespace lightbox
