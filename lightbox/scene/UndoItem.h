#pragma once

#include <string>

namespace lightbox {

/// One edit on the undo queue. It holds what it needs to take the edit back and to do it again.
class UndoItem {
public:
    virtual ~UndoItem() = default;
    UndoItem(const UndoItem&) = delete;
    UndoItem& operator=(const UndoItem&) = delete;

    virtual void Undo() = 0;
    virtual void Redo() = 0;
    virtual std::string Name() const = 0;

protected:
    UndoItem() = default;
};

} // namespace lightbox
