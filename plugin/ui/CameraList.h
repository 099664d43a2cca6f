#pragma once

#include "host/panels/DialogManager.h"
#include "ui/GuardedWidget.h"
#include "ui/LayerItem.h"

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QScrollArea>
#include <QTimer>

class QLabel;
class QVBoxLayout;

namespace vellix {

class CameraLayerList;

/// The layers of all cameras. Fill() keeps the scroll position and the layer with the keyboard focus.
class CameraList : public GuardedWidget<QScrollArea> {
    Q_OBJECT

public:
    explicit CameraList(QWidget* parent = nullptr);

    /// Rows of one camera must be adjacent, in stack order.
    void Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera, int activeIndex);
    /// The active layer's item; null if there is none.
    LayerItem* GetActive() const;
    /// Scrolls as little as needed to show the active layer.
    void RevealActive();

    /// Null if there is no such layer.
    LayerItem* FindItem(const QString& camera, int index) const;

    /// Sets the widget before the list in tab order.
    void SetTabPredecessor(QWidget* widget) { tabPredecessor_ = widget; }

    QSize sizeHint() const override;

public Q_SLOTS:
    /// Updates the colours after the palette changed.
    void UpdateColors();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Gap;   // a place between two layers, where a dragged one goes
    struct Place; // the place of a layer: in the viewport, or with the keyboard focus

    void FillSections(const QList<LayerManagerRow>& rows);
    CameraLayerList* TakeSection(const QString& camera, QList<CameraLayerList*>& from);
    void LayOut();
    Place FindTopmost() const;
    Place FindFocused() const;
    void RestoreTopmost(const Place& place);
    void RestoreFocus(const Place& place);
    LayerItem* FindLayer(const Place& place) const;
    static Place PlaceOf(const LayerItem& item);
    QList<LayerItem*> ItemsFromTop() const;
    void SetTabStop(LayerItem* item);
    void BeginDrag(LayerItem* item);
    void DragTo(const QPoint& place);
    void EndDrag(bool drop);
    void ScrollWhileDragging();
    Gap FindGap(int y) const;

    QWidget* content_;
    QVBoxLayout* layout_;
    QLabel* empty_; ///< shown when there is no layer
    QList<CameraLayerList*> sections_;
    QPointer<LayerItem> active_;
    QPointer<LayerItem> tabStop_;
    QWidget* tabPredecessor_ = nullptr;
    quint64 dragged_ = 0;            ///< identity of the layer that is dragged; 0 for none
    QPointer<LayerItem> draggedRow_; ///< null once that row is gone
    QPoint dragPlace_;               ///< on the screen
    QTimer scrolling_;               ///< runs while a layer is dragged
    QWidget* dropLine_;
};

} // namespace vellix
