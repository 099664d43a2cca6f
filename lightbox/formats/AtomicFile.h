#pragma once

#include <QSaveFile>

#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace lightbox {

/// A file that takes the place of the one before it only when it has been written whole: until Commit() the
/// old file stays, and without it the new content is dropped. Write through Stream().
class AtomicFile {
public:
    /// Throws FileError when the folder cannot be written to.
    explicit AtomicFile(const std::string& path);

    std::ostream& Stream() { return stream_; }
    /// Throws FileError when anything could not be written; the old file is then still there.
    void Commit();

private:
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(QSaveFile& file);

    protected:
        int_type overflow(int_type character) override;
        std::streamsize xsputn(const char* bytes, std::streamsize count) override;
        int sync() override;

    private:
        bool Drain();

        QSaveFile& file_;
        std::vector<char> pending_;
    };

    QSaveFile file_;
    Buffer buffer_;
    std::ostream stream_;
};

} // namespace lightbox
