#include "tools/DrawContext.h"

#include "core/LayerManager.h"
#include "host/Guarded.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"
#include "node/ViewPlacement.h"
#include "paint/ScopeExit.h"
#include "paint/Stroke.h"
#include "tools/EventClock.h"
#include "tools/ThreadManager.h"

#include <maya/M3dView.h>
#include <maya/MColor.h>
#include <maya/MPoint.h>
#include <maya/MUIDrawManager.h>

#include <QImage>
#include <QPointF>
#include <qopengl.h>

#include <cmath>

namespace vellix {

namespace {

constexpr int PIXELS_PER_STEP = 10;
constexpr int CIRCLE_CORNERS = 360;
// Inverting the highest bit is visible on every colour; white would invert mid-grey to mid-grey.
constexpr GLubyte CIRCLE_INVERSION = 0x80;
constexpr double RADIANS_PER_DEGREE = 3.14159265358979323846 / 180.0;

} // namespace

DrawContext::DrawContext()
    : guard_([this] { CommitOrDrop(&DrawContext::FinishStroke); }) {
    setTitleString("Draw Context");
    setImage(":/icons/draw_context_01.png", kImage1);
    RefreshCursor();
}

DrawContext::~DrawContext() {
    // The host switches a current tool off before it deletes it. With a stroke left the host itself is
    // closing, and there is no node to commit to.
    if (stroke_) {
        ThreadManager::GetInstance()->DestroyInputThread();
    }
    BaseNode::SetAdjustingContext(nullptr);
}

void DrawContext::toolOnSetup(MEvent&) {
    setHelpString("Draw on viewport");
    if (!BaseNode::GetMaster()) {
        MayaUtil::CreateMissingNode();
    }
    BaseNode::SetDrawContextActive(true);
    inputHandler_.SetEventFilterEnabled(true);
}

void DrawContext::toolOffCleanup() {
    FinishStroke();
    EndAdjusting();
    node_ = BaseNodePointer();
    BaseNode::SetDrawContextActive(false);
    inputHandler_.SetEventFilterEnabled(false);
}

MStatus DrawContext::doEnterRegion(MEvent&) {
    return MS::kSuccess;
}

// --- the pointer ------------------------------------------------------------------------------------------

MStatus DrawContext::doPress(MEvent& event) {
    FinishStroke();
    layerIndex_ = -1;
    frameAdded_ = false;
    inputHandler_.SetDrawContext(nullptr);
    inputHandler_.UpdateActiveViewEventFilter();
    adjustSize_ = inputHandler_.AdjustSizeEnabled();
    adjustOpacity_ = inputHandler_.AdjustOpacityEnabled() && Settings::activeTool != ToolType::Eraser;
    isPicking_ = false;
    if (IsAdjusting()) {
        BeginAdjusting(event);
        return MS::kSuccess;
    }
    MStatus status;
    const MEvent::MouseButtonType button = event.mouseButton(&status);
    isPicking_ = inputHandler_.PickColorEnabled() && status && button == MEvent::kLeftMouse;
    if (isPicking_) {
        PickColor(event);
        return MS::kSuccess;
    }
    if (status && button == MEvent::kLeftMouse) {
        BeginStroke();
    } else if (status && button == MEvent::kMiddleMouse) {
        SwitchCamera();
    }
    return MS::kSuccess;
}

MStatus DrawContext::doDrag(MEvent& event) {
    if (isPicking_) {
        PickColor(event);
        return MS::kSuccess;
    }
    if (!node_) {
        return MS::kSuccess;
    }
    if (!IsAdjusting()) {
        RefreshView(); // the input thread adds the stroke's points
        return MS::kSuccess;
    }
    short x = 0;
    short y = 0;
    event.getPosition(x, y);
    const int value = adjustStart_ + (x - pressX_) / PIXELS_PER_STEP;
    if (adjustSize_) {
        Settings::SetToolSize(adjustedTool_, value);
    } else {
        Settings::SetToolOpacity(adjustedTool_, value);
    }
    if (circleShown_) {
        ToggleDiameterDisplay(circleRadius_);
    }
    ToggleDiameterDisplay(ToolDisplayRadius());
    DialogManager::RefreshToolOptions();
    return MS::kSuccess;
}

MStatus DrawContext::doRelease(MEvent&) {
    isPicking_ = false;
    if (IsAdjusting()) {
        EndAdjusting();
    } else if (node_ || stroke_) {
        EndSampling();
        const Stroke* const stroke = ActiveStroke();
        if (!stroke || stroke->tool != ToolType::Text) {
            PushStroke();
        } else {
            text_ = TypedText();
            isUnsaved_ = false;
            ShowText();
            inputHandler_.SetDrawContext(this);
        }
    }
    DrawContextInputHandler::ResetTabletSettings();
    return MS::kSuccess;
}

MStatus DrawContext::doPress(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                             const MHWRender::MFrameContext&) {
    return Handle(&DrawContext::doPress, event, drawManager);
}

MStatus DrawContext::doDrag(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                            const MHWRender::MFrameContext&) {
    return Handle(&DrawContext::doDrag, event, drawManager);
}

MStatus DrawContext::doRelease(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                               const MHWRender::MFrameContext&) {
    return Handle(&DrawContext::doRelease, event, drawManager);
}

MStatus DrawContext::Handle(LegacyHandler handler, MEvent& event, MHWRender::MUIDrawManager& drawManager) {
    drawManager_ = &drawManager;
    const ScopeExit ended([this] { drawManager_ = nullptr; });
    (this->*handler)(event);
    return MS::kSuccess;
}

// --- strokes ----------------------------------------------------------------------------------------------

void DrawContext::BeginStroke() {
    BaseNode* node = BaseNode::GetMaster();
    if (!node && MayaUtil::CreateNodeNow()) {
        node = BaseNode::GetMaster(); // the scene is a new one, or the node was deleted or undone
    }
    if (!node) {
        return;
    }
    node->RefreshActiveCamera();
    const QString camera = node->GetActiveCamera();
    if (!node->PrepareForDraw(camera, layerIndex_, frameAdded_)) {
        return;
    }
    node_ = BaseNodePointer(node);
    stroke_ = node->GetActiveStroke(camera, false);
    if (!stroke_) {
        node->GetLayerManager()->TakeBackPress();
        node_ = BaseNodePointer();
        return;
    }
    M3dView view = M3dView::active3dView();
    view_ = view.widget();
    EventClock::BeginGesture();
    ThreadManager::GetInstance()->CreateInputThread(view_, node, stroke_);
    guard_.Watch(view_);
}

/// Makes the colour under the pointer the active one, as the view shows the drawing, with its ghosts. Where
/// nothing is drawn the colour stays.
void DrawContext::PickColor(MEvent& event) const {
    BaseNode* const node = BaseNode::GetMaster();
    const QImage* const picture = node ? node->GetFinalImage(MayaUtil::GetActive3dViewCameraName()) : nullptr;
    short x = 0;
    short y = 0;
    if (!picture || !event.getPosition(x, y)) {
        return;
    }
    const QPoint place = ViewPlacement::For(M3dView::active3dView()).ToImage(QPointF(x, y));
    const QColor color = picture->valid(place) ? picture->pixelColor(place) : QColor(0, 0, 0, 0);
    if (color.alpha() > 0 && color.rgb() != Settings::activeColor.rgb()) {
        MayaUtil::SetActiveColor(color);
    }
}

/// Adds the samples that the main thread has not got yet.
void DrawContext::EndSampling() {
    ThreadManager& samples = *ThreadManager::GetInstance();
    if (guard_.HasEnd()) {
        samples.TakeRest(guard_.End(), guard_.EndTime());
    }
    samples.AwaitFirstSamples();
    samples.FinishLine();
    samples.DestroyInputThread();
    guard_.Release();
}

void DrawContext::FinishStroke() {
    if (!stroke_) {
        return;
    }
    ThreadManager::GetInstance()->FinishLine();
    ThreadManager::GetInstance()->DestroyInputThread();
    PushStroke();
    DrawContextInputHandler::ResetTabletSettings();
}

void DrawContext::PushStroke() {
    EndComposition();
    const BaseNodePointer node = node_;
    const bool wasBegun = stroke_ != nullptr;
    const bool isThere = ActiveStroke() != nullptr; // a command may have committed it
    guard_.Release();
    node_ = BaseNodePointer();
    stroke_ = nullptr;
    view_.clear();
    inputHandler_.SetDrawContext(nullptr);
    // A stroke that was not committed is dropped, also on a deleted node: that may come back by undo, and the
    // old stroke would block the next one.
    const auto dropLeft = [&node] {
        BaseNode* const left = node.GetAlive();
        if (left && left->HasActiveStroke()) {
            left->CancelActiveStroke();
        }
    };
    try {
        if (isThere && node->MayCommitStroke()) {
            // The layer may have moved since the press.
            const LayerPlace place = node->FindLayer(node->GetLayerManager()->GetStrokeDrawing().layer);
            MayaUtil::PushStroke(place.camera, layerIndex_ >= 0 ? place.index : -1, frameAdded_);
        } else if (wasBegun && !node) {
            BaseNode::ReportStrokeLost();
        }
    } catch (...) {
        dropLeft();
        throw;
    }
    dropLeft();
    if (node) {
        node->RefreshActiveView(); // removes the frame around typed text
    }
}

/// For events that the host does not pass through the tool.
void DrawContext::CommitOrDrop(void (DrawContext::*commit)()) noexcept {
    const bool isDone = RunGuarded("The stroke", [&] { (this->*commit)(); });
    if (!isDone) {
        RunGuarded("Dropping the stroke", [this] { DropUnfinished(); });
    }
}

void DrawContext::DropUnfinished() {
    ThreadManager::GetInstance()->DestroyInputThread();
    guard_.Release();
    const BaseNodePointer node = node_;
    const bool isAdjusting = IsAdjusting();
    node_ = BaseNodePointer();
    stroke_ = nullptr;
    view_.clear();
    BaseNode::SetAdjustingContext(nullptr);
    adjustSize_ = false;
    adjustOpacity_ = false;
    inputHandler_.SetDrawContext(nullptr);
    DrawContextInputHandler::ResetTabletSettings();
    BaseNode* const left = isAdjusting ? nullptr : node.GetAlive();
    if (left) {
        left->CancelActiveStroke();
        left->GetLayerManager()->TakeBackPress();
    }
}

/// The stroke of this tool; null if a command has committed it or the node is gone.
Stroke* DrawContext::ActiveStroke() const {
    const bool isThere = stroke_ != nullptr && node_ && node_->HasActiveStroke() &&
                         node_->GetActiveStroke(QString(), false) == stroke_;
    return isThere ? stroke_ : nullptr;
}

void DrawContext::RefreshView() {
    if (node_) {
        node_->RefreshActiveView();
    }
}

void DrawContext::SwitchCamera() {
    const BaseNode* const node = BaseNode::GetMaster();
    if (!node) {
        return;
    }
    const QString camera = MayaUtil::GetActive3dViewCameraName();
    const int index = node->GetActiveLayerIndex(camera);
    if (camera != node->GetActiveCamera() && index >= 0) {
        MayaUtil::SetActiveLayer(camera, index);
    }
}

// --- size and opacity by dragging -------------------------------------------------------------------------

void DrawContext::BeginAdjusting(MEvent& event) {
    node_ = BaseNodePointer(BaseNode::GetMaster());
    if (!node_) {
        return;
    }
    adjustedTool_ = Settings::activeTool;
    adjustStart_ = AdjustedValue();
    event.getPosition(pressX_, pressY_);
    view_ = M3dView::active3dView().widget();
    BaseNode::SetAdjustingContext(this);
    ToggleDiameterDisplay(0.0f);
    circleShown_ = false;
    ToggleDiameterDisplay(ToolDisplayRadius());
}

void DrawContext::EndAdjusting() {
    if (!IsAdjusting()) {
        return;
    }
    if (circleShown_) {
        ToggleDiameterDisplay(circleRadius_);
    }
    BaseNode::SetAdjustingContext(nullptr);
    adjustSize_ = false;
    adjustOpacity_ = false;
    RefreshView(); // the view may have been drawn without the circle that was taken off it
    view_.clear();
    node_ = BaseNodePointer();
}

int DrawContext::AdjustedValue() const {
    return adjustSize_ ? Settings::GetToolSize(adjustedTool_) : Settings::GetToolOpacity(adjustedTool_);
}

float DrawContext::ToolDisplayRadius() {
    if (!node_) {
        return 1.0f;
    }
    const float scale = ViewPlacement::For(M3dView::active3dView()).Scale();
    return static_cast<float>(Settings::GetToolSize(adjustedTool_)) * 0.5f * scale;
}

void DrawContext::ToggleDiameterDisplay(float radius) {
    if (!drawManager_ || circleShown_) {
        if (adjustSize_) {
            DrawXorCircle(radius);
        }
    } else if (radius > 0.0f) {
        DrawAdjustment(radius);
    }
    circleShown_ = !circleShown_;
    circleRadius_ = radius;
}

/// Inverts the pixels of the circle; a second call removes it.
void DrawContext::DrawXorCircle(float radius) const {
    M3dView view = M3dView::active3dView();
    if (!view.beginXorDrawing()) {
        return;
    }
    constexpr float inversion = CIRCLE_INVERSION / 255.0f;
    view.setDrawColor(MColor(inversion, inversion, inversion));
    DrawCircle(radius);
    view.endXorDrawing();
}

void DrawContext::DrawCircle(float radius) const {
    glBegin(GL_LINE_LOOP);
    for (int degree = 0; degree < CIRCLE_CORNERS; ++degree) {
        const double angle = degree * RADIANS_PER_DEGREE;
        glVertex2d(pressX_ + radius * std::cos(angle), pressY_ + radius * std::sin(angle));
    }
    glEnd();
}

/// Every redraw of the view takes the circle away.
void DrawContext::OnViewDrawn(const M3dView& view) {
    if (!adjustSize_ || !circleShown_ || view.widget() != view_) {
        return;
    }
    glColor3ub(CIRCLE_INVERSION, CIRCLE_INVERSION, CIRCLE_INVERSION);
    DrawCircle(circleRadius_);
}

void DrawContext::DrawAdjustment(float radius) const {
    const MPoint center(pressX_, pressY_);
    drawManager_->beginDrawable();
    drawManager_->setColor(MColor(1.0f, 0.0f, 0.0f, 1.0f));
    if (adjustSize_) {
        drawManager_->setLineWidth(1.0f);
        drawManager_->circle2d(center, static_cast<double>(radius), false);
    }
    const QString value = IsAdjusting() ? QString::number(AdjustedValue()) : QString();
    drawManager_->text2d(center, MayaUtil::ToMString(value), MHWRender::MUIDrawManager::kRight);
    drawManager_->endDrawable();
}

void DrawContext::RefreshCursor() {
    setCursor(MCursor::crossHairCursor);
}

} // namespace vellix
