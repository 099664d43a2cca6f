#pragma once

#include <QSaveFile>

#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace lightbox {

/// A file that replaces the old one only after it was written completely. The old file stays until Commit();
/// without Commit() the new content is dropped. Write through Stream().
class AtomicFile {
public:
    /// Throws FileError when the folder cannot be written to.
    explicit AtomicFile(const std::string& path);

    std::ostream& Stream() { return stream_; }
    /// Replaces the old file. Throws FileError when a write failed; the old file then stays.
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
