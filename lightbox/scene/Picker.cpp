#include "scene/Picker.h"

#include "scene/DagNode.h"
#include "scene/MeshNode.h"
#include "scene/MeshTessellation.h"
#include "scene/ShapeOutline.h"

#include <Imath/ImathBoxAlgo.h>
#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <algorithm>
#include <cmath>
#include <optional>

namespace lightbox {

namespace {

using Imath::M44d;
using Imath::V2d;
using Imath::V3d;
using Imath::V3f;
using Imath::V4d;

constexpr double MISSED = 2.0;

V4d ToClip(const V3f& point, const M44d& matrix) {
    return V4d(point.x, point.y, point.z, 1.0) * matrix;
}

/// The point of a line nearest to a position, as a fraction of the way from its start.
double NearestFraction(const V2d& start, const V2d& end, const V2d& place) {
    const V2d way = end - start;
    const double length = way.dot(way);
    return length > 0.0 ? std::clamp((place - start).dot(way) / length, 0.0, 1.0) : 0.0;
}

V2d OnScreen(const V3d& point) {
    return {point.x, point.y};
}

/// Whether a line crosses the rectangle; clips it at each side.
bool Crosses(const V2d& start, const V2d& end, const QRectF& rectangle) {
    double from = 0.0;
    double to = 1.0;
    const V2d way = end - start;
    const auto cut = [&](double speed, double room) {
        if (speed == 0.0) {
            return room >= 0.0;
        }
        const double part = room / speed;
        (speed < 0.0 ? from : to) = speed < 0.0 ? std::max(from, part) : std::min(to, part);
        return from <= to;
    };
    return cut(-way.x, start.x - rectangle.left()) && cut(way.x, rectangle.right() - start.x) &&
           cut(-way.y, start.y - rectangle.top()) && cut(way.y, rectangle.bottom() - start.y);
}

/// The distance to the hit of a ray with a triangle, in lengths of `direction`; null for a miss.
std::optional<double> HitTriangle(const V3d& origin, const V3d& direction, const V3d& a, const V3d& b,
                                  const V3d& c) {
    const V3d ab = b - a;
    const V3d ac = c - a;
    const V3d across = direction.cross(ac);
    const double determinant = ab.dot(across);
    if (determinant == 0.0) {
        return std::nullopt;
    }
    const V3d fromA = origin - a;
    const double u = fromA.dot(across) / determinant;
    const V3d along = fromA.cross(ab);
    const double v = direction.dot(along) / determinant;
    const double t = ac.dot(along) / determinant;
    return u >= 0.0 && v >= 0.0 && u + v <= 1.0 && t >= 0.0 && t <= 1.0 ? std::optional<double>(t)
                                                                        : std::nullopt;
}

bool IsPickable(const VisibleShape& visible, const Picker::Filter& filter) {
    if (visible.state == VisibleShape::State::Template || visible.shape == filter.lookThrough) {
        return false;
    }
    return MeshNode::Is(*visible.shape)          ? filter.meshes
           : visible.shape->Type().IsA("camera") ? filter.cameras
                                                 : filter.locators;
}

} // namespace

Picker::Picker(Scene& scene, const CameraView& view, const Filter& filter)
    : view_(view)
    , filter_(filter) {
    for (const VisibleShape& visible : FindVisibleShapes(scene)) {
        if (IsPickable(visible, filter)) {
            shapes_.push_back(visible);
        }
    }
}

template <class Function>
bool Picker::AnyLine(const VisibleShape& visible, const Function& function) const {
    const M44d matrix = visible.world * view_.View() * view_.Projection();
    const auto toView = [&](const V4d& clip) {
        return V3d((clip.x / clip.w + 1.0) * 0.5 * view_.Width(),
                   (clip.y / clip.w + 1.0) * 0.5 * view_.Height(), (clip.z / clip.w + 1.0) * 0.5);
    };
    const auto check = [&](const V3f& first, const V3f& second) {
        V4d start = ToClip(first, matrix);
        V4d end = ToClip(second, matrix);
        // Signed distances to the near clipping plane.
        const double startRoom = start.z + start.w;
        const double endRoom = end.z + end.w;
        if (startRoom <= 0.0 && endRoom <= 0.0) {
            return false;
        }
        if (startRoom <= 0.0) {
            start = start + (end - start) * (startRoom / (startRoom - endRoom));
        } else if (endRoom <= 0.0) {
            end = end + (start - end) * (endRoom / (endRoom - startRoom));
        }
        return start.w > 0.0 && end.w > 0.0 && function(Line{toView(start), toView(end)});
    };
    if (!MeshNode::Is(*visible.shape)) {
        const std::vector<V3f> outline = ShapeOutline(*visible.shape);
        for (std::size_t i = 0; i + 1 < outline.size(); i += 2) {
            if (check(outline[i], outline[i + 1])) {
                return true;
            }
        }
        return false;
    }
    const std::shared_ptr<const MeshData> mesh = MeshNode::Evaluate(*visible.shape);
    if (!mesh) {
        return false;
    }
    const MeshTessellation& tessellation = mesh->Tessellation();
    const std::vector<std::uint32_t>& lines = tessellation.Lines();
    for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
        if (check(tessellation.LinePoints()[lines[i]], tessellation.LinePoints()[lines[i + 1]])) {
            return true;
        }
    }
    return false;
}

double Picker::HitSurface(const VisibleShape& visible, double x, double y) const {
    const std::shared_ptr<const MeshData> mesh =
        filter_.surfaces && MeshNode::Is(*visible.shape) ? MeshNode::Evaluate(*visible.shape) : nullptr;
    if (!mesh || mesh->Bounds().isEmpty() || visible.world.determinant() == 0.0) {
        return MISSED;
    }
    V3d nearPoint;
    V3d farPoint;
    view_.ViewToWorld(x, y, nearPoint, farPoint);
    const M44d inverse = visible.world.inverse();
    const V3d origin = nearPoint * inverse;
    const V3d direction = farPoint * inverse - origin;
    const Imath::Box3d box(V3d(mesh->Bounds().min), V3d(mesh->Bounds().max));
    V3d entry;
    if (!Imath::intersects(box, Imath::Line3d(origin, origin + direction), entry)) {
        return MISSED;
    }
    const MeshTessellation& tessellation = mesh->Tessellation();
    const std::vector<std::uint32_t>& corners = tessellation.Triangles();
    const auto position = [&](std::size_t i) { return V3d(tessellation.Corners()[corners[i]].position); };
    double nearest = MISSED;
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
        const std::optional<double> hit =
            HitTriangle(origin, direction, position(i), position(i + 1), position(i + 2));
        nearest = hit ? std::min(nearest, *hit) : nearest;
    }
    if (nearest > 1.0) {
        return MISSED;
    }
    return view_.WorldToView(nearPoint + (farPoint - nearPoint) * nearest).z;
}

DagNode* Picker::At(double x, double y, double tolerance) const {
    const V2d place(x, y);
    DagNode* found = nullptr;
    double nearest = MISSED;
    for (const VisibleShape& visible : shapes_) {
        double depth = HitSurface(visible, x, y);
        // The lines of a surface lie within it.
        if (!filter_.surfaces || !MeshNode::Is(*visible.shape)) {
            AnyLine(visible, [&](const Line& line) {
                const V2d start = OnScreen(line.start);
                const V2d end = OnScreen(line.end);
                const double fraction = NearestFraction(start, end, place);
                if ((start + (end - start) * fraction - place).length() <= tolerance) {
                    depth = std::min(depth, line.start.z + (line.end.z - line.start.z) * fraction);
                }
                return false;
            });
        }
        if (depth < nearest && depth <= 1.0) {
            nearest = depth;
            found = visible.shape;
        }
    }
    return found;
}

bool Picker::Touches(const VisibleShape& visible, const QRectF& rectangle) const {
    const bool crosses = AnyLine(visible, [&](const Line& line) {
        return Crosses(OnScreen(line.start), OnScreen(line.end), rectangle);
    });
    return crosses || HitSurface(visible, rectangle.center().x(), rectangle.center().y()) <= 1.0;
}

std::vector<DagNode*> Picker::Inside(const QRectF& rectangle) const {
    std::vector<DagNode*> found;
    for (const VisibleShape& visible : shapes_) {
        if (Touches(visible, rectangle.normalized())) {
            found.push_back(visible.shape);
        }
    }
    return found;
}

} // namespace lightbox
