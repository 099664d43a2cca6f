#include "scene/ShapeOutline.h"

#include "scene/DagNode.h"
#include "scene/Plug.h"

#include <cmath>

namespace lightbox {

namespace {

using Imath::V3f;

AttributeValue Value(const DagNode& node, const char* attribute) {
    return Plug::Of(node, attribute).Get();
}

V3f Vector(const DagNode& node, const char* attribute) {
    const AttributeValue value = Value(node, attribute);
    const auto& numbers = std::get<std::vector<double>>(value);
    return {static_cast<float>(numbers[0]), static_cast<float>(numbers[1]), static_cast<float>(numbers[2])};
}

std::vector<V3f> LocatorLines(const DagNode& locator) {
    const V3f center = Vector(locator, "localPosition");
    const V3f size = Vector(locator, "localScale");
    std::vector<V3f> lines;
    for (int axis = 0; axis < 3; ++axis) {
        V3f offset(0.0f);
        offset[axis] = size[axis];
        lines.push_back(center - offset);
        lines.push_back(center + offset);
    }
    return lines;
}

void AddLoop(std::vector<V3f>& lines, const std::vector<V3f>& points) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        lines.push_back(points[i]);
        lines.push_back(points[(i + 1) % points.size()]);
    }
}

std::vector<V3f> Rectangle(float halfWidth, float halfHeight, float z) {
    return {{-halfWidth, -halfHeight, z},
            {halfWidth, -halfHeight, z},
            {halfWidth, halfHeight, z},
            {-halfWidth, halfHeight, z}};
}

void AddFrustum(std::vector<V3f>& lines, const std::vector<V3f>& back, const std::vector<V3f>& front) {
    AddLoop(lines, back);
    AddLoop(lines, front);
    for (std::size_t i = 0; i < back.size(); ++i) {
        lines.push_back(back[i]);
        lines.push_back(front[i]);
    }
}

void AddReel(std::vector<V3f>& lines, float y, float z) {
    constexpr int sides = 12;
    constexpr float radius = 0.28f;
    std::vector<V3f> circle;
    for (int i = 0; i < sides; ++i) {
        const auto angle = static_cast<float>(2.0 * M_PI * i / sides);
        circle.emplace_back(0.0f, y + radius * std::sin(angle), z + radius * std::cos(angle));
    }
    AddLoop(lines, circle);
}

/// A film camera that looks along -z with its lens at the origin: body, lens hood and two reels.
std::vector<V3f> CameraLines(const DagNode& camera) {
    std::vector<V3f> lines;
    AddFrustum(lines, Rectangle(0.2f, 0.3f, 1.3f), Rectangle(0.2f, 0.3f, 0.25f));
    AddFrustum(lines, Rectangle(0.1f, 0.1f, 0.25f), Rectangle(0.28f, 0.2f, -0.15f));
    AddReel(lines, 0.58f, 0.5f);
    AddReel(lines, 0.58f, 1.06f);
    const AttributeValue scale = Value(camera, "locatorScale");
    for (V3f& point : lines) {
        point *= static_cast<float>(std::get<double>(scale));
    }
    return lines;
}

} // namespace

std::vector<V3f> ShapeOutline(const DagNode& shape) {
    if (shape.UserNode()) {
        return {};
    }
    if (shape.Type().IsA("camera")) {
        return CameraLines(shape);
    }
    return shape.Type().IsA("locator") ? LocatorLines(shape) : std::vector<V3f>();
}

} // namespace lightbox
