#pragma once

#include "scene/MeshData.h"

#include <memory>

namespace lightbox {

/// Polygon primitives, with the vertex order that modelling scripts expect. Sizes are in centimetres; the
/// axis is y, the centre the origin. Subdivisions below the minimum count as the minimum.
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
/// A cylinder, or a cone: a cylinder whose upper end is a point.
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

/// Rotates a mesh made along the y axis to another axis. Does nothing for an axis of length 0.
void TurnTo(MeshData& mesh, const Imath::V3d& axis);

} // namespace poly

} // namespace lightbox
