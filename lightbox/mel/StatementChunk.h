#pragma once

#include "scene/NonCopyable.h"
#include "scene/UndoQueue.h"

#include <string>

namespace lightbox::mel {

/// The undo chunk of an outermost statement; inactive, it does nothing.
class StatementChunk : NonCopyable {
public:
    StatementChunk(UndoQueue& undo, bool active)
        : undo_(undo)
        , active_(active) {
        if (active_) {
            undo_.OpenChunk(std::string(), true);
        }
    }
    ~StatementChunk() {
        if (active_) {
            undo_.CloseChunk(true);
        }
    }

    /// Ends the chunk that is open around it for as long as it lives: the statements of a sourced file get
    /// their own.
    class Break : NonCopyable {
    public:
        Break(UndoQueue& undo, bool active)
            : undo_(undo)
            , active_(active) {
            if (active_) {
                undo_.CloseChunk(true);
            }
        }
        ~Break() {
            if (active_) {
                undo_.OpenChunk(std::string(), true);
            }
        }

    private:
        UndoQueue& undo_;
        bool active_;
    };

private:
    UndoQueue& undo_;
    bool active_;
};

} // namespace lightbox::mel
