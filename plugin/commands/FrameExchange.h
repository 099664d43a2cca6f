#pragma once

#include "core/Layer.h"
#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <vector>

namespace vellix {

/// Removes some frames of a layer and inserts others. Undo restores the very frames that were removed. Frames
/// outside the layer are owned here, packed.
class FrameExchange : private NonCopyable {
public:
    FrameExchange() = default;
    ~FrameExchange();

    // The plan of the exchange; complete it before the first Do.
    /// Removes the frames at these times (whole frames, ascending).
    void TakeOut(std::vector<int> times);
    /// Inserts an empty frame.
    void PutBlank(const MTime& time);
    /// Inserts this frame at its own time.
    void Put(std::unique_ptr<Frame> frame);

    /// Returns false if a frame could not be inserted because its time was taken. The others are inserted.
    bool Do(Layer& layer);
    /// Returns false if a frame could not be restored because its time was taken. That frame is kept here.
    bool Undo(Layer& layer);

    /// Whether there are frames of Put outside the layer.
    bool HasWaiting() const;

private:
    std::vector<int> timesOut_;
    FrameList out_; ///< removed frames, while they are outside the layer
    std::vector<MTime> blanks_;
    std::vector<int> blankTimes_; ///< times of the inserted empty frames
    FrameList waiting_;           ///< frames of Put, while they are outside the layer
    std::vector<int> putTimes_;   ///< times of the inserted frames of Put
};

} // namespace vellix
