#include "exchange/ReadableSize.h"

#include "paint/ImageSize.h"

namespace vellix {

bool IsReadableSize(const QSize& size) {
    return size.width() >= 1 && size.height() >= 1 && size.width() <= MAX_PNG_SIDE &&
           size.height() <= MAX_PNG_SIDE;
}

QString UnreadableSize(const QSize& size) {
    return QStringLiteral("%1 x %2 pixels; at most %3 x %3 can be read")
        .arg(size.width())
        .arg(size.height())
        .arg(MAX_PNG_SIDE);
}

} // namespace vellix
