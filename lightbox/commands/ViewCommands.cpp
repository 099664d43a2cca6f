// viewFit: moves a camera so that it frames the selection, or everything.

#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/CameraFilm.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/UserInterface.h"
#include "scene/View.h"
#include "scene/VisibleShapes.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>
#include <algorithm>
#include <cmath>

namespace lightbox::mel {
namespace {

using Imath::Box3d;
using Imath::M44d;
using Imath::V3d;

/// The part of the view that the objects fill by default.
constexpr double DEFAULT_FIT_FACTOR = 0.9;
/// The radius used for a box that is a point, in centimetres.
constexpr double MIN_RADIUS = 0.5;

Box3d BoxToFit(Scene& scene, bool all) {
    Box3d box;
    if (!all) {
        for (const std::shared_ptr<Node>& node : scene.selection().Get()) {
            const auto* dag = dynamic_cast<const DagNode*>(node.get());
            if (!dag) {
                continue;
            }
            box.extendBy(WorldBoundsOf(*dag));
            if (dag->Type().IsTransform() && WorldBoundsOf(*dag).isEmpty()) {
                box.extendBy(dag->WorldMatrix().translation());
            }
        }
    }
    if (box.isEmpty()) {
        for (const VisibleShape& visible : FindVisibleShapes(scene)) {
            if (!visible.shape->Type().IsA("camera")) {
                box.extendBy(Transformed(BoundsOf(*visible.shape), visible.world));
            }
        }
    }
    return box;
}

std::shared_ptr<DagNode> CameraOf(const CommandCall& call) {
    Host& host = call.GetHost();
    std::shared_ptr<DagNode> node;
    if (!call.Objects().empty()) {
        node = DagNodeNamed(call, call.Object(0).AsString());
    } else if (host.ui() && host.ui()->ActiveView()) {
        node = host.ui()->ActiveView()->Camera();
    } else {
        node = DagNodeNamed(call, "persp");
    }
    if (node->Type().IsTransform()) {
        const std::vector<DagNode*> shapes = node->Shapes();
        const auto camera = std::find_if(shapes.begin(), shapes.end(),
                                         [](const DagNode* shape) { return shape->Type().IsA("camera"); });
        node = camera == shapes.end() ? nullptr : std::static_pointer_cast<DagNode>((*camera)->Shared());
    }
    if (!node || !node->Type().IsA("camera")) {
        call.Fail("The object is not a camera.");
    }
    return node;
}

/// Returns width / height of a view that looks through the camera, of the active view if possible. Without
/// such a view it is 16:9.
double ViewAspect(UserInterface* ui, const DagNode& camera) {
    std::vector<View*> views;
    if (ui) {
        views = ui->Views();
        views.insert(views.begin(), ui->ActiveView());
    }
    for (const View* view : views) {
        if (view && view->Camera().get() == &camera && view->Height() > 0) {
            return static_cast<double>(view->Width()) / view->Height();
        }
    }
    return 16.0 / 9.0;
}

void MoveTo(Host& host, const DagNode& camera, const V3d& eye) {
    const DagNode& transform = *camera.Parent();
    const M44d parent = transform.Parent() ? transform.Parent()->WorldMatrix() : M44d();
    V3d way;
    parent.inverse().multDirMatrix(eye - camera.WorldMatrix().translation(), way);
    const Plug translate = Plug::Of(transform, "translate");
    const AttributeValue before = translate.Get();
    const auto& numbers = std::get<std::vector<double>>(before);
    edit::SetPlug(host, translate,
                  std::vector<double>{numbers[0] + way.x, numbers[1] + way.y, numbers[2] + way.z});
}

void Fit(Host& host, const DagNode& camera, const Box3d& box, double factor) {
    const CameraFilm film(camera);
    const double aspect = ViewAspect(host.ui(), camera);
    const V3d center = box.center();
    V3d back;
    camera.WorldMatrix().multDirMatrix(V3d(0.0, 0.0, 1.0), back);
    back.normalize();
    CameraFilm::Options options;
    options.overscan = true;
    const Frustum frustum = film.FrustumOf(aspect, options);
    const double width = frustum.right - frustum.left;
    const double height = frustum.top - frustum.bottom;
    if (film.IsOrthographic()) {
        // In camera space the width and height of the box are what the view shows.
        const Box3d seen = Transformed(box, camera.WorldMatrix().inverse());
        const double part = std::max({seen.size().x / width, seen.size().y / height, MIN_RADIUS / width});
        const Plug orthographicWidth = Plug::Of(camera, "orthographicWidth");
        edit::SetPlug(host, orthographicWidth, orthographicWidth.Number() * part / factor);
        const double distance = std::max(Plug::Of(camera, "centerOfInterest").Number(), box.size().length());
        MoveTo(host, camera, center + back * distance);
        return;
    }
    const double radius = std::max(MIN_RADIUS, box.size().length() * 0.5);
    const double halfAngle = std::atan(std::min(width, height) * 0.5 / film.NearClip());
    const double distance = radius / std::sin(halfAngle) / factor;
    MoveTo(host, camera, center + back * distance);
    edit::SetPlug(host, Plug::Of(camera, "centerOfInterest"), distance);
}

Value ViewFit(CommandCall& call) {
    const double factor = std::clamp(call.FloatOr("-fitFactor", DEFAULT_FIT_FACTOR), 0.01, 1.0);
    const std::shared_ptr<DagNode> camera = CameraOf(call);
    const Box3d box = BoxToFit(call.GetHost().scene(), call.Has("-allObjects"));
    if (!box.isEmpty()) {
        Fit(call.GetHost(), *camera, box, factor);
    }
    return {};
}

} // namespace

void RegisterViewCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "viewFit",
                    SyntaxBuilder()
                        .Flag("-all", "-allObjects")
                        .Flag("-f", "-fitFactor", MSyntax::kDouble)
                        .Flag("-an", "-animate", MSyntax::kBoolean)
                        .Objects(0, 1),
                    ViewFit);
}

} // namespace lightbox::mel
