#pragma once

#include "tools/TransformSelection.h"

#include <maya/M3dView.h>
#include <maya/MApiNamespace.h>

namespace vellix {

class BaseNode;

/// The outline of the transform tool on the screen: drawn by inverting pixels in the legacy viewport, where
/// drawing it once more takes it away; in Viewport 2.0 drawn for the length of an event, and by the drawing
/// node from one event to the next.
class TransformOutline {
public:
    using Corners = TransformSelection::Corners;

    /// The draw manager of an event of Viewport 2.0, borrowed until the event ends; null for none.
    void SetDrawManager(MHWRender::MUIDrawManager* drawManager) { m_drawManager = drawManager; }

    /// Is there an outline to be seen at all?
    bool IsShown() const { return m_shown; }
    /// Draws the outline there, and takes away the one before.
    void Show(const M3dView& view, const Corners& corners);
    /// The outline is there from the next drawing of the view on.
    void Place(const Corners& corners, bool shown);
    /// Moves an outline that is shown, from the next drawing of the view on.
    void MoveTo(const Corners& corners) { m_corners = corners; }
    /// Takes the outline away; the node's stays.
    void Hide();
    /// Takes the outline off the legacy viewport until it is drawn again.
    void Erase();
    /// Nothing is on the screen, whatever was drawn before.
    void Forget();

    /// Draws a closed outline through the four corners, at once.
    void Draw(const M3dView& view, const Corners& corners);
    /// While the legacy viewport draws the view, which has wiped the outline out.
    void DrawAnew(const M3dView& view);
    /// Has the node show the outline in Viewport 2.0.
    void ShowByNode(BaseNode& node, TransformSelection& selection) const;

private:
    Corners m_corners{};
    bool m_shown = false;
    MHWRender::MUIDrawManager* m_drawManager = nullptr;

    // What is on the screen of the legacy viewport.
    bool m_drawn = false;
    M3dView m_drawnView;
    Corners m_drawnCorners{};
};

} // namespace vellix
