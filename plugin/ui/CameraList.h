#pragma once

#include "host/panels/DialogManager.h"
#include "ui/LayerItem.h"

#include <QList>
#include <QPointer>
#include <QScrollArea>

class QVBoxLayout;

namespace vellix {

class CameraLayerList;

/// The layers of all cameras. Filling it anew keeps what is seen where it is, and the keyboard on the layer
/// that it is on.
class CameraList : public QScrollArea {
    Q_OBJECT

public:
    explicit CameraList(QWidget* parent = nullptr);

    /// Rows of one camera stand together, in stack order.
    void Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera, int activeIndex);
    /// Null when there is none.
    LayerItem* GetActive() const;
    /// Scrolls as little as it takes to see the active layer.
    void RevealActive();

    /// Null when there is no such layer.
    LayerItem* FindItem(const QString& camera, int index) const;

    /// The widget after which the tab key comes to the list.
    void SetTabPredecessor(QWidget* widget) { m_tabPredecessor = widget; }

    QSize sizeHint() const override;

public Q_SLOTS:
    /// Takes the colours anew after the palette changed.
    void UpdateColors();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Place; // where a layer is seen, or the keyboard is

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

    QWidget* m_content;
    QVBoxLayout* m_layout;
    QList<CameraLayerList*> m_sections;
    QPointer<LayerItem> m_active;
    QPointer<LayerItem> m_tabStop;
    QWidget* m_tabPredecessor = nullptr;
};

} // namespace vellix
