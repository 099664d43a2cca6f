#pragma once

#include "paint/NonCopyable.h"

#include <maya/MString.h>
#include <maya/MTime.h>

#include <QByteArray>

#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace vellix {

class Layer;

/// Loads stored drawings into layers as frames. Two threads check the PNG bytes by a full decode, a few at a
/// time. The calling thread creates the frames, and reports bad drawings, in the order in which they were
/// added. A frame keeps its checked bytes and unpacks them when it is first displayed.
class DrawingLoader : private NonCopyable {
public:
    enum class Report { Errors, Nothing };

    explicit DrawingLoader(Report report);
    /// Calls Finish first.
    ~DrawingLoader();

    /// `index` is the frame's position in its layer as stored, for messages. The layer must live until
    /// Finish.
    void AddHex(Layer& layer, int index, const MTime& time, MString hex);
    void AddBytes(Layer& layer, int index, const MTime& time, const QByteArray& png);

    /// Returns when every added drawing is in its layer or reported.
    void Finish();

private:
    enum class Outcome { Loaded, NotOpened, NotDecoded };
    struct Checked {
        Outcome outcome;
        QByteArray png;
    };
    struct Pending {
        Layer* layer;
        int index;
        MTime time;
        std::future<Checked> checked;
    };

    static Checked Check(QByteArray png);
    template <typename Decode>
    void Add(Layer& layer, int index, const MTime& time, Decode decode);
    void StartThreads();
    void RunQueuedTasks();
    void InsertOldest();
    void ReportFailure(const Pending& drawing, Outcome outcome) const;

    const Report report_;
    std::deque<Pending> pending_;

    std::vector<std::thread> threads_;
    std::mutex mutex_; ///< guards the members below
    std::condition_variable wake_;
    std::deque<std::packaged_task<Checked()>> queue_;
    bool done_ = false;
};

} // namespace vellix
