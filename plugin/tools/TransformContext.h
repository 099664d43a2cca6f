#pragma once

#include "host/HostCallbacks.h"
#include "node/LegacyOutline.h"
#include "paint/NonCopyable.h"
#include "tools/TransformClipboard.h"
#include "tools/TransformContextInputHandler.h"
#include "tools/TransformOutline.h"
#include "tools/TransformSelection.h"
#include "tools/Transformation.h"

#include <maya/M3dView.h>
#include <maya/MEvent.h>
#include <maya/MMessage.h>
#include <maya/MPxContext.h>

#include <QPoint>

namespace vellix {

class BaseNode;

/// The transform tool: moves, rotates, scales, flips, cuts, copies and pastes a rectangle of the active
/// layer's drawing. In the select stage the user drags out a rectangle in a view. completeAction() goes on to
/// the transform stage, where drags change the transform stroke of the drawing node; the next
/// completeAction() commits it. Every commit, revert and cancel sets the tool up again when the host is idle.
/// Without a drawing node the tool does nothing. View pixels count from the bottom left.
///
/// The selection, the transformation, the clipboard and the outline do the work; the context leads them
/// through the stages.
class TransformContext : public MPxContext, private LegacyOutline, private NonCopyable {
public:
    enum Stage : int { SELECT_STAGE = 0, TRANSFORM_STAGE = 1 };

    TransformContext();
    ~TransformContext() override;

    void toolOnSetup(MEvent& event) override;
    void toolOffCleanup() override;

    MStatus doPress(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                    const MHWRender::MFrameContext& frameContext) override;
    MStatus doRelease(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                      const MHWRender::MFrameContext& frameContext) override;
    MStatus doDrag(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                   const MHWRender::MFrameContext& frameContext) override;
    MStatus doPress(MEvent& event) override;
    MStatus doRelease(MEvent& event) override;
    MStatus doDrag(MEvent& event) override;
    MStatus doEnterRegion(MEvent& event) override;
    MStatus helpStateHasChanged(MEvent& event) override;

    /// Drops the stroke, which leaves the drawing unchanged, and starts the tool again.
    void deleteAction() override;
    /// Goes from the select stage to the transform stage, or commits in the transform stage.
    void completeAction() override;
    /// Drops the stroke and switches to the draw tool.
    void abortAction() override;

    int GetStage() const;
    /// Returns whether there is a copied region that the node still holds.
    bool PasteAvailable() const;
    void RefreshCursor();
    void HelpStateChanged();

    /// Begins a selection in the active view. `paste` creates a missing layer and frame to paste into.
    /// Returns false, with the selection invalid, when there is no layer to select in.
    bool InitializeSelectStage(bool paste);
    /// Gives the selection to the node's transform stroke as its region.
    void PreprocessSelection();
    /// Makes the first corner the top left one.
    void ReorderSelectionPoints();
    /// Writes the current transformation into the stroke.
    void UpdateStroke();
    /// Moves the outline to the transformed selection.
    void TransformSelectionOutline();
    /// Draws the outline through the selection's corners.
    void DrawSelectionOutline();
    /// Makes the node show the outline in Viewport 2.0 between events, or stop showing it.
    void SetSelectionOutlineDrawnByNodeEnabled(bool enabled);
    void RefreshView();
    bool PushStroke();
    /// Drops the stroke, and starts the tool again, after something went wrong.
    void DropUnfinished();
    /// Drops the stroke and the layer and frame that were created to paste into.
    void CancelStroke();

    /// Begins to transform the selection, or a duplicate of it with `copy`.
    void Transform(bool copy);
    /// Copies the selection for pasting. `keep` commits the stroke; otherwise the drawing stays unchanged.
    void Copy(bool keep);
    void Cut();
    /// Pastes with the top left corner at `position` (pixels of the view's widget). With `andTransform` the
    /// paste can then be transformed; otherwise it is committed at once.
    void Paste(bool andTransform, const QPoint& position);
    void FlipHorizontal();
    void FlipVertical();

    // Part of the interface for scripts and other tools; not called here.
    // Draws a closed outline through four points, in view pixels. In the legacy viewport a second call
    // removes it.
    /// Draws a closed outline through four points, view pixels. In the legacy viewport the second time takes
    /// it away.
    void DrawSelectionOutline(int x0, int y0, int x1, int y1, int x2, int y2, int x3, int y3);

private:
    using LegacyHandler = MStatus (TransformContext::*)(MEvent&);

    /// Passes a Viewport 2.0 event to the legacy handler, with a draw manager set meanwhile.
    MStatus Handle(LegacyHandler handler, MEvent& event, MHWRender::MUIDrawManager& drawManager);

    void OnViewDrawn(const M3dView& view) override;
    static void OnSceneChanged(void* context);
    static void OnUndoRedo(void* context);
    void Follow(const char* event, MMessage::MBasicFunction function);

    void PressInSelectStage(const QPoint& position);
    void DragInSelectStage(const QPoint& position);
    void PressInTransformStage(const MEvent& event, const QPoint& position);
    void DragInTransformStage(const MEvent& event, const QPoint& position);

    bool BeginSelection();
    /// Returns false if there is no selection, or if `changes` is set and the active layer refuses changes.
    bool EnterTransformStage(bool changes);
    bool HasTransform() const;
    bool CheckTransform() const;
    void Commit();
    void RememberCopiedRectangle();
    void ForgetOutline();
    /// Updates the selection's corners after the view was panned, zoomed or resized. Returns whether it was.
    bool LocateSelectionAgain(BaseNode& node);
    /// Moves the selection and its outline along with the view, and to another active view of the same
    /// camera.
    void FollowView(BaseNode& node);

    TransformContextInputHandler inputHandler_;
    HostCallbacks callbacks_;
    int stage_ = SELECT_STAGE;
    bool invalid_ = false; ///< the pointer does nothing until the tool starts again

    TransformSelection selection_;
    Transformation transformation_;
    TransformClipboard clipboard_;
    TransformOutline outline_;
};

} // namespace vellix
