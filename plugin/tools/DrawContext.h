#pragma once

#include "node/BaseNodePointer.h"
#include "node/LegacyOutline.h"
#include "paint/ToolType.h"
#include "tools/DrawContextInputHandler.h"
#include "tools/StrokeGuard.h"
#include "tools/TypedText.h"

#include <maya/MPxContext.h>

#include <QPointer>
#include <QString>
#include <QWidget>

class QInputMethodEvent;
class QInputMethodQueryEvent;
class QKeyEvent;

namespace vellix {

class BaseNode;
struct Stroke;

/// The draw tool. A left press in a view begins a stroke on the active layer of the view's camera. The input
/// thread adds points until the release; a text stroke then takes typed keys. With B or M held, a drag
/// instead sets the size or the opacity of the current drawing tool; with I held, a press or drag takes the
/// colour under the pointer. The middle button makes the view's
/// camera the active one. Every event handler returns success.
class DrawContext : public MPxContext, private LegacyOutline {
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

    /// Handles a key for the text being typed: Escape ends it, the keys of undo, redo, paste and of the caret
    /// act on it. Returns false, and does nothing, when no text is being typed.
    bool ProcessKeyDownEvent(QKeyEvent* event);
    /// Takes what an input method composes or has composed. Call it only while text is typed.
    void ProcessInputMethodEvent(const QInputMethodEvent& event);
    /// Tells an input method about the text and the place of its caret. Call it only while text is typed.
    void AnswerInputMethod(QInputMethodQueryEvent& query) const;
    /// Whether the text wants a key that is a shortcut of the host otherwise.
    static bool EditsText(const QKeyEvent& event);
    /// Returns whether text is being typed.
    bool IsTyping() const;
    /// Commits the text, or drops it with a message when that fails.
    void EndTextDraw();
    /// Commits the stroke into the drawing that it began on, or drops it, and what its press added, if it
    /// cannot be committed.
    void PushStroke();
    /// Drops the stroke or text, and what its press added, after something went wrong.
    void DropUnfinished();
    void RefreshView();
    void RefreshCursor();
    /// Radius of the tool being adjusted, in pixels of the active view. 1 without a node.
    float ToolDisplayRadius();
    /// Shows the circle of the tool being adjusted with its value, or removes the circle that is shown.
    /// `radius` is in view pixels.
    void ToggleDiameterDisplay(float radius);
    /// The view that the stroke or the adjustment began in; null once it is closed. The host owns it.
    QWidget* View() const { return view_; }

private:
    using LegacyHandler = MStatus (DrawContext::*)(MEvent&);

    MStatus Handle(LegacyHandler handler, MEvent& event, MHWRender::MUIDrawManager& drawManager);
    bool IsAdjusting() const { return adjustSize_ || adjustOpacity_; }
    void BeginAdjusting(MEvent& event);
    void EndAdjusting();
    void BeginStroke();
    void PickColor(MEvent& event) const;
    void EndSampling();
    /// Stops the input thread and commits the stroke being drawn or typed, if there is one.
    void FinishStroke();
    void CommitOrDrop(void (DrawContext::*commit)()) noexcept;
    void SwitchCamera();
    Stroke* ActiveStroke() const;
    void EditText(const QKeyEvent& event);
    void ShowText();
    void EndComposition();
    static void Warn(bool fits);
    int AdjustedValue() const;
    void DrawXorCircle(float radius) const;
    void DrawCircle(float radius) const;
    void OnViewDrawn(const M3dView& view) override;
    void DrawAdjustment(float radius) const;

    DrawContextInputHandler inputHandler_;
    StrokeGuard guard_;
    BaseNodePointer node_;
    Stroke* stroke_ = nullptr; ///< owned by the node; see ActiveStroke()
    QPointer<QWidget> view_;
    int layerIndex_ = -1;
    bool frameAdded_ = false;
    TypedText text_;
    bool isUnsaved_ = false; ///< the host knows that the text is not saved

    bool adjustSize_ = false;
    bool adjustOpacity_ = false;
    bool isPicking_ = false; ///< the colour under the pointer, until the release
    ToolType adjustedTool_ = ToolType::Pencil;
    int adjustStart_ = 0;
    short pressX_ = 0;
    short pressY_ = 0;
    bool circleShown_ = false;
    float circleRadius_ = 0.0f;
    MHWRender::MUIDrawManager* drawManager_ = nullptr; ///< borrowed during a Viewport 2.0 event; else null
};

} // namespace vellix
