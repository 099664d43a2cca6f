#pragma once

#include <QPointF>
#include <QSize>
#include <Qt>

#include <memory>

namespace lightbox {

class DagNode;
class Host;

/// Moves a camera with the pointer: tumble, track and dolly around its centre of interest, and 2D pan and
/// zoom. Pointer positions in view pixels from the top left, as the widget's events have them. What the
/// camera has locked or driven stays as it is. None of it goes on the undo queue.
class ViewNavigation {
public:
    enum class Mode { None, Tumble, Track, Dolly, Pan2d, Zoom2d };

    explicit ViewNavigation(Host& host)
        : host_(host) {}

    /// What a drag with those buttons does, with those modifiers and the 2D key (backslash) held or not.
    static Mode ModeFor(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, bool is2dKeyHeld);

    /// A drag begins in a view of that size.
    void Begin(Mode mode, const std::shared_ptr<DagNode>& camera, const QPointF& position, const QSize& size);
    void Move(const QPointF& position);
    void End() { mode_ = Mode::None; }
    Mode Current() const { return mode_; }

    /// Dollies by turns of the wheel: 120 is one notch, upward goes nearer.
    void Wheel(const std::shared_ptr<DagNode>& camera, int delta);

private:
    struct Pose;

    void Tumble(const QPointF& delta);
    void Track(const QPointF& delta);
    /// Brings the distance, or the orthographic width, to that share.
    void Dolly(double factor);
    void Pan2d(const QPointF& delta);
    void Zoom2d(double factor);
    void Changed();

    Host& host_;
    Mode mode_ = Mode::None;
    std::shared_ptr<DagNode> camera_;
    QPointF last_;
    QSize size_;
};

} // namespace lightbox
