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

/// Puts stored drawings into layers as frames. Their PNG bytes are checked by a full decode on two threads, a
/// few at a time; frames are made, and bad ones reported, on the calling thread in the order in which they
/// were added. A frame keeps its checked bytes and unpacks them when it is first shown.
class DrawingLoader : private NonCopyable {
public:
    enum class Report { Errors, Nothing };

    explicit DrawingLoader(Report report);
    /// Finishes first.
    ~DrawingLoader();

    /// `index` is the frame's place in its layer as stored. The layer has to live until Finish.
    void AddHex(Layer& layer, int index, const MTime& time, MString hex);
    void AddBytes(Layer& layer, int index, const MTime& time, const QByteArray& png);

    /// Returns when everything that was added is in its layer.
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
    void WorkOffQueue();
    void TakeFirst();
    void ReportBad(const Pending& drawing, Outcome outcome) const;

    const Report report_;
    std::deque<Pending> pending_;

    std::vector<std::thread> threads_;
    std::mutex mutex_; ///< guards what follows
    std::condition_variable wake_;
    std::deque<std::packaged_task<Checked()>> queue_;
    bool done_ = false;
};

} // namespace vellix
