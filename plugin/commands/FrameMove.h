#pragma once

#include "core/Layer.h"

#include <maya/MTime.h>

#include <vector>

class QString;

namespace vellix {

/// Moves the frames of a range, both ends included, by a number of frames. They may pass over frames that
/// stay, but not land on one.
class FrameMove {
public:
    FrameMove() = default;
    FrameMove(int offset, int first, int last);

    bool IsStill() const { return m_offset == 0; }

    /// Nothing moves unless everything can; otherwise false, and `refusal` says why.
    bool Do(Layer& layer, QString& refusal);
    /// False when a frame could not go back, since its time was taken.
    bool Undo(Layer& layer);

private:
    bool FindDestinations(const Layer& layer, QString& refusal);

    int m_offset = 0;
    int m_first = 0;
    int m_last = -1;
    std::vector<int> m_from; ///< whole frames, rising
    std::vector<int> m_to;
    std::vector<MTime> m_before; ///< the exact times of what is at m_from
};

} // namespace vellix
