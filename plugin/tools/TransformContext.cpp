#include "tools/TransformContext.h"

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/Logger.h"
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
    }
}

// --- setup and clean-up -----------------------------------------------------------------------------------

void TransformContext::toolOnSetup(MEvent&) {
    inputHandler_.SetEventFilterEnabled(true);
    inputHandler_.SetTransformContext(this);
    stage_ = SELECT_STAGE;
    selection_.Forget();
    invalid_ = false;
    clipboard_.SetCopy(false);
    outline_.Forget();
    BaseNode::SetActiveTransformContext(this);
    for (const char* event : {"NewSceneOpened", "SceneOpened"}) {
        Follow(event, OnSceneChanged);
    }
    for (const char* event : {"Undo", "Redo"}) {
        Follow(event, OnUndoRedo);
    }
    CancelStroke();
    ForgetOutline();
    HelpStateChanged();
}

void TransformContext::Follow(const char* event, MMessage::MBasicFunction function) {
    callbacks_.Add(
        [&](MStatus* status) { return MEventMessage::addEventCallback(event, function, this, status); });
}

void TransformContext::toolOffCleanup() {
    callbacks_.Clear();
    if (HasTransform()) {
        Logger::Warning("The transform was dropped: another tool was chosen.");
    }
    CancelStroke();
    ForgetOutline();
    BaseNode::SetActiveTransformContext(nullptr);
    inputHandler_.SetEventFilterEnabled(false);
    inputHandler_.SetTransformContext(nullptr);
}

void TransformContext::OnSceneChanged(void* context) {
    auto* const self = static_cast<TransformContext*>(context);
    if (self->selection_.HasBegun()) {
        self->deleteAction();
    }
}

/// Undo may bring back a node that was deleted while it showed an outline.
void TransformContext::OnUndoRedo(void* context) {
    auto* const self = static_cast<TransformContext*>(context);
    if (!self->outline_.IsShown()) {
        self->SetSelectionOutlineDrawnByNodeEnabled(false);
    }
}

void TransformContext::RefreshCursor() {
    setCursor(MCursor::editCursor);
}

void TransformContext::HelpStateChanged() {
    setHelpString(stage_ == TRANSFORM_STAGE ? TRANSFORM_HELP : SELECT_HELP);
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
    return stage_;
}

// --- stages -----------------------------------------------------------------------------------------------

void TransformContext::completeAction() {
    if (stage_ == TRANSFORM_STAGE) {
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
    if (!node) {
        return false;
    }
    selection_.Begin(*node);
    transformation_ = Transformation();
    clipboard_.Begin(paste);
    const bool isPrepared = !paste || clipboard_.PrepareToPaste(*node, selection_.GetCamera());
    const bool hasLayer = selection_.TakeActiveLayer(*node);
    invalid_ = !isPrepared || !hasLayer;
    if (invalid_) {
        return false;
    }
    const QString camera = selection_.GetCamera();
    if (node->GetActiveCamera() != camera) {
        SetSelectionOutlineDrawnByNodeEnabled(false);
        MayaUtil::SetActiveLayer(camera, node->GetActiveLayerIndex(camera));
    }
    return true;
}

bool TransformContext::BeginSelection() {
    const bool hasBegun = selection_.HasBegun() && !invalid_ && selection_.GetNode() != nullptr;
    return hasBegun || InitializeSelectStage(false);
}

bool TransformContext::EnterTransformStage(bool changes) {
    if (!BeginSelection()) {
        return false;
    }
    BaseNode* node = selection_.GetNode();
    if (!node || (changes && !(node->MayChangeActiveLayer(selection_.GetCamera()) &&
                               node->MayChangeActivePicture(selection_.GetCamera())))) {
        return false;
    }
    FollowView(*node);
    PreprocessSelection();
    stage_ = TRANSFORM_STAGE;
    TransformSelectionOutline();
    HelpStateChanged();
    return true;
}

void TransformContext::PreprocessSelection() {
    transformation_.Reset(); // ends the drag that selected, whose button may still be down
    ReorderSelectionPoints();
    BaseNode* node = selection_.GetNode();
    Stroke* stroke = node ? node->GetActiveStroke(selection_.GetCamera(), true) : nullptr;
    if (!stroke) {
        return;
    }
    if (selection_.IsPoint() && !clipboard_.IsPasting()) {
        selection_.SelectAll(*node);
    } else {
        selection_.Locate(*node);
    }
    stroke->tool = ToolType::Transform;
    stroke->selection = selection_.GetRegion();
    stroke->freshSelection = true;
    clipboard_.ApplyTo(*stroke);
    stroke->changed = true;
    RefreshView();
}

bool TransformContext::HasTransform() const {
    BaseNode* node = stage_ == TRANSFORM_STAGE ? selection_.GetNode() : nullptr;
    return node != nullptr && selection_.FindStroke(*node) != nullptr;
}

/// Whether the transform is still that of what the active view shows. Logs why not, unless there is none.
bool TransformContext::CheckTransform() const {
    if (!selection_.GetNode()) {
        BaseNode::ReportStrokeLost();
        return false;
    }
    if (!HasTransform()) {
        return false;
    }
    if (!selection_.IsCurrent()) {
        Logger::Error("The transform was dropped: the view, the time or the active layer has changed.");
        return false;
    }
    return true;
}

void TransformContext::Commit() {
    if (!CheckTransform() || !selection_.GetNode()->MayCommitStroke() || !PushStroke()) {
        CancelStroke();
    }
    clipboard_.End();
    ForgetOutline();
    MayaUtil::ActivateTransformTool();
}

bool TransformContext::PushStroke() {
    return selection_.HasBegun() && MayaUtil::PushStroke(selection_.GetCamera(), clipboard_.GetCreatedLayer(),
                                                         clipboard_.IsFrameCreated());
}

void TransformContext::DropUnfinished() {
    stage_ = SELECT_STAGE;
    invalid_ = false;
    clipboard_.End();
    CancelStroke();
    selection_.Forget();
    ForgetOutline();
}

void TransformContext::CancelStroke() {
    const QString camera = selection_.GetCamera();
    // The node may have been deleted, and come back with an undo.
    if (const std::shared_ptr<LayerManager> layers = selection_.GetLayers()) {
        layers->CancelActiveStroke();
        layers->TakeBackPress();
    }
    if (BaseNode* node = BaseNode::GetMaster()) {
        node->CancelActiveStroke();
        if (selection_.HasBegun()) {
            node->ForceCacheUpdate(camera, node->GetActiveLayerIndex(camera));
        }
        node->RefreshActiveView();
    }
    clipboard_.ForgetCreated();
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
    outline_.SetDrawManager(&drawManager);
    const ScopeExit ended([this] { outline_.SetDrawManager(nullptr); });
    return (this->*handler)(event);
}

MStatus TransformContext::doPress(MEvent& event) {
    inputHandler_.UpdateActiveViewEventFilter();
    if (stage_ == TRANSFORM_STAGE) {
        PressInTransformStage(event, PositionOf(event));
    } else if (BaseNode::GetMaster()) {
        PressInSelectStage(PositionOf(event));
    }
    return MS::kSuccess;
}

MStatus TransformContext::doDrag(MEvent& event) {
    if (invalid_ || !selection_.IsInActiveView()) {
        return MS::kSuccess;
    }
    if (stage_ == TRANSFORM_STAGE) {
        DragInTransformStage(event, PositionOf(event));
    } else {
        DragInSelectStage(PositionOf(event));
    }
    return MS::kSuccess;
}

MStatus TransformContext::doRelease(MEvent&) {
    if (invalid_) {
        deleteAction();
        return MS::kFailure;
    }
    if (stage_ == TRANSFORM_STAGE) {
        return selection_.IsInActiveView() ? MS::kSuccess : MS::kFailure;
    }
    BaseNode* node = selection_.GetNode();
    if (!node) {
        return MS::kSuccess;
    }
    ReorderSelectionPoints();
    selection_.Locate(*node);
    outline_.Place(selection_.GetCorners(), !selection_.IsPoint());
    SetSelectionOutlineDrawnByNodeEnabled(outline_.IsShown());
    RefreshView();
    return MS::kSuccess;
}

void TransformContext::PressInSelectStage(const QPoint& position) {
    ForgetOutline();
    if (InitializeSelectStage(false)) {
        selection_.SetCorners({{position, position, position, position}});
        DrawSelectionOutline();
    }
}

void TransformContext::DragInSelectStage(const QPoint& position) {
    selection_.StretchTo(position);
    DrawSelectionOutline();
}

void TransformContext::PressInTransformStage(const MEvent& event, const QPoint& position) {
    using DragMode = Transformation::DragMode;
    transformation_.EndDrag();
    if (!CheckTransform()) {
        invalid_ = true;
        return;
    }
    BaseNode* node = selection_.GetNode();
    MStatus status;
    const MEvent::MouseButtonType button = event.mouseButton(&status);
    if (!status) {
        return; // neither the left button nor the middle one
    }
    FollowView(*node);
    if (button == MEvent::kMiddleMouse) {
        transformation_.BeginDrag(DragMode::Scale, position);
    } else {
        transformation_.BeginDrag(event.isModifierShift() ? DragMode::Rotate : DragMode::Translate, position);
    }
}

void TransformContext::DragInTransformStage(const MEvent& event, const QPoint& position) {
    BaseNode* node = selection_.GetNode();
    if (!node) {
        return;
    }
    const auto offsetInImage = [&](const QPoint& from, const QPoint& to) {
        return selection_.OffsetInImage(*node, from, to);
    };
    if (transformation_.DragTo(position, !event.isModifierShift(), offsetInImage)) {
        UpdateStroke();
        TransformSelectionOutline();
    }
}

void TransformContext::ReorderSelectionPoints() {
    selection_.Reorder();
}

void TransformContext::FlipHorizontal() {
    transformation_.FlipHorizontal();
    UpdateStroke();
}

void TransformContext::FlipVertical() {
    transformation_.FlipVertical();
    UpdateStroke();
}

void TransformContext::UpdateStroke() {
    BaseNode* node = selection_.GetNode();
    Stroke* stroke = node ? selection_.FindStroke(*node) : nullptr;
    if (!stroke) {
        return;
    }
    if (stroke->freshSelection) {
        // Painting lifts the region, or the pasted image, while the stroke's flags still say which.
        node->GetLayerManager()->PaintActiveStroke();
        // Nothing of it is in an undo step yet, but it must not get lost when the scene is left.
        MayaUtil::MarkSceneModified();
    }
    transformation_.ApplyTo(*stroke);
    stroke->freshSelection = false;
    stroke->pasted = false;
    stroke->changed = true;
    RefreshView();
}

// --- menu: transform copy, cut, copy and paste ------------------------------------------------------------

void TransformContext::Transform(bool copy) {
    if (stage_ != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    clipboard_.SetCopy(copy);
    if (!EnterTransformStage(true)) {
        clipboard_.SetCopy(false);
    } else if (copy) {
        RememberCopiedRectangle(); // pasting now gives the duplicate
    }
}

void TransformContext::Copy(bool keep) {
    if (stage_ != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    clipboard_.SetCopy(true);
    if (!EnterTransformStage(keep)) {
        clipboard_.SetCut(false);
        clipboard_.SetCopy(false);
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
    if (stage_ != SELECT_STAGE || !BeginSelection()) {
        return;
    }
    clipboard_.SetCut(true);
    Copy(true);
}

bool TransformContext::PasteAvailable() const {
    const BaseNode* node = BaseNode::GetMaster();
    return node != nullptr && clipboard_.HasCopied() && node->PasteTransformImageAvailable();
}

void TransformContext::Paste(bool andTransform, const QPoint& position) {
    if (stage_ != SELECT_STAGE || !PasteAvailable()) {
        return;
    }
    if (!InitializeSelectStage(true)) {
        CancelStroke(); // drops a layer that was created but cannot be pasted into
        return;
    }
    // Keeps the size in image pixels; the view may have been zoomed since.
    const float scale = selection_.MeasureScale(*BaseNode::GetMaster());
    const QPoint leftTop(position.x(), selection_.GetView().portHeight() - position.y());
    selection_.SetCorners(clipboard_.PlaceAt(leftTop, scale));
    completeAction();
    if (!andTransform && stage_ == TRANSFORM_STAGE) {
        completeAction();
    }
}

void TransformContext::RememberCopiedRectangle() {
    const BaseNode* node = selection_.GetNode();
    const Layer* layer = node ? node->GetActiveLayer(selection_.GetCamera()) : nullptr;
    if (layer && layer->GetCurrentFrame() && selection_.GetScale() > 0.0f) {
        clipboard_.Remember(selection_.GetCorners(), selection_.GetScale());
    }
}

// --- outline ----------------------------------------------------------------------------------------------

void TransformContext::TransformSelectionOutline() {
    outline_.Show(selection_.GetView(), transformation_.Map(selection_.GetCorners()));
    // In Viewport 2.0 the outline drawn here lasts until the next event; the node's outline stays.
    SetSelectionOutlineDrawnByNodeEnabled(true);
}

void TransformContext::DrawSelectionOutline() {
    outline_.Show(selection_.GetView(), selection_.GetCorners());
}

void TransformContext::DrawSelectionOutline(int x0, int y0, int x1, int y1, int x2, int y2, int x3, int y3) {
    outline_.Draw(selection_.GetView(), {{QPoint(x0, y0), QPoint(x1, y1), QPoint(x2, y2), QPoint(x3, y3)}});
}

void TransformContext::SetSelectionOutlineDrawnByNodeEnabled(bool enabled) {
    BaseNode* node = enabled ? selection_.GetNode() : BaseNode::GetMaster();
    if (!node) {
        return;
    }
    if (enabled) {
        outline_.ShowByNode(*node, selection_);
    } else {
        node->ClearTransformOutline();
    }
}

void TransformContext::ForgetOutline() {
    outline_.Hide();
    SetSelectionOutlineDrawnByNodeEnabled(false);
    RefreshView();
}

void TransformContext::OnViewDrawn(const M3dView& view) {
    const bool isShown = outline_.IsShown() && view.widget() == selection_.GetView().widget();
    BaseNode* node = isShown ? selection_.GetNode() : nullptr;
    if (!node) {
        return;
    }
    if (LocateSelectionAgain(*node)) {
        outline_.MoveTo(transformation_.Map(selection_.GetCorners()));
    }
    outline_.DrawAnew(view);
}

bool TransformContext::LocateSelectionAgain(BaseNode& node) {
    if (!selection_.LocateAgain(node)) {
        return false;
    }
    transformation_.SetViewScale(selection_.GetScale());
    return true;
}

void TransformContext::FollowView(BaseNode& node) {
    if (selection_.FollowActiveView()) {
        outline_.Erase();
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
