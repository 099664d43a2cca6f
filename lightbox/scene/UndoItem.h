#pragma once

#include "scene/NonCopyable.h"

#include <string>

namespace lightbox {

/// An edit on the undo queue. It holds what it needs to undo and redo itself.
class UndoItem : NonCopyable {
public:
    virtual ~UndoItem() = default;

    virtual void Undo() = 0;
    virtual void Redo() = 0;
    virtual std::string Name() const = 0;
};

} // namespace lightbox
