#pragma once

#include <QString>

namespace vellix {

/// File names of a numbered image sequence. The last run of '#' in the file's name (not in its folder) stands
/// for the frame number, padded with zeros to the length of the run: "walk.####.png" gives "walk.0012.png",
/// and "walk.-012.png" before frame 0.
class ImageSequence {
public:
    explicit ImageSequence(const QString& pattern);

    bool HasNumber() const { return digits_ > 0; }
    QString GetPath(int frame) const;

private:
    QString before_;
    QString after_;
    int digits_ = 0;
};

} // namespace vellix
