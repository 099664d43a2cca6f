#include "core/PictureCache.h"

#include "core/Frame.h"

#include <algorithm>
#include <vector>

namespace vellix {

Picture PictureCache::Find(const Frame* frame) {
    Picture picture;
    picture.key = frame == nullptr ? 0 : frame->GetPictureKey();
    if (picture.key != 0) {
        Entry& entry = m_entries[picture.key];
        if (entry.tiles == nullptr) {
            entry.tiles = std::make_shared<PackedTiles>(frame->PeekImage());
        }
        entry.round = m_round;
        picture.drawing = entry.tiles;
    }
    return picture;
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
