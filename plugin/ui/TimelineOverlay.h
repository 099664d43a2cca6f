#pragma once

#include <maya/MDoubleArray.h>

#include <QList>

namespace vellix {

/// What the drawing node tells the frame marks over the host's time slider.
class TimelineOverlay {
public:
    virtual ~TimelineOverlay() = default;

    virtual void SetFrameTimes(const QList<int>& times) = 0;
    virtual void ClearFrameTimes() = 0;
    virtual bool IsShown() const = 0;
    virtual void SetShown(bool shown) = 0;
    virtual void SetDrawContextActive(bool active) = 0;

    /// Follows a range that is being dragged along the slider; the offset is in frames.
    virtual void UpdateMoveOffset() = 0;
    virtual bool HasMoveOffset() const = 0;
    virtual int GetMoveOffset() const = 0;
    virtual MDoubleArray GetRangeForMoveOffset() const = 0;
};

} // namespace vellix
