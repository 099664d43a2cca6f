#pragma once

#include <QString>

namespace vellix {

/// File names of a numbered image sequence. The last run of '#' in the file's name (not in its folder) stands
/// for the frame number, padded with zeros to the length of the run: "walk.####.png" gives "walk.0012.png",
/// and "walk.-012.png" before frame 0.
class ImageSequence {
public:
    explicit ImageSequence(const QString& pattern);

    bool HasNumber() const { return m_digits > 0; }
    QString GetPath(int frame) const;

private:
    QString m_before;
    QString m_after;
    int m_digits = 0;
};

} // namespace vellix
