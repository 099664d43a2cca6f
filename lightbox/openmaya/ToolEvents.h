#pragma once

class QMouseEvent;
class QKeyEvent;

namespace lightbox {

class View;

/// Hands what happens in a view to the current tool context of a plug-in, in the form of the view's renderer.
/// Each answers whether there is such a context: otherwise the event is the view's own.
class ToolEvents {
public:
    static bool Press(View& view, const QMouseEvent& event);
    static bool Drag(View& view, const QMouseEvent& event);
    static bool Release(View& view, const QMouseEvent& event);
    /// The pointer entered the view.
    static bool Enter(View& view);
    /// Delete, Backspace, Enter and Escape as tools get them: deleteAction, completeAction, abortAction.
    static bool Key(View& view, const QKeyEvent& event);
};

} // namespace lightbox
