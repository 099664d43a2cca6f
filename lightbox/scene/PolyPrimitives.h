#pragma once

#include "scene/MeshData.h"

#include <memory>

namespace lightbox {

/// The polygon primitives, with the order of vertices that modelling scripts count on. Sizes in centimetres;
/// made along the y axis around the origin. Subdivisions below their least are taken as that.
namespace poly {

struct Cube {
    double width = 1.0;
    double height = 1.0;
    double depth = 1.0;
    int acrossWidth = 1;
    int acrossHeight = 1;
    int acrossDepth = 1;
};
struct Plane {
    double width = 1.0;
    double height = 1.0;
    int acrossWidth = 10;
    int acrossHeight = 10;
};
struct Sphere {
    double radius = 1.0;
    int around = 20;
    int along = 20;
};
/// A cone is one whose upper end is a point.
struct Cylinder {
    double radius = 1.0;
    double height = 2.0;
    int around = 20;
    int along = 1;
    int onCaps = 1;
    bool isCone = false;
};

std::shared_ptr<MeshData> Make(const Cube& cube);
std::shared_ptr<MeshData> Make(const Plane& plane);
std::shared_ptr<MeshData> Make(const Sphere& sphere);
std::shared_ptr<MeshData> Make(const Cylinder& cylinder);

/// Turns what was made along the y axis so that it stands along another; nothing for an axis without length.
void TurnTo(MeshData& mesh, const Imath::V3d& axis);

} // namespace poly

} // namespace lightbox
