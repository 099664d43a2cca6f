#pragma once

#include "tools/TransformSelection.h"

#include <maya/M3dView.h>
#include <maya/MApiNamespace.h>

namespace vellix {

class BaseNode;

/// The outline of the transform tool on the screen. In the legacy viewport it inverts pixels, so drawing it
/// again removes it. In Viewport 2.0 this class draws it during an event, and the drawing node between
/// events.
class TransformOutline {
public:
    using Corners = TransformSelection::Corners;

    /// Sets the draw manager of a Viewport 2.0 event, borrowed until the event ends; null for none.
    void SetDrawManager(MHWRender::MUIDrawManager* drawManager) { drawManager_ = drawManager; }

    /// Returns whether an outline is shown.
    bool IsShown() const { return shown_; }
    /// Draws the outline at the corners, in view pixels, and removes the one before.
    void Show(const M3dView& view, const Corners& corners);
    /// Sets the outline for the next draw of the view, without drawing it now.
    void Place(const Corners& corners, bool shown);
    /// Moves a shown outline at the next draw of the view.
    void MoveTo(const Corners& corners) { corners_ = corners; }
    /// Removes the outline. An outline shown by the node stays.
    void Hide();
    /// Removes the outline from the legacy viewport until it is drawn again.
    void Erase();
    /// Forgets the outline without drawing.
    void Forget();

    /// Draws a closed outline through the four corners now. In the legacy viewport a second call removes it.
    void Draw(const M3dView& view, const Corners& corners);
    /// Draws the outline again while the legacy viewport redraws the view, which has wiped it out.
    void DrawAnew(const M3dView& view);
    /// Has the node show the outline in Viewport 2.0.
    void ShowByNode(BaseNode& node, TransformSelection& selection) const;

private:
    Corners corners_{};
    bool shown_ = false;
    MHWRender::MUIDrawManager* drawManager_ = nullptr;

    // The state of the legacy viewport.
    bool drawn_ = false;
    M3dView drawnView_;
    Corners drawnCorners_{};
};

} // namespace vellix
