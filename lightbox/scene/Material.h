#pragma once

#include <Imath/ImathVec.h>
#include <memory>
#include <tuple>

namespace lightbox {

class Host;
class Node;

/// The surface look of a mesh. All numbers are from 0 to 1.
struct Material {
    Imath::V3f color{0.5f};
    Imath::V3f incandescence{0.0f};
    float diffuse = 0.8f;
    float opacity = 1.0f;
    float specular = 0.0f;
    /// Unlit: shows its own colour, whatever the lights are.
    bool isFlat = false;

    bool operator==(const Material& other) const {
        const auto all = [](const Material& m) {
            return std::tie(m.color, m.incandescence, m.diffuse, m.opacity, m.specular, m.isFlat);
        };
        return all(*this) == all(other);
    }

    /// The material of the shading group that holds the whole shape; the default material without one.
    static Material Of(const Node& shape);
    /// The shading group that holds the shape; null for none.
    static std::shared_ptr<Node> ShadingGroupOf(const Node& shape);
    /// Moves the shape from its shading group to another, as an undoable edit.
    static void Assign(Host& host, const std::shared_ptr<Node>& shape, const std::shared_ptr<Node>& group);
};

} // namespace lightbox
