#pragma once

#include "openmaya/DrawList.h"

namespace lightbox {

class CameraView;
class Scene;
class View;

/// Lets the plug-ins draw in a view.
class ViewDrawing {
public:
    /// Viewport 2.0: asks the draw override of every visible node that has one, in the order of the DAG, and
    /// the current tool, and answers what they want drawn, in the order of drawing.
    static DrawList Collect(Scene& scene, View& view, const CameraView& cameraView);
    /// The legacy viewport: calls draw() of every visible locator of a plug-in. The view's OpenGL context is
    /// current, with the camera's matrices set.
    static void DrawLegacy(Scene& scene, View& view);
    /// Forgets what is kept for a view that goes.
    static void Forget(const View& view);
};

} // namespace lightbox
