#pragma once

#include "paint/PackedTiles.h"

#include <QImage>

#include <cstddef>
#include <map>
#include <memory>

namespace vellix {

/// Drawings packed for composition, found again by what QImage::cacheKey tells about their pixels. Those that
/// were not asked for in the last round go, the oldest first, when they take more memory than they may.
class PictureCache {
public:
    /// Memory in bytes that is kept beyond what the last round asked for.
    static constexpr std::size_t SPARE_BYTES = 64 << 20;

    std::shared_ptr<const PackedTiles> Find(const QImage& image);
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
