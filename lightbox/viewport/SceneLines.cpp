#include "viewport/SceneLines.h"

#include <utility>

namespace lightbox {

namespace {

using Imath::V2f;
using Imath::V3f;
using Imath::V4f;

constexpr int GRID_HALF = 12;
// The grid is faint, because it lies under drawings, whose pencil lines are also dark and thin.
const V4f GRID_COLOR(0.34f, 0.35f, 0.37f, 0.34f);
constexpr float GRID_AXIS_OPACITY = 0.55f;
const V4f AXIS_COLORS[] = {
    {0.86f, 0.27f, 0.25f, 1.0f}, {0.42f, 0.76f, 0.27f, 1.0f}, {0.32f, 0.52f, 0.96f, 1.0f}};

/// The strokes of the letter x, y or z in a square from -1 to 1.
std::vector<V2f> Letter(int axis) {
    switch (axis) {
    case 0:
        return {{-0.7f, -1.0f}, {0.7f, 1.0f}, {-0.7f, 1.0f}, {0.7f, -1.0f}};
    case 1:
        return {{0.0f, -1.0f}, {0.0f, 0.0f}, {0.0f, 0.0f}, {-0.7f, 1.0f}, {0.0f, 0.0f}, {0.7f, 1.0f}};
    default:
        return {{-0.7f, 1.0f}, {0.7f, 1.0f}, {0.7f, 1.0f}, {-0.7f, -1.0f}, {-0.7f, -1.0f}, {0.7f, -1.0f}};
    }
}

} // namespace

std::vector<LineVertex> GridLines(int axis) {
    const int across = (axis + 1) % 3;
    const int along = (axis + 2) % 3;
    std::vector<LineVertex> lines;
    const auto add = [&](int fixed, int running, float at, float from, float to, const V4f& color) {
        for (const float end : {from, to}) {
            LineVertex vertex{V3f(0.0f), color};
            vertex.position[fixed] = at;
            vertex.position[running] = end;
            lines.push_back(vertex);
        }
    };
    for (int i = -GRID_HALF; i <= GRID_HALF; ++i) {
        for (const auto& [fixed, running] : {std::pair(across, along), std::pair(along, across)}) {
            if (i != 0) {
                add(fixed, running, static_cast<float>(i), -GRID_HALF, GRID_HALF, GRID_COLOR);
            }
        }
    }
    for (const auto& [fixed, running] : {std::pair(across, along), std::pair(along, across)}) {
        V4f color = AXIS_COLORS[running] * 0.62f;
        color.w = GRID_AXIS_OPACITY;
        add(fixed, running, 0.0f, -GRID_HALF, GRID_HALF, color);
    }
    return lines;
}

std::vector<LineVertex> AxisIconLines(const V3f& right, const V3f& up, const V3f& back) {
    std::vector<LineVertex> lines;
    for (int axis = 0; axis < 3; ++axis) {
        const V3f tip(right[axis], up[axis], back[axis]);
        lines.push_back({V3f(0.0f), AXIS_COLORS[axis]});
        lines.push_back({tip, AXIS_COLORS[axis]});
        for (const V2f& stroke : Letter(axis)) {
            lines.push_back({tip * 1.28f + V3f(stroke.x, stroke.y, 0.0f) * 0.13f, AXIS_COLORS[axis]});
        }
    }
    return lines;
}

} // namespace lightbox
