#pragma once

#include "scene/NonCopyable.h"

#include <string>

namespace lightbox {

/// One edit on the undo queue. It holds what it needs to take the edit back and to do it again.
class UndoItem : NonCopyable {
public:
    virtual ~UndoItem() = default;

    virtual void Undo() = 0;
    virtual void Redo() = 0;
    virtual std::string Name() const = 0;
};

} // namespace lightbox
