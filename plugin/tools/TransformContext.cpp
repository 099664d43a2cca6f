// The transform tool: its life, its two stages, and what the pointer does in them.

#include "tools/TransformContext.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/FrameTime.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"

#include <maya/MCursor.h>
#include <maya/MEventMessage.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace vellix {

namespace {

constexpr float SMALLEST_SCALE = 0.1f;
/// By how much the scale grows with every event, for each pixel between the pointer and where it was pressed.
constexpr float SCALE_PER_PIXEL = 0.0001f;

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

float AtLeastSmallest(float scale) {
    return scale <= SMALLEST_SCALE ? SMALLEST_SCALE : scale;
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

// --- life -------------------------------------------------------------------------------------------------

void TransformContext::toolOnSetup(MEvent&) {
    m_inputHandler.SetEventFilterEnabled(true);
    m_inputHandler.SetTransformContext(this);
    m_stage = SELECT_STAGE;
    m_camera.clear();
    m_corners.fill(QPoint());
    m_invalid = false;
    m_copy = false;
    m_outlineShown = m_outlineDrawn = false;
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
    if (!self->m_camera.isEmpty()) {
        self->deleteAction();
    }
}

/// A node that was deleted with an outline on it may have come back.
void TransformContext::OnUndoRedo(void* context) {
    auto* const self = static_cast<TransformContext*>(context);
    if (!self->m_outlineShown) {
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

bool TransformContext::EnterTransformStage(bool changes) {
    if (!BeginSelection()) {
        return false;
    }
    BaseNode* node = GetSelectionNode();
    if (node == nullptr || (changes && !node->MayChangeActiveLayer(m_camera))) {
        return false;
    }
    FollowView(*node);
    PreprocessSelection();
    m_stage = TRANSFORM_STAGE;
    TransformSelectionOutline();
    HelpStateChanged();
    return true;
}

void TransformContext::Commit() {
    BaseNode* node = GetSelectionNode();
    if (node == nullptr || !SelectionIsCurrent() || !HasStroke(*node) || !PushStroke()) {
        CancelStroke();
    }
    m_cut = m_copy = m_paste = false;
    m_pasteLayer = -1;
    m_pasteFrameCreated = false;
    ForgetOutline();
    MayaUtil::ActivateTransformTool();
}

bool TransformContext::PushStroke() {
    return !m_camera.isEmpty() && MayaUtil::PushStroke(m_camera, m_pasteLayer, m_pasteFrameCreated);
}

void TransformContext::CancelStroke() {
    // The node may have been deleted since, and come back with an undo.
    if (const std::shared_ptr<LayerManager> layers = m_layers.lock()) {
        layers->CancelActiveStroke();
        RemoveWhatPasteCreated(*layers);
    }
    if (BaseNode* node = BaseNode::GetMaster()) {
        node->CancelActiveStroke();
        if (!m_camera.isEmpty()) {
            node->ForceCacheUpdate(m_camera, node->GetActiveLayerIndex(m_camera));
        }
        node->RefreshActiveView();
    }
    m_pasteLayer = -1;
    m_pasteFrameCreated = false;
}

void TransformContext::RemoveWhatPasteCreated(LayerManager& layers) {
    if (m_pasteLayer < 0 && !m_pasteFrameCreated) {
        return;
    }
    // Others may have moved the layer, removed it or made another one active since.
    const QList<Layer*> stack = layers.GetLayers(m_camera);
    const int index = static_cast<int>(
        std::find_if(stack.begin(), stack.end(), [&](const Layer* layer) { return layer == m_layer; }) -
        stack.begin());
    if (index == stack.size()) {
        return;
    }
    Layer* layer = stack[index];
    if (m_pasteFrameCreated && layer->GetState() != LayerState::Locked) {
        const bool isStatic = layer->GetState() == LayerState::Static;
        layer->RemoveFrame(isStatic ? FromWholeFrames(Settings::defaultStaticFrameTime) : m_pasteFrameTime);
    }
    if (m_pasteLayer >= 0) {
        layers.RemoveLayer(m_camera, index);
    }
    if (BaseNode* node = GetSelectionNode()) {
        node->OnFramesChanged(m_camera, index);
    }
}

// --- the pointer ------------------------------------------------------------------------------------------

namespace {

/// Lends the draw manager to the context for the length of an event.
class DrawManagerScope {
public:
    DrawManagerScope(MHWRender::MUIDrawManager*& holder, MHWRender::MUIDrawManager& manager)
        : m_holder(holder) {
        m_holder = &manager;
    }
    ~DrawManagerScope() { m_holder = nullptr; }
    DrawManagerScope(const DrawManagerScope&) = delete;
    DrawManagerScope& operator=(const DrawManagerScope&) = delete;

private:
    MHWRender::MUIDrawManager*& m_holder;
};

} // namespace

MStatus TransformContext::doPress(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                                  const MHWRender::MFrameContext&) {
    const DrawManagerScope scope(m_drawManager, drawManager);
    return doPress(event);
}

MStatus TransformContext::doRelease(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                                    const MHWRender::MFrameContext&) {
    const DrawManagerScope scope(m_drawManager, drawManager);
    return doRelease(event);
}

MStatus TransformContext::doDrag(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                                 const MHWRender::MFrameContext&) {
    const DrawManagerScope scope(m_drawManager, drawManager);
    return doDrag(event);
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
    if (m_invalid || !IsSelectionView()) {
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
        return IsSelectionView() ? MS::kSuccess : MS::kFailure;
    }
    BaseNode* node = GetSelectionNode();
    if (node == nullptr) {
        return MS::kSuccess;
    }
    ReorderSelectionPoints();
    m_placement = PlacementIn(*node, m_view);
    m_region = RegionOf(*node, m_corners);
    m_outline = m_corners;
    m_outlineShown = m_corners[0] != m_corners[2];
    SetSelectionOutlineDrawnByNodeEnabled(m_outlineShown);
    RefreshView();
    return MS::kSuccess;
}

void TransformContext::PressInSelectStage(const QPoint& position) {
    ForgetOutline();
    if (InitializeSelectStage(false)) {
        m_corners.fill(position);
        DrawSelectionOutline();
    }
}

void TransformContext::DragInSelectStage(const QPoint& position) {
    m_corners[1].setY(position.y());
    m_corners[2] = position;
    m_corners[3].setX(position.x());
    DrawSelectionOutline();
}

void TransformContext::PressInTransformStage(const MEvent& event, const QPoint& position) {
    m_dragMode = DragMode::None;
    BaseNode* node = GetSelectionNode();
    if (node == nullptr || !SelectionIsCurrent() || !HasStroke(*node)) {
        m_invalid = true;
        return;
    }
    MStatus status;
    const MEvent::MouseButtonType button = event.mouseButton(&status);
    if (!status) {
        return; // it is neither the left one nor the middle one
    }
    FollowView(*node);
    const auto x = static_cast<float>(position.x());
    const auto y = static_cast<float>(position.y());
    if (button == MEvent::kMiddleMouse) {
        m_dragMode = DragMode::Scale;
        m_scaleAnchorX = x - m_transformation.scaleX;
        m_scaleAnchorY = y - m_transformation.scaleY;
    } else if (event.isModifierShift()) {
        m_dragMode = DragMode::Rotate;
        m_rotateAnchor = x - m_transformation.rotation;
    } else {
        m_dragMode = DragMode::Translate;
        m_translateAnchor = position - m_transformation.moveOffset;
    }
}

void TransformContext::DragInTransformStage(const MEvent& event, const QPoint& position) {
    BaseNode* node = GetSelectionNode();
    if (node == nullptr) {
        return;
    }
    switch (m_dragMode) {
    case DragMode::Translate:
        Translate(*node, position);
        break;
    case DragMode::Rotate:
        m_transformation.rotation = static_cast<float>(position.x()) - m_rotateAnchor;
        break;
    case DragMode::Scale:
        Scale(position, !event.isModifierShift());
        break;
    case DragMode::None:
        return;
    }
    UpdateStroke();
    TransformSelectionOutline();
}

void TransformContext::Translate(BaseNode& node, const QPoint& position) {
    node.UpdateOverlayValues(m_view);
    m_transformation.moveOffset = position - m_translateAnchor;
    m_transformation.translation =
        node.ScreenCoordsToTexCoords(position) - node.ScreenCoordsToTexCoords(m_translateAnchor);
}

void TransformContext::Scale(const QPoint& position, bool uniform) {
    const float growthX = (static_cast<float>(position.x()) - m_scaleAnchorX) * SCALE_PER_PIXEL;
    const float growthY = (static_cast<float>(position.y()) - m_scaleAnchorY) * SCALE_PER_PIXEL;
    Transformation& to = m_transformation;
    to.scaleX += growthX;
    to.scaleY = uniform ? to.scaleX : to.scaleY + growthY;
    to.scaleX = AtLeastSmallest(to.scaleX);
    to.scaleY = AtLeastSmallest(to.scaleY);
}

void TransformContext::FlipHorizontal() {
    m_flipHorizontal = !m_flipHorizontal;
    UpdateStroke();
}

void TransformContext::FlipVertical() {
    m_flipVertical = !m_flipVertical;
    UpdateStroke();
}

void TransformContext::UpdateStroke() {
    BaseNode* node = GetSelectionNode();
    if (node == nullptr || !HasStroke(*node)) {
        return;
    }
    Stroke* stroke = node->GetActiveStroke(m_camera, false);
    if (stroke->freshSelection) {
        node->GetFinalImage(m_camera); // lifts the region, or what is pasted, while the stroke says which
    }
    const Transformation& by = m_transformation;
    stroke->offsetX = by.translation.x();
    stroke->offsetY = by.translation.y();
    stroke->rotation = by.rotation;
    stroke->scaleX = static_cast<double>(m_flipHorizontal ? -by.scaleX : by.scaleX);
    stroke->scaleY = static_cast<double>(m_flipVertical ? -by.scaleY : by.scaleY);
    stroke->freshSelection = false;
    stroke->pasted = false;
    stroke->changed = true;
    RefreshView();
}

void TransformContext::RefreshView() {
    if (BaseNode* node = BaseNode::GetMaster()) {
        node->RefreshActiveView();
    }
}

} // namespace vellix
