#include "tools/TransformContext.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"
#include "paint/ScopeExit.h"
#include "paint/Stroke.h"

#include <maya/MCursor.h>
#include <maya/MEventMessage.h>

#include <memory>

namespace vellix {

namespace {

const char* const SELECT_HELP =
    "Select region to transform and press Enter. No selection will apply transform to entire image.";
const char* const TRANSFORM_HELP =
    "Translate(LMB)  Rotate(Shift+LMB)  Scale(MMB)  Apply Changes(Enter)  Revert(Backspace)  Cancel(ESC)";

QPoint PositionOf(const MEvent& event) {
    short x = 0;
    short y = 0;
    event.getPosition(x, y);
    return QPoint(x, y);
}

} // namespace

TransformContext::TransformContext() {
    setTitleString("Transform Context");
    setImage(":/icons/transform_context_01.png", MPxContext::kImage1);
    RefreshCursor();
}

TransformContext::~TransformContext() {
    if (BaseNode::GetActiveTransformContext() == this) {
        BaseNode::SetActiveTransformContext(nullptr);
        MMessage::removeCallbacks(m_callbacks);
    }
}

// --- setup and clean-up -----------------------------------------------------------------------------------

void TransformContext::toolOnSetup(MEvent&) {
    m_inputHandler.SetEventFilterEnabled(true);
    m_inputHandler.SetTransformContext(this);
    m_stage = SELECT_STAGE;
    m_selection.Forget();
    m_invalid = false;
    m_clipboard.SetCopy(false);
    m_outline.Forget();
    BaseNode::SetActiveTransformContext(this);
    for (const char* event : {"NewSceneOpened", "SceneOpened"}) {
        m_callbacks.append(MEventMessage::addEventCallback(event, OnSceneChanged, this));
    }
    for (const char* event : {"Undo", "Redo"}) {
        m_callbacks.append(MEventMessage::addEventCallback(event, OnUndoRedo, this));
    }
    CancelStroke();
    ForgetOutline();
    HelpStateChanged();
}

void TransformContext::toolOffCleanup() {
    MMessage::removeCallbacks(m_callbacks);
    m_callbacks.clear();
    CancelStroke();
    ForgetOutline();
    BaseNode::SetActiveTransformContext(nullptr);
    m_inputHandler.SetEventFilterEnabled(false);
    m_inputHandler.SetTransformContext(nullptr);
}

void TransformContext::OnSceneChanged(void* context) {
    auto* const self = static_cast<TransformContext*>(context);
    if (self->m_selection.HasBegun()) {
        self->deleteAction();
    }
}

/// Undo may bring back a node that was deleted while it showed an outline.
void TransformContext::OnUndoRedo(void* context) {
    auto* const self = static_cast<TransformContext*>(context);
    if (!self->m_outline.IsShown()) {
        self->SetSelectionOutlineDrawnByNodeEnabled(false);
    }
}

void TransformContext::RefreshCursor() {
    setCursor(MCursor::editCursor);
}

void TransformContext::HelpStateChanged() {
    setHelpString(m_stage == TRANSFORM_STAGE ? TRANSFORM_HELP : SELECT_HELP);
}

MStatus TransformContext::doEnterRegion(MEvent&) {
    HelpStateChanged();
    return MS::kSuccess;
}

MStatus TransformContext::helpStateHasChanged(MEvent&) {
    HelpStateChanged();
    return MS::kSuccess;
}

int TransformContext::GetStage() const {
    return m_stage;
}

// --- stages -----------------------------------------------------------------------------------------------

void TransformContext::completeAction() {
    if (m_stage == TRANSFORM_STAGE) {
        Commit();
    } else {
        EnterTransformStage(true);
    }
}

void TransformContext::deleteAction() {
    CancelStroke();
    ForgetOutline();
    MayaUtil::ActivateTransformTool();
}

void TransformContext::abortAction() {
    CancelStroke();
    ForgetOutline();
    MayaUtil::Draw();
}

bool TransformContext::InitializeSelectStage(bool paste) {
    BaseNode* node = BaseNode::GetMaster();
    if (node == nullptr) {
        return false;
    }
    m_selection.Begin(*node);
    m_transformation = Transformation();
    m_clipboard.Begin(paste);
    const bool isPrepared = !paste || m_clipboard.PrepareToPaste(*node, m_selection.GetCamera());
    const bool hasLayer = m_selection.TakeActiveLayer(*node);
    m_invalid = !isPrepared || !hasLayer;
    if (m_invalid) {
        return false;
    }
    const QString& camera = m_selection.GetCamera();
    if (node->GetActiveCamera() != camera) {
        SetSelectionOutlineDrawnByNodeEnabled(false);
        MayaUtil::SetActiveLayer(camera, node->GetActiveLayerIndex(camera));
    }
    return true;
}

bool TransformContext::BeginSelection() {
    const bool hasBegun = m_selection.HasBegun() && !m_invalid && m_selection.GetNode() != nullptr;
    return hasBegun || InitializeSelectStage(false);
}

bool TransformContext::EnterTransformStage(bool changes) {
    if (!BeginSelection()) {
        return false;
    }
    BaseNode* node = m_selection.GetNode();
    if (node == nullptr || (changes && !node->MayChangeActiveLayer(m_selection.GetCamera()))) {
        return false;
    }
    FollowView(*node);
    PreprocessSelection();
    m_stage = TRANSFORM_STAGE;
    TransformSelectionOutline();
    HelpStateChanged();
    return true;
}

void TransformContext::PreprocessSelection() {
    m_transformation.Reset(); // ends the drag that selected, whose button may still be down
    ReorderSelectionPoints();
    BaseNode* node = m_selection.GetNode();
    Stroke* stroke = node != nullptr ? node->GetActiveStroke(m_selection.GetCamera(), true) : nullptr;
    if (stroke == nullptr) {
        return;
    }
    if (m_selection.IsPoint() && !m_clipboard.IsPasting()) {
        m_selection.SelectAll(*node);
    } else {
        m_selection.Locate(*node);
    }
    stroke->tool = ToolType::Transform;
    stroke->selection = m_selection.GetRegion();
    stroke->freshSelection = true;
    m_clipboard.ApplyTo(*stroke);
    stroke->changed = true;
    RefreshView();
}

void TransformContext::Commit() {
    BaseNode* node = m_selection.GetNode();
    if (node == nullptr || !m_selection.IsCurrent() || m_selection.FindStroke(*node) == nullptr ||
        !PushStroke()) {
        CancelStroke();
    }
    m_clipboard.End();
    ForgetOutline();
    MayaUtil::ActivateTransformTool();
}

bool TransformContext::PushStroke() {
    return m_selection.HasBegun() &&
           MayaUtil::PushStroke(m_selection.GetCamera(), m_clipboard.GetCreatedLayer(),
                                m_clipboard.IsFrameCreated());
}

void TransformContext::CancelStroke() {
    const QString& camera = m_selection.GetCamera();
    // The node may have been deleted, and come back with an undo.
    if (const std::shared_ptr<LayerManager> layers = m_selection.GetLayers()) {
        layers->CancelActiveStroke();
        const int changed = m_clipboard.RemoveCreated(*layers, camera, m_selection.GetLayer());
        BaseNode* node = changed >= 0 ? m_selection.GetNode() : nullptr;
        if (node != nullptr) {
            node->OnFramesChanged(camera, changed);
        }
    }
    if (BaseNode* node = BaseNode::GetMaster()) {
        node->CancelActiveStroke();
        if (m_selection.HasBegun()) {
            node->ForceCacheUpdate(camera, node->GetActiveLayerIndex(camera));
        }
        node->RefreshActiveView();
    }
    m_clipboard.ForgetCreated();
}

// --- the pointer ------------------------------------------------------------------------------------------

MStatus TransformContext::doPress(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                                  const MHWRender::MFrameContext&) {
    return Handle(&TransformContext::doPress, event, drawManager);
}

MStatus TransformContext::doRelease(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                                    const MHWRender::MFrameContext&) {
    return Handle(&TransformContext::doRelease, event, drawManager);
}

MStatus TransformContext::doDrag(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                                 const MHWRender::MFrameContext&) {
    return Handle(&TransformContext::doDrag, event, drawManager);
}

MStatus TransformContext::Handle(LegacyHandler handler, MEvent& event,
                                 MHWRender::MUIDrawManager& drawManager) {
    m_outline.SetDrawManager(&drawManager);
    const ScopeExit ended([this] { m_outline.SetDrawManager(nullptr); });
    return (this->*handler)(event);
}

MStatus TransformContext::doPress(MEvent& event) {
    m_inputHandler.UpdateActiveViewEventFilter();
    if (m_stage == TRANSFORM_STAGE) {
        PressInTransformStage(event, PositionOf(event));
    } else if (BaseNode::GetMaster() != nullptr) {
        PressInSelectStage(PositionOf(event));
    }
    return MS::kSuccess;
}

MStatus TransformContext::doDrag(MEvent& event) {
    if (m_invalid || !m_selection.IsInActiveView()) {
        return MS::kSuccess;
    }
    if (m_stage == TRANSFORM_STAGE) {
        DragInTransformStage(event, PositionOf(event));
    } else {
        DragInSelectStage(PositionOf(event));
    }
    return MS::kSuccess;
}

MStatus TransformContext::doRelease(MEvent&) {
    if (m_invalid) {
        deleteAction();
        return MS::kFailure;
    }
    if (m_stage == TRANSFORM_STAGE) {
        return m_selection.IsInActiveView() ? MS::kSuccess : MS::kFailure;
    }
    BaseNode* node = m_selection.GetNode();
    if (node == nullptr) {
        return MS::kSuccess;
    }
    ReorderSelectionPoints();
    m_selection.Locate(*node);
    m_outline.Place(m_selection.GetCorners(), !m_selection.IsPoint());
    SetSelectionOutlineDrawnByNodeEnabled(m_outline.IsShown());
    RefreshView();
    return MS::kSuccess;
}

void TransformContext::PressInSelectStage(const QPoint& position) {
    ForgetOutline();
    if (InitializeSelectStage(false)) {
        m_selection.SetCorners({{position, position, position, position}});
        DrawSelectionOutline();
    }
}

void TransformContext::DragInSelectStage(const QPoint& position) {
    m_selection.StretchTo(position);
    DrawSelectionOutline();
}

void TransformContext::PressInTransformStage(const MEvent& event, const QPoint& position) {
    using DragMode = Transformation::DragMode;
    m_transformation.EndDrag();
    BaseNode* node = m_selection.GetNode();
    if (node == nullptr || !m_selection.IsCurrent() || m_selection.FindStroke(*node) == nullptr) {
        m_invalid = true;
        return;
    }
    MStatus status;
    const MEvent::MouseButtonType button = event.mouseButton(&status);
    if (!status) {
        return; // neither the left button nor the middle one
    }
    FollowView(*node);
    if (button == MEvent::kMiddleMouse) {
        m_transformation.BeginDrag(DragMode::Scale, position);
    } else {
        m_transformation.BeginDrag(event.isModifierShift() ? DragMode::Rotate : DragMode::Translate,
                                   position);
    }
}

void TransformContext::DragInTransformStage(const MEvent& event, const QPoint& position) {
    BaseNode* node = m_selection.GetNode();
    if (node == nullptr) {
        return;
    }
    const auto offsetInImage = [&](const QPoint& from, const QPoint& to) {
        return m_selection.OffsetInImage(*node, from, to);
    };
    if (m_transformation.DragTo(position, !event.isModifierShift(), offsetInImage)) {
        UpdateStroke();
        TransformSelectionOutline();
    }
}

void TransformContext::ReorderSelectionPoints() {
    m_selection.Reorder();
}

void TransformContext::FlipHorizontal() {
    m_transformation.FlipHorizontal();
    UpdateStroke();
}

void TransformContext::FlipVertical() {
    m_transformation.FlipVertical();
    UpdateStroke();
}

void TransformContext::UpdateStroke() {
    BaseNode* node = m_selection.GetNode();
    Stroke* stroke = node != nullptr ? m_selection.FindStroke(*node) : nullptr;
    if (stroke == nullptr) {
        return;
    }
    if (stroke->freshSelection) {
        // Composing lifts the region, or the pasted image, while the stroke's flags still say which.
        node->GetFinalImage(m_selection.GetCamera());
    }
    m_transformation.ApplyTo(*stroke);
    stroke->freshSelection = false;
    stroke->pasted = false;
    stroke->changed = true;
    RefreshView();
}

// --- menu: transform copy, cut, copy and paste ------------------------------------------------------------

void TransformContext::Transform(bool copy) {
    if (m_stage != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    m_clipboard.SetCopy(copy);
    if (!EnterTransformStage(true)) {
        m_clipboard.SetCopy(false);
    } else if (copy) {
        RememberCopiedRectangle(); // pasting now gives the duplicate
    }
}

void TransformContext::Copy(bool keep) {
    if (m_stage != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    m_clipboard.SetCopy(true);
    if (!EnterTransformStage(keep)) {
        m_clipboard.SetCut(false);
        m_clipboard.SetCopy(false);
        return;
    }
    RememberCopiedRectangle();
    if (keep) {
        completeAction();
    } else {
        deleteAction();
    }
}

void TransformContext::Cut() {
    if (m_stage != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    m_clipboard.SetCut(true);
    Copy(true);
}

bool TransformContext::PasteAvailable() const {
    const BaseNode* node = BaseNode::GetMaster();
    return node != nullptr && m_clipboard.HasCopied() && node->PasteTransformImageAvailable();
}

void TransformContext::Paste(bool andTransform, const QPoint& position) {
    if (m_stage != SELECT_STAGE || !PasteAvailable()) {
        return;
    }
    if (!InitializeSelectStage(true)) {
        CancelStroke(); // drops a layer that was created but cannot be pasted into
        return;
    }
    // Keeps the size in image pixels; the view may have been zoomed since.
    const float scale = m_selection.MeasureScale(*BaseNode::GetMaster());
    const QPoint leftTop(position.x(), m_selection.GetView().portHeight() - position.y());
    m_selection.SetCorners(m_clipboard.PlaceAt(leftTop, scale));
    completeAction();
    if (!andTransform && m_stage == TRANSFORM_STAGE) {
        completeAction();
    }
}

void TransformContext::RememberCopiedRectangle() {
    const BaseNode* node = m_selection.GetNode();
    const Layer* layer = node != nullptr ? node->GetActiveLayer(m_selection.GetCamera()) : nullptr;
    if (layer != nullptr && layer->GetCurrentFrame() != nullptr && m_selection.GetScale() > 0.0f) {
        m_clipboard.Remember(m_selection.GetCorners(), m_selection.GetScale());
    }
}

// --- outline ----------------------------------------------------------------------------------------------

void TransformContext::TransformSelectionOutline() {
    m_outline.Show(m_selection.GetView(), m_transformation.Map(m_selection.GetCorners()));
    // In Viewport 2.0 the outline drawn here lasts until the next event; the node's outline stays.
    SetSelectionOutlineDrawnByNodeEnabled(true);
}

void TransformContext::DrawSelectionOutline() {
    m_outline.Show(m_selection.GetView(), m_selection.GetCorners());
}

void TransformContext::DrawSelectionOutline(int x0, int y0, int x1, int y1, int x2, int y2, int x3, int y3) {
    m_outline.Draw(m_selection.GetView(), {{QPoint(x0, y0), QPoint(x1, y1), QPoint(x2, y2), QPoint(x3, y3)}});
}

void TransformContext::SetSelectionOutlineDrawnByNodeEnabled(bool enabled) {
    BaseNode* node = enabled ? m_selection.GetNode() : BaseNode::GetMaster();
    if (node == nullptr) {
        return;
    }
    if (enabled) {
        m_outline.ShowByNode(*node, m_selection);
    } else {
        node->ClearTransformOutline();
    }
}

void TransformContext::ForgetOutline() {
    m_outline.Hide();
    SetSelectionOutlineDrawnByNodeEnabled(false);
    RefreshView();
}

void TransformContext::OnViewDrawn(const M3dView& view) {
    const bool isShown = m_outline.IsShown() && view.widget() == m_selection.GetView().widget();
    BaseNode* node = isShown ? m_selection.GetNode() : nullptr;
    if (node == nullptr) {
        return;
    }
    if (LocateSelectionAgain(*node)) {
        m_outline.MoveTo(m_transformation.Map(m_selection.GetCorners()));
    }
    m_outline.DrawAnew(view);
}

bool TransformContext::LocateSelectionAgain(BaseNode& node) {
    if (!m_selection.LocateAgain(node)) {
        return false;
    }
    m_transformation.SetViewScale(m_selection.GetScale());
    return true;
}

void TransformContext::FollowView(BaseNode& node) {
    if (m_selection.FollowActiveView()) {
        m_outline.Erase();
    }
    if (LocateSelectionAgain(node)) {
        TransformSelectionOutline();
    }
}

void TransformContext::RefreshView() {
    if (BaseNode* node = BaseNode::GetMaster()) {
        node->RefreshActiveView();
    }
}

} // namespace vellix
