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
            m_bytes += entry.tiles->ByteCount();
        }
        entry.round = m_round;
        picture.drawing = entry.tiles;
    }
    return picture;
}

void PictureCache::EndRound() {
    const quint64 round = m_round++;
    if (m_bytes <= m_spareBytes) {
        return;
    }
    std::vector<std::pair<quint64, qint64>> spare; // round, key
    std::size_t spareBytes = 0;
    for (const auto& item : m_entries) {
        if (item.second.round != round) {
            spare.emplace_back(item.second.round, item.first);
            spareBytes += item.second.tiles->ByteCount();
        }
    }
    std::sort(spare.begin(), spare.end());
    for (auto oldest = spare.begin(); oldest != spare.end() && spareBytes > m_spareBytes; ++oldest) {
        const auto found = m_entries.find(oldest->second);
        const std::size_t bytes = found->second.tiles->ByteCount();
        spareBytes -= bytes;
        m_bytes -= bytes;
        m_entries.erase(found);
    }
}

} // namespace vellix
