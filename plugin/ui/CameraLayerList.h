#pragma once

#include "ui/GuardedWidget.h"

#include <QList>
#include <QWidget>

class QVBoxLayout;

namespace vellix {

class ElidedLabel;
class LayerItem;
struct LayerManagerRow;

/// The layers of one camera in the layer manager, below the camera's name. The topmost layer comes first. The
/// name of a deleted camera is shown as such.
class CameraLayerList : public GuardedWidget<QWidget> {
    Q_OBJECT

public:
    explicit CameraLayerList(QWidget* parent = nullptr);

    const QString& GetCameraName() const { return camera_; }
    void SetCameraName(const QString& name);

    /// Shows these layers, given in stack order. Updates existing rows, and adds or removes rows only as
    /// needed.
    void Fill(const QList<LayerManagerRow>& rows);
    /// Adds a layer on top.
    void AppendLayer(const LayerManagerRow& row);

    /// The items by layer index; owned by this list.
    const QList<LayerItem*>& Items() const { return items_; }

Q_SIGNALS:
    void ItemFocused(LayerItem* item);
    /// See the signals of LayerItem.
    void ItemDragStarted(LayerItem* item);
    void ItemDragMoved(const QPoint& place);
    void ItemDragEnded(bool drop);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void FitHeader();
    void ShowHeader(bool cameraExists);

    QString camera_;
    ElidedLabel* header_;
    QVBoxLayout* itemLayout_;
    QList<LayerItem*> items_;
};

} // namespace vellix
