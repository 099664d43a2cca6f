#pragma once

#include "openmaya/DrawList.h"

class QMouseEvent;
class QKeyEvent;

namespace lightbox {

class View;

/// Sends a view's events to the current tool context of a plug-in, in the form for the view's renderer. Each
/// function returns whether there is such a context; otherwise the view handles the event itself. Tools get
/// the left and the middle button; while one is held, events of the other are ignored.
class ToolEvents {
public:
    static bool Press(View& view, const QMouseEvent& event);
    static bool Drag(View& view, const QMouseEvent& event);
    static bool Release(View& view, const QMouseEvent& event);
    /// Ends a press whose release the view will not get; the tool is not told.
    static void LoseRelease(const View& view);
    /// The pointer entered the view.
    static bool Enter(View& view);
    /// The pointer moved over the view with no button held.
    static bool Move(View& view, const QMouseEvent& event);
    /// Sends Delete, Backspace, Enter and Escape as deleteAction, completeAction and abortAction.
    static bool Key(View& view, const QKeyEvent& event);

    /// The items that the current tool drew in its last event in the view.
    static const DrawList& Drawn(const View& view);
    static void Forget(const View& view);
};

} // namespace lightbox
