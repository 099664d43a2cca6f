#pragma once

#include <memory>
#include <string>

class QWidget;

namespace lightbox {

class DagNode;

/// A viewport as seen by the code below the window. View pixels are Qt's device-independent pixels from the
/// bottom left, y upward: positions of the pointer, of widgets and of drawings agree at every screen scale.
class View {
public:
    virtual ~View() = default;

    /// The name of its panel: "modelPanel4".
    virtual std::string PanelName() const = 0;
    /// The widget that draws the scene and gets pointer events. The view owns it.
    virtual QWidget& Widget() = 0;
    /// Size in view pixels.
    virtual int Width() const = 0;
    virtual int Height() const = 0;

    /// The shape of the view's camera; never null, since a view whose camera is deleted switches to persp.
    virtual std::shared_ptr<DagNode> Camera() const = 0;
    /// Sets the camera, given by its shape.
    virtual void SetCamera(const std::shared_ptr<DagNode>& camera) = 0;
    /// Whether it uses Viewport 2.0 or the legacy viewport.
    virtual bool IsViewport2() const = 0;

    /// Redraws the view: at once with `now`, else from the event loop.
    virtual void Refresh(bool now) = 0;
    /// Makes the view's OpenGL context current; calls nest.
    virtual void BeginGl() = 0;
    virtual void EndGl() = 0;
    /// Shows what was drawn into the view with OpenGL since the last redraw, without redrawing the view: for
    /// the temporary drawings of a tool in the legacy viewport.
    virtual void Present() = 0;
};

} // namespace lightbox
