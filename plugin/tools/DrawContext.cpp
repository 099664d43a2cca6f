#include "tools/DrawContext.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"
#include "node/ViewPlacement.h"
#include "paint/ScopeExit.h"
#include "paint/Stroke.h"
#include "tools/ThreadManager.h"

#include <maya/M3dView.h>
#include <maya/MColor.h>
#include <maya/MPoint.h>
#include <maya/MUIDrawManager.h>

#include <QKeyEvent>
#include <qopengl.h>

#include <cmath>

namespace vellix {

namespace {

constexpr int PIXELS_PER_STEP = 10;
constexpr int CIRCLE_CORNERS = 360;
constexpr double RADIANS_PER_DEGREE = 3.14159265358979323846 / 180.0;

/// Drops the last character: two units of the text when it lies outside Unicode's basic plane.
void DropLastCharacter(QString& text) {
    const bool isPair = text.size() > 1 && text.at(text.size() - 1).isLowSurrogate() &&
                        text.at(text.size() - 2).isHighSurrogate();
    text.chop(isPair ? 2 : 1);
}

} // namespace

DrawContext::DrawContext()
    : m_guard([this] { FinishStroke(); }) {
    setTitleString("Draw Context");
    setImage(":/icons/draw_context_01.png", kImage1);
    RefreshCursor();
}

DrawContext::~DrawContext() {
    // The host switches a current tool off before it deletes it. With a stroke left the host itself is
    // closing, and there is no node to commit to.
    if (m_stroke != nullptr) {
        ThreadManager::GetInstance()->DestroyInputThread();
    }
}

void DrawContext::toolOnSetup(MEvent&) {
    setHelpString("Draw on viewport");
    if (BaseNode::GetMaster() == nullptr) {
        MayaUtil::CreateNode(false, false, QString(), QString(), -1);
    }
    BaseNode::SetDrawContextActive(true);
    m_inputHandler.SetEventFilterEnabled(true);
}

void DrawContext::toolOffCleanup() {
    FinishStroke();
    EndAdjusting();
    m_node = BaseNodePointer();
    BaseNode::SetDrawContextActive(false);
    m_inputHandler.SetEventFilterEnabled(false);
}

MStatus DrawContext::doEnterRegion(MEvent&) {
    return MS::kSuccess;
}

// --- the pointer ------------------------------------------------------------------------------------------

MStatus DrawContext::doPress(MEvent& event) {
    FinishStroke();
    m_layerIndex = -1;
    m_frameAdded = false;
    m_inputHandler.SetDrawContext(nullptr);
    m_inputHandler.UpdateActiveViewEventFilter();
    m_adjustSize = m_inputHandler.AdjustSizeEnabled();
    m_adjustOpacity = m_inputHandler.AdjustOpacityEnabled() && Settings::activeTool != ToolType::Eraser;
    if (IsAdjusting()) {
        BeginAdjusting(event);
        return MS::kSuccess;
    }
    MStatus status;
    const MEvent::MouseButtonType button = event.mouseButton(&status);
    if (status && button == MEvent::kLeftMouse) {
        BeginStroke();
    } else if (status && button == MEvent::kMiddleMouse) {
        SwitchCamera();
    }
    return MS::kSuccess;
}

MStatus DrawContext::doDrag(MEvent& event) {
    if (!m_node) {
        return MS::kSuccess;
    }
    if (!IsAdjusting()) {
        RefreshView(); // the input thread adds the stroke's points
        return MS::kSuccess;
    }
    short x = 0;
    short y = 0;
    event.getPosition(x, y);
    const int value = m_adjustStart + (x - m_pressX) / PIXELS_PER_STEP;
    if (m_adjustSize) {
        Settings::SetToolSize(m_adjustedTool, value);
    } else {
        Settings::SetToolOpacity(m_adjustedTool, value);
    }
    if (m_circleShown) {
        ToggleDiameterDisplay(m_circleRadius);
    }
    ToggleDiameterDisplay(ToolDisplayRadius());
    DialogManager::RefreshToolOptions();
    return MS::kSuccess;
}

MStatus DrawContext::doRelease(MEvent&) {
    if (IsAdjusting()) {
        EndAdjusting();
    } else if (m_node || m_stroke != nullptr) {
        ThreadManager::GetInstance()->AwaitFirstSamples();
        ThreadManager::GetInstance()->DestroyInputThread();
        m_guard.Release();
        const Stroke* const stroke = ActiveStroke();
        if (stroke == nullptr || stroke->tool != ToolType::Text) {
            PushStroke();
        } else {
            RefreshView();
            m_inputHandler.SetDrawContext(this);
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
    m_drawManager = &drawManager;
    const ScopeExit ended([this] { m_drawManager = nullptr; });
    (this->*handler)(event);
    return MS::kSuccess;
}

// --- strokes ----------------------------------------------------------------------------------------------

void DrawContext::BeginStroke() {
    BaseNode* const node = BaseNode::GetMaster();
    if (node == nullptr) {
        return;
    }
    node->RefreshActiveCamera();
    m_camera = node->GetActiveCamera();
    if (!node->PrepareForDraw(m_camera, m_layerIndex, m_frameAdded)) {
        return;
    }
    m_node = BaseNodePointer(node);
    M3dView view = M3dView::active3dView();
    m_stroke = node->GetActiveStroke(m_camera, false);
    m_view = view.widget();
    ThreadManager::GetInstance()->CreateInputThread(m_view, node, m_stroke);
    m_guard.Watch(m_view);
}

void DrawContext::FinishStroke() {
    if (m_stroke == nullptr) {
        return;
    }
    ThreadManager::GetInstance()->DestroyInputThread();
    PushStroke();
    DrawContextInputHandler::ResetTabletSettings();
}

void DrawContext::PushStroke() {
    const BaseNodePointer node = m_node;
    m_guard.Release();
    m_node = BaseNodePointer();
    m_stroke = nullptr;
    m_view.clear();
    m_inputHandler.SetDrawContext(nullptr);
    if (node) {
        MayaUtil::PushStroke(m_camera, m_layerIndex, m_frameAdded);
    }
    // A stroke whose layer or node is gone was not committed. Drop it: a deleted node may come back by undo,
    // and the old stroke would block the next one.
    BaseNode* const left = node.GetAlive();
    if (left != nullptr && left->HasActiveStroke()) {
        left->CancelActiveStroke();
    }
    if (node) {
        node->RefreshActiveView(); // removes the frame around typed text
    }
}

/// The stroke of this tool; null if a command has committed it or the node is gone.
Stroke* DrawContext::ActiveStroke() const {
    const bool isThere = m_stroke != nullptr && m_node && m_node->HasActiveStroke() &&
                         m_node->GetActiveStroke(m_camera, false) == m_stroke;
    return isThere ? m_stroke : nullptr;
}

void DrawContext::RefreshView() {
    if (m_node) {
        m_node->RefreshActiveView();
    }
}

void DrawContext::SwitchCamera() {
    const BaseNode* const node = BaseNode::GetMaster();
    if (node == nullptr) {
        return;
    }
    const QString camera = MayaUtil::GetActive3dViewCameraName();
    const int index = node->GetActiveLayerIndex(camera);
    if (camera != node->GetActiveCamera() && index >= 0) {
        MayaUtil::SetActiveLayer(camera, index);
    }
}

// --- text -------------------------------------------------------------------------------------------------

bool DrawContext::IsTyping() const {
    const Stroke* const stroke = ActiveStroke();
    return stroke != nullptr && stroke->tool == ToolType::Text;
}

void DrawContext::EndTextDraw() {
    PushStroke();
}

bool DrawContext::ProcessKeyDownEvent(QKeyEvent* event) {
    if (!IsTyping()) {
        return false;
    }
    switch (event->key()) {
    case Qt::Key_Escape:
        EndTextDraw();
        return true;
    case Qt::Key_Backspace:
        if (!m_stroke->text.isEmpty()) {
            DropLastCharacter(m_stroke->text);
            m_stroke->changed = true;
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_stroke->text += QLatin1Char('\n');
        m_stroke->changed = true;
        break;
    default:
        m_stroke->text += event->text();
        m_stroke->changed = true;
    }
    RefreshView();
    return true;
}

// --- size and opacity by dragging -------------------------------------------------------------------------

void DrawContext::BeginAdjusting(MEvent& event) {
    m_node = BaseNodePointer(BaseNode::GetMaster());
    if (!m_node) {
        return;
    }
    m_adjustedTool = Settings::activeTool;
    m_adjustStart = AdjustedValue();
    event.getPosition(m_pressX, m_pressY);
    ToggleDiameterDisplay(0.0f);
    m_circleShown = false;
    ToggleDiameterDisplay(ToolDisplayRadius());
}

void DrawContext::EndAdjusting() {
    if (!IsAdjusting()) {
        return;
    }
    if (m_circleShown) {
        ToggleDiameterDisplay(m_circleRadius);
    }
    m_adjustSize = false;
    m_adjustOpacity = false;
    m_node = BaseNodePointer();
}

int DrawContext::AdjustedValue() const {
    return m_adjustSize ? Settings::GetToolSize(m_adjustedTool) : Settings::GetToolOpacity(m_adjustedTool);
}

float DrawContext::ToolDisplayRadius() {
    if (!m_node) {
        return 1.0f;
    }
    const float scale = ViewPlacement::For(M3dView::active3dView()).Scale();
    return static_cast<float>(Settings::GetToolSize(m_adjustedTool)) * 0.5f * scale;
}

void DrawContext::ToggleDiameterDisplay(float radius) {
    if (m_drawManager == nullptr || m_circleShown) {
        if (m_adjustSize) {
            DrawXorCircle(radius);
        }
    } else if (radius > 0.0f) {
        DrawAdjustment(radius);
    }
    m_circleShown = !m_circleShown;
    m_circleRadius = radius;
}

/// Inverts the pixels of the circle; a second call removes it.
void DrawContext::DrawXorCircle(float radius) const {
    M3dView view = M3dView::active3dView();
    if (!view.beginXorDrawing()) {
        return;
    }
    view.setDrawColor(MColor(1.0f, 1.0f, 1.0f));
    glBegin(GL_LINE_LOOP);
    for (int degree = 0; degree < CIRCLE_CORNERS; ++degree) {
        const double angle = degree * RADIANS_PER_DEGREE;
        glVertex2d(m_pressX + radius * std::cos(angle), m_pressY + radius * std::sin(angle));
    }
    glEnd();
    view.endXorDrawing();
}

void DrawContext::DrawAdjustment(float radius) const {
    const MPoint center(m_pressX, m_pressY);
    m_drawManager->beginDrawable();
    m_drawManager->setColor(MColor(1.0f, 0.0f, 0.0f, 1.0f));
    if (m_adjustSize) {
        m_drawManager->setLineWidth(1.0f);
        m_drawManager->circle2d(center, static_cast<double>(radius), false);
    }
    const QString value = IsAdjusting() ? QString::number(AdjustedValue()) : QString();
    m_drawManager->text2d(center, MayaUtil::ToMString(value), MHWRender::MUIDrawManager::kRight);
    m_drawManager->endDrawable();
}

void DrawContext::RefreshCursor() {
    setCursor(MCursor::crossHairCursor);
}

} // namespace vellix
