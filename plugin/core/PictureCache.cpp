#include "core/PictureCache.h"

#include <algorithm>
#include <vector>

namespace vellix {

std::shared_ptr<const PackedTiles> PictureCache::Find(const QImage& image) {
    Entry& entry = m_entries[image.cacheKey()];
    if (entry.tiles == nullptr) {
        entry.tiles = std::make_shared<PackedTiles>(image);
    }
    entry.round = m_round;
    return entry.tiles;
}

void PictureCache::EndRound() {
    std::vector<std::pair<quint64, qint64>> spare; // round, key
    std::size_t spareBytes = 0;
    for (const auto& item : m_entries) {
        if (item.second.round != m_round) {
            spare.emplace_back(item.second.round, item.first);
            spareBytes += item.second.tiles->ByteCount() + sizeof(PackedTiles);
        }
    }
    ++m_round;
    if (spareBytes <= SPARE_BYTES) {
        return;
    }
    std::sort(spare.begin(), spare.end());
    for (const auto& oldest : spare) {
        const auto found = m_entries.find(oldest.second);
        spareBytes -= found->second.tiles->ByteCount() + sizeof(PackedTiles);
        m_entries.erase(found);
        if (spareBytes <= SPARE_BYTES) {
            return;
        }
    }
}

} // namespace vellix
