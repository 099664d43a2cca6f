#pragma once

#include "node/LegacyOutline.h"
#include "paint/NonCopyable.h"
#include "tools/TransformClipboard.h"
#include "tools/TransformContextInputHandler.h"
#include "tools/TransformOutline.h"
#include "tools/TransformSelection.h"
#include "tools/Transformation.h"

#include <maya/M3dView.h>
#include <maya/MCallbackIdArray.h>
#include <maya/MEvent.h>
#include <maya/MPxContext.h>

#include <QPoint>

namespace vellix {

class BaseNode;

/// The transform tool: moves, turns, scales, flips, cuts, copies and pastes a rectangle of the active layer's
/// drawing. In the select stage a rectangle is dragged out in a view; from completeAction() on, in the
/// transform stage, dragging changes the transform stroke of the drawing node, which the next
/// completeAction() commits. Every commit, revert and cancel sets the tool up anew when the host is idle.
/// Nothing happens without a drawing node. View pixels count from the bottom left.
///
/// The work is done by the selection, the transformation, the clipboard and the outline; the context leads
/// them through the stages.
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

    /// Reverts: what the stroke was to change stays as it was.
    void deleteAction() override;
    /// From the select stage to the transform stage, from there commits.
    void completeAction() override;
    /// Reverts and goes to the draw tool.
    void abortAction() override;

    int GetStage() const;
    /// Was something copied that the node still holds?
    bool PasteAvailable() const;
    void RefreshCursor();
    void HelpStateChanged();

    /// Begins a selection in the active view. `paste`: a layer and a frame to paste into are created where
    /// they are missing. False, with the selection invalid, when there is no layer that it could be in.
    bool InitializeSelectStage(bool paste);
    /// Makes the selection the region of the node's transform stroke.
    void PreprocessSelection();
    /// Makes the first corner the top left one.
    void ReorderSelectionPoints();
    /// Gives the stroke the transformation as it is.
    void UpdateStroke();
    /// Brings the outline to where the transformation puts the selection.
    void TransformSelectionOutline();
    /// Draws the current four corners.
    void DrawSelectionOutline();
    /// Whether the node shows the outline in Viewport 2.0, from one event to the next.
    void SetSelectionOutlineDrawnByNodeEnabled(bool enabled);
    void RefreshView();
    bool PushStroke();
    /// Drops the stroke, and with it the layer and frame that were created to paste into.
    void CancelStroke();

    /// Begins to transform the selection or, with `copy`, a duplicate of it.
    void Transform(bool copy);
    /// Copies the selection to be pasted; with `keep` the stroke is committed, else nothing changes.
    void Copy(bool keep);
    void Cut();
    /// Pastes with the top left corner at the position (pixels of the view's widget), to be transformed or at
    /// once.
    void Paste(bool andTransform, const QPoint& position);
    void FlipHorizontal();
    void FlipVertical();

    // Part of the interface for scripts and other tools; not called here.
    /// Draws a closed outline through four points, view pixels. In the legacy viewport the second time takes
    /// it away.
    void DrawSelectionOutline(int x0, int y0, int x1, int y1, int x2, int y2, int x3, int y3);

private:
    using Form = MStatus (TransformContext::*)(MEvent&);

    /// Handles an event of Viewport 2.0 as one of the legacy viewport, with a draw manager at hand.
    MStatus Handle(Form form, MEvent& event, MHWRender::MUIDrawManager& drawManager);

    void OnViewDrawn(const M3dView& view) override;
    static void OnSceneChanged(void* context);
    static void OnUndoRedo(void* context);

    void PressInSelectStage(const QPoint& position);
    void DragInSelectStage(const QPoint& position);
    void PressInTransformStage(const MEvent& event, const QPoint& position);
    void DragInTransformStage(const MEvent& event, const QPoint& position);

    bool BeginSelection();
    /// `changes`: the drawing will be changed, which its layer has to allow.
    bool EnterTransformStage(bool changes);
    void Commit();
    void RememberCopiedRectangle();
    void ForgetOutline();
    /// Finds the selection where a view that was panned, zoomed or resized shows it now; tells whether it
    /// was.
    bool LocateSelectionAgain(BaseNode& node);
    /// The selection and its outline go along with the view, and to another view of the same camera that is
    /// in use.
    void FollowView(BaseNode& node);

    TransformContextInputHandler m_inputHandler;
    MCallbackIdArray m_callbacks;
    int m_stage = SELECT_STAGE;
    bool m_invalid = false; ///< the pointer does nothing until the next start

    TransformSelection m_selection;
    Transformation m_transformation;
    TransformClipboard m_clipboard;
    TransformOutline m_outline;
};

} // namespace vellix
