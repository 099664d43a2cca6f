#pragma once

#include <QDir>
#include <QString>

#include <set>
#include <string>
#include <vector>

namespace lightbox {

/// The automatic saves of one scene: "NAME.0001.ma", "NAME.0002.ma" and so on, in one folder. Several
/// programs may use the folder at once.
class AutoSaveFolder {
public:
    /// `sceneName` is the scene's file, empty for an untitled scene. Files are looked for when they are
    /// needed.
    AutoSaveFolder(const std::string& folder, const std::string& sceneName);

    /// Makes the next file, empty, so that no other program takes its name. Makes the folder if necessary.
    /// Returns the path; throws FileError when the folder cannot be written to.
    std::string Reserve(const std::string& suffix) const;
    /// Deletes the oldest files until `maximum` are left, `newest` included; 0 stands for no limit. Also
    /// deletes what killed programs have left of a file. The files in `kept`, canonical paths, are neither
    /// deleted nor counted, and neither are those after `newest`, which are of other programs.
    void Rotate(const std::string& newest, int maximum, const std::set<std::string>& kept) const;

private:
    struct Entry {
        qulonglong number;
        std::string path;
        bool isWhole; ///< not only reserved
    };

    /// The files, by number.
    std::vector<Entry> Entries() const;

    QDir folder_;
    QString base_; ///< the scene's file name without suffix
};

} // namespace lightbox
