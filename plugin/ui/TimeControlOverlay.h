#pragma once

#include "core/Identity.h"
#include "host/panels/DialogManager.h"
#include "ui/GuardedWidget.h"

#include <maya/MDoubleArray.h>

#include <QWidget>

namespace vellix {

/// Marks the drawn frames over the host's time slider. While the draw tool is current and the user drags the
/// slider's highlighted range, it tracks by how many frames; on release it moves the frames of the range. It
/// consumes no events, so the slider below works as usual.
class TimeControlOverlay : public GuardedWidget<QWidget>, public TimelineOverlay {
    Q_OBJECT

public:
    /// A child of the slider, but not owned by it: the overlay outlives a slider that is deleted first.
    explicit TimeControlOverlay(QWidget* timeSlider);

    /// Times in frames. A time may occur twice, when a moved frame lands on another one.
    void SetFrameTimes(const QList<int>& times) override;
    void ClearFrameTimes() override;
    bool IsShown() const override;
    void SetShown(bool shown) override;
    void SetDrawContextActive(bool active) override;

    void UpdateMoveOffset() override;
    bool HasMoveOffset() const override;
    int GetMoveOffset() const override;
    MDoubleArray GetRangeForMoveOffset() const override;

    /// Ends a drag, moves the frames if needed, and stores the slider's current range for the next drag.
    void UpdateDrag();
    /// Ends a drag without moving anything.
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
    static LayerId FindDraggedLayer();

    QList<int> frameTimes_;
    bool rangeVisibleAtPress_ = false;
    bool dragging_ = false;
    bool movePending_ = false;
    LayerId dragged_ = LayerId::None; ///< at the press
    MDoubleArray range_; ///< start and end (exclusive) at the start of the drag, or empty; frames
    int moveOffset_ = 0; ///< frames
    bool drawContextActive_ = false;
};

} // namespace vellix
