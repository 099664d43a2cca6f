#pragma once

#include "core/Identity.h"
#include "core/Layer.h"
#include "paint/NonCopyable.h"

#include <maya/MTime.h>

#include <vector>

class QString;

namespace vellix {

/// Removes some frames of a layer and inserts others. Undo and redo move these very frames in and out. Frames
/// outside the layer are owned here, packed. Each step does everything or, if a frame is missing or a time is
/// taken, nothing.
class FrameExchange : private NonCopyable {
public:
    FrameExchange() = default;
    ~FrameExchange();

    // The plan of the exchange; complete it before the first Do.
    /// Removes this frame of the layer. Returns false for one that a press has only just added; it stays,
    /// since its stroke goes on.
    bool TakeOut(const Layer& layer, const Frame& frame);
    /// Inserts an empty frame.
    void PutBlank(const MTime& time);
    /// Inserts this frame at its own time.
    void Put(std::unique_ptr<Frame> frame);

    /// Both return false, with the reason in `refusal` and nothing changed, if they cannot be done.
    bool Do(Layer& layer, QString& refusal);
    bool Undo(Layer& layer, QString& refusal);

private:
    std::vector<FrameId> outIds_;
    FrameList out_; ///< removed frames, while they are outside the layer
    std::vector<FrameId> inIds_;
    FrameList in_; ///< inserted frames, while they are outside the layer
};

} // namespace vellix
