#pragma once

#include "tools/OutsidePress.h"
#include "tools/ViewEventFilter.h"

class QAction;
class QMenu;
class QTabletEvent;

namespace vellix {

class BaseNode;
class DrawContext;

/// Handles Qt events for the draw tool while it is current: the keys that turn a press into a size or opacity
/// drag, a pen's pressure and eraser end, text typed into a stroke, and right clicks in views and on the time
/// slider, which open the tool's menus.
class DrawContextInputHandler : public ViewEventFilter {
    Q_OBJECT

public:
    DrawContextInputHandler();
    ~DrawContextInputHandler() override;

    void SetEventFilterEnabled(bool enabled);
    /// Sets the context that receives typed keys, borrowed; null for none. Its text is the open one
    /// meanwhile.
    void SetDrawContext(DrawContext* context);
    bool AdjustSizeEnabled() const { return adjustSize_; }
    bool AdjustOpacityEnabled() const { return adjustOpacity_; }
    /// Whether a press takes the colour under the pointer.
    bool PickColorEnabled() const { return pickColor_; }
    /// Resets the pen to what a mouse gives: full pressure, not the eraser end.
    static void ResetTabletSettings();
    /// Ends the text being typed, if there is one.
    void EndTextDraw();

    // Each returns whether the event is consumed.
    bool ProcessKeyDownEvent(QKeyEvent* event);
    bool ProcessKeyUpEvent(QKeyEvent* event);
    static bool ProcessTabletEvent(QTabletEvent* event);
    bool ProcessMouseEvent(QMouseEvent* event);
    bool ProcessTimeControlMouseEvent(QMouseEvent* event);

    // Each shows a menu at the pointer and returns when it is closed.
    void ShowContextMenu();
    void ShowTimeControlContextMenu();

public Q_SLOTS:
    /// Activates the layer of the triggering action, wherever it is by now.
    void SetActiveLayer();
    void NewLayer();
    void LayerProperties();
    void InsertFrame();
    void DuplicateFrame();
    void DeleteFrame();
    void CutFrame();
    void CopyFrame();
    void PasteFrame();
    void ClearFrame();
    void StepForward();
    void StepBack();
    void ToggleGhostPrevious();
    void ToggleGhostNext();
    void GhostingSettings();
    void ShowToolbox();
    void ShowToolOptions();
    void ShowLayerManager();
    void ShowRetimingTool();
    void TransformTool();
    void SetTimelineDisplayOn();
    void SetTimelineDisplaySelectionContext();
    void SetTimelineDisplayOff();
    void SetPencilTool();
    void SetBrushTool();
    void SetEraserTool();
    void SetTextTool();
    void SetLineTool();
    void SetArrowTool();
    void SetEllipseTool();
    void SetRectangleTool();
    void DeleteActiveLayer();
    void DeleteActiveCameraLayers();
    void ClearAll();

    // Part of the interface for scripts and other tools; not called here.
    void ShowColorPalette();

protected:
    bool ProcessEvent(QObject* watched, QEvent* event) override;
    void ForgetHeldKeys() override;

private:
    /// The member that is true while the key is held; null for other keys.
    bool* HeldSwitch(int key);

    using Slot = void (DrawContextInputHandler::*)();

    bool ProcessViewEvent(QEvent* event);
    bool ProcessMainWindowEvent(QEvent* event);
    bool OverrideShortcut(QKeyEvent* event) const;
    bool ProcessInputMethodEvent(QEvent* event);
    bool IsTyping() const;
    void AcceptInputMethod(bool accept);

    QAction* AddItem(QMenu& menu, const QString& text, Slot slot);
    void AddCheckItem(QMenu& menu, const QString& text, bool checked, Slot slot);
    void AddLayers(QMenu& menu, const BaseNode& node);
    void AddTools(QMenu& menu);
    void AddFrameEdits(QMenu& menu);
    void AddGhosting(QMenu& menu);
    void AddPanels(QMenu& menu);
    void AddTimelineDisplay(QMenu& menu);
    void AddCleanup(QMenu& menu);

    QPointer<QWidget> timeSlider_;
    QPointer<QWidget> typedInto_; ///< the view with input methods switched on while typing
    DrawContext* drawContext_ = nullptr;
    OutsidePress outsidePress_;
    bool adjustSize_ = false;
    bool adjustOpacity_ = false;
    bool pickColor_ = false;
};

} // namespace vellix
