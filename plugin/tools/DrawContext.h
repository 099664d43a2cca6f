#pragma once

#include "node/BaseNodePointer.h"
#include "paint/ToolType.h"
#include "tools/DrawContextInputHandler.h"
#include "tools/StrokeGuard.h"

#include <maya/MPxContext.h>

#include <QPointer>
#include <QString>
#include <QWidget>

class QKeyEvent;

namespace vellix {

class BaseNode;
struct Stroke;

/// The draw tool. A press with the left button in a view begins a stroke on the active layer of the view's
/// camera, which the input thread fills until the release; text then takes typed keys. With B or M held, a
/// drag sets the size or the opacity of the current drawing tool instead. The middle button makes the camera
/// of the view the active one. Every event succeeds.
class DrawContext : public MPxContext {
public:
    DrawContext();
    ~DrawContext() override;

    void toolOnSetup(MEvent& event) override;
    void toolOffCleanup() override;
    MStatus doEnterRegion(MEvent& event) override;

    MStatus doPress(MEvent& event) override;
    MStatus doDrag(MEvent& event) override;
    MStatus doRelease(MEvent& event) override;
    MStatus doPress(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                    const MHWRender::MFrameContext& context) override;
    MStatus doDrag(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                   const MHWRender::MFrameContext& context) override;
    MStatus doRelease(MEvent& event, MHWRender::MUIDrawManager& drawManager,
                      const MHWRender::MFrameContext& context) override;

    /// A key for the text being typed: Escape ends it. False, with nothing done, when there is no such text.
    bool ProcessKeyDownEvent(QKeyEvent* event);
    /// Is there text that takes keys?
    bool IsTyping() const;
    void EndTextDraw();
    /// Commits the stroke.
    void PushStroke();
    void RefreshView();
    void RefreshCursor();
    /// Radius of the tool being adjusted in the active view, view pixels.
    float ToolDisplayRadius();
    /// Shows the circle of the tool being adjusted with its value, or takes the one that is shown away.
    void ToggleDiameterDisplay(float radius);
    /// The view that the stroke was begun in; null when it has gone.
    QWidget* View() const { return m_view; }

private:
    using Form = MStatus (DrawContext::*)(MEvent&);

    MStatus Handle(Form form, MEvent& event, MHWRender::MUIDrawManager& drawManager);
    bool IsAdjusting() const { return m_adjustSize || m_adjustOpacity; }
    void BeginAdjusting(MEvent& event);
    void EndAdjusting();
    void BeginStroke();
    /// Ends what is being drawn, or typed, when it cannot go on.
    void FinishStroke();
    void SwitchCamera();
    Stroke* ActiveStroke() const;
    int AdjustedValue() const;
    void DrawXorCircle(float radius) const;
    void DrawAdjustment(float radius) const;

    DrawContextInputHandler m_inputHandler;
    StrokeGuard m_guard;
    BaseNodePointer m_node;
    Stroke* m_stroke = nullptr; ///< owned by the node; see ActiveStroke()
    QPointer<QWidget> m_view;
    QString m_camera;
    int m_layerIndex = -1;
    bool m_frameAdded = false;

    bool m_adjustSize = false;
    bool m_adjustOpacity = false;
    ToolType m_adjustedTool = ToolType::Pencil;
    int m_adjustStart = 0;
    short m_pressX = 0;
    short m_pressY = 0;
    bool m_circleShown = false;
    float m_circleRadius = 0.0f;
    MHWRender::MUIDrawManager* m_drawManager = nullptr; ///< while an event of Viewport 2.0 is handled
};

} // namespace vellix
