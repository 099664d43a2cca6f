#pragma once

#include "host/panels/DialogManager.h"
#include "ui/FloatingPanel.h"

namespace vellix {

class CameraList;
class PlainIconButton;

/// The layers of every camera, with buttons to make, delete and reorder them. It changes nothing itself: what
/// is done goes out as command lines, and the document fills it anew. What it is told is shown as soon as the
/// event loop turns, in one go however much it was told.
class LayerManagerDialog : public FloatingPanel, public LayerManagerPanel {
    Q_OBJECT

public:
    explicit LayerManagerDialog(QWidget* parent = nullptr);

    void Clear() override;
    void Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera, int activeIndex) override;
    /// -1 for no layer.
    void SetActive(const QString& camera, int index);
    int LayerCount(const QString& camera) const;

    // Part of the interface for scripts and other tools; not called here.
    /// Adds a layer on top of its camera's.
    void AppendLayer(const LayerManagerRow& row);

public Q_SLOTS:
    /// Shows at once what it was told.
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
    bool CanMoveUp() const;
    bool CanMoveDown() const;

    CameraList* m_list;
    PlainIconButton* m_moveUp;
    PlainIconButton* m_moveDown;
    PlainIconButton* m_delete;
    QList<LayerManagerRow> m_rows;
    QString m_activeCamera;
    int m_activeIndex = -1;
    int m_shownCount = 0; ///< rows
    bool m_updateQueued = false;
    bool m_undoing = false; ///< something of what was told came from undo or redo
    bool m_revealActive = true;
};

} // namespace vellix
