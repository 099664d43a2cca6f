#pragma once

#include <QWidget>

namespace vellix {

class ElidedLabel;
class LayerToggle;
struct LayerManagerRow;

/// One layer in the layer manager: whether it is visible, its state, its name. What is done here goes out as
/// command lines; what is shown is only what Show() was told.
class LayerItem : public QWidget {
    Q_OBJECT

public:
    /// The columns that the keyboard goes through.
    enum class Part { Row, Visibility, State };

    LayerItem(const QString& camera, int index, QWidget* parent = nullptr);

    const QString& GetCamera() const { return m_camera; }
    int GetIndex() const { return m_index; }
    QString GetName() const;

    void Show(const LayerManagerRow& row);
    /// The active one stands out in the host's highlight colours.
    void SetActive(bool active);
    /// Takes the colours anew after the palette changed.
    void UpdateColors();
    /// Only one row of the list is a stop of the tab key.
    void SetTabStop(bool stop);

    void PlaceInTabOrder(QWidget* after);

    void FocusPart(Part part, Qt::FocusReason reason);
    /// Which part has the focus, if any has.
    bool GetFocusedPart(Part& part) const;

Q_SIGNALS:
    void Focused(LayerItem* item);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void Activate();
    void OpenProperties();
    void ToggleVisibility();
    void CycleState();
    QWidget* GetWidget(Part part) const;

    QString m_camera;
    int m_index;
    bool m_active = false;
    LayerToggle* m_visibility;
    LayerToggle* m_state;
    ElidedLabel* m_name;
};

} // namespace vellix
