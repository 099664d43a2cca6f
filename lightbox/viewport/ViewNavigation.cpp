#include "viewport/ViewNavigation.h"

#include "formats/SceneFiles.h"
#include "scene/CameraView.h"
#include "scene/DagNode.h"
#include "scene/Plug.h"
#include "scene/Scene.h"
#include "scene/Transformation.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

using Imath::M44d;
using Imath::V3d;

/// A drag over the whole width of the view turns by this angle.
constexpr double TUMBLE_DEGREES = 180.0;
/// Dragging this many pixels halves or doubles the distance.
constexpr double DOLLY_PIXELS = 250.0;
/// One notch of the wheel dollies by this share of the distance.
constexpr double WHEEL_SHARE = 0.12;
constexpr double NOTCH = 120.0;
constexpr double MIN_ZOOM = 0.001;
constexpr double MAX_ZOOM = 1000.0;

/// Sets each component separately, so that a locked or driven one does not block the others.
void SetVector(const std::shared_ptr<DagNode>& node, const char* attribute, const V3d& value) {
    const Plug plug = Plug::Of(*node, attribute);
    for (unsigned i = 0; i < 3; ++i) {
        if (plug.Child(i).Number() != value[static_cast<int>(i)]) {
            plug.Child(i).Set(value[static_cast<int>(i)]);
        }
    }
}

/// The angle plus the whole turns that bring it nearest to `other`, in degrees.
double Near(double angle, double other) {
    return angle + 360.0 * std::round((other - angle) / 360.0);
}

/// The Euler angles, in degrees, that give the same rotation and are nearest to `before`. They keep a
/// camera's angles continuous when it tumbles past 180 degrees or past a pole.
V3d NearestAngles(const V3d& angles, const V3d& before, int rotateOrder) {
    // The middle axis of each rotate order. The rotation stays the same when the middle angle a becomes 180 -
    // a and the other two angles get half a turn.
    constexpr int middles[] = {1, 2, 0, 2, 0, 1};
    const int middle = middles[std::clamp(rotateOrder, 0, 5)];
    V3d other = angles + V3d(180.0);
    other[middle] = 180.0 - angles[middle];
    V3d candidates[] = {angles, other};
    for (V3d& candidate : candidates) {
        for (int i = 0; i < 3; ++i) {
            candidate[i] = Near(candidate[i], before[i]);
        }
    }
    return (candidates[0] - before).length2() <= (candidates[1] - before).length2() ? candidates[0]
                                                                                    : candidates[1];
}

} // namespace

/// The camera's axes and centre of interest in world space.
struct ViewNavigation::Pose {
    explicit Pose(const DagNode& shape)
        : world(shape.WorldMatrix())
        , distance(Plug::Of(shape, "centerOfInterest").Number()) {
        distance = std::max(distance, 1e-4);
    }

    V3d Axis(int i) const { return V3d(world[i][0], world[i][1], world[i][2]).normalized(); }
    V3d Eye() const { return world.translation(); }
    V3d Forward() const { return -Axis(2); }
    V3d Center() const { return Eye() + Forward() * distance; }

    /// Sets the camera's transform so that its world matrix is `world`; keeps the scale.
    static void Place(const std::shared_ptr<DagNode>& shape, const M44d& world) {
        DagNode* const above = shape->Parent();
        if (!above || above->IsWorld()) {
            return;
        }
        const auto transform = std::static_pointer_cast<DagNode>(above->Shared());
        const M44d parent = transform->LocalMatrix().inverse() * transform->WorldMatrix();
        Transformation parts = transform->LocalTransformation();
        const V3d anglesBefore = parts.rotate;
        const V3d scaleBefore = parts.scale;
        if (!parts.SetMatrix(world * parent.inverse())) {
            return;
        }
        parts.rotate = NearestAngles(parts.rotate, anglesBefore, parts.rotateOrder);
        parts.scale = scaleBefore;
        SetVector(transform, "translate", parts.translate);
        SetVector(transform, "rotate", parts.rotate);
    }

    M44d world;
    double distance;
};

ViewNavigation::Mode ViewNavigation::ModeFor(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
                                             bool is2dKeyHeld) {
    if (is2dKeyHeld) {
        if (buttons.testFlag(Qt::MiddleButton)) {
            return Mode::Pan2d;
        }
        return buttons.testFlag(Qt::RightButton) ? Mode::Zoom2d : Mode::None;
    }
    if (!modifiers.testFlag(Qt::AltModifier)) {
        return Mode::None;
    }
    if (buttons.testFlag(Qt::LeftButton) && buttons.testFlag(Qt::MiddleButton)) {
        return Mode::Dolly;
    }
    if (buttons.testFlag(Qt::LeftButton)) {
        return Mode::Tumble;
    }
    if (buttons.testFlag(Qt::MiddleButton)) {
        return Mode::Track;
    }
    return buttons.testFlag(Qt::RightButton) ? Mode::Dolly : Mode::None;
}

void ViewNavigation::Begin(Mode mode, const std::shared_ptr<DagNode>& camera, const QPointF& position,
                           const QSize& size) {
    mode_ = mode;
    camera_ = camera;
    last_ = position;
    size_ = size.expandedTo(QSize(1, 1));
}

void ViewNavigation::Move(const QPointF& position) {
    const QPointF delta = position - last_;
    last_ = position;
    // The camera may have been deleted during the drag.
    if (delta.isNull() || !camera_ || !camera_->InScene()) {
        return;
    }
    switch (mode_) {
    case Mode::Tumble:
        Tumble(delta);
        break;
    case Mode::Track:
        Track(delta);
        break;
    case Mode::Dolly:
        Dolly(std::exp2((-delta.x() + delta.y()) / DOLLY_PIXELS));
        break;
    case Mode::Pan2d:
        Pan2d(delta);
        break;
    case Mode::Zoom2d:
        Zoom2d(std::exp2((-delta.x() + delta.y()) / DOLLY_PIXELS));
        break;
    case Mode::None:
        return;
    }
    Changed();
}

void ViewNavigation::Wheel(const std::shared_ptr<DagNode>& camera, int delta) {
    camera_ = camera;
    Dolly(std::pow(1.0 - WHEEL_SHARE, delta / NOTCH));
    Changed();
}

void ViewNavigation::Tumble(const QPointF& delta) {
    // Orthographic cameras do not tumble: they keep looking along their axis, as in the host.
    if (Plug::Of(*camera_, "orthographic").Number() != 0.0) {
        return;
    }
    const Pose pose(*camera_);
    const double degrees = TUMBLE_DEGREES / size_.width() * M_PI / 180.0;
    const V3d center = pose.Center();
    M44d pitch;
    pitch.setAxisAngle(pose.Axis(0), -delta.y() * degrees);
    M44d yaw;
    yaw.setAxisAngle(V3d(0.0, 1.0, 0.0), -delta.x() * degrees);
    Pose::Place(camera_,
                pose.world * M44d().setTranslation(-center) * pitch * yaw * M44d().setTranslation(center));
}

void ViewNavigation::Track(const QPointF& delta) {
    const Pose pose(*camera_);
    const CameraView view(*camera_, size_.width(), size_.height());
    // Move so far that points at the depth of the centre of interest stay under the pointer.
    const auto at = [&](double x, double y) {
        V3d nearPoint;
        V3d farPoint;
        view.ViewToWorld(x, y, nearPoint, farPoint);
        if (view.IsOrthographic()) {
            return nearPoint;
        }
        const V3d ray = (farPoint - nearPoint).normalized();
        const double along = ray.dot(pose.Forward());
        return along > 1e-9 ? pose.Eye() + ray * (pose.distance / along) : pose.Center();
    };
    const V3d offset = at(0.0, 0.0) - at(delta.x(), -delta.y());
    Pose::Place(camera_, pose.world * M44d().setTranslation(offset));
}

void ViewNavigation::Dolly(double factor) {
    if (Plug::Of(*camera_, "orthographic").Number() != 0.0) {
        const Plug width = Plug::Of(*camera_, "orthographicWidth");
        width.Set(std::clamp(width.Number() * factor, 1e-4, 1e8));
        return;
    }
    const Pose pose(*camera_);
    const double distance = std::clamp(pose.distance * factor, 1e-3, 1e8);
    Plug::Of(*camera_, "centerOfInterest").Set(distance);
    Pose::Place(camera_, pose.world * M44d().setTranslation(pose.Forward() * (pose.distance - distance)));
}

void ViewNavigation::Pan2d(const QPointF& delta) {
    Plug::Of(*camera_, "panZoomEnabled").Set(1.0);
    const double perPixel = CameraView(*camera_, size_.width(), size_.height()).PanPerPixel();
    const Plug horizontal = Plug::Of(*camera_, "horizontalPan");
    const Plug vertical = Plug::Of(*camera_, "verticalPan");
    horizontal.Set(horizontal.Number() - delta.x() * perPixel);
    vertical.Set(vertical.Number() + delta.y() * perPixel);
}

void ViewNavigation::Zoom2d(double factor) {
    Plug::Of(*camera_, "panZoomEnabled").Set(1.0);
    const Plug zoom = Plug::Of(*camera_, "zoom");
    zoom.Set(std::clamp(std::max(zoom.Number(), MIN_ZOOM) * factor, MIN_ZOOM, MAX_ZOOM));
}

void ViewNavigation::Changed() {
    // Only user cameras mark the scene as modified; the start-up cameras do not.
    if (!camera_->isShared) {
        files_.SetModified(true);
    }
}

} // namespace lightbox
