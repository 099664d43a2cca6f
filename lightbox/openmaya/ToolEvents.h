#pragma once

#include "openmaya/DrawList.h"

class QMouseEvent;
class QKeyEvent;

namespace lightbox {

class View;

/// Hands what happens in a view to the current tool context of a plug-in, in the form of the view's renderer.
/// Each answers whether there is such a context: otherwise the event is the view's own. Tools get the left
/// and the middle button; while one is held, what happens to the other is swallowed.
class ToolEvents {
public:
    static bool Press(View& view, const QMouseEvent& event);
    static bool Drag(View& view, const QMouseEvent& event);
    static bool Release(View& view, const QMouseEvent& event);
    /// The release of the press that is under way in the view will not come; the tool does not hear of it.
    static void LoseRelease(const View& view);
    /// The pointer entered the view.
    static bool Enter(View& view);
    /// The pointer moved over the view with no button held.
    static bool Move(View& view, const QMouseEvent& event);
    /// Delete, Backspace, Enter and Escape as tools get them: deleteAction, completeAction, abortAction.
    static bool Key(View& view, const QKeyEvent& event);

    /// What the current tool drew in its last event in the view.
    static const DrawList& Drawn(const View& view);
    static void Forget(const View& view);
};

} // namespace lightbox
