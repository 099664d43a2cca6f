#include "core/PictureCache.h"

#include "core/Frame.h"
#include "paint/ParallelWork.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace vellix {

Picture PictureCache::Find(const Frame* frame) {
    Picture picture;
    picture.key = frame ? frame->GetPictureKey() : 0;
    if (picture.key != 0) {
        const auto entry = entries_.find(picture.key);
        if (entry == entries_.end()) {
            picture.drawing = Add(picture.key, Pack(*frame), round_).tiles;
        } else {
            entry->second.round = round_;
            picture.drawing = entry->second.tiles;
        }
    }
    return picture;
}

void PictureCache::ReadAll(const std::vector<const Frame*>& frames) {
    struct Missing {
        const Frame* frame;
        std::shared_ptr<const PackedTiles> tiles;
    };
    std::map<qint64, Missing> missing; // by key
    for (const Frame* frame : frames) {
        const qint64 key = frame ? frame->GetPictureKey() : 0;
        if (key != 0 && entries_.count(key) == 0) {
            missing[key].frame = frame;
        }
    }
    if (missing.size() < 2) {
        return; // Find reads a single one
    }
    std::vector<Missing*> list;
    list.reserve(missing.size());
    for (auto& item : missing) {
        list.push_back(&item.second);
    }
    DoInParallel(list.size(), [&](std::size_t i) { list[i]->tiles = Pack(*list[i]->frame); });
    for (auto& item : missing) {
        Add(item.first, std::move(item.second.tiles), round_);
    }
}

bool PictureCache::ReadAhead(const Frame* frame) {
    const qint64 key = frame ? frame->GetPictureKey() : 0;
    if (key == 0 || entries_.count(key) != 0 || aheadBytes_ > spareBytes_ / 2) {
        return false;
    }
    // Spare in the round that runs, and the last to go.
    aheadBytes_ += Add(key, Pack(*frame), round_ - 1).tiles->ByteCount();
    return true;
}

const PictureCache::Entry& PictureCache::Add(qint64 key, std::shared_ptr<const PackedTiles> tiles,
                                             quint64 round) {
    const Entry& entry = entries_.emplace(key, Entry{std::move(tiles), round}).first->second;
    bytes_ += entry.tiles->ByteCount();
    return entry;
}

/// Packs only what the last stroke changed, or its undo, if the picture before that is known.
std::shared_ptr<const PackedTiles> PictureCache::Pack(const Frame& frame) const {
    const Frame::Change change = frame.LastChange();
    const auto earlier = entries_.find(change.before);
    return change.before != 0 && earlier != entries_.end()
               ? std::make_shared<PackedTiles>(frame.PeekTiles(*earlier->second.tiles, change.tiles))
               : std::make_shared<PackedTiles>(frame.PeekTiles());
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
