#pragma once

#include <QFile>

#include <map>
#include <memory>
#include <string>

namespace lightbox::mel {

/// The files that scripts have opened, by the number that fopen returned.
class OpenFiles {
public:
    /// Returns the file's number; 0 when the file cannot be opened. The mode is that of C's fopen.
    int Open(const std::string& path, const std::string& mode);
    /// Returns null for a number of no open file.
    QFile* Find(int id) const;
    /// Closes a file. Returns false if its last bytes could not be written.
    bool Close(int id);

    /// The next line with its line break, up to the maximum length of a text.
    std::string ReadLine(int id);
    /// The next run of characters other than the separators.
    std::string ReadWord(int id, const std::string& separators);

private:
    QFile& Get(int id) const;

    std::map<int, std::unique_ptr<QFile>> files_;
    int next_ = 1;
};

} // namespace lightbox::mel
