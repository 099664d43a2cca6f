#pragma once

#include <QSize>
#include <QString>

namespace vellix {

/// Whether pictures of this size are read: 1 to MAX_PNG_SIDE pixels a side.
bool IsReadableSize(const QSize& size);
/// What is wrong with another size, for the end of a sentence: "9000 x 10 pixels; at most ... can be read".
QString UnreadableSize(const QSize& size);

} // namespace vellix
