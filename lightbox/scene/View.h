#pragma once

#include <memory>
#include <string>

class QWidget;

namespace lightbox {

class DagNode;

/// A viewport, as everything below the window sees it. View pixels are Qt's device-independent pixels, from
/// the bottom left with y upward: positions of the pointer, of widgets and of what is drawn agree at every
/// scale of the screen.
class View {
public:
    virtual ~View() = default;

    /// The name of its panel: "modelPanel4".
    virtual std::string PanelName() const = 0;
    /// The widget that the scene is drawn in, which gets the pointer. The view owns it.
    virtual QWidget& Widget() = 0;
    /// Size in view pixels.
    virtual int Width() const = 0;
    virtual int Height() const = 0;

    /// The shape of the camera that is looked through; never null, since a view whose camera goes looks
    /// through persp.
    virtual std::shared_ptr<DagNode> Camera() const = 0;
    /// Takes the shape of a camera.
    virtual void SetCamera(const std::shared_ptr<DagNode>& camera) = 0;
    /// Which of the two renderers draws it.
    virtual bool IsViewport2() const = 0;

    /// Draws it again: at once, or when the event loop comes to it.
    virtual void Refresh(bool now) = 0;
    /// Makes the view's OpenGL context current; the calls nest.
    virtual void BeginGl() = 0;
    virtual void EndGl() = 0;
    /// Shows what was drawn with OpenGL into the view since it was drawn last, without drawing the view
    /// itself: what a tool of the legacy viewport adds and takes away again.
    virtual void Present() = 0;
};

} // namespace lightbox
