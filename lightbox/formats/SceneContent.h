#pragma once

#include "formats/ReferenceList.h"
#include "scene/Connections.h"
#include "scene/Node.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {

class Host;

/// What goes into a scene file, in the order in which it is written; the same for every format.
class SceneContent {
public:
    /// A plug-in that brought something which is in the file.
    struct Requirement {
        std::string plugin;
        std::string version;
        std::vector<std::string> nodeTypes;
        std::vector<std::string> dataTypes;
    };

    static SceneContent Whole(Host& host);
    /// The nodes, what lies below them, the transforms above them, and their history, keys and materials.
    static SceneContent Part(Host& host, const std::vector<std::shared_ptr<Node>>& nodes);

    /// The playback and animation ranges as a MEL statement, for the script node that carries them.
    static std::string ConfigurationScript(Host& host);
    /// The scene's `fileInfo`, with what this program says of itself first.
    static std::vector<std::pair<std::string, std::string>> FileInfo(Host& host);
    /// How a file says where a connection goes: the plug, and further flags of connectAttr. Where the number
    /// of an element means nothing it is the array, whose next free element is taken.
    static std::pair<Plug, std::string> Target(const Connection& connection);

    bool isWhole = true;
    std::vector<Requirement> requirements;
    std::vector<FileReference> references;       ///< those of the scene itself, not of its references
    std::vector<std::shared_ptr<Node>> nodes;    ///< to be created, parents before children
    std::vector<std::shared_ptr<Node>> defaults; ///< only referred to
    /// Names the references as the scene file that they came from did, where that leads to the same files
    /// from the folder that the scene is written to.
    void NameReferencesFrom(const std::string& folder);

    std::vector<ReferenceEdit> edits;
    std::vector<Connection> broken; ///< connections inside references that are to be broken
    std::vector<Connection> connections;

private:
    void Require(Host& host, const std::string& plugin, const std::string& nodeType,
                 const std::string& dataType);
    void CollectRequirements(Host& host);
    void CollectConnections(Host& host);
};

} // namespace lightbox
