#pragma once

#include "node/LegacyOutline.h"
#include "tools/TransformContextInputHandler.h"

#include <maya/M3dView.h>
#include <maya/MCallbackIdArray.h>
#include <maya/MEvent.h>
#include <maya/MPxContext.h>
#include <maya/MTime.h>

#include <QPoint>
#include <QRect>
#include <QString>

#include <array>
#include <memory>

namespace vellix {

class BaseNode;
class Layer;
class LayerManager;

/// The transform tool: moves, turns, scales, flips, cuts, copies and pastes a rectangle of the active layer's
/// drawing. In the select stage a rectangle is dragged out in a view; from completeAction() on, in the
/// transform stage, dragging changes the transform stroke of the drawing node, which the next
/// completeAction() commits. Every commit, revert and cancel sets the tool up anew when the host is idle.
/// Nothing happens without a drawing node. View pixels count from the bottom left, image pixels from the top
/// left.
class TransformContext : public MPxContext, private LegacyOutline {
public:
    enum Stage : int { SELECT_STAGE = 0, TRANSFORM_STAGE = 1 };

    TransformContext();
    TransformContext(const TransformContext&) = delete;
    TransformContext& operator=(const TransformContext&) = delete;
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
    /// Draws a closed outline through four points, view pixels. In the legacy viewport the second time takes
    /// it away.
    void DrawSelectionOutline(int x0, int y0, int x1, int y1, int x2, int y2, int x3, int y3);
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

private:
    /// In this order: left top, left bottom, right bottom, right top; until they are reordered the first is
    /// where the button was pressed. View pixels.
    using Corners = std::array<QPoint, 4>;

    enum class DragMode { None, Translate, Rotate, Scale };

    /// What was dragged so far.
    struct Transformation {
        QPoint translation; ///< image pixels
        QPoint moveOffset;  ///< the same in view pixels
        float rotation = 0.0f;
        float scaleX = 1.0f;
        float scaleY = 1.0f;
    };

    /// Where the drawing lies over the view.
    struct Placement {
        double x = 0.0;
        double y = 0.0;
        float scale = 0.0f;

        bool operator==(const Placement& other) const {
            return x == other.x && y == other.y && scale == other.scale;
        }
    };

    void OnViewDrawn(const M3dView& view) override;
    static void OnSceneChanged(void* context);
    static void OnUndoRedo(void* context);

    void PressInSelectStage(const QPoint& position);
    void DragInSelectStage(const QPoint& position);
    void PressInTransformStage(const MEvent& event, const QPoint& position);
    void DragInTransformStage(const MEvent& event, const QPoint& position);
    void Translate(BaseNode& node, const QPoint& position);
    void Scale(const QPoint& position, bool uniform);

    /// The node that the selection is in; null once it is gone or no longer the master.
    BaseNode* GetSelectionNode() const;
    bool IsSelectionView() const;
    /// Do the view, the frame and the layer still show what was selected?
    bool SelectionIsCurrent() const;
    bool HasStroke(BaseNode& node) const;

    bool BeginSelection();
    /// `changes`: the drawing will be changed, which its layer has to allow.
    bool EnterTransformStage(bool changes);
    void Commit();
    void RemoveWhatPasteCreated(LayerManager& layers);
    void RememberCopiedRectangle();

    void ShowOutline(const Corners& corners);
    void EraseLegacyOutline();
    void ForgetOutline();
    Corners TransformedCorners() const;
    // These three hold for the view that the node's overlay values are of.
    static Corners CornersOf(const BaseNode& node, const QRect& region);
    static QRect RegionOf(const BaseNode& node, const Corners& corners);
    static Placement PlacementIn(BaseNode& node, M3dView& view);
    bool FindSelectionAgain(BaseNode& node);
    /// The selection goes along when the view was panned, zoomed or resized, or another one of the same
    /// camera is in use.
    void FollowView(BaseNode& node);

    TransformContextInputHandler m_inputHandler;
    MCallbackIdArray m_callbacks;

    // The selection.
    M3dView m_view;
    MHWRender::MUIDrawManager* m_drawManager = nullptr; ///< during an event of Viewport 2.0
    QString m_camera;                                   ///< empty until a selection begins
    std::weak_ptr<LayerManager> m_layers;
    const Layer* m_layer = nullptr; ///< to be told from others only, it may be gone
    int m_frame = 0;                ///< playback frame
    int m_stage = SELECT_STAGE;
    bool m_invalid = false; ///< the pointer does nothing until the next start
    Corners m_corners{};
    QRect m_region; ///< of the stroke, image pixels, edges included

    // The transformation.
    Transformation m_transformation;
    DragMode m_dragMode = DragMode::None;
    QPoint m_translateAnchor;
    float m_rotateAnchor = 0.0f;
    float m_scaleAnchorX = 0.0f;
    float m_scaleAnchorY = 0.0f;
    bool m_flipHorizontal = false;
    bool m_flipVertical = false;

    // Cutting, copying and pasting.
    bool m_cut = false;
    bool m_copy = false;
    bool m_paste = false;
    int m_copiedLeft = 0; ///< the copied rectangle, view pixels; empty while left is beyond right
    int m_copiedBottom = 0;
    int m_copiedRight = -1;
    int m_copiedTop = -1;
    float m_copiedScale = 1.0f; ///< view pixels to an image pixel then
    int m_pasteLayer = -1;      ///< index of a layer that was created to paste into
    bool m_pasteFrameCreated = false;
    MTime m_pasteFrameTime;

    // What is seen.
    Corners m_outline{};
    bool m_outlineShown = false; ///< is there an outline to be seen at all?
    bool m_outlineDrawn = false; ///< is it on the screen of the legacy viewport?
    Corners m_drawnOutline{};    ///< where it is there
    Placement m_placement;
};

} // namespace vellix
