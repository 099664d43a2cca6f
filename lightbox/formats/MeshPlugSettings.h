#pragma once

#include "formats/PlugSetting.h"
#include "scene/Plug.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lightbox {

class MeshData;

/// Maps the published attributes of a mesh's geometry (vrts, pnts, edge, face, normals, uvSet) to the single
/// value that the node holds. Scene files, setAttr and getAttr use these attributes.
class MeshPlugSettings {
public:
    /// True for the path of a geometry attribute of a mesh: "vt[0:7]", "uvst[0].uvsp[0:13]".
    static bool Handles(const Node& node, const std::string& path);
    /// True when the numbers of the path's geometry attribute are lengths.
    static bool IsLength(const std::string& path);
    /// True for the path of a mesh attribute about single components (creases, holes, pins, color sets,
    /// component groups). Such content has no meaning here; it is preserved for the next save.
    static bool IsCarriedAlong(const Node& node, const std::string& path);

    /// Applies the setting to the mesh. Throws SceneError for a path or value that does not fit, and then
    /// leaves the mesh unchanged.
    static void Change(MeshData& mesh, const PlugSetting& setting);
    /// Returns the numbers of the path's elements for `getAttr`; missing elements add none. Sets `count` to
    /// the number of all elements of the attribute.
    static std::vector<double> Numbers(const MeshData& mesh, const std::string& path, std::size_t& count);
    /// Returns the settings that rebuild the mesh.
    static std::vector<PlugSetting> Collect(const MeshData& mesh);
};

} // namespace lightbox
