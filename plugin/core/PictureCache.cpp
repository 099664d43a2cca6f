#include "core/PictureCache.h"

#include "core/Frame.h"

#include <algorithm>
#include <vector>

namespace vellix {

Picture PictureCache::Find(const Frame* frame) {
    Picture picture;
    picture.key = frame ? frame->GetPictureKey() : 0;
    if (picture.key != 0) {
        auto entry = entries_.find(picture.key);
        if (entry == entries_.end()) {
            const auto tiles = std::make_shared<PackedTiles>(frame->PeekImage());
            entry = entries_.emplace(picture.key, Entry{tiles, round_}).first;
            bytes_ += tiles->ByteCount();
        }
        entry->second.round = round_;
        picture.drawing = entry->second.tiles;
    }
    return picture;
}

void PictureCache::EndRound() {
    const quint64 round = round_++;
    if (bytes_ <= spareBytes_) {
        return;
    }
    std::vector<std::pair<quint64, qint64>> spare; // round, key
    std::size_t spareBytes = 0;
    for (const auto& item : entries_) {
        if (item.second.round != round) {
            spare.emplace_back(item.second.round, item.first);
            spareBytes += item.second.tiles->ByteCount();
        }
    }
    std::sort(spare.begin(), spare.end());
    for (auto oldest = spare.begin(); oldest != spare.end() && spareBytes > spareBytes_; ++oldest) {
        const auto found = entries_.find(oldest->second);
        const std::size_t bytes = found->second.tiles->ByteCount();
        spareBytes -= bytes;
        bytes_ -= bytes;
        entries_.erase(found);
    }
}

} // namespace vellix
