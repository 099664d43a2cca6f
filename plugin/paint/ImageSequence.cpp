#include "paint/ImageSequence.h"

namespace vellix {

ImageSequence::ImageSequence(const QString& pattern)
    : m_before(pattern) {
    const int nameStart = pattern.lastIndexOf('/') + 1;
    const int last = pattern.lastIndexOf('#');
    if (last < nameStart) {
        return;
    }
    int first = last;
    while (first > nameStart && pattern[first - 1] == '#') {
        --first;
    }
    m_before = pattern.left(first);
    m_after = pattern.mid(last + 1);
    m_digits = last + 1 - first;
}

QString ImageSequence::GetPath(int frame) const {
    if (!HasNumber()) {
        return m_before;
    }
    // The name is not passed through arg(): a "%1" in it is part of the name.
    return m_before + QString("%1").arg(frame, m_digits, 10, QChar('0')) + m_after;
}

} // namespace vellix
