#include "core/PictureCache.h"

#include "core/Frame.h"

#include <algorithm>
#include <vector>

namespace vellix {

Picture PictureCache::Find(const Frame* frame) {
    Picture picture;
    picture.key = frame ? frame->GetPictureKey() : 0;
    if (picture.key != 0) {
        const auto entry = entries_.find(picture.key);
        if (entry == entries_.end()) {
            picture.drawing = Add(picture.key, *frame, round_).tiles;
        } else {
            entry->second.round = round_;
            picture.drawing = entry->second.tiles;
        }
    }
    return picture;
}

bool PictureCache::ReadAhead(const Frame* frame) {
    const qint64 key = frame ? frame->GetPictureKey() : 0;
    if (key == 0 || entries_.count(key) != 0 || aheadBytes_ > spareBytes_ / 2) {
        return false;
    }
    // Spare in the round that runs, and the last to go.
    aheadBytes_ += Add(key, *frame, round_ - 1).tiles->ByteCount();
    return true;
}

const PictureCache::Entry& PictureCache::Add(qint64 key, const Frame& frame, quint64 round) {
    const std::shared_ptr<const PackedTiles> tiles = Pack(frame);
    const Entry& entry = entries_.emplace(key, Entry{tiles, round}).first->second;
    bytes_ += tiles->ByteCount();
    return entry;
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
    aheadBytes_ = 0;
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
