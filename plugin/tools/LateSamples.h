#pragma once

#include <QList>
#include <QPoint>

#include <vector>

namespace vellix {

/// How many of the samples were taken before the release of the button. The main thread was busy, and learns
/// of the release later; the pointer may have gone on. The samples `late` follow `last`, and the path through
/// them is cut where it passes the place of the release for the last time. If it never comes within two
/// pixels, it ends at the sample nearest to that place. View pixels.
int CountBeforeRelease(const QPoint& last, const QList<QPoint>& late, const QPoint& release);

/// A sample and when it was taken (see EventClock).
struct DatedSample {
    QPoint position;
    qint64 time;
};

/// How many of the samples that a stroke has got already were taken before the release at `releaseTime`,
/// which becomes known only now. They are cut where they pass the place of the release at about its time; all
/// are kept if they do not pass it then, or the time is unknown. The first two always stay. View pixels.
int CountBeforeRelease(const std::vector<DatedSample>& samples, const QPoint& release, qint64 releaseTime);

} // namespace vellix
