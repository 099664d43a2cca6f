#pragma once

#include "host/panels/DialogManager.h"
#include "ui/FloatingPanel.h"

namespace vellix {

class CameraList;
class PlainIconButton;

/// The layers of every camera, with buttons to create, delete and reorder them. The dialog changes nothing
/// itself: user actions go out as command lines, and the document then fills it again. All changes reported
/// in one turn of the event loop are shown together.
class LayerManagerDialog : public FloatingPanel, public LayerManagerPanel {
    Q_OBJECT

public:
    explicit LayerManagerDialog(QWidget* parent = nullptr);

    void Clear() override;
    void Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera, int activeIndex) override;
    /// Index -1 stands for no layer.
    void SetActive(const QString& camera, int index);
    int LayerCount(const QString& camera) const;

    // Part of the interface for scripts and other tools; not called here.
    /// Adds a layer on top of its camera's layers.
    void AppendLayer(const LayerManagerRow& row);

public Q_SLOTS:
    /// Shows all reported changes now.
    void Update();
    void NewLayer();
    void DeleteLayer();
    void MoveLayerUp();
    void MoveLayerDown();
    void RefreshUi();

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void QueueUpdate();
    bool HasActive() const;
    quint64 ActiveLayer() const;
    bool CanMoveUp() const;
    bool CanMoveDown() const;

    CameraList* list_;
    PlainIconButton* moveUp_;
    PlainIconButton* moveDown_;
    PlainIconButton* delete_;
    QList<LayerManagerRow> rows_;
    QString activeCamera_;
    int activeIndex_ = -1;
    quint64 shownActive_ = 0; ///< the active layer that the last update showed
    bool updateQueued_ = false;
    bool undoing_ = false; ///< a reported change came from undo or redo
    bool revealActive_ = true;
};

} // namespace vellix
