#pragma once

#include "paint/Picture.h"

#include <cstddef>
#include <map>
#include <memory>

namespace vellix {

class Frame;

/// The drawings of frames, packed for composition: the frames themselves stay packed, so that playing through
/// a scene does not unpack every frame of it. What was not asked for in the last round goes, the oldest
/// first, when it takes more memory than it may.
class PictureCache {
public:
    /// `spareBytes`: memory that is kept beyond what the last round asked for. By default that of some 500
    /// drawings of a few strokes.
    explicit PictureCache(std::size_t spareBytes = 256 << 20)
        : spareBytes_(spareBytes) {}

    /// The frame's drawing, nothing for a null frame or one without a picture.
    Picture Find(const Frame* frame);
    /// Ends a round: lets go of what is too much.
    void EndRound();

private:
    struct Entry {
        std::shared_ptr<const PackedTiles> tiles;
        quint64 round;
    };

    std::size_t spareBytes_;
    std::map<qint64, Entry> entries_;
    quint64 round_ = 0;
    std::size_t bytes_ = 0; ///< of all entries
};

} // namespace vellix
