#pragma once

#include <QPointF>
#include <QSize>
#include <Qt>

#include <memory>

namespace lightbox {

class DagNode;
class SceneFiles;

/// Moves a camera with the pointer: tumble, track and dolly around its centre of interest, and 2D pan and
/// zoom. Pointer positions are in view pixels from the top left, as in the widget's events. Locked or driven
/// attributes of the camera do not change. Navigation does not go on the undo queue.
class ViewNavigation {
public:
    enum class Mode { None, Tumble, Track, Dolly, Pan2d, Zoom2d };

    explicit ViewNavigation(SceneFiles& files)
        : files_(files) {}

    /// The mode of a drag with the given buttons and modifiers. `is2dKeyHeld`: the 2D key (backslash) is
    /// held.
    static Mode ModeFor(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, bool is2dKeyHeld);

    /// Starts a drag. `size` is the view's size in view pixels.
    void Begin(Mode mode, const std::shared_ptr<DagNode>& camera, const QPointF& position, const QSize& size);
    void Move(const QPointF& position);
    void End() { mode_ = Mode::None; }
    Mode Current() const { return mode_; }

    /// Dollies by the mouse wheel: 120 is one notch; positive moves nearer.
    void Wheel(const std::shared_ptr<DagNode>& camera, int delta);

private:
    struct Pose;

    void Tumble(const QPointF& delta);
    void Track(const QPointF& delta);
    /// Multiplies the distance to the centre of interest, or the orthographic width, by the factor.
    void Dolly(double factor);
    void Pan2d(const QPointF& delta);
    void Zoom2d(double factor);
    void Changed();

    SceneFiles& files_;
    Mode mode_ = Mode::None;
    std::shared_ptr<DagNode> camera_;
    QPointF last_;
    QSize size_;
};

} // namespace lightbox
