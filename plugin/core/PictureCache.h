#pragma once

#include "paint/Picture.h"

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

namespace vellix {

class Frame;

/// Caches the drawings of frames in the form that composition reads. The frames themselves stay packed, so
/// playback does not unpack every frame of a scene. When the cache grows beyond its limit, it drops the least
/// recently used drawings, but never those of the last round.
class PictureCache {
public:
    /// `spareBytes`: memory, in bytes, for drawings that the last round did not use. The default holds some
    /// 300 drawings of a few strokes.
    explicit PictureCache(std::size_t spareBytes = 160 << 20)
        : spareBytes_(spareBytes) {}

    /// The frame's drawing, which the cache shares. An empty picture for null or a frame without a picture.
    Picture Find(const Frame* frame);
    /// Reads the drawings of these frames that the cache does not hold, several at a time, for Find in this
    /// round. Null frames, and those without a picture, are passed over. Throws std::bad_alloc when memory is
    /// short.
    void ReadAll(const std::vector<const Frame*>& frames);
    /// Decodes the frame's drawing for a later round. Returns false, and does nothing, if there is nothing to
    /// decode, or if half of the spare memory was filled like this since the last round.
    bool ReadAhead(const Frame* frame);
    /// Ends a round (one rebuild) and drops drawings beyond the limit.
    void EndRound();

private:
    std::shared_ptr<const PackedTiles> Pack(const Frame& frame) const;

    struct Entry {
        std::shared_ptr<const PackedTiles> tiles;
        quint64 round;
    };

    const Entry& Add(qint64 key, std::shared_ptr<const PackedTiles> tiles, quint64 round);

    std::size_t spareBytes_;
    std::map<qint64, Entry> entries_;
    quint64 round_ = 1;
    std::size_t bytes_ = 0;      ///< of all entries
    std::size_t aheadBytes_ = 0; ///< of those read ahead in this round
};

} // namespace vellix
