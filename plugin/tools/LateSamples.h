#pragma once

#include <QList>
#include <QPoint>

namespace vellix {

/// How many of the samples were taken before the release of the button. The main thread was busy, and learns
/// of the release later; the pointer may have gone on. The samples `late` follow `last`, and the path through
/// them is cut where it passes the place of the release for the last time. If it never comes within two
/// pixels, it ends at the sample nearest to that place. View pixels.
int CountBeforeRelease(const QPoint& last, const QList<QPoint>& late, const QPoint& release);

} // namespace vellix
