#pragma once

#include "tools/ViewEventFilter.h"

#include <QPoint>

class QAction;
class QKeyEvent;
class QMouseEvent;

namespace vellix {

class TransformContext;

/// What the transform tool gets beside the host's tool events: the backslash key, and the right click in a
/// view with its menu. The slots do nothing once the tool is no longer in use.
class TransformContextInputHandler : public ViewEventFilter {
    Q_OBJECT

public:
    /// The context that the menu acts on, borrowed; null for none.
    void SetTransformContext(TransformContext* context);
    void SetEventFilterEnabled(bool enabled);

    bool eventFilter(QObject* watched, QEvent* event) override;
    // Each answers whether the event ends here.
    bool ProcessKeyDownEvent(QKeyEvent* event);
    bool ProcessKeyUpEvent(QKeyEvent* event);
    bool ProcessMouseEvent(QMouseEvent* event);
    /// Shows the menu of the tool's stage at the pointer. `position`: where the view was clicked, in its
    /// widget's pixels; pasting goes there.
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

private:
    using Slot = void (TransformContextInputHandler::*)();

    QAction* AddItem(QMenu& menu, const char* label, Slot slot);

    TransformContext* m_context = nullptr;
    QPoint m_menuPosition;
};

} // namespace vellix
