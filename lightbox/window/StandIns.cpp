#include "scene/CameraView.h"
#include "window/SceneRenderer.h"
#include "window/SelectTool.h"

#include <qopengl.h>

#define WEAK __attribute__((weak))

namespace lightbox {

class SceneRenderer::Private {};

WEAK SceneRenderer::SceneRenderer() {}
WEAK SceneRenderer::~SceneRenderer() {}
WEAK bool SceneRenderer::Initialize() {
    return true;
}
WEAK void SceneRenderer::Draw(Scene&, const CameraView& view, const DagNode&, const DisplayOptions&,
                              double ratio) {
    glViewport(0, 0, int(view.Width() * ratio), int(view.Height() * ratio));
    glClearColor(0.4f, 0.42f, 0.44f, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

WEAK void SelectTool::Press(const QPointF&) {}
WEAK bool SelectTool::Drag(const QPointF&) {
    return false;
}
WEAK void SelectTool::Release(View&, const QPointF&, Qt::KeyboardModifiers, const DisplayOptions&) {}
WEAK QRectF SelectTool::Marquee() const {
    return {};
}

} // namespace lightbox
