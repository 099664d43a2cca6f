#pragma once

#include "openmaya/DrawList.h"

namespace lightbox {

class CameraView;
class Scene;
class View;

/// Calls plug-ins to draw in a view.
class ViewDrawing {
public:
    /// Viewport 2.0: calls the draw overrides of all visible nodes, in DAG order, and the current tool.
    /// Returns their items in drawing order.
    static DrawList Collect(Scene& scene, View& view, const CameraView& cameraView);
    /// Legacy viewport: calls draw() of every visible plug-in locator. The view's OpenGL context must be
    /// current, with the camera's matrices set.
    static void DrawLegacy(Scene& scene, View& view);
    /// Deletes the cached data of a view that is closed.
    static void Forget(const View& view);
};

} // namespace lightbox
