#pragma once

#include <QList>
#include <QWidget>

class QVBoxLayout;

namespace vellix {

class ElidedLabel;
class LayerItem;
struct LayerManagerRow;

/// The layers of one camera in the layer manager under the camera's name, the topmost layer first.
class CameraLayerList : public QWidget {
    Q_OBJECT

public:
    explicit CameraLayerList(QWidget* parent = nullptr);

    const QString& GetCameraName() const { return m_camera; }
    void SetCameraName(const QString& name);

    /// Shows these layers, given in stack order. Rows that are there already are told what changed; only
    /// what is missing or too many is made or goes.
    void Fill(const QList<LayerManagerRow>& rows);
    /// Adds a layer on top.
    void AppendLayer(const LayerManagerRow& row);

    /// By index; owned here.
    const QList<LayerItem*>& Items() const { return m_items; }

Q_SIGNALS:
    void ItemFocused(LayerItem* item);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void FitHeader();

    QString m_camera;
    ElidedLabel* m_header;
    QVBoxLayout* m_itemLayout;
    QList<LayerItem*> m_items;
};

} // namespace vellix
