#pragma once

#include "core/Layer.h"
#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <vector>

namespace vellix {

/// Frames of a layer that go out and others that come in, and the way back, which gives the layer the very
/// frames that went out. Whatever is outside the layer is owned here, packed.
class FrameExchange : private NonCopyable {
public:
    FrameExchange() = default;
    ~FrameExchange();

    // What is exchanged; to be said before the first Do.
    /// The frames at these whole-frame times go out. The times rise.
    void TakeOut(std::vector<int> times);
    /// An empty frame comes in.
    void PutBlank(const MTime& time);
    void Put(std::unique_ptr<Frame> frame);

    /// False when a frame could not come in, since its time was taken. The others did.
    bool Do(Layer& layer);
    /// False when a frame could not go back. It is kept.
    bool Undo(Layer& layer);

    /// Are there frames of Put that are not in a layer?
    bool HasWaiting() const;

private:
    std::vector<int> timesOut_;
    FrameList out_; ///< what went out, while it is
    std::vector<MTime> blanks_;
    std::vector<int> blankTimes_; ///< where empty frames came in
    FrameList waiting_;           ///< what has yet to come in, or came out again
    std::vector<int> putTimes_;   ///< where those came in
};

} // namespace vellix
