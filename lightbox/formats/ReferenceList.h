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
    std::string name;      ///< the reference's own name: "charRN"
    std::string nameSpace; ///< of its nodes: "char", nested "set:char"
    std::string path;      ///< absolute
    std::string givenPath; ///< as in the scene file (ReferencePath); or empty
    std::string options;   ///< as in the scene file
    std::string type;      ///< of the file, as in the scene file; or empty
    std::string prefix;    ///< for the names instead of a namespace, as in the scene file; means nothing here
    std::string further;   ///< other flags of the scene file that mean nothing here
    std::string parent;    ///< name of the reference that contains this one; empty at the top level
    bool isLoaded = false;
    bool isDeferred = false; ///< left unloaded on purpose
};

/// The user's changes to one node of a reference since it was read.
struct ReferenceEdit {
    std::shared_ptr<Node> node;
    std::vector<std::shared_ptr<Attribute>> addedAttributes;
    std::vector<PlugSetting> settings;
};

/// The files that a scene references. A saved scene does not contain their nodes: it holds only the file's
/// path and the user's changes. Opening the scene reads the nodes again.
class ReferenceList {
public:
    explicit ReferenceList(Host& host)
        : host_(host) {}

    /// Adds a reference to a file and reads the file unless `deferred`. Names that are taken get a number. A
    /// missing or unreadable file is reported and leaves an unloaded reference. Throws FileError for a file
    /// that references itself, directly or through others.
    const FileReference& Add(const std::string& path, const std::string& nameSpace, const std::string& name,
                             bool deferred);
    /// Takes over what of `given` is as in the scene file, so that it is saved the same way.
    void NoteStatement(const std::string& name, const FileReference& given);
    /// Reads the file unless it is loaded. This and the next three throw FileError for an unknown reference.
    void Load(const std::string& name);
    /// Removes the nodes from the scene and keeps the reference.
    void Unload(const std::string& name);
    /// Removes the nodes and the reference.
    void Remove(const std::string& name);
    /// Removes the reference and leaves its nodes to the scene, or to the reference that contains it.
    void MakeLocal(const std::string& name);
    void Clear();

    const std::vector<FileReference>& All() const { return references_; }
    /// Finds a reference by its name or its file's path; null when there is none.
    const FileReference* Find(const std::string& nameOrPath) const;
    std::vector<std::shared_ptr<Node>> NodesOf(const std::string& name) const;

    std::vector<ReferenceEdit> Edits() const;
    /// Connections from the reference files that the user broke.
    std::vector<Connection> BrokenConnections() const;
    /// True when the connection comes from a reference's file.
    bool IsFromFile(const Connection& connection) const;

private:
    /// The state of a node right after its file was read.
    struct Baseline {
        std::unordered_map<std::string, std::size_t> settings; ///< plug's path to the hash of its statement
        std::set<std::string> attributes;                      ///< long names of the dynamic attributes
    };

    FileReference& Locate(const std::string& nameOrPath);
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
    std::map<Plug, Plug> connections_;            ///< from reference files: destination to source
};

} // namespace lightbox
