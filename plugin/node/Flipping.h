#pragma once

#include <QBasicTimer>
#include <QObject>

#include <memory>
#include <vector>

namespace vellix {

class LayerManager;

/// Shows other drawings of the master's active camera while a key is held, and the current ones again when it
/// is released. Nothing in the scene changes, not even the time. Also ends when the program or a window loses
/// the focus, on a press of a button or a pen, when the time or the drawing changes, and when a stroke begins
/// (see LayerManager::Flip). Main thread only.
class Flipping : public QObject {
public:
    ~Flipping() override;

    /// Shows the drawing so many keys on (before, if negative), until End. Returns false, and logs why, if
    /// there is none or something is just being drawn or played.
    static bool Show(int steps);
    /// Goes back and forth over the drawings around the current one, as many and as fast as the settings say,
    /// until End. Begins with the previous one. Refuses as Show does.
    static bool Roll();
    /// One of several keys that may be held at once is let go: the one that showed so many keys on, or rolled
    /// (0). The one pressed last of the others goes on; without one it ends.
    static void LetGo(int steps);
    /// Shows the current drawings again, whatever key is held. Does nothing if they are shown.
    static void End();
    /// Ends, before the plug-in is unloaded.
    static void Stop();

private:
    Flipping() = default;

    static Flipping* Begin();
    void Hold(int steps);
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool Flip(int steps);
    void OnTimer();
    bool RollOn();

    std::weak_ptr<LayerManager> layers_; ///< the drawing that is flipped; none between flips
    /// Runs while rolling. Without a connection: making one ends the program when memory is short.
    QBasicTimer timer_;
    std::vector<int> held_; ///< the steps of each flip whose end is awaited, the last one shown; ROLL
    int steps_ = 0;         ///< of the roll
    int direction_ = -1;
};

} // namespace vellix
