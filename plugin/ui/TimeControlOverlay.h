#pragma once

#include "host/panels/DialogManager.h"

#include <QWidget>

namespace vellix {

/// Marks the drawn frames over the host's time slider. While a highlighted range of the slider is dragged
/// along, with the draw tool in use, it finds out by how many frames, and moves the frames of the range when
/// the mouse is released. It consumes no event: the slider underneath keeps its own behaviour.
class TimeControlOverlay : public QWidget, public TimelineOverlay {
    Q_OBJECT

public:
    /// A child of the slider, which does not own it: the overlay outlives a slider that goes first.
    explicit TimeControlOverlay(QWidget* timeSlider);

    /// Duplicates count: a moved frame may land on another one.
    void SetFrameTimes(const QList<int>& times) override;
    void ClearFrameTimes() override;
    bool IsShown() const override;
    void SetShown(bool shown) override;
    void SetDrawContextActive(bool active) override;

    void UpdateMoveOffset() override;
    bool HasMoveOffset() const override;
    int GetMoveOffset() const override;
    MDoubleArray GetRangeForMoveOffset() const override;

    /// Ends a drag, moving the frames when there is something to move, and captures the slider's range anew.
    void UpdateDrag();
    /// Forgets a drag without moving anything.
    void ResetDrag();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    bool FollowsRange() const;

    QList<int> m_frameTimes;
    bool m_rangeVisibleAtPress = false;
    bool m_dragging = false;
    bool m_movePending = false;
    MDoubleArray m_range; ///< start and end when the drag began, or empty
    int m_moveOffset = 0; ///< frames
    bool m_drawContextActive = false;
};

} // namespace vellix
