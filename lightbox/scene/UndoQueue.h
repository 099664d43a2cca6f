#pragma once

#include "scene/NonCopyable.h"
#include "scene/UndoItem.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

class EventBus;

/// The edits that can be undone, grouped in chunks: one undo takes back one chunk. Items that drop from the
/// queue are destroyed. Undo and redo fire the events "Undo" and "Redo".
class UndoQueue : NonCopyable {
public:
    explicit UndoQueue(EventBus& events);
    ~UndoQueue();

    /// Records an edit that was just done, and drops what could be redone. While recording is off or an undo
    /// or redo runs, the item is destroyed at once.
    void Push(std::unique_ptr<UndoItem> item);
    /// Whether Push() would keep an item.
    bool IsRecording() const;

    /// Chunks nest: what is between an outermost OpenChunk() and its CloseChunk() is undone in one step. An
    /// empty chunk leaves nothing. An implicit chunk is that of one outermost statement.
    void OpenChunk(const std::string& name, bool implicit = false);
    /// Closes the innermost chunk of that kind; does nothing when none is open. The two kinds may overlap: an
    /// explicit chunk opened by one statement outlives the implicit one of that statement.
    void CloseChunk(bool implicit = false);
    int OpenChunks() const { return explicitDepth_ + implicitDepth_; }

    /// Takes back the last complete chunk; an open implicit chunk is closed first. False when there is none,
    /// or while an undo or redo runs.
    bool Undo();
    bool Redo();
    bool IsUndoing() const { return running_ == Running::Undo; }
    bool IsRedoing() const { return running_ == Running::Redo; }
    bool CanUndo() const;
    bool CanRedo() const { return !undone_.empty(); }
    /// Name of what would be undone or redone; empty when nothing.
    std::string UndoName() const;
    std::string RedoName() const;
    /// Names from the oldest to the latest.
    std::vector<std::string> Names() const;

    bool IsEnabled() const { return enabled_; }
    /// Turning it off drops the queue; `keepQueue` leaves what is on it.
    void SetEnabled(bool enabled, bool keepQueue = false);
    /// Number of chunks kept; 0 keeps all.
    std::size_t Limit() const { return limit_; }
    void SetLimit(std::size_t limit);
    /// Drops everything, also what an open chunk or a running transaction holds so far.
    void Flush();
    /// Rises with every recorded edit and falls when it is undone, so that equal values mean an equal scene.
    /// A value never comes back once the edits it stood for are dropped from the redo side.
    std::uint64_t State() const;

    /// While one exists, nothing is recorded.
    class Pause : NonCopyable {
    public:
        Pause(UndoQueue& queue, bool active = true)
            : queue_(queue)
            , active_(active) {
            queue_.paused_ += active_;
        }
        ~Pause() { queue_.paused_ -= active_; }

    private:
        UndoQueue& queue_;
        bool active_;
    };

    /// The edits of one command, recorded or not. They wait in it until Commit() passes them on; without that
    /// they are taken back when it ends, so that a command that fails has changed nothing. Transactions nest.
    /// Undoing, redoing and flushing settle what waits.
    class Transaction : NonCopyable {
    public:
        explicit Transaction(UndoQueue& queue)
            : queue_(queue)
            , start_(queue.waiting_.size()) {
            ++queue_.transactions_;
        }
        ~Transaction();

        void Commit() { isCommitted_ = true; }

    private:
        UndoQueue& queue_;
        std::size_t start_;
        bool isCommitted_ = false;
    };

private:
    struct Waiting {
        std::unique_ptr<UndoItem> item;
        bool isRecorded;
    };
    struct Chunk {
        std::string name;
        std::uint64_t state = 0;
        std::vector<std::unique_ptr<UndoItem>> items;
        std::string Name() const;
    };
    enum class Running { None, Undo, Redo };

    void Pass(std::unique_ptr<UndoItem> item, bool isRecorded);
    void Settle();
    void TakeBack(std::size_t start);
    void Record(std::unique_ptr<UndoItem> item);
    void CompleteOpen();
    void Trim();

    EventBus& events_;
    std::deque<Chunk> done_;
    std::vector<Chunk> undone_;
    std::unique_ptr<Chunk> open_;
    std::vector<Waiting> waiting_;
    int transactions_ = 0;
    int explicitDepth_ = 0;
    int implicitDepth_ = 0;
    std::string openName_;
    int paused_ = 0;
    bool enabled_ = true;
    std::size_t limit_ = 0;
    Running running_ = Running::None;
    std::uint64_t nextState_ = 1;
    std::uint64_t baseState_ = 0;
};

} // namespace lightbox
