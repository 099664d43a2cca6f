#pragma once

#include <QString>

#include <functional>
#include <set>
#include <vector>

namespace vellix {

/// A file of a sequence, and the number in its name.
struct PictureFile {
    QString path;
    bool hasNumber = false;
    int number = 0;
};

/// Finds the files of a numbered sequence. The number is the last run of digits in a name, without its
/// suffix; a hyphen in front of it is its sign at the beginning of the name and behind a dot, a blank or an
/// underscore.
class PictureFiles {
public:
    /// `pattern` is a file, a folder, or a file's name with the wildcards * and ?, or with a run of # where
    /// the number is. Of a folder, those with one of the suffixes are taken. Returns false, with a sentence
    /// in `fault`, if there are none.
    /// May be called for several patterns; files that are there already are not added again.
    bool Add(const QString& pattern, const std::function<std::vector<QString>()>& suffixes, QString& fault);

    const std::vector<PictureFile>& Files() const { return files_; }
    /// What the names have in common in front of the number; the folder's name if they differ or if there is
    /// nothing.
    QString Stem() const;
    /// Puts the files in the order of their numbers, then of their names.
    void Sort();

private:
    std::vector<PictureFile> files_;
    std::set<QString> paths_; ///< of the files
};

} // namespace vellix
