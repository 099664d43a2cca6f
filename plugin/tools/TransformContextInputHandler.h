#pragma once

#include "tools/ViewEventFilter.h"

#include <QPoint>

class QAction;
class QKeyEvent;
class QMouseEvent;

namespace vellix {

class TransformContext;

/// Handles Qt events for the transform tool: the backslash key, and the right click in a view, which opens
/// the tool's menu. The slots do nothing once the tool is no longer current.
class TransformContextInputHandler : public ViewEventFilter {
    Q_OBJECT

public:
    /// Sets the context that the menu acts on, borrowed; null for none.
    void SetTransformContext(TransformContext* context);
    void SetEventFilterEnabled(bool enabled);

    // Each returns whether the event is consumed.
    bool ProcessKeyDownEvent(QKeyEvent* event);
    bool ProcessKeyUpEvent(QKeyEvent* event);
    bool ProcessMouseEvent(QMouseEvent* event);
    /// Shows the menu of the tool's stage at the pointer. `position` is the click in pixels of the view's
    /// widget, where pasting puts its image.
    void ShowContextMenu(QPoint position);

public Q_SLOTS:
    void Transform();
    void TransformCopy();
    void FlipHorizontal();
    void FlipVertical();
    void Cut();
    void Copy();
    void Paste();
    void PasteAndTransform();
    void Apply();
    void Revert();
    void Cancel();

protected:
    bool ProcessEvent(QObject* watched, QEvent* event) override;

private:
    template <typename Action>
    void Tell(Action action);

    using Slot = void (TransformContextInputHandler::*)();

    QAction* AddItem(QMenu& menu, const char* label, Slot slot);

    TransformContext* context_ = nullptr;
    QPoint menuPosition_;
};

} // namespace vellix
