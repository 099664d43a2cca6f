#pragma once

#include "formats/PlugSetting.h"
#include "formats/ReferenceList.h"
#include "formats/SceneUnits.h"
#include "scene/Connections.h"
#include "scene/Node.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {

class Host;
class PluginLoader;
class Scene;
class SceneFiles;
class Timeline;

/// The content of a scene file in the order of writing, for every format.
class SceneContent {
public:
    /// A plug-in whose node or data types are in the file.
    struct Requirement {
        std::string plugin;
        std::string version;
        std::vector<std::string> nodeTypes;
        std::vector<std::string> dataTypes;
    };

    /// Collects the whole scene.
    static SceneContent Whole(Host& host);
    /// Collects the nodes with their descendants, the transforms above them, and their history, keys and
    /// materials.
    static SceneContent Part(Host& host, const std::vector<std::shared_ptr<Node>>& nodes);

    /// The name of the script node that holds the scene's ranges.
    static constexpr char SCENE_SCRIPT[] = "sceneConfigurationScriptNode";
    /// Returns the playback and animation ranges as a MEL statement, for the scene's script node.
    static std::string ConfigurationScript(const Timeline& time);
    /// Returns the scene's `fileInfo` pairs. The pairs about this program come first.
    static std::vector<std::pair<std::string, std::string>> FileInfo(const SceneFiles& files);
    /// Returns a connection's destination as a file writes it: the plug and further flags of connectAttr.
    /// When the index of an element does not matter, it is the array with " -na" for its next free element.
    static std::pair<Plug, std::string> Target(const Connection& connection);

    /// The settings of a node, in the units of the scene's file.
    static std::vector<PlugSetting> Settings(const std::shared_ptr<Node>& node, const SceneUnits& units);
    /// True for the scene's script node with the ranges, if the scene has one. Its text is what the file has
    /// behind the ranges.
    static bool IsSceneScript(const Node& node);

    bool isWhole = true;
    std::vector<Requirement> requirements;
    std::vector<FileReference> references;       ///< without the references inside references
    std::vector<std::shared_ptr<Node>> nodes;    ///< to create, parents before children
    std::vector<std::shared_ptr<Node>> defaults; ///< default nodes, whose changes are written
    /// Uses a reference's path as the scene file gave it, if it leads to the same file from the folder of the
    /// new scene file.
    void NameReferencesFrom(const std::string& folder);

    std::vector<ReferenceEdit> edits;
    std::vector<Connection> broken; ///< connections inside references that the user broke
    std::vector<Connection> connections;

private:
    void Require(const PluginLoader& plugins, const std::string& plugin, const std::string& nodeType,
                 const std::string& dataType);
    void CollectRequirements(const Scene& scene, const PluginLoader& plugins);
    void CollectConnections(const Scene& scene, const ReferenceList& references);
};

} // namespace lightbox
