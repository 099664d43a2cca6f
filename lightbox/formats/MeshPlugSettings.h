#pragma once

#include "formats/PlugSetting.h"
#include "scene/Plug.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lightbox {

class MeshData;

/// The published attributes of a mesh's geometry (vrts, pnts, edge, face, normals, uvSet), which the node
/// holds as one value: how scene files say them, and setAttr and getAttr.
class MeshPlugSettings {
public:
    /// Whether the path leads to an attribute of the geometry: "vt[0:7]", "uvst[0].uvsp[0:13]".
    static bool Handles(const Node& node, const std::string& path);
    /// Whether the attribute of the geometry that the path leads to is in the unit of length.
    static bool IsLength(const std::string& path);
    /// Whether the path leads to what a mesh keeps about single components (creases, holes, blind data, the
    /// groups of its parts), which is carried along and has no meaning here.
    static bool IsCarriedAlong(const Node& node, const std::string& path);

    /// Changes the mesh as the setting says. Throws SceneError for a path or value that does not fit and
    /// leaves the mesh as it is.
    static void Change(MeshData& mesh, const PlugSetting& setting);
    /// What `getAttr` answers: the numbers of the elements of a path; nothing for elements that are not
    /// there. The number of all elements for a path without an index stands in `count`.
    static std::vector<double> Numbers(const MeshData& mesh, const std::string& path, std::size_t& count);
    /// The statements that make the mesh.
    static std::vector<PlugSetting> Collect(const MeshData& mesh);
};

} // namespace lightbox
