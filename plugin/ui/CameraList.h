#pragma once

#include "host/panels/DialogManager.h"
#include "ui/LayerItem.h"

#include <QList>
#include <QPointer>
#include <QScrollArea>

class QVBoxLayout;

namespace vellix {

class CameraLayerList;

/// The layers of all cameras. Fill() keeps the scroll position and the layer with the keyboard focus.
class CameraList : public QScrollArea {
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
    void paintEvent(QPaintEvent* event) override;

private:
    struct Place; // the place of a layer: in the viewport, or with the keyboard focus

    void FillSections(const QList<LayerManagerRow>& rows);
    CameraLayerList* TakeSection(const QString& camera, QList<CameraLayerList*>& from);
    void LayOut();
    Place FindTopmost() const;
    Place FindFocused() const;
    void RestoreTopmost(const Place& place);
    void RestoreFocus(const Place& place);
    LayerItem* FindNamed(const QString& camera, const QString& name) const;
    QList<LayerItem*> ItemsFromTop() const;
    void SetTabStop(LayerItem* item);

    QWidget* content_;
    QVBoxLayout* layout_;
    QList<CameraLayerList*> sections_;
    QPointer<LayerItem> active_;
    QPointer<LayerItem> tabStop_;
    QWidget* tabPredecessor_ = nullptr;
};

} // namespace vellix
