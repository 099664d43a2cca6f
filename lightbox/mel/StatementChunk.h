#pragma once

#include "scene/NonCopyable.h"
#include "scene/UndoQueue.h"

#include <string>

namespace lightbox::mel {

/// Opens an undo chunk for an outermost statement and closes it on destruction. Does nothing unless active.
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

    /// Closes the surrounding chunk during its own lifetime, so that the statements of a sourced file get
    /// chunks of their own.
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
