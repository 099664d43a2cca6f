#include "scene/UndoQueue.h"

#include "scene/EventBus.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace lightbox {

std::string UndoQueue::Chunk::Name() const {
    return !name.empty() || items.empty() ? name : items.front()->Name();
}

UndoQueue::UndoQueue(EventBus& events)
    : events_(events) {}

UndoQueue::~UndoQueue() {
    Flush();
}

bool UndoQueue::IsRecording() const {
    return enabled_ && paused_ == 0 && running_ == Running::None;
}

void UndoQueue::Push(std::unique_ptr<UndoItem> item) {
    const bool isRecorded = IsRecording();
    try {
        if (transactions_ > 0 && running_ == Running::None) {
            waiting_.emplace_back();
            waiting_.back() = {std::move(item), isRecorded};
        } else {
            if (isRecorded) {
                MakeRoom(1);
            }
            Pass(std::move(item), isRecorded);
        }
    } catch (...) {
        if (item) {
            TakeBack(*item);
        }
        throw;
    }
    CompleteUnlessHeld();
}

void UndoQueue::MakeRoom(std::size_t count) {
    std::list<Chunk> added;
    if (open_.empty()) {
        added.emplace_back();
        added.back().name = openName_;
    }
    std::vector<std::unique_ptr<UndoItem>>& items = added.empty() ? open_.back().items : added.back().items;
    if (items.capacity() - items.size() < count) {
        items.reserve(std::max(2 * items.size(), items.size() + count));
    }
    open_.splice(open_.end(), added);
}

void UndoQueue::Pass(std::unique_ptr<UndoItem> item, bool isRecorded) {
    if (isRecorded) {
        Record(std::move(item));
    } else if (!enabled_ && running_ == Running::None) {
        // The edit is not recorded, but the scene has changed.
        (done_.empty() ? baseState_ : done_.back().state) = nextState_++;
    }
}

void UndoQueue::Settle() {
    const auto recorded =
        std::count_if(waiting_.begin(), waiting_.end(), [](const Waiting& edit) { return edit.isRecorded; });
    if (recorded > 0) {
        MakeRoom(static_cast<std::size_t>(recorded));
    }
    std::vector<Waiting> waiting;
    std::swap(waiting, waiting_);
    for (Waiting& edit : waiting) {
        Pass(std::move(edit.item), edit.isRecorded);
    }
    CompleteUnlessHeld();
}

void UndoQueue::TakeBack(UndoItem& item) {
    const QScopedValueRollback<Running> running(running_, Running::Undo);
    try {
        item.Undo();
    } catch (const std::exception&) {
        // What cannot be taken back either stays; the edits before it are still taken back.
    }
}

void UndoQueue::TakeBack(std::size_t start) {
    if (running_ != Running::None) {
        return;
    }
    while (waiting_.size() > start) {
        const Waiting edit = std::move(waiting_.back());
        waiting_.pop_back();
        TakeBack(*edit.item);
    }
}

void UndoQueue::Transaction::Commit() {
    if (queue_.transactions_ == 1) {
        // What is called back passes its edits on itself.
        const QScopedValueRollback<int> ended(queue_.transactions_, 0);
        queue_.Settle();
    }
    isCommitted_ = true;
}

UndoQueue::Transaction::~Transaction() {
    if (!isCommitted_) {
        queue_.TakeBack(start_);
    }
    --queue_.transactions_;
}

void UndoQueue::Record(std::unique_ptr<UndoItem> item) {
    // Destroying items may call back, so the queue must be consistent first.
    std::list<Chunk> dropped;
    std::swap(dropped, undone_);
    MakeRoom(1); // what was called back may have completed the chunk that had room
    open_.back().items.push_back(std::move(item));
    open_.back().state = nextState_++;
    events_.SetCondition("UndoAvailable", true);
    events_.SetCondition("RedoAvailable", false);
}

void UndoQueue::CompleteUnlessHeld() {
    if (OpenChunks() == 0) {
        CompleteOpen();
    }
}

void UndoQueue::CompleteOpen() {
    openName_.clear();
    done_.splice(done_.end(), open_);
    Trim();
}

void UndoQueue::OpenChunk(const std::string& name, bool implicit) {
    ++(implicit ? implicitDepth_ : explicitDepth_);
    if (!name.empty() && openName_.empty()) {
        openName_ = name;
        if (!open_.empty() && open_.back().name.empty()) {
            open_.back().name = name;
        }
    }
}

void UndoQueue::CloseChunk(bool implicit) {
    int& depth = implicit ? implicitDepth_ : explicitDepth_;
    if (depth > 0) {
        --depth;
        CompleteUnlessHeld();
    }
}

bool UndoQueue::Undo() {
    if (running_ != Running::None || explicitDepth_ > 0) {
        return false;
    }
    Settle();
    CompleteOpen();
    if (!RunLast(Running::Undo, done_, undone_)) {
        return false;
    }
    events_.Fire("Undo");
    return true;
}

bool UndoQueue::Redo() {
    if (running_ != Running::None || explicitDepth_ > 0) {
        return false;
    }
    Settle();
    if (!RunLast(Running::Redo, undone_, done_)) {
        return false;
    }
    events_.Fire("Redo");
    return true;
}

bool UndoQueue::RunLast(Running direction, std::list<Chunk>& from, std::list<Chunk>& to) {
    if (from.empty()) {
        return false;
    }
    {
        const QScopedValueRollback<Running> running(running_, direction);
        // An item may flush the queue, so the chunk is in neither list while it runs.
        std::list<Chunk> chunk;
        chunk.splice(chunk.end(), from, std::prev(from.end()));
        try {
            Run(direction, chunk.back().items);
        } catch (...) {
            from.splice(from.end(), chunk);
            throw;
        }
        to.splice(to.end(), chunk);
    }
    events_.SetCondition("UndoAvailable", CanUndo());
    events_.SetCondition("RedoAvailable", CanRedo());
    return true;
}

void UndoQueue::Run(Running direction, const std::vector<std::unique_ptr<UndoItem>>& items) {
    const bool undoes = direction == Running::Undo;
    const auto item = [&](std::size_t step) -> UndoItem& {
        return *items[undoes ? items.size() - 1 - step : step];
    };
    std::size_t step = 0;
    try {
        for (; step < items.size(); ++step) {
            undoes ? item(step).Undo() : item(step).Redo();
        }
    } catch (...) {
        // Back to where the chunk began, as far as that goes.
        while (step-- > 0) {
            try {
                undoes ? item(step).Redo() : item(step).Undo();
            } catch (const std::exception&) {
            }
        }
        throw;
    }
}

bool UndoQueue::CanUndo() const {
    return !open_.empty() || !done_.empty();
}

std::string UndoQueue::UndoName() const {
    return !open_.empty() ? open_.back().Name() : done_.empty() ? std::string() : done_.back().Name();
}

std::string UndoQueue::RedoName() const {
    return undone_.empty() ? std::string() : undone_.back().Name();
}

std::vector<std::string> UndoQueue::Names() const {
    std::vector<std::string> names;
    for (const Chunk& chunk : done_) {
        names.push_back(chunk.Name());
    }
    if (!open_.empty()) {
        names.push_back(open_.back().Name());
    }
    return names;
}

void UndoQueue::SetEnabled(bool enabled, bool keepQueue) {
    if (!enabled && !keepQueue) {
        Flush();
    }
    enabled_ = enabled;
}

void UndoQueue::SetLimit(std::size_t limit) {
    limit_ = limit;
    Trim();
}

void UndoQueue::Trim() {
    while (limit_ != 0 && done_.size() > limit_) {
        const Chunk dropped = std::move(done_.front());
        done_.pop_front();
        baseState_ = dropped.state;
    }
}

void UndoQueue::Flush() {
    Settle();
    baseState_ = State();
    std::list<Chunk> done;
    std::list<Chunk> undone;
    std::list<Chunk> open;
    std::swap(done, done_);
    std::swap(undone, undone_);
    std::swap(open, open_);
    openName_.clear();
    // Destroy the newest first, as undo would: an item may depend on older ones.
    undone.clear();
    open.clear();
    while (!done.empty()) {
        done.pop_back();
    }
    events_.SetCondition("UndoAvailable", false);
    events_.SetCondition("RedoAvailable", false);
}

std::uint64_t UndoQueue::State() const {
    return !open_.empty() ? open_.back().state : done_.empty() ? baseState_ : done_.back().state;
}

} // namespace lightbox
