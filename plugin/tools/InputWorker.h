#pragma once

#include "paint/ToolType.h"

#include <QObject>
#include <QPoint>

#include <atomic>

class QWidget;

namespace vellix {

/// Samples the pointer on a thread of its own while a stroke is drawn, whatever the main thread is busy with.
/// The tool's values are those at construction; of the view it knows the place on the screen, never the
/// widget, which may go at any time.
class InputWorker : public QObject {
    Q_OBJECT

public:
    InputWorker(const QWidget& view, ToolType tool);

    /// Main thread: the view may have moved.
    void SetView(const QWidget& view);

Q_SIGNALS:
    /// Position in view pixels, from the bottom left; the tool's size in image pixels; opacity, with the
    /// pen's pressure in it, and hardness 0..1.
    void MousePositionChanged(const QPoint& position, int size, float opacity, float hardness);

public Q_SLOTS:
    /// Samples until Shutdown().
    void Run();
    /// Ends Run() and the thread's event loop.
    void Shutdown();

private:
    void UpdatePosition();
    void Send(const QPoint& position);

    std::atomic<int> m_viewLeft; ///< on the screen
    std::atomic<int> m_viewTop;
    std::atomic<int> m_viewHeight;
    bool m_running = false;
    QPoint m_lastPosition; ///< as it was sent
    int m_size;
    float m_opacity;
    float m_hardness;
    bool m_pressureEnabled;
};

} // namespace vellix
