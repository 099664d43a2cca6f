#pragma once

#include "scene/NonCopyable.h"
#include "scene/UndoItem.h"

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {

class EventBus;

/// The undoable edits, grouped in chunks: one undo takes back one chunk. Items that drop off the queue are
/// destroyed. Undo and redo fire the events "Undo" and "Redo".
class UndoQueue : NonCopyable {
public:
    explicit UndoQueue(EventBus& events);
    ~UndoQueue();

    /// Records an edit that was just done and clears the redo side. While recording is off or an undo or redo
    /// runs, destroys the item at once. If there is no memory for the record, takes the edit back and throws.
    void Push(std::unique_ptr<UndoItem> item);
    /// Whether Push() would keep an item.
    bool IsRecording() const;

    /// Opens a chunk. Chunks nest: everything between an outermost OpenChunk() and its CloseChunk() is undone
    /// in one step. An empty chunk leaves nothing. An implicit chunk covers one outermost statement.
    void OpenChunk(const std::string& name, bool implicit = false);
    /// Closes the innermost chunk of that kind; does nothing when none is open. The two kinds may overlap: an
    /// explicit chunk outlives the implicit chunk of the statement that opened it.
    void CloseChunk(bool implicit = false);
    int OpenChunks() const { return explicitDepth_ + implicitDepth_; }

    /// Takes back the last complete chunk, after closing an open implicit one. Returns false when there is
    /// none, or while an undo or redo runs. If an item throws, what ran of its chunk is taken back, the chunk
    /// stays where it was, and the exception goes on.
    bool Undo();
    bool Redo();
    bool IsUndoing() const { return running_ == Running::Undo; }
    bool IsRedoing() const { return running_ == Running::Redo; }
    bool CanUndo() const;
    bool CanRedo() const { return !undone_.empty(); }
    /// Names of the next undo and redo; empty when there is none.
    std::string UndoName() const;
    std::string RedoName() const;
    /// The names of the chunks, oldest first.
    std::vector<std::string> Names() const;

    bool IsEnabled() const { return enabled_; }
    /// Switches recording. Switching off empties the queue, unless `keepQueue` is set.
    void SetEnabled(bool enabled, bool keepQueue = false);
    /// Maximum number of chunks; 0 means no limit.
    std::size_t Limit() const { return limit_; }
    void SetLimit(std::size_t limit);
    /// Drops everything, including the content of an open chunk or a running transaction.
    void Flush();
    /// Increases with every recorded edit and decreases when one is undone: equal values mean an equal scene.
    /// A value is never used again once its edits are dropped from the redo side.
    std::uint64_t State() const;

    /// Stops recording while it exists.
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

    /// Collects the edits of one command, recorded or not. Commit() ends it; that of the outermost one passes
    /// the edits on. Without it the destructor takes them back, so that a failed command changes nothing.
    /// Transactions nest. Undo, redo and flush settle the waiting edits first.
    class Transaction : NonCopyable {
    public:
        explicit Transaction(UndoQueue& queue)
            : queue_(queue)
            , start_(queue.waiting_.size()) {
            ++queue_.transactions_;
        }
        ~Transaction();

        /// Throws if there is no memory to record the edits.
        void Commit();

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

    /// Room for so many further items in the open chunk, which is opened if there is none. Record() then
    /// needs no memory.
    void MakeRoom(std::size_t count);
    void Pass(std::unique_ptr<UndoItem> item, bool isRecorded);
    void Settle();
    void TakeBack(UndoItem& item);
    void TakeBack(std::size_t start);
    /// Runs the last chunk of one list and puts it at the end of the other. Returns false if there is none.
    bool RunLast(Running direction, std::list<Chunk>& from, std::list<Chunk>& to);
    static void Run(Running direction, const std::vector<std::unique_ptr<UndoItem>>& items);
    void Record(std::unique_ptr<UndoItem> item);
    void CompleteOpen();
    /// Completes the open chunk unless an OpenChunk() waits for its CloseChunk().
    void CompleteUnlessHeld();
    void Trim();

    EventBus& events_;
    // Chunks go from list to list without memory for it.
    std::list<Chunk> done_;
    std::list<Chunk> undone_;
    std::list<Chunk> open_; ///< one at most
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
