#include "scene/UndoQueue.h"

#include "scene/EventBus.h"

#include <QScopedValueRollback>

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
    if (transactions_ > 0 && running_ == Running::None) {
        waiting_.push_back({std::move(item), isRecorded});
    } else {
        Pass(std::move(item), isRecorded);
    }
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
    std::vector<Waiting> waiting;
    std::swap(waiting, waiting_);
    for (Waiting& edit : waiting) {
        Pass(std::move(edit.item), edit.isRecorded);
    }
}

void UndoQueue::TakeBack(std::size_t start) {
    if (running_ != Running::None) {
        return;
    }
    const QScopedValueRollback<Running> running(running_, Running::Undo);
    while (waiting_.size() > start) {
        const Waiting edit = std::move(waiting_.back());
        waiting_.pop_back();
        edit.item->Undo();
    }
}

UndoQueue::Transaction::~Transaction() {
    if (!isCommitted_) {
        queue_.TakeBack(start_);
    }
    if (--queue_.transactions_ == 0) {
        queue_.Settle();
    }
}

void UndoQueue::Record(std::unique_ptr<UndoItem> item) {
    // Destroying items may call back, so the queue must be consistent first.
    std::vector<Chunk> dropped;
    std::swap(dropped, undone_);
    if (!open_) {
        open_ = std::make_unique<Chunk>();
        open_->name = openName_;
    }
    open_->items.push_back(std::move(item));
    open_->state = nextState_++;
    if (OpenChunks() == 0) {
        CompleteOpen();
    }
    events_.SetCondition("UndoAvailable", true);
    events_.SetCondition("RedoAvailable", false);
}

void UndoQueue::CompleteOpen() {
    openName_.clear();
    if (open_) {
        done_.push_back(std::move(*open_));
        open_.reset();
        Trim();
    }
}

void UndoQueue::OpenChunk(const std::string& name, bool implicit) {
    ++(implicit ? implicitDepth_ : explicitDepth_);
    if (!name.empty() && openName_.empty()) {
        openName_ = name;
        if (open_ && open_->name.empty()) {
            open_->name = name;
        }
    }
}

void UndoQueue::CloseChunk(bool implicit) {
    int& depth = implicit ? implicitDepth_ : explicitDepth_;
    if (depth > 0) {
        --depth;
        if (OpenChunks() == 0) {
            CompleteOpen();
        }
    }
}

bool UndoQueue::Undo() {
    if (running_ != Running::None || explicitDepth_ > 0) {
        return false;
    }
    Settle();
    CompleteOpen();
    if (done_.empty()) {
        return false;
    }
    {
        const QScopedValueRollback<Running> running(running_, Running::Undo);
        Chunk chunk = std::move(done_.back());
        done_.pop_back();
        for (auto item = chunk.items.rbegin(); item != chunk.items.rend(); ++item) {
            (*item)->Undo();
        }
        undone_.push_back(std::move(chunk));
    }
    events_.SetCondition("UndoAvailable", CanUndo());
    events_.SetCondition("RedoAvailable", CanRedo());
    events_.Fire("Undo");
    return true;
}

bool UndoQueue::Redo() {
    if (running_ != Running::None || explicitDepth_ > 0) {
        return false;
    }
    Settle();
    if (undone_.empty()) {
        return false;
    }
    {
        const QScopedValueRollback<Running> running(running_, Running::Redo);
        Chunk chunk = std::move(undone_.back());
        undone_.pop_back();
        for (const std::unique_ptr<UndoItem>& item : chunk.items) {
            item->Redo();
        }
        done_.push_back(std::move(chunk));
    }
    events_.SetCondition("UndoAvailable", CanUndo());
    events_.SetCondition("RedoAvailable", CanRedo());
    events_.Fire("Redo");
    return true;
}

bool UndoQueue::CanUndo() const {
    return open_ || !done_.empty();
}

std::string UndoQueue::UndoName() const {
    return open_ ? open_->Name() : done_.empty() ? std::string() : done_.back().Name();
}

std::string UndoQueue::RedoName() const {
    return undone_.empty() ? std::string() : undone_.back().Name();
}

std::vector<std::string> UndoQueue::Names() const {
    std::vector<std::string> names;
    for (const Chunk& chunk : done_) {
        names.push_back(chunk.Name());
    }
    if (open_) {
        names.push_back(open_->Name());
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
    std::deque<Chunk> done = std::move(done_);
    std::vector<Chunk> undone = std::move(undone_);
    std::unique_ptr<Chunk> open = std::move(open_);
    done_.clear();
    undone_.clear();
    openName_.clear();
    // Destroy the newest first, as undo would: an item may depend on older ones.
    undone.clear();
    open.reset();
    while (!done.empty()) {
        done.pop_back();
    }
    events_.SetCondition("UndoAvailable", false);
    events_.SetCondition("RedoAvailable", false);
}

std::uint64_t UndoQueue::State() const {
    return open_ ? open_->state : done_.empty() ? baseState_ : done_.back().state;
}

} // namespace lightbox
