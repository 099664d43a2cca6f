#pragma once

#include <Imath/ImathVec.h>
#include <memory>
#include <tuple>

namespace lightbox {

class Host;
class Node;

/// What the surface of a mesh looks like, each part from 0 to 1.
struct Material {
    Imath::V3f color{0.5f};
    Imath::V3f incandescence{0.0f};
    float diffuse = 0.8f;
    float opacity = 1.0f;
    float specular = 0.0f;
    /// It shines by itself and no light changes it.
    bool isFlat = false;

    bool operator==(const Material& other) const {
        const auto all = [](const Material& m) {
            return std::tie(m.color, m.incandescence, m.diffuse, m.opacity, m.specular, m.isFlat);
        };
        return all(*this) == all(other);
    }

    /// Of the shading group that the shape is in, as a whole; the default for one that is in none.
    static Material Of(const Node& shape);
    /// The shading group that a shape is in; null for none.
    static std::shared_ptr<Node> ShadingGroupOf(const Node& shape);
    /// Takes the shape out of the group that it is in, and puts it into another, as an edit.
    static void Assign(Host& host, const std::shared_ptr<Node>& shape, const std::shared_ptr<Node>& group);
};

} // namespace lightbox
