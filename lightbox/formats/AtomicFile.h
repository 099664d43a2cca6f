#pragma once

#include "scene/WholeFile.h"

#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace lightbox {

/// A WholeFile that is written through a stream: the old file stays until Commit(), without Commit() the new
/// content is dropped.
class AtomicFile {
public:
    /// Throws FileError when the file cannot be written.
    explicit AtomicFile(const std::string& path);

    std::ostream& Stream() { return stream_; }
    /// Replaces the old file. Throws FileError when a write failed; the old file then stays.
    void Commit();
    /// Throws FileError when a write has failed.
    void CheckFault() const;

private:
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(WholeFile& file);

    protected:
        int_type overflow(int_type character) override;
        std::streamsize xsputn(const char* bytes, std::streamsize count) override;
        int sync() override;

    private:
        bool Drain();

        WholeFile& file_;
        std::vector<char> pending_;
    };

    std::string path_;
    WholeFile file_;
    Buffer buffer_;
    std::ostream stream_;
};

} // namespace lightbox
