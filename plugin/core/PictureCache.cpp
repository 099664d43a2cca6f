#include "core/PictureCache.h"

#include "core/Frame.h"

#include <algorithm>
#include <vector>

namespace vellix {

Picture PictureCache::Find(const Frame* frame) {
    Picture picture;
    picture.key = frame == nullptr ? 0 : frame->GetPictureKey();
    if (picture.key != 0) {
        auto entry = entries_.find(picture.key);
        if (entry == entries_.end()) {
            const std::shared_ptr<const PackedTiles> tiles = Pack(*frame);
            entry = entries_.emplace(picture.key, Entry{tiles, round_}).first;
            bytes_ += tiles->ByteCount();
        }
        entry->second.round = round_;
        picture.drawing = entry->second.tiles;
    }
    return picture;
}

/// Packs only what the last stroke changed, or its undo, if the picture before that is known.
std::shared_ptr<const PackedTiles> PictureCache::Pack(const Frame& frame) const {
    const Frame::Change change = frame.LastChange();
    const auto earlier = entries_.find(change.before);
    return change.before != 0 && earlier != entries_.end()
               ? std::make_shared<PackedTiles>(frame.PeekImage(), *earlier->second.tiles, change.tiles)
               : std::make_shared<PackedTiles>(frame.PeekImage());
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
