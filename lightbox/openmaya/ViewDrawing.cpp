#include "openmaya/ViewDrawing.h"

#include "openmaya/ApiBridge.h"
#include "openmaya/DrawOverrides.h"
#include "openmaya/PluginContext.h"
#include "openmaya/ToolEvents.h"
#include "scene/CameraView.h"
#include "scene/Scene.h"
#include "scene/View.h"

#include <maya/MFrameContext.h>
#include <maya/MPxLocatorNode.h>
#include <maya/MUIDrawManager.h>

#include <algorithm>

namespace lightbox {

namespace {

/// The visible nodes that pass the test, in DAG order. Runs the test first, since it is cheaper.
template <typename Test>
std::vector<DagNode*> VisibleNodes(Scene& scene, Test test) {
    std::vector<DagNode*> nodes;
    for (DagNode* node : Scene::Subtree(scene.world())) {
        if (test(*node) && node->IsVisible()) {
            nodes.push_back(node);
        }
    }
    return nodes;
}

void DrawNode(DrawOverrides::Instance& instance, DagNode& node, const MHWRender::MFrameContext& context,
              DrawList& list) {
    MHWRender::MPxDrawOverride& drawOverride = *instance.drawOverride;
    const MDagPath path = ApiBridge::Wrap(node);
    MUserData* data =
        drawOverride.prepareForDraw(path, context.getCurrentCameraPath(), context, instance.data.get());
    if (data != instance.data.get()) {
        instance.data.reset(data);
    }
    if (drawOverride.hasUIDrawables()) {
        const auto manager = ApiBridge::MakeDrawManager(list);
        drawOverride.addUIDrawables(path, *manager, context, data);
    }
    if (data && data->deleteAfterUse()) {
        instance.data.reset();
    }
}

M3dView::DisplayStatus StatusOf(const Scene& scene, const DagNode& node) {
    const auto& selected = scene.selection().Get();
    const auto isSelected = [&](const DagNode* candidate) {
        return std::any_of(selected.begin(), selected.end(),
                           [&](const auto& item) { return item.get() == candidate; });
    };
    return isSelected(&node) || isSelected(node.Parent()) ? M3dView::kActive : M3dView::kDormant;
}

} // namespace

DrawList ViewDrawing::Collect(Scene& scene, View& view, const CameraView& cameraView) {
    DrawList list;
    const auto context = ApiBridge::MakeFrameContext(view, cameraView);
    DrawOverrides& overrides = DrawOverrides::Get();
    if (!overrides.IsEmpty()) {
        overrides.ForgetGoneNodes(view);
        for (DagNode* node :
             VisibleNodes(scene, [&](const DagNode& each) { return overrides.HasFor(each.Type()); })) {
            if (DrawOverrides::Instance* instance = overrides.For(view, *node)) {
                DrawNode(*instance, *node, *context, list);
            }
        }
    }
    if (PluginContext* tool = PluginContext::Current()) {
        const DrawList& drawn = ToolEvents::Drawn(view);
        list.insert(list.end(), drawn.begin(), drawn.end());
        const auto manager = ApiBridge::MakeDrawManager(list);
        tool->Run([&](MPxContext& each) { each.drawFeedback(*manager, *context); });
    }
    std::stable_sort(list.begin(), list.end(),
                     [](const DrawItem& a, const DrawItem& b) { return a.depthPriority < b.depthPriority; });
    return list;
}

void ViewDrawing::DrawLegacy(Scene& scene, View& view) {
    std::vector<DagNode*> locators = VisibleNodes(scene, [](const DagNode& node) {
        return dynamic_cast<const MPxLocatorNode*>(node.UserNode()) != nullptr;
    });
    const auto locatorOf = [](const DagNode* node) { return static_cast<MPxLocatorNode*>(node->UserNode()); };
    std::stable_partition(locators.begin(), locators.end(),
                          [&](const DagNode* node) { return !locatorOf(node)->drawLast(); });
    M3dView wrapped = ApiBridge::Wrap(view);
    for (DagNode* node : locators) {
        locatorOf(node)->draw(wrapped, ApiBridge::Wrap(*node), M3dView::kGouraudShaded,
                              StatusOf(scene, *node));
    }
}

void ViewDrawing::Forget(const View& view) {
    DrawOverrides::Get().Forget(view);
    ToolEvents::Forget(view);
}

} // namespace lightbox
