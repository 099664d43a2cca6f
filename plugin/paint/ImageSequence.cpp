#include "paint/ImageSequence.h"

namespace vellix {

ImageSequence::ImageSequence(const QString& pattern)
    : before_(pattern) {
    const int nameStart = pattern.lastIndexOf('/') + 1;
    const int last = pattern.lastIndexOf('#');
    if (last < nameStart) {
        return;
    }
    int first = last;
    while (first > nameStart && pattern[first - 1] == '#') {
        --first;
    }
    before_ = pattern.left(first);
    after_ = pattern.mid(last + 1);
    digits_ = last + 1 - first;
}

QString ImageSequence::GetPath(int frame) const {
    if (!HasNumber()) {
        return before_;
    }
    // The name is not passed through arg(): a "%1" in it is part of the name.
    return before_ + QString("%1").arg(frame, digits_, 10, QChar('0')) + after_;
}

} // namespace vellix
