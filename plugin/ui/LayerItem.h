#pragma once

#include "ui/GuardedWidget.h"

#include <QWidget>

class QLineEdit;

namespace vellix {

class ElidedLabel;
class LayerToggle;
struct LayerManagerRow;
struct LayerPlace;

/// One layer in the layer manager: its visibility, state, name and mark. User actions go out as command
/// lines; the item shows only what Show() sets.
class LayerItem : public GuardedWidget<QWidget> {
    Q_OBJECT

public:
    /// The columns that the arrow keys move through.
    enum class Part { Row, Visibility, State, Mark };

    LayerItem(const QString& camera, int index, QWidget* parent = nullptr);

    const QString& GetCamera() const { return camera_; }
    int GetIndex() const { return index_; }
    /// The identity of the layer that is shown; see LayerManagerRow.
    quint64 GetId() const { return id_; }
    QString GetName() const;

    void Show(const LayerManagerRow& row);
    /// The active layer is shown in the host's highlight colours.
    void SetActive(bool active);
    /// Updates the colours after the palette changed.
    void UpdateColors();
    /// Makes this row the tab stop, or not. A list has only one.
    void SetTabStop(bool stop);

    void PlaceInTabOrder(QWidget* after);

    void FocusPart(Part part, Qt::FocusReason reason);
    /// Sets `part` to the focused part. Returns false if none has the focus.
    bool GetFocusedPart(Part& part) const;

Q_SIGNALS:
    void Focused(LayerItem* item);
    /// The user began to drag the row with the left button, moved it to a place on the screen, and ended it.
    void DragStarted(LayerItem* item);
    void DragMoved(const QPoint& place);
    void DragEnded(bool drop);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool HandleEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void Activate();
    void OpenProperties();
    void ToggleVisibility();
    void CycleState();
    void ToggleMark();
    bool FilterEvent(QObject* watched, QEvent* event);
    /// Edits the name in place.
    void BeginRename();
    void EndRename(bool keep);
    void EndDrag(bool drop);
    QWidget* GetWidget(Part part) const;
    LayerPlace FindLayer() const;

    QString camera_;
    int index_;
    quint64 id_ = 0;
    bool active_ = false;
    LayerToggle* visibility_;
    LayerToggle* state_;
    ElidedLabel* name_;
    LayerToggle* mark_;           ///< whether it is marked for ghosts
    QLineEdit* editor_ = nullptr; ///< while the name is edited
    QPoint press_;                ///< place of the last press in the row
    bool isDragged_ = false;
};

} // namespace vellix
