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
    /// Memory in bytes that is kept beyond what the last round asked for.
    static constexpr std::size_t SPARE_BYTES = 256 << 20;

    /// The frame's drawing, nothing for a null frame or one without a picture.
    Picture Find(const Frame* frame);
    /// Ends a round: lets go of what is too much.
    void EndRound();

private:
    struct Entry {
        std::shared_ptr<const PackedTiles> tiles;
        quint64 round;
    };

    std::map<qint64, Entry> m_entries;
    quint64 m_round = 0;
};

} // namespace vellix
